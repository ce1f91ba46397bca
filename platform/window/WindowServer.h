// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/render/egl/Egl.h"
#include "platform/time/MediaClock.h"
#include "platform/time/RestableClock.h"
#include "platform/window/x11/Coverage.h"
#include "platform/window/x11/DisplaySleep.h"

namespace platform {

class EventConnection;
class OverlaySpaces;
class RootWatch;
class StackKeeper;
class Window;
class WindowCore;

// The choice of a drawer for layers in windows. Auto takes the CPU where OpenGL
// would be software: there a full-screen swap alone costs more than the CPU's
// drawing of the changes.
enum class DrawerChoice { Auto, OpenGl, Cpu };

struct WindowServerOptions {
    DrawerChoice drawer = DrawerChoice::Auto;
    QString display;           // the X display; empty for the one of the environment
    ResetQuery resetStatus{};  // asked, on render threads, in OpenGL's place
    // The clock that the pictures move by, if not the windows' own; while it
    // rests, nothing moves. Outlives the server.
    const RestableClock* pictures = nullptr;
};

// The program's end of the line to the X server, beside Qt's own: windows are
// listened to and drawn in through connections of our own, so that a vanished
// host's window is an event and never the end of the program. One per program;
// outlives its windows. Main thread.
class WindowServer {
  public:
    explicit WindowServer(MediaClock& clock, WindowServerOptions options = {});
    ~WindowServer();
    WindowServer(const WindowServer&) = delete;
    WindowServer& operator=(const WindowServer&) = delete;

    // Whether there is a server at all; without one, windows stay empty.
    [[nodiscard]] bool isConnected() const;

    // Called once when the server has gone away; Qt's message about it is kept
    // back. Nothing of it can be reached any more, and where Qt has windows, Qt
    // ends the program with exit(1) as soon as the action returns: leave with
    // std::_Exit() after saving what is to be saved.
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
    [[nodiscard]] EventConnection& events() const { return *events_; }

    // Made on first use: most programs need none of these.
    [[nodiscard]] RootWatch& root();
    [[nodiscard]] StackKeeper& stack();
    [[nodiscard]] OverlaySpaces& spaces();

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
    // No longer to the window that had them.
    void keysMoved();
    void destroyed(std::uint32_t windowNumber);
    [[nodiscard]] int levelOf(std::uint32_t windowNumber) const;

    MediaClock& clock_;
    const WindowServerOptions options_;
    std::unique_ptr<EventConnection> events_;
    const std::int32_t number_;
    std::unique_ptr<RootWatch> root_;
    std::unique_ptr<StackKeeper> stack_;
    std::unique_ptr<OverlaySpaces> spaces_;
    Window* key_ = nullptr;
    std::vector<Window*> shown_;  // lowest level first, then in order of showing
    std::vector<WindowCore*> windows_;
    int pace_ = 1;
    bool asleep_ = false;
    std::optional<DisplaySleep> sleep_;
    std::optional<CoverageWatch> coverage_;
};

}  // namespace platform
