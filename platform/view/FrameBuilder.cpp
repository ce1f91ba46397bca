// SPDX-License-Identifier: MIT
#include "platform/view/FrameBuilder.h"

#include <algorithm>
#include <limits>

#include "platform/view/SceneView.h"

namespace platform {

namespace {

QRectF pictureInPoints(const PixelGrid& grid) {
    return {QPointF(0, 0), QSizeF(grid.size) / grid.scale};
}

}  // namespace

FrameBuilder::FrameBuilder(Frame& frame, double clockTime)
    : frame_(frame),
      clockTime_(clockTime),
      clip_(pictureInPoints(frame.grid)),
      nextChange_(std::numeric_limits<double>::infinity()) {
    beginPass();
    frame_.passes.front().scene.isShown = false;
}

FrameBuilder::~FrameBuilder() {
    frame_.passes.resize(passes_);
}

void FrameBuilder::beginPass() {
    if (passes_ > 0)
        nextChange_ = std::min(nextChange_, frame_.passes[passes_ - 1].layers.nextChange);
    if (++passes_ > frame_.passes.size()) frame_.passes.resize(passes_);
    layers_.emplace(frame_.passes[passes_ - 1].layers, clockTime_);
}

void FrameBuilder::add(View& view) {
    add(view, QPointF(0, 0));
}

void FrameBuilder::add(View& view, QPointF origin) {
    const QPointF own = origin + view.frame().topLeft();
    view.paint(frame_.grid.scale);
    view.build(*this, own);
    for (const auto& subview : view.subviews())
        add(*subview, own);
}

void FrameBuilder::addLayers(Layer& root, QPointF origin) {
    layers_->add(root, origin, clip_);
}

void FrameBuilder::addScene(SceneView& view, QPointF origin) {
    beginPass();
    view.fill(frame_.passes[passes_ - 1].scene, origin);
    nextChange_ = std::min(nextChange_, view.nextChange());
}

double FrameBuilder::nextChange() const {
    return std::min(nextChange_, frame_.passes[passes_ - 1].layers.nextChange);
}

}  // namespace platform
