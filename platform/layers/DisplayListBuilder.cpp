// SPDX-License-Identifier: MIT
#include "platform/layers/DisplayListBuilder.h"

#include <algorithm>

#include "platform/time/Require.h"

namespace platform {

namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr std::uint32_t kPartsPerLayer = 3;

}  // namespace

DisplayListBuilder::DisplayListBuilder(DisplayList& list, double clockTime)
    : list_(list), clockTime_(clockTime) {
    list_.clear();
}

void DisplayListBuilder::add(Layer& root, QPointF origin, const QRectF& clip, double opacity) {
    if (root.counted_ != root.structure_) {
        std::uint32_t next = 0;
        const auto count = [&next](auto&& self, Layer& layer) -> void {
            layer.order_ = next++;
            if (layer.mask_) self(self, *layer.mask_);
            for (const auto& sub : layer.sublayers_)
                self(self, *sub);
        };
        count(count, root);
        root.count_ = next;
        root.counted_ = root.structure_;
    }
    reserve(base_ + root.count_);
    const double next = walk(root, {.parentTime = clockTime_,
                                    .origin = origin,
                                    .clip = clip,
                                    .opacity = opacity,
                                    .mask = -1,
                                    .inMask = false});
    list_.nextChange = std::min(list_.nextChange, next);
    // FNV-1a's step (Fowler, Noll, Vo; 64-bit prime) over the trees in order.
    list_.structure = (list_.structure ^ root.structure_) * 0x100000001b3ULL;
    base_ += root.count_;
}

// Reserves room for every layer. The number of visible layers varies from frame
// to frame, and must not cause another allocation.
void DisplayListBuilder::reserve(std::size_t layers) {
    constexpr std::size_t kStopsPerLayer = 4;
    list_.items.reserve(layers);
    list_.masks.reserve(layers);
    list_.pieces.reserve(layers);
    list_.stops.reserve(layers * kStopsPerLayer);
}

double DisplayListBuilder::walk(Layer& layer, const Place& place) {
    const double layerTime = layer.time_.fromParent(place.parentTime);
    double next = kNever;
    if (!layer.animations_.empty()) {
        std::erase_if(layer.animations_,
                      [&](const auto& entry) { return entry.second.isFinished(layerTime); });
        for (const auto& [key, animation] : layer.animations_)
            next = std::min(next, animation.nextChange(layerTime));
    }
    Place own = place;
    own.opacity *= layer.shownOpacity(layerTime);
    if (own.opacity > 0.0) {
        const QPointF centre = place.origin + layer.shownPosition(layerTime);
        const QSizeF size = layer.bounds_.size();
        const QRectF rect(centre.x() - size.width() / 2.0, centre.y() - size.height() / 2.0,
                          size.width(), size.height());
        next = std::min(next, walkBelow(layer, own, rect, layerTime));
    }
    // A layer time that runs backwards gives no next change that could be
    // converted to the parent's time.
    if (layer.time_.speed < 0.0) return next == kNever ? kNever : place.parentTime;
    return next == kNever ? kNever : layer.time_.toParent(next);
}

double DisplayListBuilder::walkBelow(Layer& layer, const Place& own, const QRectF& rect,
                                     double layerTime) {
    Place below = own;
    below.parentTime = layerTime;
    below.origin = rect.topLeft() - layer.bounds_.topLeft();
    double next = kNever;
    if (layer.mask_) {
        next = walkMask(layer, below, rect);
        const bool allMasked = list_.masks[static_cast<std::size_t>(below.mask)].pieceCount == 0;
        if (allMasked) return next;
    }
    Place self = own;
    self.mask = below.mask;
    emit(layer, self, rect);
    if (layer.masksToBounds_) below.clip &= rect;
    if (below.clip.isEmpty()) return next;
    for (const auto& sub : layer.sublayers_)
        next = std::min(next, walk(*sub, below));
    return next;
}

double DisplayListBuilder::walkMask(Layer& layer, Place& below, const QRectF& rect) {
    require(!below.inMask);
    DisplayMask mask{.outer = below.mask,
                     .firstPiece = static_cast<std::uint32_t>(list_.pieces.size()),
                     .pieceCount = 0};
    Place inside = below;
    inside.opacity = 1.0;
    inside.mask = -1;
    inside.inMask = true;
    // Pieces beside the mask's only item uncover nothing.
    if (layer.sublayers_.empty()) inside.clip &= rect;
    const double next = walk(*layer.mask_, inside);
    mask.pieceCount = static_cast<std::uint32_t>(list_.pieces.size()) - mask.firstPiece;
    below.mask = static_cast<std::int32_t>(list_.masks.size());
    list_.masks.push_back(mask);
    return next;
}

DisplayItem* DisplayListBuilder::put(const Layer& layer, int part, const Place& place,
                                     const QRectF& rect) {
    if (!rect.intersects(place.clip)) return nullptr;
    auto& target = place.inMask ? list_.pieces : list_.items;
    DisplayItem& item = target.emplace_back();
    item.order = (base_ + layer.order_) * kPartsPerLayer + static_cast<std::uint32_t>(part);
    item.rect = rect;
    item.clip = place.clip;
    item.opacity = static_cast<float>(place.opacity);
    item.mask = place.mask;
    return &item;
}

void DisplayListBuilder::emit(const Layer& layer, const Place& place, const QRectF& rect) {
    if (rect.isEmpty()) return;
    if (layer.background_.isValid() && layer.background_.alpha() > 0) {
        if (DisplayItem* item = put(layer, 0, place, rect))
            item->colour = Rgba::from(layer.background_);
    }
    if (const auto* gradient = dynamic_cast<const GradientLayer*>(&layer);
        gradient && !gradient->stops().empty()) {
        if (DisplayItem* item = put(layer, 1, place, rect)) {
            item->kind = DisplayItem::Kind::Gradient;
            item->firstStop = static_cast<std::uint32_t>(list_.stops.size());
            item->stopCount = static_cast<std::uint32_t>(gradient->stops().size());
            item->start = gradient->start();
            item->end = gradient->end();
            list_.stops.insert(list_.stops.end(), gradient->stops().begin(),
                               gradient->stops().end());
        }
    }
    if (!layer.contents_.isNull()) {
        if (DisplayItem* item = put(layer, 2, place, rect)) {
            item->kind = DisplayItem::Kind::Image;
            item->image = layer.contents_;
        }
    }
}

}  // namespace platform
