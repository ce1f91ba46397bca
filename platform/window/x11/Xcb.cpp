// SPDX-License-Identifier: MIT
#include "platform/window/x11/Xcb.h"

#include <mutex>

namespace platform {

namespace {

xcb_connection_t* connectTo(const QString& display, int& screen) {
    // Finding the authority file goes through a buffer that all threads share.
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    return xcb_connect(display.isEmpty() ? nullptr : display.toLocal8Bit().constData(), &screen);
}

}  // namespace

XConnection::XConnection(const QString& display) : connection_(connectTo(display, screen_)) {}

std::optional<WindowLook> lookAt(xcb_connection_t* connection, xcb_window_t window) {
    const auto first = xcb_get_window_attributes(connection, window);
    const auto second = xcb_get_geometry(connection, window);
    // Without a place for them, the errors would turn up among the events.
    xcb_generic_error_t* errors[2] = {};
    const XcbReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, first, &errors[0]));
    const XcbReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, second, &errors[1]));
    std::free(errors[0]);
    std::free(errors[1]);
    if (!attributes || !geometry) return std::nullopt;
    return WindowLook{.width = geometry->width,
                      .height = geometry->height,
                      .depth = geometry->depth,
                      .visual = attributes->visual,
                      .colormap = attributes->colormap,
                      .root = geometry->root,
                      .viewable = attributes->map_state == XCB_MAP_STATE_VIEWABLE};
}

bool tellsOfNoWindow(const xcb_generic_error_t& error) {
    return error.error_code == XCB_WINDOW || error.error_code == XCB_DRAWABLE;
}

}  // namespace platform
