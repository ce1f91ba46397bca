// SPDX-License-Identifier: MIT
#include "platform/window/x11/OwnWindow.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <utility>

#include "platform/window/ScreenSpace.h"

namespace platform {

namespace {

Qt::WindowFlags flagsFor(const WindowOptions& options, bool takesKeys) {
    Qt::WindowFlags flags = Qt::Window;
    if (options.style != WindowStyle::Titled) flags |= Qt::FramelessWindowHint;
    if (options.style == WindowStyle::FullScreen) flags |= Qt::WindowStaysOnTopHint;
    if (options.level > 0) flags |= Qt::X11BypassWindowManagerHint | Qt::WindowStaysOnTopHint;
    if (!takesKeys) flags |= Qt::WindowDoesNotAcceptFocus;
    return flags;
}

}  // namespace

OwnWindow::OwnWindow(const WindowOptions& options, bool takesKeys, NativeWindowDelegate& delegate,
                     std::function<void()> keyboardLost)
    : options_(options), delegate_(delegate), keyboardLost_(std::move(keyboardLost)) {
    QSurfaceFormat format;
    format.setAlphaBufferSize(options.opaque ? 0 : 8);
    setFormat(format);
    setTitle(options.title);
    setFlags(flagsFor(options, takesKeys));
    QScreen* const under = screenUnderQt(toQt(options.frame));
    if (under) setScreen(under);
    const bool fills = options.style == WindowStyle::FullScreen && under;
    setGeometry(fills ? under->geometry() : toQt(options.frame).toRect());
}

OwnWindow::~OwnWindow() = default;

std::uint32_t OwnWindow::xWindow() {
    const XConnection* const connection = XConnection::ofQt();
    if (!connection) return 0;
    const bool made = handle() != nullptr;
    const auto window = static_cast<std::uint32_t>(winId());
    if (!made) prepare(*connection, window);
    return window;
}

void OwnWindow::prepare(const XConnection& connection, xcb_window_t window) {
    // The server itself shows the background as soon as it shows the window, before any
    // drawing. In a deep visual all bits but alpha's may be 0, and alpha's must be 1.
    const std::uint32_t background = options_.opaque ? 0xff000000U : 0U;
    xcb_change_window_attributes(connection.get(), window, XCB_CW_BACK_PIXEL, &background);
    if (options_.collectionBehavior & CanJoinAllSpaces)
        connection.setCardinal(window, "_NET_WM_DESKTOP", 0xffffffff);
    if (!options_.hasShadow) connection.setCardinal(window, "_COMPTON_SHADOW", 0);
    // A compositor that stopped for a full-screen window below would make this window
    // opaque.
    if (!options_.opaque) connection.setCardinal(window, "_NET_WM_BYPASS_COMPOSITOR", 2);
    // The wait makes the server know this window before other connections name it.
    (void)answer(connection.get(), xcb_get_input_focus(connection.get()),
                 xcb_get_input_focus_reply);
}

void OwnWindow::show() {
    if (options_.style == WindowStyle::FullScreen) {
        showFullScreen();
    } else {
        QWindow::show();
    }
    raise();
}

void OwnWindow::takeKeys() {
    requestActivate();
    const XConnection* const connection = XConnection::ofQt();
    if (options_.level == 0 || !connection) return;
    // No window manager sets the keyboard focus for this window.
    xcb_set_input_focus(connection->get(), XCB_INPUT_FOCUS_PARENT, xWindow(), XCB_CURRENT_TIME);
    connection->flush();
}

bool OwnWindow::event(QEvent* event) {
    // The window has no controls for the accessibility bus, and Qt would block on a session
    // bus that hangs.
    const bool focus = event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut;
    if (event->type() == QEvent::FocusOut) keyboardLost_();
    if (focus) return true;
    if (event->type() != QEvent::Close) return QWindow::event(event);
    event->ignore();
    delegate_.closeAsked();
    return true;
}

void OwnWindow::keyPressEvent(QKeyEvent* event) {
    delegate_.keyDown({.key = event->key(),
                       .text = event->text(),
                       .modifiers = static_cast<std::uint32_t>(event->modifiers().toInt()),
                       .isRepeat = event->isAutoRepeat()});
}

MouseEvent OwnWindow::from(const QMouseEvent& event) const {
    const QPointF at = event.position();
    return {.location = {at.x(), height() - at.y()},
            .screenLocation = fromQt(event.globalPosition())};
}

void OwnWindow::mousePressEvent(QMouseEvent* event) {
    using Mouse = NativeWindowDelegate::Mouse;
    const Mouse what = event->button() == Qt::LeftButton    ? Mouse::LeftDown
                       : event->button() == Qt::RightButton ? Mouse::RightDown
                                                            : Mouse::OtherDown;
    delegate_.mouse(what, from(*event));
}

void OwnWindow::mouseMoveEvent(QMouseEvent* event) {
    delegate_.mouse(NativeWindowDelegate::Mouse::Moved, from(*event));
}

}  // namespace platform
