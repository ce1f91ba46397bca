// SPDX-License-Identifier: MIT
// Owners for what xcb hands out; private to platform/window/x11.
#pragma once

#include <xcb/xcb.h>

#include <QString>
#include <cstdlib>
#include <memory>
#include <optional>

namespace platform {

struct XcbFree {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename T>
using XcbReply = std::unique_ptr<T, XcbFree>;

// One connection to an X server. Any thread, as xcb allows.
class XConnection {
  public:
    // To the environment's display where `display` is empty. Never fails by
    // itself: see isAlive().
    explicit XConnection(const QString& display);

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] int screenNumber() const { return screen_; }
    [[nodiscard]] bool isAlive() const { return xcb_connection_has_error(get()) == 0; }

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    int screen_ = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
};

// The properties of a window that drawing in it needs.
struct WindowLook {
    int width = 0, height = 0;  // pixels
    int depth = 0;
    xcb_visualid_t visual = 0;
    xcb_colormap_t colormap = 0;
    xcb_window_t root = 0;
    bool viewable = false;
};

// None if the window does not exist. Waits for the server.
[[nodiscard]] std::optional<WindowLook> lookAt(xcb_connection_t* connection, xcb_window_t window);

// Whether an error that a drawing request came back with means that the window
// is no more.
[[nodiscard]] bool tellsOfNoWindow(const xcb_generic_error_t& error);

}  // namespace platform
