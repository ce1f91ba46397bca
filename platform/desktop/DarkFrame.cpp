// SPDX-License-Identifier: MIT
#include "platform/desktop/DarkFrame.h"

#include <QGuiApplication>
#include <string_view>

#include "platform/desktop/Xcb.h"

namespace platform {

namespace {

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto asked =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, asked, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

void askForDarkFrame(QWindow& window) {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11) return;
    constexpr std::string_view kDark = "dark";
    xcb_connection_t* const connection = x11->connection();
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(window.winId()),
                        atom(connection, "_GTK_THEME_VARIANT"), atom(connection, "UTF8_STRING"), 8,
                        static_cast<std::uint32_t>(kDark.size()), kDark.data());
}

}  // namespace platform
