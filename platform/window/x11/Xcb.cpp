// SPDX-License-Identifier: MIT
#include "platform/window/x11/Xcb.h"

#include <QGuiApplication>
#include <array>
#include <vector>

namespace platform {

namespace {

xcb_connection_t* connectTo(const QString& display, int& screen) {
    // The lookup of the authority file uses a buffer that all threads share.
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    return xcb_connect(display.isEmpty() ? nullptr : display.toLocal8Bit().constData(), &screen);
}

}  // namespace

XConnection::XConnection(const QString& display)
    : connection_(connectTo(display, screen_), xcb_disconnect) {}

XConnection::XConnection(xcb_connection_t* borrowed)
    : connection_(borrowed, [](xcb_connection_t*) {}) {}

const XConnection* XConnection::ofQt() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // Qt's plugin without windows knows X too, and may have no server.
    xcb_connection_t* const connection = x11 ? x11->connection() : nullptr;
    if (!connection) return nullptr;
    static std::unique_ptr<XConnection> known;
    if (!known || known->get() != connection) known.reset(new XConnection(connection));
    return known.get();
}

xcb_window_t XConnection::root() const {
    if (!isAlive()) return XCB_NONE;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(get()));
    for (int i = 0; i < screen_ && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    return screens.data->root;
}

xcb_atom_t XConnection::atom(std::string_view name) const {
    const std::lock_guard lock(mutex_);
    if (const auto known = atoms_.find(name); known != atoms_.end()) return known->second;
    const auto reply = answer(
        get(), xcb_intern_atom(get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
        xcb_intern_atom_reply);
    if (!reply) return XCB_ATOM_NONE;
    atoms_.emplace(name, reply->atom);
    return reply->atom;
}

std::optional<std::uint32_t> XConnection::number(xcb_window_t window, std::string_view name) const {
    if (!isAlive()) return std::nullopt;
    const auto reply = answer(
        get(), xcb_get_property(get(), 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
        xcb_get_property_reply);
    if (!reply || reply->format != 32 || reply->value_len == 0) return std::nullopt;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

void XConnection::setNumbers(xcb_window_t window, std::string_view name, xcb_atom_t type,
                             std::span<const std::uint32_t> values) const {
    xcb_change_property(get(), XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void XConnection::setCardinal(xcb_window_t window, std::string_view name,
                              std::uint32_t value) const {
    setNumbers(window, name, XCB_ATOM_CARDINAL, {&value, 1});
}

void XConnection::setText(xcb_window_t window, std::string_view name,
                          std::string_view value) const {
    xcb_change_property(get(), XCB_PROP_MODE_REPLACE, window, atom(name), atom("UTF8_STRING"), 8,
                        static_cast<std::uint32_t>(value.size()), value.data());
}

void XConnection::askManager(xcb_window_t window, std::string_view what,
                             std::uint32_t value) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(what);
    event.data.data32[0] = value;
    xcb_send_event(get(), 0, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
}

std::optional<QPoint> XConnection::cornerOf(xcb_window_t window, xcb_window_t root) const {
    const auto reply = answer(get(), xcb_translate_coordinates(get(), window, root, 0, 0),
                              xcb_translate_coordinates_reply);
    return reply ? std::optional(QPoint(reply->dst_x, reply->dst_y)) : std::nullopt;
}

bool XConnection::offersAny(std::span<const std::string_view> extensions) const {
    if (!isAlive()) return false;
    std::vector<xcb_query_extension_cookie_t> asked;
    for (const std::string_view name : extensions)
        asked.push_back(
            xcb_query_extension(get(), static_cast<std::uint16_t>(name.size()), name.data()));
    bool any = false;
    for (const auto cookie : asked) {
        const auto reply = answer(get(), cookie, xcb_query_extension_reply);
        any = any || (reply && reply->present);
    }
    return any;
}

std::optional<WindowLook> lookAt(xcb_connection_t* connection, xcb_window_t window) {
    const auto first = xcb_get_window_attributes(connection, window);
    const auto second = xcb_get_geometry(connection, window);
    const auto attributes = answer(connection, first, xcb_get_window_attributes_reply);
    const auto geometry = answer(connection, second, xcb_get_geometry_reply);
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
