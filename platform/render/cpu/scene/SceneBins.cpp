// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/SceneBins.h"

#include <algorithm>

namespace platform {

void SceneBins::begin(QSize picture) {
    tiles_ = {(picture.width() + kTileWidth - 1) / kTileWidth,
              (picture.height() + kTileHeight - 1) / kTileHeight};
    right_ = static_cast<float>(tiles_.width() * kTileWidth);
    bottom_ = static_cast<float>(tiles_.height() * kTileHeight);
    pairs_.clear();
}

SceneBins::Range SceneBins::rangeOf(glm::vec2 low, glm::vec2 high) const {
    // The comparison is false for a NaN too.
    if (!(low.x <= high.x && low.y <= high.y)) return {};
    if (high.x < 0.0F || high.y < 0.0F || low.x >= right_ || low.y >= bottom_) return {};
    const auto tileAt = [](float at, int side, int count) {
        const float most = static_cast<float>(count * side - 1);
        return static_cast<int>(std::clamp(at, 0.0F, most)) / side;
    };
    return {tileAt(low.x, kTileWidth, tiles_.width()), tileAt(low.y, kTileHeight, tiles_.height()),
            tileAt(high.x, kTileWidth, tiles_.width()),
            tileAt(high.y, kTileHeight, tiles_.height())};
}

void SceneBins::add(ShapeCall call, const ScreenPolygon& polygon) {
    if (const std::optional<std::uint32_t> tile = onlyTile(polygon.low, polygon.high)) {
        pairs_.push_back({*tile, call});
        return;
    }
    const auto isOutside = [&](int x, int y) {
        for (int i = 0; i < polygon.edges; ++i) {
            const Plane& edge = polygon.edge[static_cast<std::size_t>(i)];
            const double most = edge.at((edge.a > 0.0 ? x + 1 : x) * kTileWidth,
                                        (edge.b > 0.0 ? y + 1 : y) * kTileHeight);
            if (most < -1.0) return true;
        }
        return false;
    };
    addWhere(call, polygon.low, polygon.high, [&](int x, int y) { return !isOutside(x, y); });
}

void SceneBins::addEverywhere(ShapeCall call) {
    for (int tile = 0; tile < count(); ++tile)
        put(call, tile);
}

void SceneBins::end() {
    first_.assign(static_cast<std::size_t>(count()) + 1, 0);
    for (const Pair& pair : pairs_)
        ++first_[pair.tile + 1];
    for (std::size_t i = 1; i < first_.size(); ++i)
        first_[i] += first_[i - 1];
    calls_.resize(pairs_.size());
    // Each tile's index advances with its calls, from the tile's first place to the next
    // tile's.
    for (const Pair& pair : pairs_)
        calls_[first_[pair.tile]++] = pair.call;
    for (std::size_t i = first_.size() - 1; i > 0; --i)
        first_[i] = first_[i - 1];
    first_[0] = 0;
}

std::span<const ShapeCall> SceneBins::of(int tile) const {
    const auto at = static_cast<std::size_t>(tile);
    return std::span(calls_).subspan(first_[at], first_[at + 1] - first_[at]);
}

}  // namespace platform
