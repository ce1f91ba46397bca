// SPDX-License-Identifier: MIT
#include "platform/window/GlSurface.h"

namespace platform {

std::unique_ptr<GlSurface> GlSurface::create(std::unique_ptr<EglTarget> target,
                                             ResetQuery resetStatus) {
    if (!target) return nullptr;
    std::unique_ptr<GlSurface> surface(new GlSurface(std::move(target), std::move(resetStatus)));
    return surface->start() ? std::move(surface) : nullptr;
}

bool GlSurface::start() {
    EglWindowSurface* const first = current_ ? current_ : target_->lasting();
    context_ = GlContext::create(target_->display(), first, resetStatus_);
    if (!context_ || !(first ? attach(*first) : context_->makeCurrent())) return false;
    name_ = QString::fromStdString(context_->rendererName());
    drawer_ = GlDrawer::create();
    return drawer_ != nullptr;
}

bool GlSurface::attach(EglWindowSurface& surface) {
    if (!context_->makeCurrent(surface)) return false;
    current_ = &surface;
    surface.setSwapInterval(target_->swapInterval());
    return true;
}

bool GlSurface::renew() {
    if (std::exchange(renewed_, true)) return false;
    stage_.reset();
    drawer_.reset();
    context_.reset();
    failsScenes_ = false;
    return start() && !context_->isLost();
}

GlSurface::~GlSurface() {
    stage_.reset();
    drawer_.reset();
    if (context_) context_->doneCurrent();
}

Surface::Result GlSurface::draw(const Frame& frame, std::span<const QRect> damage) {
    // WindowGone makes the window try again with the processor.
    if (context_->isLost() && !renew()) return Result::WindowGone;
    // A driver may end the program at a picture larger than it can draw.
    const QSize largest = GlContext::largestPicture();
    if (frame.grid.size.boundedTo(largest) != frame.grid.size) return Result::WindowGone;
    EglWindowSurface* const surface = target_->begin(frame.grid.size);
    if (!surface) return state();
    show(frame, damage, *surface);
    if (surface != target_->lasting()) {
        current_ = nullptr;
        windowGone_ = !context_ || !context_->makeCurrent() || windowGone_;
    }
    target_->end();
    return state();
}

void GlSurface::show(const Frame& frame, std::span<const QRect> damage, EglWindowSurface& surface) {
    if (current_ != &surface && !attach(surface)) {
        windowGone_ = true;
        return;
    }
    // A driver may learn of a new size only by swapping.
    for (int tries = 0; tries < 2; ++tries) {
        if (!tryToShow(frame, damage) &&
            !(context_->isLost() && renew() && tryToShow(frame, damage)))
            windowGone_ = true;
        if (windowGone_ || surface.size() == frame.grid.size) break;
    }
}

bool GlSurface::tryToShow(const Frame& frame, std::span<const QRect> damage) {
    paint(frame);
    // A context that was lost meanwhile has painted nothing.
    return !context_->isLost() && target_->swap(frame, damage);
}

void GlSurface::paint(const Frame& frame) {
    showsScene_ = false;
    forEachVisiblePart(
        frame, [&](const SceneFrame& scene) { paintScene(frame, scene); },
        [&](const DisplayList& layers, std::optional<Rgba> background) {
            drawer_->draw(layers, frame.grid, background);
        });
    if (frame.opacity < 1.0) drawer_->fade(frame.grid, frame.opacity);
}

void GlSurface::paintScene(const Frame& frame, const SceneFrame& scene) {
    showsScene_ = scene.hasScene;
    if (scene.hasScene && !stage_ && !failsScenes_) stage_ = SceneStage::onContext(*context_);
    const bool drawn = stage_ && stage_->draw(scene, frame.grid);
    // A lost context's failure does not count: the next context draws the scene again.
    if (scene.hasScene) failsScenes_ = !drawn && !context_->isLost();
    if (drawn) return;
    // A scene over the whole picture hides the passes below it, which are not drawn.
    if (firstVisiblePass(frame) > 0) drawer_->draw(DisplayList(), frame.grid, scene.background);
}

void GlSurface::frameTook(double seconds) {
    if (showsScene_ && stage_) stage_->frameTook(seconds);
}

Surface::Result GlSurface::repair(const Frame& frame, std::span<const QRect> lost) {
    return draw(frame, lost);
}

Surface::Result GlSurface::finish() {
    return state();
}

Surface::Result GlSurface::state() const {
    const Result told = target_->state();
    return told == Result::Drawn && windowGone_ ? Result::WindowGone : told;
}

}  // namespace platform
