// SPDX-License-Identifier: MIT
#include "platform/window/x11/GlSurface.h"

namespace platform {

std::unique_ptr<GlSurface> GlSurface::create(const Options& options) {
    std::unique_ptr<GlSurface> surface(new GlSurface(options.resetStatus));
    surface->connection_ = std::make_unique<XConnection>(options.display);
    if (!surface->connection_->isAlive()) return nullptr;
    surface->egl_ =
        EglDisplay::forX11(surface->connection_->get(), surface->connection_->screenNumber());
    if (!surface->egl_) return nullptr;
    surface->window_ = EglWindowSurface::create(surface->egl_, options.window);
    return surface->window_ && surface->start() ? std::move(surface) : nullptr;
}

bool GlSurface::start() {
    context_ = GlContext::create(egl_, window_.get(), resetStatus_);
    if (!context_ || !context_->makeCurrent(*window_)) return false;
    window_->setSwapInterval(1);
    name_ = QString::fromStdString(context_->rendererName());
    drawer_ = GlDrawer::create();
    return drawer_ != nullptr;
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

Surface::Result GlSurface::draw(const Frame& frame, std::span<const QRect>) {
    // Then the processor may still draw in the window.
    if (context_->isLost() && !renew()) return Result::WindowGone;
    // Some end the program at what is beyond them.
    const QSize largest = GlContext::largestPicture();
    if (frame.grid.size.boundedTo(largest) != frame.grid.size) return Result::WindowGone;
    // A driver may learn of a new size only by swapping.
    for (int tries = 0; tries < 2; ++tries) {
        if (!show(frame) && !(context_->isLost() && renew() && show(frame))) windowGone_ = true;
        if (windowGone_ || window_->size() == frame.grid.size) break;
    }
    return state();
}

bool GlSurface::show(const Frame& frame) {
    paint(frame);
    // A context lost meanwhile has painted nothing.
    return !context_->isLost() && window_->swap();
}

void GlSurface::paint(const Frame& frame) {
    showsScene_ = false;
    std::optional<Rgba> background = frame.background;
    for (std::size_t i = firstVisiblePass(frame); i < frame.passes.size(); ++i) {
        const FramePass& pass = frame.passes[i];
        if (pass.scene.isShown) {
            paintScene(frame, pass.scene);
            background.reset();
        }
        if (!pass.layers.items.empty() || background)
            drawer_->draw(pass.layers, frame.grid, background);
        background.reset();
    }
}

void GlSurface::paintScene(const Frame& frame, const SceneFrame& scene) {
    showsScene_ = scene.hasScene;
    if (scene.hasScene && !stage_ && !failsScenes_) stage_ = SceneStage::onContext(*context_);
    const bool drawn = stage_ && stage_->draw(scene, frame.grid);
    // A failure by a lost context is the next context's to repeat.
    if (scene.hasScene) failsScenes_ = !drawn && !context_->isLost();
    if (drawn) return;
    // The part below a full-picture scene was not drawn.
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

Surface::Result GlSurface::state() {
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) {
        if (event->response_type != 0) continue;
        const auto& error = reinterpret_cast<const xcb_generic_error_t&>(*event);
        windowGone_ = windowGone_ || tellsOfNoWindow(error);
    }
    if (!connection_->isAlive()) return Result::ServerGone;
    return windowGone_ ? Result::WindowGone : Result::Drawn;
}

}  // namespace platform
