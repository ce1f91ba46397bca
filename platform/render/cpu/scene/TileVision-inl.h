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

#include <algorithm>
#include <array>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hnv = hwy::HWY_NAMESPACE;
using TileF = hnv::CappedTag<float, kTileMargin>;
using TileV = hnv::Vec<TileF>;

// The numbers of the columns from `first` on.
template <class D>
HWY_INLINE hnv::Vec<D> columnsFrom(D d, int first) {
    // A vector is loaded from here: the library's own makes it number by number.
    alignas(64) static constexpr std::array<float, kTileMargin> kNumbers{
        0.0F, 1.0F, 2.0F,  3.0F,  4.0F,  5.0F,  6.0F,  7.0F,
        8.0F, 9.0F, 10.0F, 11.0F, 12.0F, 13.0F, 14.0F, 15.0F};
    return hnv::Add(hnv::Load(d, kNumbers.data()), hnv::Set(d, static_cast<float>(first)));
}

inline TileV columnsFrom(int first) {
    return columnsFrom(TileF(), first);
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
    // The values in the tile's first column, of one row for all or of each pixel's row.
    [[nodiscard]] TileV atRow(float row) const { return hnv::Set(TileF(), b * row + c); }
    [[nodiscard]] TileV atRow(TileV row) const {
        const TileF d;
        return hnv::Add(hnv::Mul(row, hnv::Set(d, b)), hnv::Set(d, c));
    }
    template <class Rows>
    [[nodiscard]] TileV at(TileV column, Rows row) const {
        return hnv::Add(hnv::Mul(column, hnv::Set(TileF(), a)), atRow(row));
    }
};

// Whether one of the pixels that a vector holds is kept per sample.
template <class D>
inline bool anySampled(D d, const SceneTile& tile, std::ptrdiff_t at) {
    if (!tile.sampledNear) return false;
    unsigned any = 0;
    for (std::size_t i = 0; i < hnv::Lanes(d); ++i)
        any |= tile.sampled[at + static_cast<std::ptrdiff_t>(i)];
    return any != 0;
}

// The nearness of some pixels' samples, sample by sample.
struct NearSamples {
    alignas(64) std::array<std::array<float, kTileMargin>, kSamples> of;
    template <class D>
    NearSamples(D d, const SceneTile& tile, std::ptrdiff_t first) {
        for (std::size_t i = 0; i < hnv::Lanes(d); ++i) {
            const std::ptrdiff_t at = first + static_cast<std::ptrdiff_t>(i);
            for (std::size_t s = 0; s < kSamples; ++s)
                of[s][i] = tile.nearOf(at, s);
        }
    }
};

// The share of each pixel's samples that nothing nearer hides, where one of the pixels is kept per
// sample; apart from the rest, which has no room for samples to set aside.
template <class D>
HWY_NOINLINE hnv::Vec<D> shareOfSamples(D d, const SceneTile& tile, std::ptrdiff_t at,
                                        hnv::Vec<D> near) {
    const NearSamples samples(d, tile, at);
    const auto part = hnv::Set(d, 1.0F / kSamples);
    auto sum = hnv::Zero(d);
    for (const auto& sample : samples.of)
        sum = hnv::Add(sum, hnv::IfThenElseZero(hnv::Ge(near, hnv::Load(d, sample.data())), part));
    return sum;
}

// The share of each pixel's samples that nothing nearer hides.
template <class D>
HWY_INLINE hnv::Vec<D> shareSeen(D d, const SceneTile& tile, std::ptrdiff_t at, hnv::Vec<D> near) {
    const auto one = hnv::Set(d, 1.0F);
    if (tile.hidesNothing) return one;
    if (anySampled(d, tile, at)) return shareOfSamples(d, tile, at, near);
    return hnv::IfThenElseZero(hnv::Ge(near, hnv::LoadU(d, tile.near + at)), one);
}

// The same for one pixel.
inline float shareSeenAt(const SceneTile& tile, std::ptrdiff_t at, float near) {
    if (tile.hidesNothing) return 1.0F;
    if (!tile.sampledNear || tile.sampled[at] == SceneTile::kNothing)
        return near >= tile.near[at] ? 1.0F : 0.0F;
    float sum = 0.0F;
    for (std::size_t s = 0; s < kSamples; ++s)
        sum += near >= tile.nearOf(at, s) ? 1.0F / kSamples : 0.0F;
    return sum;
}

// Raises the nearness of a pixel.
inline void putNearAt(const SceneTile& tile, std::ptrdiff_t at, float near) {
    if (!tile.sampledNear || tile.sampled[at] == SceneTile::kNothing) {
        tile.near[at] = std::max(tile.near[at], near);
        return;
    }
    std::array<float, kSamples> samples;
    for (std::size_t s = 0; s < kSamples; ++s)
        samples[s] = std::max(tile.nearOf(at, s), near);
    std::copy(samples.begin(), samples.end(), tile.sampleNear + kSamples * at);
    if (tile.sampled[at] == SceneTile::kFace) tile.sampled[at] = SceneTile::kNear;
}

// Raises the nearness of pixels, one by one.
template <class D>
HWY_NOINLINE void putNearOneByOne(D d, const SceneTile& tile, std::ptrdiff_t at, hnv::Vec<D> near) {
    alignas(64) std::array<float, kTileMargin> values{};
    hnv::Store(near, d, values.data());
    for (std::size_t i = 0; i < hnv::Lanes(d); ++i)
        putNearAt(tile, at + static_cast<std::ptrdiff_t>(i), values[i]);
}

// Raises the nearness of the pixels where `covered` is above 0.
template <class D>
HWY_INLINE void putNear(D d, const SceneTile& tile, std::ptrdiff_t at, hnv::Vec<D> near,
                        hnv::Vec<D> covered) {
    const auto in = hnv::Gt(covered, hnv::Zero(d));
    if (anySampled(d, tile, at)) return putNearOneByOne(d, tile, at, hnv::IfThenElseZero(in, near));
    const auto old = hnv::LoadU(d, tile.near + at);
    hnv::StoreU(hnv::IfThenElse(hnv::And(in, hnv::Ge(near, old)), near, old), d, tile.near + at);
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
