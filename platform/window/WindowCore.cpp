// SPDX-License-Identifier: MIT
#include "platform/window/WindowCore.h"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "platform/view/FrameBuilder.h"
#include "platform/view/SceneView.h"
#include "platform/window/PicturePlace.h"
#include "platform/window/WindowSystem.h"

namespace platform {

namespace {

// A display's interval between two pictures, in seconds: what makes sense, and the part by
// which two measurements of one interval differ.
constexpr double kShortest = 1.0e-3, kLongest = 1.0;
constexpr double kSame = 5.0e-4;

}  // namespace

WindowCore::WindowCore(Window& window)
    : fade(window.server_.clock(), [this](double opacity) { show(opacity); }),
      window_(window),
      fades_(window.server_.system().capabilities().fadesWindows),
      screens_([this] { geometryChanged(); }) {
    window_.server_.added(*this);
}

WindowCore::~WindowCore() {
    window_.server_.removed(*this);
}

void WindowCore::show(double opacity) {
    if (native && fades_) native->setOpacity(opacity);
    if (drawing && !fades_) drawing->requestFrame();
    updateWanted();
}

void WindowCore::updateWanted() {
    if (drawing) drawing->setWanted(fade.value() > 0.0 && !window_.server_.isDisplayAsleep());
}

void WindowCore::makeOwn() {
    native = window_.server_.system().makeWindow({.window = window_.options_,
                                                  .takesKeyboard = window_.canBecomeKey(),
                                                  .opacity = fade.value(),
                                                  .ignoresMouse = window_.ignoresMouse_,
                                                  .cursorHidden = window_.cursorHidden_},
                                                 *this);
    draw();
    fit();
}

void WindowCore::adopt(const HostRef& host) {
    native = window_.server_.system().adopt(host, *this);
    isHosts_ = native != nullptr;
    draw();
}

void WindowCore::fill(PicturePlace& place) {
    native = place.makeWindow(*this);
    isHosts_ = true;
    draw();
}

void WindowCore::draw() {
    if (!native || !native->isDrawable() || !window_.server_.isConnected()) return;
    drawing = std::make_unique<WindowDrawing>(
        window_.server_, *native,
        WindowDrawing::Actions{
            .build = [this](Frame& frame, double time) { return build(frame, time); },
            .scenesFailed = [this] { tellOfNoScenes(*window_.content_); },
            .gone = [this] { gone(); }});
    updateWanted();
    geometryChanged();
}

void WindowCore::visibilityChanged() {
    if (drawing) drawing->updateVisibility();
}

void WindowCore::readyForFrame(bool ready) {
    if (drawing) drawing->setReady(ready);
}

void WindowCore::presented(double time, double interval) {
    if (!drawing) return;
    drawing->presented(time);
    const bool makesSense = interval >= kShortest && interval <= kLongest;
    const double before = seenInterval_.value_or(0.0);
    if (!makesSense || std::abs(interval - before) <= kSame * before) return;
    seenInterval_ = interval;
    setPace();
}

void WindowCore::exposed(const QRect& rect) {
    if (drawing) drawing->expose(rect);
}

void WindowCore::gone() {
    if (std::exchange(gone_, true)) return;
    if (drawing) drawing->setGone();
    // The action may drop the window, and the action itself with it.
    if (const auto action = closed) action();
}

void WindowCore::tellOfNoScenes(View& view) {
    // An action may change the tree.
    const std::vector<std::shared_ptr<View>> subviews = view.subviews();
    for (const auto& subview : subviews)
        tellOfNoScenes(*subview);
    if (auto* scene = dynamic_cast<SceneView*>(&view)) scene->fail();
}

double WindowCore::build(Frame& frame, double time) {
    frame.grid = {.scale = scale(), .size = native->pixelSize()};
    frame.background = {0.0F, 0.0F, 0.0F, window_.options_.opaque ? 1.0F : 0.0F};
    frame.opacity = fades_ ? 1.0 : fade.value();
    const RestableClock* const pictures = window_.server_.options().pictures;
    const double shown = pictures ? pictures->now() : time;
    FrameBuilder builder(frame, shown);
    builder.add(*window_.content_);
    if (pictures && pictures->isResting()) return std::numeric_limits<double>::infinity();
    return builder.nextChange() + (time - shown);
}

void WindowCore::geometryChanged() {
    fit();
    if (!drawing) return;
    // The display may be another one, and tells its rhythm with its first picture.
    seenInterval_.reset();
    setPace();
    drawing->requestFrame();
}

void WindowCore::setPace() {
    const std::optional<Screen> on = screen();
    const double told = 1.0 / (on ? on->refreshRate : Screen().refreshRate);
    drawing->setFrameInterval(window_.server_.pace() * seenInterval_.value_or(told));
}

void WindowCore::fit() {
    window_.content_->setFrame({QPointF(0, 0), sizeInPoints()});
}

std::optional<Screen> WindowCore::screen() const {
    if (native) return native->screen();
    // A window that is not yet made will be where its frame is.
    return Screen::under(window_.options_.frame);
}

double WindowCore::scale() const {
    if (native) return native->scale();
    const std::optional<Screen> on = screen();
    return on ? on->scale : 1.0;
}

QSizeF WindowCore::sizeInPoints() const {
    return native ? native->size() : window_.options_.frame.size();
}

void WindowCore::keyDown(const KeyEvent& event) {
    View* const target = window_.firstResponder_ ? window_.firstResponder_ : window_.content_.get();
    target->keyDown(event);
}

void WindowCore::mouse(Mouse what, const MouseEvent& event) {
    View* const hit = window_.content_->hitTest(event.location);
    View* const target = hit ? hit : window_.content_.get();
    switch (what) {
        case Mouse::LeftDown:
            return target->mouseDown(event);
        case Mouse::RightDown:
            return target->rightMouseDown(event);
        case Mouse::OtherDown:
            return target->otherMouseDown(event);
        case Mouse::Moved: {
            // An action may remove the content.
            const std::shared_ptr<View> content = window_.content_;
            const View* const told = target;
            content->track(event.location, told, event);
            return target->mouseMoved(event);
        }
    }
}

void WindowCore::closeAsked() {
    if (const auto action = closed) action();
}

}  // namespace platform
