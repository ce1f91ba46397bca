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

// Qt's own property with the type of a window, and the type of a notification in it. A
// property that the program sets by itself is lost when Qt writes the types again.
constexpr const char* kTypeProperty = "_q_xcb_wm_window_type";
constexpr int kNotification = 0x800;

bool escapesManager(const OwnWindowOptions& options) {
    return options.window.level > 0 ||
           (options.onWayland && options.window.style == WindowStyle::FullScreen);
}

Qt::WindowFlags flagsFor(const OwnWindowOptions& options) {
    Qt::WindowFlags flags = Qt::Window;
    if (options.window.style != WindowStyle::Titled) flags |= Qt::FramelessWindowHint;
    if (options.window.style == WindowStyle::FullScreen) flags |= Qt::WindowStaysOnTopHint;
    if (escapesManager(options)) flags |= Qt::X11BypassWindowManagerHint | Qt::WindowStaysOnTopHint;
    if (!options.takesKeys) flags |= Qt::WindowDoesNotAcceptFocus;
    return flags;
}

}  // namespace

OwnWindow::OwnWindow(const OwnWindowOptions& options, NativeWindowDelegate& delegate,
                     std::function<void()> keyboardLost)
    : options_(options), delegate_(delegate), keyboardLost_(std::move(keyboardLost)) {
    const WindowOptions& wanted = options.window;
    QSurfaceFormat format;
    format.setAlphaBufferSize(wanted.opaque ? 0 : 8);
    setFormat(format);
    setTitle(wanted.title);
    setFlags(flagsFor(options));
    // A compositor gives the keyboard to every unmanaged window but a notification's.
    if (options.onWayland && escapes() && !options.takesKeys)
        setProperty(kTypeProperty, kNotification);
    QScreen* const under = screenUnderQt(toQt(wanted.frame));
    if (under) setScreen(under);
    const bool fills = wanted.style == WindowStyle::FullScreen && under;
    setGeometry(fills ? under->geometry() : toQt(wanted.frame).toRect());
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
    const WindowOptions& wanted = options_.window;
    const std::uint32_t background = wanted.opaque ? 0xff000000U : 0U;
    xcb_change_window_attributes(connection.get(), window, XCB_CW_BACK_PIXEL, &background);
    if (wanted.collectionBehavior & CanJoinAllSpaces)
        connection.setCardinal(window, "_NET_WM_DESKTOP", 0xffffffff);
    if (!wanted.hasShadow) connection.setCardinal(window, "_COMPTON_SHADOW", 0);
    // A compositor that stopped for a full-screen window below would make this window
    // opaque.
    if (!wanted.opaque) connection.setCardinal(window, "_NET_WM_BYPASS_COMPOSITOR", 2);
    // The wait makes the server know this window before other connections name it.
    (void)answer(connection.get(), xcb_get_input_focus(connection.get()),
                 xcb_get_input_focus_reply);
}

void OwnWindow::show() {
    if (options_.window.style == WindowStyle::FullScreen && !escapes()) {
        showFullScreen();
    } else {
        QWindow::show();
    }
    raise();
}

void OwnWindow::takeKeys() {
    requestActivate();
    const XConnection* const connection = XConnection::ofQt();
    if (!escapes() || !connection) return;
    // No window manager sets the keyboard focus for this window.
    xcb_set_input_focus(connection->get(), XCB_INPUT_FOCUS_PARENT, xWindow(), XCB_CURRENT_TIME);
    connection->flush();
    // The compositor's window manager takes the focus back, but leaves a grab alone.
    if (options_.onWayland) setKeyboardGrabEnabled(true);
}

bool OwnWindow::escapes() const {
    return escapesManager(options_);
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
