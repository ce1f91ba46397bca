// SPDX-License-Identifier: MIT
#include "platform/window/x11/NativeWindows.h"

#include <QScreen>

#include "platform/window/ScreenSpace.h"
#include "platform/window/x11/X11System.h"

namespace platform {

namespace {

std::optional<Screen> valueOf(const QScreen* screen) {
    return screen ? std::optional(screenFrom(*screen)) : std::nullopt;
}

}  // namespace

WindowRef HostWindow::reference() const {
    return {QString::number(watch_.id())};
}

QRectF HostWindow::frame() const {
    return fromQt(pixelsToQt(watch_.geometry()));
}

QSizeF HostWindow::size() const {
    return QSizeF(pixelSize()) / scale();
}

double HostWindow::scale() const {
    const QScreen* const on = screenUnderPixels(watch_.geometry());
    return on ? on->devicePixelRatio() : 1.0;
}

std::optional<Screen> HostWindow::screen() const {
    return valueOf(screenUnderPixels(watch_.geometry()));
}

ProgramWindow::ProgramWindow(X11System& system, const NativeWindowOptions& options,
                             NativeWindowDelegate& delegate)
    : system_(system),
      options_(options.window),
      window_({.window = options.window,
               .takesKeys = options.takesKeyboard,
               .onWayland = system.isOnWayland()},
              delegate, [this] { system_.keyboardMoved(); }) {
    window_.setOpacity(options.opacity);
    setIgnoresMouse(options.ignoresMouse);
    if (options.cursorHidden) setCursorHidden(true);
    QObject::connect(&window_, &QWindow::screenChanged, &window_,
                     [&delegate] { delegate.geometryChanged(); });
    QObject::connect(&window_, &QWindow::windowStateChanged, &window_,
                     [&delegate] { delegate.visibilityChanged(); });
    const xcb_window_t id = window_.xWindow();
    if (id != 0 && system_.isConnected()) watch_.emplace(system_, id, delegate);
}

ProgramWindow::~ProgramWindow() {
    if (watch_) system_.forget(watch_->id());
}

std::int64_t ProgramWindow::number() const {
    return window_.handle() ? static_cast<std::int64_t>(window_.winId()) : 0;
}

WindowRef ProgramWindow::reference() const {
    // No other program's window gets above an unmanaged window of a compositor.
    if (system_.isOnWayland() && window_.escapes()) return {};
    return watch_ ? WindowRef{QString::number(watch_->id())} : WindowRef();
}

QRectF ProgramWindow::frame() const {
    return fromQt(QRectF(window_.geometry()));
}

void ProgramWindow::setFrame(const QRectF& frame) {
    window_.setGeometry(toQt(frame).toRect());
    flush();
}

QSizeF ProgramWindow::size() const {
    return watch_ ? QSizeF(pixelSize()) / scale() : QSizeF(window_.size());
}

QSize ProgramWindow::pixelSize() const {
    return watch_ ? watch_->geometry().size() : QSize();
}

double ProgramWindow::scale() const {
    return window_.devicePixelRatio();
}

std::optional<Screen> ProgramWindow::screen() const {
    return valueOf(window_.screen());
}

void ProgramWindow::show() {
    if (watch_) system_.setLevel(watch_->id(), options_.level);
    window_.show();
    flush();
}

void ProgramWindow::raise() {
    window_.raise();
}

void ProgramWindow::hide() {
    if (watch_) {
        system_.setLevel(watch_->id(), 0);
        if (options_.staysOnTop) system_.stack().release(watch_->id());
    }
    window_.hide();
    flush();
}

void ProgramWindow::keepOnTop() {
    if (watch_) system_.stack().keep(watch_->id(), {.window = options_.level});
}

void ProgramWindow::takeKeyboard() {
    window_.takeKeys();
}

bool ProgramWindow::isSeen() const {
    return watch_ && watch_->isInSight() && !window_.windowStates().testFlag(Qt::WindowMinimized);
}

void ProgramWindow::setIgnoresMouse(bool ignores) {
    window_.setFlag(Qt::WindowTransparentForInput, ignores);
}

void ProgramWindow::setTitle(const QString& title) {
    window_.setTitle(title);
    flush();
}

void ProgramWindow::setCursorHidden(bool hidden) {
    window_.setCursor(hidden ? Qt::BlankCursor : Qt::ArrowCursor);
}

void ProgramWindow::setOpacity(double opacity) {
    window_.setOpacity(opacity);
    flush();
}

NativeWindow::SurfaceMaker ProgramWindow::surfaceMaker(const SurfaceOptions& options) {
    return watch_->surfaceMaker(options);
}

void ProgramWindow::flush() {
    if (const XConnection* const connection = XConnection::ofQt()) connection->flush();
}

}  // namespace platform
