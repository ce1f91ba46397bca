// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/FloorLight.h"

#include <algorithm>

namespace platform {

namespace {

bool hasLight(unsigned colours, const SceneTile& tile, std::ptrdiff_t at) {
    for (std::size_t k = 0; k < 3; ++k) {
        const float* const first = tile.light[k] + at;
        const auto isLit = [](float light) { return light != 0.0F; };
        if (holds(colours, k) && std::any_of(first, first + kFloorPart, isLit)) return true;
    }
    return false;
}

}  // namespace

void keepTile(const SceneTile& tile, unsigned colours, KeptFloor& kept) {
    std::ptrdiff_t next = 0;
    for (int row = 0; row < tile.height; ++row) {
        unsigned lit = 0;
        for (int part = 0; part < kFloorParts; ++part) {
            const std::ptrdiff_t at = SceneTile::at(part * kFloorPart, row);
            if (!hasLight(colours, tile, at)) continue;
            lit |= 1U << part;
            for (std::size_t k = 0; k < 3; ++k)
                if (holds(colours, k))
                    std::copy_n(tile.light[k] + at, kFloorPart, kept.plane[k] + next);
            next += kFloorPart;
        }
        kept.lit[static_cast<std::size_t>(row)] = static_cast<std::uint8_t>(lit);
    }
    kept.isKnown = true;
}

void FloorLight::begin(std::size_t tiles, unsigned colours, bool isSameFloor) {
    const bool fits = tiles == tiles_ && colours == colours_;
    if (isSameFloor && fits) return;
    kept_.clear();
    placeOf_.assign(tiles, -1);
    if (fits) return;
    planes_ = {};
    tiles_ = tiles;
    colours_ = colours;
}

void FloorLight::makePlanes() {
    kept_.reserve(tiles_);
    for (std::size_t k = 0; k < 3; ++k)
        if (holds(colours_, k) && !planes_[k])
            planes_[k] = std::make_unique_for_overwrite<float[]>(tiles_ * kPlane);
}

void FloorLight::want(int tile) {
    std::int32_t& place = placeOf_[static_cast<std::size_t>(tile)];
    if (place >= 0) return;
    if (kept_.empty()) makePlanes();
    place = static_cast<std::int32_t>(kept_.size());
    KeptFloor& kept = kept_.emplace_back();
    for (std::size_t k = 0; k < 3; ++k)
        if (planes_[k]) kept.plane[k] = planes_[k].get() + static_cast<std::size_t>(place) * kPlane;
}

KeptFloor* FloorLight::of(int tile) {
    const std::int32_t place = placeOf_[static_cast<std::size_t>(tile)];
    return place >= 0 ? &kept_[static_cast<std::size_t>(place)] : nullptr;
}

}  // namespace platform
