// SPDX-License-Identifier: MIT
#include "platform/view/View.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/time/Require.h"
#include "platform/view/FrameBuilder.h"

namespace platform {

View::View(const QRectF& frame) : frame_(frame) {}

View::~View() {
    // Other holders may keep the layer longer than the view.
    if (layer_) layer_->onChange(nullptr);
    for (const auto& view : subviews_) {
        view->superview_ = nullptr;
        view->setHost(nullptr);
    }
    if (host_) host_->detached(this);
}

void View::setFrame(const QRectF& frame) {
    if (frame_ == frame) return;
    const QSizeF grown = frame.size() - frame_.size();
    frame_ = frame;
    if (layer_) layer_->setFrame(bounds());
    if (painting_ && !grown.isNull()) needsDisplay_ = true;
    for (const auto& view : subviews_) {
        const QSizeF follows(view->autoresizing_ & WidthSizable ? grown.width() : 0.0,
                             view->autoresizing_ & HeightSizable ? grown.height() : 0.0);
        view->setFrame({view->frame_.topLeft(), view->frame_.size() + follows});
    }
    if (!grown.isNull()) updateTrackingAreas();
    changed();
}

void View::setWantsLayer(bool wants) {
    if (wants == (layer_ != nullptr)) return;
    if (wants) {
        layer_ = std::make_shared<Layer>();
        layer_->setFrame(bounds());
        layer_->onChange([this] { changed(); });
    } else {
        layer_->onChange(nullptr);
        layer_.reset();
    }
    changed();
}

void View::addSubview(std::shared_ptr<View> view) {
    view->removeFromSuperview();
    for (const View* up = this; up; up = up->superview_)
        require(up != view.get());
    view->superview_ = this;
    view->setHost(host_);
    subviews_.push_back(std::move(view));
    changed();
}

void View::removeFromSuperview() {
    View* const parent = std::exchange(superview_, nullptr);
    if (!parent) return;
    const auto self = std::find_if(parent->subviews_.begin(), parent->subviews_.end(),
                                   [this](const auto& view) { return view.get() == this; });
    // The superview may have been the last to hold this view.
    const std::shared_ptr<View> keep = std::move(*self);
    parent->subviews_.erase(self);
    setHost(nullptr);
    parent->changed();
}

void View::setHost(ViewHost* host) {
    if (host_ == host) return;
    if (host_) host_->detached(this);
    host_ = host;
    for (const auto& view : subviews_)
        view->setHost(host);
    if (host) updateTrackingAreas();
}

void View::addTrackingArea(std::shared_ptr<TrackingArea> area) {
    trackingAreas_.push_back(std::move(area));
}

void View::removeTrackingArea(const std::shared_ptr<TrackingArea>& area) {
    std::erase(trackingAreas_, area);
}

void View::updateTrackingAreas() {}

void View::track(QPointF inSuperview, const View* told, const MouseEvent& event) {
    const QPointF inside = inSuperview - frame_.topLeft();
    const auto holds = [&](const std::shared_ptr<TrackingArea>& area) {
        const QRectF rect = area->options & TrackingArea::InVisibleRect ? bounds() : area->rect;
        const bool active =
            (area->options & TrackingArea::ActiveAlways) || (host_ && host_->isKey());
        return (area->options & TrackingArea::MouseMoved) && active && rect.contains(inside);
    };
    bool knows = false;
    for (const View* view = told; view; view = view->superview_)
        knows = knows || view == this;
    // An action may change the tree.
    const std::vector<std::shared_ptr<View>> subviews = subviews_;
    if (!knows && std::any_of(trackingAreas_.begin(), trackingAreas_.end(), holds))
        mouseMoved(event);
    for (const auto& view : subviews)
        view->track(inside, told, event);
}

void View::changed() {
    if (host_) host_->setNeedsFrame();
}

void View::draw(QPainter&, const QRectF&) {}

void View::setNeedsDisplay() {
    needsDisplay_ = true;
    changed();
}

void View::paint(double scale) {
    if (!needsDisplay_ && (!painting_ || paintedScale_ == scale)) return;
    needsDisplay_ = false;
    paintedScale_ = scale;
    if (!painting_) painting_ = std::make_unique<Layer>();
    painting_->setFrame(bounds());
    painting_->setContentsScale(scale);
    const QSize pixels(static_cast<int>(std::ceil(frame_.width() * scale)),
                       static_cast<int>(std::ceil(frame_.height() * scale)));
    QImage image;
    if (!pixels.isEmpty()) {
        image = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(0.0, pixels.height());
        painter.scale(pixels.width() / frame_.width(), -pixels.height() / frame_.height());
        draw(painter, bounds());
    }
    painting_->setContents(image);
}

void View::build(FrameBuilder& builder, QPointF origin) {
    if (painting_) builder.addLayers(*painting_, origin);
    if (layer_) builder.addLayers(*layer_, origin);
}

void View::keyDown(const KeyEvent& event) {
    if (superview_) superview_->keyDown(event);
}

void View::mouseDown(const MouseEvent& event) {
    if (superview_) superview_->mouseDown(event);
}

void View::rightMouseDown(const MouseEvent& event) {
    if (superview_) superview_->rightMouseDown(event);
}

void View::otherMouseDown(const MouseEvent& event) {
    if (superview_) superview_->otherMouseDown(event);
}

void View::mouseMoved(const MouseEvent& event) {
    if (superview_) superview_->mouseMoved(event);
}

View* View::hitTest(QPointF point) {
    if (!frame_.contains(point)) return nullptr;
    const QPointF inside = point - frame_.topLeft();
    for (auto view = subviews_.rbegin(); view != subviews_.rend(); ++view)
        if (View* const hit = (*view)->hitTest(inside)) return hit;
    return this;
}

}  // namespace platform
