// SPDX-License-Identifier: MIT
// Inks in a tile's planes of light, for the colours that have light; included once per vector
// target. Any thread; it owns nothing.
#if defined(PLATFORM_TILE_INK_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef PLATFORM_TILE_INK_INL
#undef PLATFORM_TILE_INK_INL
#else
#define PLATFORM_TILE_INK_INL
#endif

#include <hwy/highway.h>

#include <glm/common.hpp>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/TileFinish.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hnk = hwy::HWY_NAMESPACE;

inline bool holds(unsigned colours, std::size_t k) {
    return (colours >> k & 1U) != 0;
}

// An ink, and what of it is above the threshold of bloom.
struct TileInk {
    Ink ink;
    glm::vec3 excess{0.0F};
    unsigned excessColours = 0;
};

// Makes the tile's planes ready for an ink whose light blooms where the pixels' light does.
inline TileInk inkFor(const Ink& ink, SceneTile& tile) {
    useColours(tile, coloursOf(ink.light));
    return {.ink = ink};
}

// The same for a dot or a line, whose light blooms as in a larger picture.
inline TileInk thinInkFor(const Ink& ink, SceneTile& tile) {
    TileInk result = inkFor(ink, tile);
    if (!tile.blooms) return result;
    result.excess = glm::max(ink.light - tile.threshold, glm::vec3(0.0F));
    result.excessColours = coloursOf(result.excess);
    useExcess(tile, result.excessColours);
    return result;
}

// Blends the ink, times `covered`, over the light of the pixels from `at` on.
template <class D>
void blendInk(D d, SceneTile& tile, std::ptrdiff_t at, const TileInk& from, hnk::Vec<D> covered) {
    const bool adds = from.ink.alpha == 0.0F;
    const auto left = hnk::Sub(hnk::Set(d, 1.0F), hnk::Mul(covered, hnk::Set(d, from.ink.alpha)));
    for (std::size_t k = 0; k < 3; ++k) {
        if (!holds(tile.colours, k)) continue;
        float* const plane = tile.light[k] + at;
        const auto old = hnk::LoadU(d, plane);
        const auto added = hnk::Mul(covered, hnk::Set(d, from.ink.light[static_cast<int>(k)]));
        hnk::StoreU(hnk::Add(adds ? old : hnk::Mul(old, left), added), d, plane);
    }
    for (std::size_t k = 0; k < 3; ++k) {
        if (!holds(tile.excessColours, k)) continue;
        if (adds && !holds(from.excessColours, k)) continue;
        float* const plane = tile.excess[k] + at;
        const auto old = hnk::LoadU(d, plane);
        const auto added = hnk::Mul(covered, hnk::Set(d, from.excess[static_cast<int>(k)]));
        hnk::StoreU(hnk::Add(adds ? old : hnk::Mul(old, left), added), d, plane);
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
