// SPDX-License-Identifier: MIT
#include "platform/window/Window.h"

#include <QScreen>
#include <utility>

#include "platform/view/AnimationGroup.h"
#include "platform/window/WindowCore.h"
#include "platform/window/x11/EventConnection.h"
#include "platform/window/x11/ScreenSpace.h"
#include "platform/window/x11/StackKeeper.h"

namespace platform {

Window::Window(WindowServer& server, const WindowOptions& options)
    : server_(server),
      options_(options),
      content_(std::make_shared<View>(QRectF(QPointF(0, 0), options.frame.size()))),
      core_(std::make_unique<WindowCore>(*this)) {
    content_->setHost(this);
}

Window::Window(WindowServer& server, HostWindow host)
    : server_(server),
      content_(std::make_shared<View>(QRectF())),
      core_(std::make_unique<WindowCore>(*this)) {
    content_->setHost(this);
    core_->draw(host.id != 0 ? host.id : server.events().root());
}

Window::~Window() {
    server_.dropped(*this);
    if (core_->own && core_->drawing) server_.destroyed(core_->drawing->id());
    // Frames stop before their views do.
    core_->drawing.reset();
    content_->setHost(nullptr);
}

void Window::setContentView(std::shared_ptr<View> view) {
    if (content_ == view) return;
    view->removeFromSuperview();
    content_->setHost(nullptr);
    content_ = std::move(view);
    content_->setHost(this);
    content_->setFrame({QPointF(0, 0), core_->sizeInPoints()});
    setNeedsFrame();
}

QRectF Window::frame() const {
    if (core_->own) return fromQt(QRectF(core_->own->geometry()));
    if (!core_->drawing) return options_.frame;
    const QScreen* const on = core_->screen();
    const QPointF corner = on ? on->geometry().topLeft() : QPointF(0, 0);
    // Within a screen, points and pixels differ by its scale.
    const QPointF pixels = QPointF(core_->drawing->geometry().topLeft()) - corner;
    return fromQt(QRectF(corner + pixels / core_->scale(), core_->sizeInPoints()));
}

void Window::setFrame(const QRectF& frame) {
    options_.frame = frame;
    if (core_->own) {
        core_->own->setGeometry(toQt(frame).toRect());
        OwnWindow::flush();
    }
    if (!core_->drawing) content_->setFrame({QPointF(0, 0), core_->sizeInPoints()});
}

double Window::backingScaleFactor() const {
    return core_->scale();
}

std::uint32_t Window::xWindow() const {
    return core_->drawing ? core_->drawing->id() : 0;
}

std::optional<Screen> Window::screen() const {
    const QScreen* const on = core_->screen();
    if (!on) return std::nullopt;
    return screenFrom(*on);
}

void Window::orderFront() {
    show(false);
}

void Window::makeKeyAndOrderFront() {
    show(canBecomeKey());
}

void Window::show(bool asKey) {
    if (core_->isHosts()) return;
    if (!core_->own) core_->makeOwn();
    core_->own->show();
    OwnWindow::flush();
    server_.cameToFront(*this);
    if (options_.staysOnTop && core_->drawing)
        server_.stack().keep(core_->drawing->id(), {.window = options_.level});
    if (asKey) makeKey();
}

void Window::makeKey() {
    if (!canBecomeKey() || !core_->own || !core_->own->isVisible()) return;
    core_->own->takeKeys();
    server_.becameKey(*this);
}

std::int64_t Window::windowNumber() const {
    if (core_->own)
        return core_->own->handle() ? static_cast<std::int64_t>(core_->own->winId()) : 0;
    return core_->drawing ? core_->drawing->id() : 0;
}

void Window::raise() {
    if (core_->own) core_->own->raise();
}

void Window::orderOut() {
    server_.dropped(*this);
    if (options_.staysOnTop && core_->drawing) server_.stack().release(core_->drawing->id());
    if (!core_->own) return;
    core_->own->hide();
    OwnWindow::flush();
}

bool Window::isVisible() const {
    if (core_->own) return core_->own->isVisible();
    return core_->drawing && core_->drawing->isMapped();
}

bool Window::canBecomeKey() const {
    return options_.style != WindowStyle::Borderless;
}

bool Window::canBecomeMain() const {
    return canBecomeKey();
}

bool Window::isKey() const {
    return core_->own && core_->own->isActive();
}

bool Window::makeFirstResponder(View* view) {
    if (view && (view->window() != this || !view->acceptsFirstResponder())) return false;
    firstResponder_ = view;
    return true;
}

void Window::detached(const View* view) {
    if (firstResponder_ == view) firstResponder_ = nullptr;
}

void Window::setIgnoresMouseEvents(bool ignores) {
    if (std::exchange(ignoresMouse_, ignores) == ignores) return;
    if (core_->own) core_->own->setIgnoresMouse(ignores);
}

void Window::setCursorHidden(bool hidden) {
    cursorHidden_ = hidden;
    if (core_->own) core_->own->setCursor(hidden ? Qt::BlankCursor : Qt::ArrowCursor);
}

double Window::alpha() const {
    return core_->fade.value();
}

void Window::setAlpha(double alpha) {
    core_->fade.set(alpha);
}

void Window::fadeTo(double alpha) {
    AnimationGroup alone({});
    fadeTo(alpha, alone);
}

void Window::fadeTo(double alpha, AnimationGroup& group) {
    core_->fade.start(alpha, group.duration(), group.token());
}

void Window::onClose(std::function<void()> action) {
    core_->closed = std::move(action);
}

WindowStatistics Window::statistics() const {
    const auto& drawing = core_->drawing;
    if (!drawing) return {};
    return {.frames = drawing->framesDrawn(),
            .firstFrameTime = drawing->firstFrameTime(),
            .drawer = drawing->drawer(),
            .rung = drawing->rung()};
}

void Window::setNeedsFrame() {
    if (core_->drawing) core_->drawing->requestFrame();
}

}  // namespace platform
