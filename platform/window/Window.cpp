// SPDX-License-Identifier: MIT
#include "platform/window/Window.h"

#include <utility>

#include "platform/view/AnimationGroup.h"
#include "platform/window/WindowCore.h"
#include "platform/window/WindowSystem.h"

namespace platform {

Window::Window(WindowServer& server, const WindowOptions& options)
    : server_(server),
      options_(options),
      content_(std::make_shared<View>(QRectF(QPointF(0, 0), options.frame.size()))),
      core_(std::make_unique<WindowCore>(*this)) {
    content_->setHost(this);
}

Window::Window(WindowServer& server, const HostRef& host)
    : server_(server),
      content_(std::make_shared<View>(QRectF())),
      core_(std::make_unique<WindowCore>(*this)) {
    content_->setHost(this);
    core_->adopt(host);
}

Window::Window(WindowServer& server, PicturePlace& place)
    : server_(server),
      content_(std::make_shared<View>(QRectF())),
      core_(std::make_unique<WindowCore>(*this)) {
    content_->setHost(this);
    core_->fill(place);
}

Window::~Window() {
    server_.dropped(*this);
    // Drawing ends before the views go.
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
    return core_->native ? core_->native->frame() : options_.frame;
}

void Window::setFrame(const QRectF& frame) {
    options_.frame = frame;
    if (core_->native) core_->native->setFrame(frame);
    if (!core_->drawing) content_->setFrame({QPointF(0, 0), core_->sizeInPoints()});
}

double Window::backingScaleFactor() const {
    return core_->scale();
}

WindowRef Window::reference() const {
    return core_->native ? core_->native->reference() : WindowRef();
}

std::optional<Screen> Window::screen() const {
    return core_->screen();
}

void Window::show() {
    present(false);
}

void Window::showWithKeyboard() {
    present(canBecomeKey());
}

void Window::present(bool withKeyboard) {
    if (core_->isHosts()) return;
    if (!core_->native) core_->makeOwn();
    core_->native->show();
    server_.cameToFront(*this);
    if (options_.staysOnTop) core_->native->keepOnTop();
    if (withKeyboard) takeKeyboard();
}

void Window::takeKeyboard() {
    if (!canBecomeKey() || core_->isHosts() || !isVisible()) return;
    core_->native->takeKeyboard();
    server_.becameKey(*this);
}

std::int64_t Window::windowNumber() const {
    return core_->native ? core_->native->number() : 0;
}

void Window::raise() {
    if (core_->native) core_->native->raise();
}

void Window::hide() {
    server_.dropped(*this);
    if (core_->native) core_->native->hide();
}

bool Window::isVisible() const {
    return core_->native && core_->native->isShown();
}

bool Window::canBecomeKey() const {
    return options_.style != WindowStyle::Borderless;
}

bool Window::canBecomeMain() const {
    return canBecomeKey();
}

bool Window::isKey() const {
    return core_->native && core_->native->hasKeyboard();
}

bool Window::makeFirstResponder(View* view) {
    if (view && (view->window() != this || !view->acceptsFirstResponder())) return false;
    firstResponder_ = view;
    return true;
}

void Window::detached(const View* view) {
    if (firstResponder_ == view) firstResponder_ = nullptr;
}

void Window::setTitle(const QString& title) {
    if (options_.title == title) return;
    options_.title = title;
    if (core_->native) core_->native->setTitle(title);
}

void Window::setIgnoresMouseEvents(bool ignores) {
    if (std::exchange(ignoresMouse_, ignores) == ignores) return;
    if (core_->native) core_->native->setIgnoresMouse(ignores);
}

void Window::setCursorHidden(bool hidden) {
    cursorHidden_ = hidden;
    if (core_->native) core_->native->setCursorHidden(hidden);
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
    return {.frames = drawing->framesShown(),
            .firstFrameTime = drawing->firstFrameTime(),
            .drawer = drawing->drawer(),
            .rung = drawing->rung()};
}

void Window::setNeedsFrame() {
    if (core_->drawing) core_->drawing->requestFrame();
}

}  // namespace platform
