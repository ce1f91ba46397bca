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

#include <array>
#include <glm/common.hpp>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/TileFinish.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hnk = hwy::HWY_NAMESPACE;

// An ink in a tile: the planes that it changes, of light and of excess, and what it has for each.
struct TileInk {
    float alpha = 0.0F;  // 0: only added
    int planes = 0;
    std::array<float*, 6> plane{};
    std::array<float, 6> value{};

    void add(float* to, float light) {
        plane[static_cast<std::size_t>(planes)] = to;
        value[static_cast<std::size_t>(planes)] = light;
        ++planes;
    }
};

// Makes the tile's planes ready for the ink. `excess` is the part of its light that blooms
// besides what blooms where the pixels' light does.
inline TileInk inkFor(const Ink& ink, const glm::vec3& excess, SceneTile& tile) {
    useColours(tile, coloursOf(ink.light));
    useExcess(tile, coloursOf(excess));
    TileInk result{.alpha = ink.alpha};
    for (std::size_t k = 0; k < 3; ++k) {
        const float light = ink.light[static_cast<int>(k)];
        const float above = excess[static_cast<int>(k)];
        if (holds(tile.colours, k) && (light > 0.0F || ink.alpha != 0.0F))
            result.add(tile.light[k], light);
        if (holds(tile.excessColours, k) && (above > 0.0F || ink.alpha != 0.0F))
            result.add(tile.excess[k], above);
    }
    return result;
}
inline TileInk inkFor(const Ink& ink, SceneTile& tile) {
    return inkFor(ink, glm::vec3(0.0F), tile);
}

// The part of a thin dot's or line's light that is above the tile's threshold of bloom.
inline glm::vec3 excessOf(const Ink& ink, const SceneTile& tile) {
    if (!tile.blooms) return glm::vec3(0.0F);
    return glm::max(ink.light - tile.threshold, glm::vec3(0.0F));
}

// Blends the ink, times `covered`, over the light of the pixels from `at` on.
template <class D>
HWY_INLINE void blendInk(D d, const TileInk& ink, std::ptrdiff_t at, hnk::Vec<D> covered) {
    const auto planes = static_cast<std::size_t>(ink.planes);
    if (ink.alpha == 0.0F) {
        for (std::size_t i = 0; i < planes; ++i) {
            float* const plane = ink.plane[i] + at;
            const auto added = hnk::Mul(covered, hnk::Set(d, ink.value[i]));
            hnk::StoreU(hnk::Add(hnk::LoadU(d, plane), added), d, plane);
        }
        return;
    }
    const auto left = hnk::Sub(hnk::Set(d, 1.0F), hnk::Mul(covered, hnk::Set(d, ink.alpha)));
    for (std::size_t i = 0; i < planes; ++i) {
        float* const plane = ink.plane[i] + at;
        const auto added = hnk::Mul(covered, hnk::Set(d, ink.value[i]));
        hnk::StoreU(hnk::Add(hnk::Mul(hnk::LoadU(d, plane), left), added), d, plane);
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
