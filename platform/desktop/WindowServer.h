// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "platform/render/Egl.h"
#include "platform/time/MediaClock.h"

namespace platform {

class EventConnection;
class Window;

// Which drawer shows layers in windows. Auto takes the CPU where OpenGL would
// be software: a full-screen swap alone costs that more than the CPU's drawing
// of what changed.
enum class DrawerChoice { Auto, OpenGl, Cpu };

struct WindowServerOptions {
    DrawerChoice drawer = DrawerChoice::Auto;
    QString display;           // the X display; empty for the one of the environment
    ResetQuery resetStatus{};  // asked, on render threads, in OpenGL's place
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

    [[nodiscard]] MediaClock& clock() const { return clock_; }
    [[nodiscard]] const WindowServerOptions& options() const { return options_; }
    [[nodiscard]] EventConnection& events() const { return *events_; }

  private:
    friend class Window;
    // Keeps windows of a higher level above one that came to the front.
    void cameToFront(Window& window);
    void dropped(Window& window);

    MediaClock& clock_;
    const WindowServerOptions options_;
    std::unique_ptr<EventConnection> events_;
    std::vector<Window*> shown_;  // lowest level first, then in order of showing
};

}  // namespace platform
