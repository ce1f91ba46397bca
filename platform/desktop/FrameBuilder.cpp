// SPDX-License-Identifier: MIT
#include "platform/desktop/FrameBuilder.h"

#include "platform/desktop/View.h"

namespace platform {

namespace {

DisplayList& onlyPass(Frame& frame) {
    frame.passes.resize(1);
    return frame.passes[0].layers;
}

QRectF pictureInPoints(const PixelGrid& grid) {
    return {QPointF(0, 0), QSizeF(grid.size) / grid.scale};
}

}  // namespace

FrameBuilder::FrameBuilder(Frame& frame, double clockTime)
    : frame_(frame), clip_(pictureInPoints(frame.grid)), layers_(onlyPass(frame), clockTime) {}

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
    layers_.add(root, origin, clip_);
}

double FrameBuilder::nextChange() const {
    return frame_.passes[0].layers.nextChange;
}

}  // namespace platform
