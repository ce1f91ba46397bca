// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <map>

#include "platform/window/x11/Xcb.h"

namespace platform {

// The connection that delivers, to the main thread, the events of the windows it draws in.
// The X11System owns it. Main thread.
class EventConnection {
  public:
    explicit EventConnection(const QString& display);

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] const XConnection& connection() const { return connection_; }
    [[nodiscard]] xcb_window_t root() const { return connection_.root(); }
    [[nodiscard]] bool isAlive() const { return connection_.isAlive(); }

    // Passes the window's structure, exposure and visibility events to the handler from now
    // on. A window that does not exist is reported as destroyed. One handler a window.
    using Handler = std::function<void(const xcb_generic_event_t&)>;
    void listen(xcb_window_t window, Handler handler);
    void ignore(xcb_window_t window);

    // Delivers events that have already arrived, in a later turn of the event loop. To be
    // called after waiting for a reply, since events that came with the reply do not wake
    // the loop.
    void readSoon();

    // Sets the action for the loss of the server; called once.
    void onLost(std::function<void()> action) { lost_ = std::move(action); }
    void lost();

  private:
    void read();
    void handle(const xcb_generic_event_t& event);

    XConnection connection_;
    std::map<xcb_window_t, Handler> handlers_;
    std::function<void()> lost_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace platform
