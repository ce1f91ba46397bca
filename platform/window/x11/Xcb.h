// SPDX-License-Identifier: MIT
// The X requests that several places need; private to platform/window/x11 and its tests.
#pragma once

#include <xcb/xcb.h>

#include <QPoint>
#include <QString>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace platform {

struct XcbFree {
    void operator()(void* reply) const { std::free(reply); }
};
// Owns memory that xcb returned.
template <typename T>
using XcbReply = std::unique_ptr<T, XcbFree>;

// Waits for the reply to a request. None where the server refused the request; the error
// does not reach the event queue.
template <typename Reply, typename Cookie>
XcbReply<Reply> answer(xcb_connection_t* connection, Cookie cookie,
                       Reply* (*wait)(xcb_connection_t*, Cookie, xcb_generic_error_t**)) {
    xcb_generic_error_t* error = nullptr;
    XcbReply<Reply> reply(wait(connection, cookie, &error));
    std::free(error);
    return reply;
}

// An event's type, without the flag of events that clients send.
[[nodiscard]] inline int typeOf(const xcb_generic_event_t& event) {
    return event.response_type & 0x7f;
}

template <typename Event>
[[nodiscard]] const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

// One connection to an X server; owns it. Any thread, as xcb allows.
class XConnection {
  public:
    // Connects to the environment's display where `display` is empty. Never fails:
    // isAlive() tells the result.
    explicit XConnection(const QString& display);

    // Qt's own connection, which Qt owns; null where Qt is not on X. Requests over it keep
    // their order with Qt's. Main thread.
    [[nodiscard]] static const XConnection* ofQt();

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] int screenNumber() const { return screen_; }
    [[nodiscard]] bool isAlive() const { return xcb_connection_has_error(get()) == 0; }
    void flush() const { xcb_flush(get()); }

    // The root window of the connection's screen; 0 without a server.
    [[nodiscard]] xcb_window_t root() const;

    // The atom of that name, requested once; 0 without a server.
    [[nodiscard]] xcb_atom_t atom(std::string_view name) const;

    // The first number of a property; none where the property is absent.
    [[nodiscard]] std::optional<std::uint32_t> number(xcb_window_t window,
                                                      std::string_view name) const;
    // Sets a property of 32-bit numbers.
    void setNumbers(xcb_window_t window, std::string_view name, xcb_atom_t type,
                    std::span<const std::uint32_t> values) const;
    void setCardinal(xcb_window_t window, std::string_view name, std::uint32_t value) const;
    void setText(xcb_window_t window, std::string_view name, std::string_view value) const;

    // Sends the window manager a message of the Extended Window Manager Hints.
    void askManager(xcb_window_t window, std::string_view what, std::uint32_t value) const;

    // The place of the window's upper left corner in the root window; none for a window
    // that does not exist.
    [[nodiscard]] std::optional<QPoint> cornerOf(xcb_window_t window, xcb_window_t root) const;

    // Whether the server offers any of the extensions. Waits for the server once.
    [[nodiscard]] bool offersAny(std::span<const std::string_view> extensions) const;

  private:
    using Disconnect = void (*)(xcb_connection_t*);
    explicit XConnection(xcb_connection_t* borrowed);

    int screen_ = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    mutable std::mutex mutex_;
    mutable std::map<std::string, xcb_atom_t, std::less<>> atoms_;
};

// The properties of a window that drawing in it needs. A plain value.
struct WindowLook {
    int width = 0, height = 0;  // pixels
    int depth = 0;
    xcb_visualid_t visual = 0;
    xcb_colormap_t colormap = 0;
    xcb_window_t root = 0;
    bool viewable = false;
};

// Asks for the properties; none if the window does not exist. Waits for the server.
[[nodiscard]] std::optional<WindowLook> lookAt(xcb_connection_t* connection, xcb_window_t window);

// Whether the error of a drawing request means that the window no longer exists.
[[nodiscard]] bool tellsOfNoWindow(const xcb_generic_error_t& error);

}  // namespace platform
