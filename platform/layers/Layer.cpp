// SPDX-License-Identifier: MIT
#include "platform/layers/Layer.h"

#include <algorithm>

#include "platform/time/Require.h"

namespace platform {

namespace {

std::uint64_t nextStructure() {
    static std::uint64_t last = 0;
    return ++last;
}

template <typename T>
bool assign(T& field, const T& value) {
    if (field == value) return false;
    field = value;
    return true;
}

}  // namespace

Layer::Layer() : structure_(nextStructure()) {}

Layer::~Layer() {
    for (const auto& layer : sublayers_)
        layer->detach();
    if (mask_) mask_->detach();
}

QRectF Layer::frame() const {
    return {position_.x() - bounds_.width() / 2.0, position_.y() - bounds_.height() / 2.0,
            bounds_.width(), bounds_.height()};
}

void Layer::setFrame(const QRectF& frame) {
    const bool resized = assign(bounds_, QRectF(bounds_.topLeft(), frame.size()));
    const bool moved = assign(position_, frame.center());
    if (resized || moved) changed();
}

void Layer::setBounds(const QRectF& bounds) {
    if (assign(bounds_, bounds)) changed();
}

void Layer::setPosition(QPointF position) {
    if (assign(position_, position)) changed();
}

void Layer::setOpacity(double opacity) {
    if (assign(opacity_, std::clamp(opacity, 0.0, 1.0))) changed();
}

void Layer::setBackgroundColor(const QColor& colour) {
    if (assign(background_, colour)) changed();
}

void Layer::setContents(const QImage& contents) {
    // Pictures compare by identity: comparing pixels would cost more than redrawing.
    if (contents_.cacheKey() == contents.cacheKey()) return;
    contents_ = contents;
    changed();
}

void Layer::setContentsScale(double scale) {
    if (assign(contentsScale_, scale)) changed();
}

void Layer::setMasksToBounds(bool masks) {
    if (assign(masksToBounds_, masks)) changed();
}

void Layer::setTime(const LocalTime& time) {
    if (assign(time_, time)) changed();
}

void Layer::attach(Layer* parent) {
    for (const Layer* up = parent; up; up = up->superlayer_)
        require(up != this);
    superlayer_ = parent;
}

// Makes the layer a tree of its own, which is counted anew when shown.
void Layer::detach() {
    superlayer_ = nullptr;
    structure_ = nextStructure();
}

void Layer::addSublayer(std::shared_ptr<Layer> layer) {
    layer->removeFromSuperlayer();
    layer->attach(this);
    sublayers_.push_back(std::move(layer));
    structureChanged();
}

void Layer::removeFromSuperlayer() {
    Layer* const parent = superlayer_;
    if (!parent) return;
    detach();
    // The superlayer may hold the last reference to this layer.
    std::shared_ptr<Layer> keep;
    if (parent->mask_.get() == this) {
        keep = std::move(parent->mask_);
    } else {
        auto& siblings = parent->sublayers_;
        const auto self = std::find_if(siblings.begin(), siblings.end(),
                                       [this](const auto& layer) { return layer.get() == this; });
        keep = std::move(*self);
        siblings.erase(self);
    }
    parent->structureChanged();
}

void Layer::setMask(std::shared_ptr<Layer> mask) {
    if (mask_ == mask) return;
    if (mask_) mask_->detach();
    if (mask) {
        mask->removeFromSuperlayer();
        mask->attach(this);
    }
    mask_ = std::move(mask);
    structureChanged();
}

void Layer::changed() {
    for (Layer* up = this; up; up = up->superlayer_)
        if (up->onChange_) up->onChange_();
}

void Layer::structureChanged() {
    Layer* root = this;
    while (root->superlayer_)
        root = root->superlayer_;
    root->structure_ = nextStructure();
    changed();
}

double Layer::localTime(double clockTime) const {
    return time_.fromParent(superlayer_ ? superlayer_->localTime(clockTime) : clockTime);
}

void Layer::put(const std::string& key, Animation animation) {
    const auto found = std::find_if(animations_.begin(), animations_.end(),
                                    [&](const auto& entry) { return entry.first == key; });
    if (found == animations_.end())
        animations_.emplace_back(key, std::move(animation));
    else
        found->second = std::move(animation);
    changed();
}

void Layer::addAnimation(const std::string& key, KeyframeAnimation animation, double clockTime) {
    put(key, Animation(std::move(animation), localTime(clockTime)));
}

void Layer::addAnimation(const std::string& key, BasicAnimation animation, double clockTime) {
    put(key, Animation(animation, localTime(clockTime)));
}

void Layer::removeAnimation(const std::string& key) {
    if (std::erase_if(animations_, [&](const auto& entry) { return entry.first == key; }) > 0)
        changed();
}

const Animation* Layer::animation(const std::string& key) const {
    const auto found = std::find_if(animations_.begin(), animations_.end(),
                                    [&](const auto& entry) { return entry.first == key; });
    return found == animations_.end() ? nullptr : &found->second;
}

std::optional<double> Layer::animated(KeyPath keyPath, double layerTime) const {
    // The animation added last wins, as it lies on top.
    for (auto entry = animations_.rbegin(); entry != animations_.rend(); ++entry) {
        if (entry->second.keyPath() != keyPath) continue;
        if (const auto value = entry->second.value(layerTime)) return value;
    }
    return std::nullopt;
}

QPointF Layer::shownPosition(double layerTime) const {
    if (animations_.empty()) return position_;
    return {animated(KeyPath::PositionX, layerTime).value_or(position_.x()),
            animated(KeyPath::PositionY, layerTime).value_or(position_.y())};
}

double Layer::shownOpacity(double layerTime) const {
    if (animations_.empty()) return opacity_;
    return std::clamp(animated(KeyPath::Opacity, layerTime).value_or(opacity_), 0.0, 1.0);
}

void GradientLayer::setStops(const std::vector<ColourStop>& stops) {
    std::vector<Stop> drawn;
    drawn.reserve(stops.size());
    for (const ColourStop& stop : stops)
        drawn.push_back({static_cast<float>(stop.location), Rgba::from(stop.colour)});
    if (assign(stops_, drawn)) changed();
}

void GradientLayer::setAxis(QPointF start, QPointF end) {
    const bool startMoved = assign(start_, start);
    const bool endMoved = assign(end_, end);
    if (startMoved || endMoved) changed();
}

}  // namespace platform
