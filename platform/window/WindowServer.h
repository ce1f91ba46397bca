// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/render/WorkBudget.h"
#include "platform/time/MediaClock.h"
#include "platform/time/RestableClock.h"
#include "platform/time/Timer.h"
#include "platform/window/Surface.h"

namespace platform {

class Window;
class WindowCore;
class WindowSystem;

struct WindowServerOptions {
    DrawerChoice drawer = DrawerChoice::Auto;
    // The system of the windows; not null. The server keeps the system alive.
    std::shared_ptr<WindowSystem> system;
    ResetQuery resetStatus{};  // asked on render threads, in OpenGL's place
    // As in SurfaceOptions, for each window.
    std::function<void()> withoutOpenGl{};
    // The clock of the pictures, if not the windows' own; while it rests, nothing moves.
    // Outlives the server.
    const RestableClock* pictures = nullptr;
};

// The state that the program's windows share: their system, clock, pace and order. One per
// program; outlives its windows. The clock outlives the server. Main thread.
class WindowServer {
  public:
    explicit WindowServer(MediaClock& clock, WindowServerOptions options);
    ~WindowServer();
    WindowServer(const WindowServer&) = delete;
    WindowServer& operator=(const WindowServer&) = delete;

    // Whether the window system is connected; without it, windows stay empty.
    [[nodiscard]] bool isConnected() const;

    // Called once when the connection to the window system is lost; Qt's message about the
    // loss is suppressed. The window system can no longer be reached. Where Qt has windows,
    // Qt ends the program with exit(1) as soon as the action returns: the action saves what
    // must be saved and leaves with std::_Exit().
    void onConnectionLost(std::function<void()> action);

    // Limits frames to the display's rate divided by `divisor`; 1 at first.
    void setPace(int divisor);
    [[nodiscard]] int pace() const { return pace_; }

    // Keeps the program to a share of the processors while the processor draws its windows,
    // as WorkBudget tells; without a call, and without options, there is no limit. Each call
    // begins at the full measure. `cpuSeconds` tells the processor time that the program has
    // used so far, on the main thread, at most once a second, and only while there are frames.
    void limitWork(const std::optional<WorkBudget::Options>& options,
                   std::function<double()> cpuSeconds);
    [[nodiscard]] const WorkMeasure& measure() const { return measure_; }

    // While the display sleeps no window has frames. The server watches the display itself.
    void setDisplayAsleep(bool asleep);
    [[nodiscard]] bool isDisplayAsleep() const { return asleep_; }

    // Marks the pictures of all windows as changed.
    void setNeedsFrames();

    [[nodiscard]] MediaClock& clock() const { return clock_; }
    [[nodiscard]] const WindowServerOptions& options() const { return options_; }
    [[nodiscard]] WindowSystem& system() const { return *options_.system; }

    // The window that last became key and still is shown; nullptr without one.
    [[nodiscard]] Window* keyWindow() const { return key_; }

    // The number of the last connected server, 0 without one. Servers are numbered in the
    // order of their making, from 1.
    [[nodiscard]] static std::int32_t defaultNumber();
    [[nodiscard]] static WindowServer* numbered(std::int32_t number);

  private:
    friend class Window;
    friend class WindowCore;
    // Watches the display and the windows' covering while there are any windows.
    void added(WindowCore& window);
    void removed(WindowCore& window);
    // Keeps windows of a higher level above one that came to the front.
    void cameToFront(Window& window);
    void becameKey(Window& window);
    void dropped(Window& window);
    // A frame was built at this time of the clock.
    void frameBuilt(double time);
    void take(const WorkMeasure& measure);

    MediaClock& clock_;
    const WindowServerOptions options_;
    const std::int32_t number_;
    Window* key_ = nullptr;
    std::vector<Window*> shown_;  // lowest level first, then in order of showing
    std::vector<WindowCore*> windows_;
    int pace_ = 1;
    std::optional<WorkBudget> budget_;
    std::function<double()> cpuSeconds_;
    WorkMeasure measure_;
    Timer newMeasure_;
    bool asleep_ = false;
};

}  // namespace platform
