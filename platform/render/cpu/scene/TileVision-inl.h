// SPDX-License-Identifier: MIT
// The visible share of a shape in a pixel; included once per vector target. Any thread; owns
// nothing.
#if defined(PLATFORM_TILE_VISION_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef PLATFORM_TILE_VISION_INL
#undef PLATFORM_TILE_VISION_INL
#else
#define PLATFORM_TILE_VISION_INL
#endif

#include <hwy/highway.h>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hnv = hwy::HWY_NAMESPACE;
using TileF = hnv::CappedTag<float, kTileMargin>;
using TileV = hnv::Vec<TileF>;

// The numbers of the columns from `first` on.
inline TileV columnsFrom(int first) {
    const TileF d;
    // A vector is loaded from here: the library's own makes it number by number.
    alignas(64) static constexpr std::array<float, kTileMargin> kNumbers{
        0.0F, 1.0F, 2.0F,  3.0F,  4.0F,  5.0F,  6.0F,  7.0F,
        8.0F, 9.0F, 10.0F, 11.0F, 12.0F, 13.0F, 14.0F, 15.0F};
    return hnv::Add(hnv::Load(d, kNumbers.data()), hnv::Set(d, static_cast<float>(first)));
}

// The middles of those columns' pixels.
inline TileV pixelsFrom(int first) {
    return hnv::Add(columnsFrom(first), hnv::Set(TileF(), 0.5F));
}

// A plane from a tile's upper left pixel on.
struct Flat {
    float a = 0.0F, b = 0.0F, c = 0.0F;
    Flat() = default;
    Flat(const Plane& plane, const SceneTile& tile)
        : a(static_cast<float>(plane.a)),
          b(static_cast<float>(plane.b)),
          c(static_cast<float>(plane.at(tile.x + 0.5, tile.y + 0.5))) {}
    [[nodiscard]] TileV at(TileV column, float row) const {
        const TileF d;
        return hnv::Add(hnv::Mul(column, hnv::Set(d, a)), hnv::Set(d, b * row + c));
    }
};

// The share of each pixel's samples that nothing nearer hides.
inline TileV shareSeen(const SceneTile& tile, std::ptrdiff_t at, TileV near) {
    const TileF d;
    const auto one = hnv::Set(d, 1.0F);
    if (tile.hidesNothing) return one;
    if (!tile.sampledNear)
        return hnv::IfThenElseZero(hnv::Ge(near, hnv::LoadU(d, tile.near + at)), one);
    const auto part = hnv::Set(d, 1.0F / kSamples);
    auto sum = hnv::Zero(d);
    for (const float* const plane : tile.sampleNear)
        sum = hnv::Add(sum, hnv::IfThenElseZero(hnv::Ge(near, hnv::LoadU(d, plane + at)), part));
    return sum;
}

// Raises the nearness of the pixels where `covered` is above 0.
inline void putNear(const SceneTile& tile, std::ptrdiff_t at, TileV near, TileV covered) {
    const TileF d;
    const auto put = [&](float* plane) {
        const auto old = hnv::LoadU(d, plane + at);
        const auto nearer = hnv::And(hnv::Gt(covered, hnv::Zero(d)), hnv::Ge(near, old));
        hnv::StoreU(hnv::IfThenElse(nearer, near, old), d, plane + at);
    };
    if (!tile.sampledNear) return put(tile.near);
    for (float* const plane : tile.sampleNear)
        put(plane);
}

// Blends an even ink, times `covered`, over the present light.
inline void putInk(const SceneTile& tile, std::ptrdiff_t at, const Ink& ink, TileV covered) {
    const TileF d;
    const auto left = hnv::Sub(hnv::Set(d, 1.0F), hnv::Mul(covered, hnv::Set(d, ink.alpha)));
    for (std::size_t k = 0; k < 3; ++k) {
        float* const plane = tile.light[k] + at;
        const auto added = hnv::Mul(covered, hnv::Set(d, ink.light[static_cast<int>(k)]));
        const auto old = hnv::LoadU(d, plane);
        hnv::StoreU(hnv::Add(ink.alpha == 0.0F ? old : hnv::Mul(old, left), added), d, plane);
    }
    if (!tile.hasExcess || ink.alpha == 0.0F) return;
    for (float* const first : tile.excess)
        hnv::StoreU(hnv::Mul(hnv::LoadU(d, first + at), left), d, first + at);
}

// Adds the part of an ink above the threshold of bloom, times `covered`.
inline void putExcess(const SceneTile& tile, std::ptrdiff_t at, const Ink& excess, TileV covered) {
    const TileF d;
    for (std::size_t k = 0; k < 3; ++k) {
        float* const plane = tile.excess[k] + at;
        const auto added = hnv::Mul(covered, hnv::Set(d, excess.light[static_cast<int>(k)]));
        hnv::StoreU(hnv::Add(hnv::LoadU(d, plane), added), d, plane);
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
