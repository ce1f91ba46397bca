// SPDX-License-Identifier: MIT
#include "platform/window/WindowCore.h"

#include <QGuiApplication>
#include <QScreen>
#include <limits>
#include <utility>
#include <vector>

#include "platform/view/FrameBuilder.h"
#include "platform/view/SceneView.h"
#include "platform/window/x11/ScreenSpace.h"

namespace platform {

WindowCore::WindowCore(Window& window)
    : fade(window.server_.clock(),
           [this](double alpha) {
               if (own) {
                   own->setOpacity(alpha);
                   OwnWindow::flush();
               }
               updateWanted();
           }),
      window_(window),
      screens_([this] { geometryChanged(); }) {
    window_.server_.added(*this);
}

WindowCore::~WindowCore() {
    window_.server_.removed(*this);
}

void WindowCore::updateWanted() {
    if (!drawing) return;
    const bool minimised = own && own->windowStates().testFlag(Qt::WindowMinimized);
    drawing->setWanted(fade.value() > 0.0 && !window_.server_.isDisplayAsleep() && !minimised &&
                       !covered_);
}

void WindowCore::setCovered(bool covered) {
    if (std::exchange(covered_, covered) != covered) updateWanted();
}

void WindowCore::makeOwn() {
    own = std::make_unique<OwnWindow>(window_.options_, window_.canBecomeKey(), *this);
    own->setOpacity(fade.value());
    own->setIgnoresMouse(window_.ignoresMouse_);
    if (window_.cursorHidden_) own->setCursor(Qt::BlankCursor);
    QObject::connect(own.get(), &QWindow::screenChanged, own.get(), [this] { geometryChanged(); });
    QObject::connect(own.get(), &QWindow::windowStateChanged, own.get(),
                     [this] { updateWanted(); });
    if (const std::uint32_t xWindow = own->xWindow()) draw(xWindow);
    fit();
}

void WindowCore::draw(std::uint32_t xWindow) {
    if (!window_.server_.isConnected()) return;
    drawing = std::make_unique<WindowDrawing>(
        window_.server_, xWindow,
        WindowDrawing::Actions{
            .build = [this](Frame& frame, double time) { return build(frame, time); },
            .geometryChanged = [this] { geometryChanged(); },
            .scenesFailed = [this] { tellOfNoScenes(*window_.content_); },
            .gone =
                [this] {
                    // The action may drop the window, and itself with it.
                    if (const auto action = closed) action();
                }});
    updateWanted();
    geometryChanged();
}

void WindowCore::tellOfNoScenes(View& view) {
    // An action may change the tree.
    const std::vector<std::shared_ptr<View>> subviews = view.subviews();
    for (const auto& subview : subviews)
        tellOfNoScenes(*subview);
    if (auto* scene = dynamic_cast<SceneView*>(&view)) scene->fail();
}

double WindowCore::build(Frame& frame, double time) {
    frame.grid = {.scale = scale(), .size = drawing->geometry().size()};
    frame.background = {0.0F, 0.0F, 0.0F, window_.options_.opaque ? 1.0F : 0.0F};
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
    const QScreen* const on = screen();
    const double rate = on ? screenFrom(*on).refreshRate : 60.0;
    drawing->setFrameInterval(window_.server_.pace() / rate);
    drawing->requestFrame();
}

void WindowCore::fit() {
    window_.content_->setFrame({QPointF(0, 0), sizeInPoints()});
}

QScreen* WindowCore::screen() const {
    if (own) return own->screen();
    // One that is not yet made will be where its frame is.
    return drawing ? screenUnderPixels(drawing->geometry())
                   : screenUnderQt(toQt(window_.options_.frame));
}

double WindowCore::scale() const {
    if (own) return own->devicePixelRatio();
    const QScreen* const on = screen();
    return on ? on->devicePixelRatio() : 1.0;
}

QSizeF WindowCore::sizeInPoints() const {
    if (drawing) return QSizeF(drawing->geometry().size()) / scale();
    return own ? QSizeF(own->size()) : window_.options_.frame.size();
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
            // An action may take the content away.
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

void WindowCore::keysLost() {
    window_.server_.keysMoved();
}

}  // namespace platform
