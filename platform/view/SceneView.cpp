// SPDX-License-Identifier: MIT
#include "platform/view/SceneView.h"

#include <cmath>
#include <limits>
#include <utility>

#include "platform/time/Require.h"
#include "platform/view/FrameBuilder.h"

namespace platform {

namespace {
// The share of its interval by which a frame may come early. A display with nearly the
// view's rhythm then loses no frame.
constexpr double kEarly = 0.25;
}  // namespace

SceneView::SceneView(const QRectF& frame, MediaClock& clock)
    : View(frame), clock_(clock), anchorClock_(clock.now()) {}

void SceneView::setScene(std::shared_ptr<Scene> scene) {
    if (scene_ == scene) return;
    scene_ = std::move(scene);
    anchor(scene_ ? scene_->time() : 0.0);
    lookChanged();
}

void SceneView::setPlaying(bool playing) {
    if (playing_ == playing) return;
    anchor(sceneTime());
    playing_ = playing;
    lookChanged();
}

void SceneView::setPreferredFramesPerSecond(int frames) {
    require(frames >= 0);
    framesPerSecond_ = frames;
}

void SceneView::setSampleCount(int count) {
    require(count == 1 || count == 2 || count == 4);
    if (std::exchange(sampleCount_, count) != count) lookChanged();
}

void SceneView::setBackgroundColor(const QColor& colour) {
    if (std::exchange(background_, colour) != colour) lookChanged();
}

void SceneView::lookChanged() {
    changed_ = true;
    changed();
}

void SceneView::fail() {
    // The action may drop this view.
    if (const auto action = std::exchange(failed_, nullptr)) action();
}

void SceneView::anchor(double sceneTime) {
    anchorClock_ = clock_.now();
    anchorTime_ = sceneTime;
}

double SceneView::sceneTime() const {
    return playing_ && scene_ ? anchorTime_ + (clock_.now() - anchorClock_) : anchorTime_;
}

double SceneView::nextChange() const {
    if (!playing_ || !scene_) return std::numeric_limits<double>::infinity();
    if (framesPerSecond_ == 0) return clock_.now();
    const double beats = (clock_.now() - anchorClock_) * framesPerSecond_;
    return anchorClock_ + (std::floor(beats + kEarly) + 1.0 - kEarly) / framesPerSecond_;
}

void SceneView::fill(SceneFrame& pass, QPointF origin) {
    static std::uint64_t pictures = 0;
    if (playing_ || std::exchange(changed_, false)) picture_ = ++pictures;
    pass.isShown = true;
    pass.picture = picture_;
    pass.frame = {origin, frame().size()};
    pass.background = Rgba::from(background_);
    pass.sampleCount = sampleCount_;
    pass.interval = framesPerSecond_ > 0 ? 1.0 / framesPerSecond_ : 0.0;
    pass.hasScene = scene_ != nullptr && !frame().isEmpty();
    if (!pass.hasScene) return;
    scene_->advance(sceneTime());
    extract(*scene_, frame().width() / frame().height(), pass.list);
}

void SceneView::build(FrameBuilder& builder, QPointF origin) {
    builder.addScene(*this, origin);
}

}  // namespace platform
