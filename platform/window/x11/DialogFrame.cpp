// SPDX-License-Identifier: MIT
#include "platform/window/x11/DialogFrame.h"

#include <QGuiApplication>
#include <QScreen>
#include <array>
#include <string_view>

#include "platform/window/x11/ScreenSpace.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

namespace {

xcb_connection_t* qtConnection() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto asked =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, asked, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// The words of _MOTIF_WM_HINTS, which every window manager of today reads.
struct MotifHints {
    static constexpr std::uint32_t kFunctions = 1U << 0, kDecorations = 1U << 1;
    static constexpr std::uint32_t kMove = 1U << 2;
    static constexpr std::uint32_t kBorder = 1U << 1, kTitle = 1U << 3;
};

}  // namespace

void askForDarkFrame(QWindow& window) {
    xcb_connection_t* const connection = qtConnection();
    if (!connection) return;
    constexpr std::string_view kDark = "dark";
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(window.winId()),
                        atom(connection, "_GTK_THEME_VARIANT"), atom(connection, "UTF8_STRING"), 8,
                        static_cast<std::uint32_t>(kDark.size()), kDark.data());
}

void askForTitleOnly(QWindow& window) {
    xcb_connection_t* const connection = qtConnection();
    if (!connection) return;
    const xcb_atom_t hints = atom(connection, "_MOTIF_WM_HINTS");
    const std::array<std::uint32_t, 5> words{MotifHints::kFunctions | MotifHints::kDecorations,
                                             MotifHints::kMove,
                                             MotifHints::kBorder | MotifHints::kTitle, 0, 0};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(window.winId()), hints, hints, 32,
                        static_cast<std::uint32_t>(words.size()), words.data());
}

std::optional<QRect> placeOf(std::uint32_t xWindow) {
    xcb_connection_t* const connection = qtConnection();
    const auto look = connection ? lookAt(connection, xWindow) : std::nullopt;
    if (!look) return std::nullopt;
    xcb_generic_error_t* error = nullptr;
    const XcbReply<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, xWindow, look->root, 0, 0), &error));
    std::free(error);
    if (!corner) return std::nullopt;
    const QRect pixels(corner->dst_x, corner->dst_y, look->width, look->height);
    const QScreen* const on = screenUnderPixels(pixels);
    if (!on) return pixels;
    // A screen's corner is the same in both; within it they differ by its scale.
    const QPoint zero = on->geometry().topLeft();
    const double scale = on->devicePixelRatio();
    return QRectF(zero + QPointF(pixels.topLeft() - zero) / scale, QSizeF(pixels.size()) / scale)
        .toRect();
}

}  // namespace platform
