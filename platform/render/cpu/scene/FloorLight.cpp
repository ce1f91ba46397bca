// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/FloorLight.h"

namespace platform {

void FloorLight::begin(std::size_t tiles, unsigned colours, bool isSameFloor) {
    if (isSameFloor && tiles == tiles_ && colours == colours_) return;
    kept_.clear();
    placeOf_.assign(tiles, -1);
    if (tiles == tiles_ && colours == colours_) return;
    tiles_ = 0;
    for (std::size_t k = 0; k < 3; ++k)
        planes_[k] =
            holds(colours, k) ? std::make_unique_for_overwrite<float[]>(tiles * kPlane) : nullptr;
    kept_.reserve(tiles);
    tiles_ = tiles;
    colours_ = colours;
}

void FloorLight::want(int tile) {
    std::int32_t& place = placeOf_[static_cast<std::size_t>(tile)];
    if (place >= 0) return;
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
