// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/time/MediaClock.h"
#include "platform/time/RestableClock.h"
#include "platform/window/Surface.h"

namespace platform {

class Window;
class WindowCore;
class WindowSystem;

struct WindowServerOptions {
    DrawerChoice drawer = DrawerChoice::Auto;
    // Where the windows live; not null. The server keeps the system alive.
    std::shared_ptr<WindowSystem> system;
    ResetQuery resetStatus{};  // asked, on render threads, in OpenGL's place
    // The clock that the pictures move by, if not the windows' own; while it
    // rests, nothing moves. Outlives the server.
    const RestableClock* pictures = nullptr;
};

// The things that the program's windows share: their system, their clock, their pace and
// their order. One per program; outlives its windows. The clock outlives the
// server. Main thread.
class WindowServer {
  public:
    explicit WindowServer(MediaClock& clock, WindowServerOptions options);
    ~WindowServer();
    WindowServer(const WindowServer&) = delete;
    WindowServer& operator=(const WindowServer&) = delete;

    // Whether the window system is there at all; without it, windows stay empty.
    [[nodiscard]] bool isConnected() const;

    // Called once when the window system has gone away; Qt's message about that is
    // kept back. Nothing of the system can be reached any more, and where Qt has
    // windows, Qt ends the program with exit(1) as soon as the action returns:
    // leave with std::_Exit() after saving what is to be saved.
    void onConnectionLost(std::function<void()> action);

    // Frames come at most as fast as the display's rhythm divided by this; 1 at
    // first.
    void setPace(int divisor);
    [[nodiscard]] int pace() const { return pace_; }

    // While the display is asleep no window has frames. Found out by itself.
    void setDisplayAsleep(bool asleep);
    [[nodiscard]] bool isDisplayAsleep() const { return asleep_; }

    // Marks the pictures of all windows as changed.
    void setNeedsFrames();

    [[nodiscard]] MediaClock& clock() const { return clock_; }
    [[nodiscard]] const WindowServerOptions& options() const { return options_; }
    [[nodiscard]] WindowSystem& system() const { return *options_.system; }

    // The window that was last shown as key and still is shown; nullptr without.
    [[nodiscard]] Window* keyWindow() const { return key_; }

    // Servers are numbered in the order in which they were made, from 1; the
    // default is the last one that is connected, 0 without any.
    [[nodiscard]] static std::int32_t defaultNumber();
    [[nodiscard]] static WindowServer* numbered(std::int32_t number);

  private:
    friend class Window;
    friend class WindowCore;
    // Watches the display and what covers windows for as long as there are any.
    void added(WindowCore& window);
    void removed(WindowCore& window);
    // Keeps windows of a higher level above one that came to the front.
    void cameToFront(Window& window);
    void becameKey(Window& window);
    void dropped(Window& window);

    MediaClock& clock_;
    const WindowServerOptions options_;
    const std::int32_t number_;
    Window* key_ = nullptr;
    std::vector<Window*> shown_;  // lowest level first, then in order of showing
    std::vector<WindowCore*> windows_;
    int pace_ = 1;
    bool asleep_ = false;
};

}  // namespace platform
