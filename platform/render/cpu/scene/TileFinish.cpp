// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileFinish.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileFinish.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using F = hn::CappedTag<float, kTileMargin>;

void fillPlane(float* first, float value) {
    const F d;
    float* const from = first - kTileMargin;
    for (std::size_t i = 0; i < SceneTile::kPlane; i += hn::Lanes(d))
        hn::StoreU(hn::Set(d, value), d, from + i);
}

void clearTile(SceneTile& tile, const float* rgb) {
    tile.colours = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        if (!(rgb[k] > 0.0F)) continue;
        fillPlane(tile.light[k], rgb[k]);
        tile.colours |= 1U << k;
    }
    fillPlane(tile.near, 0.0F);
    tile.hidesNothing = true;
    tile.sampledNear = false;
    tile.sampledLight = false;
    tile.hasExcess = false;
    tile.excessColours = 0;
}

void useColours(SceneTile& tile, unsigned colours) {
    for (std::size_t k = 0; k < 3; ++k)
        if ((colours & ~tile.colours & (1U << k)) != 0) fillPlane(tile.light[k], 0.0F);
    tile.colours |= colours;
}

void useExcess(SceneTile& tile, unsigned colours) {
    for (std::size_t k = 0; k < 3; ++k)
        if ((colours & ~tile.excessColours & (1U << k)) != 0) fillPlane(tile.excess[k], 0.0F);
    tile.excessColours |= colours;
    tile.hasExcess = tile.excessColours != 0;
}

float leastNear(const SceneTile& tile) {
    const F d;
    auto least = hn::Set(d, 1e30F);
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int row = 0; row < tile.height; ++row)
        for (int x = 0; x + lanes <= tile.width; x += lanes)
            least = hn::Min(least, hn::LoadU(d, tile.near + SceneTile::at(x, row)));
    float result = hn::GetLane(hn::MinOfLanes(d, least));
    for (int row = 0; row < tile.height; ++row)
        for (int x = tile.width / lanes * lanes; x < tile.width; ++x)
            result = std::min(result, tile.near[SceneTile::at(x, row)]);
    return result;
}

// The same sum for every vector width; of equal lights exactly that light.
HWY_INLINE float averageOf(const float* light) {
#if HWY_TARGET == HWY_SCALAR
    const float even = (light[0] + light[4]) + (light[2] + light[6]);
    const float odd = (light[1] + light[5]) + (light[3] + light[7]);
    return (even + odd) * (1.0F / kSamples);
#else
    const hn::FixedTag<float, kSamples / 2> d;
    const auto four = hn::Add(hn::LoadU(d, light), hn::LoadU(d, light + kSamples / 2));
    const auto evenAndOdd = hn::Add(four, hn::Shuffle1032(four));
    const auto all = hn::Add(evenAndOdd, hn::Shuffle2301(evenAndOdd));
    return hn::GetLane(all) * (1.0F / kSamples);
#endif
}

HWY_INLINE void resolvePixel(SceneTile& tile, std::ptrdiff_t at) {
    for (std::size_t k = 0; k < 3; ++k)
        if (holds(tile.colours, k))
            tile.light[k][at] = averageOf(tile.sampleLight[k] + kSamples * at);
    tile.sampled[at] = SceneTile::kNear;
}

void resolveLight(SceneTile& tile) {
    constexpr std::ptrdiff_t kAtOnce = sizeof(std::uint64_t);
    constexpr std::uint64_t kAnyLight = 0x0101010101010101U * SceneTile::kNearAndLight;
    static_assert(((SceneTile::kNear | SceneTile::kFace) & SceneTile::kNearAndLight) == 0);
    for (int row = tile.sampledTop; row < tile.sampledEnd; ++row)
        for (int x = 0; x < tile.width; x += kAtOnce) {
            const std::ptrdiff_t first = SceneTile::at(x, row);
            std::uint64_t word = 0;
            std::memcpy(&word, tile.sampled + first, sizeof word);
            for (word &= kAnyLight; word != 0; word &= word - 1)
                resolvePixel(tile, first + std::countr_zero(word) / 8);
        }
    tile.sampledLight = false;
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(clearTile);
HWY_EXPORT(useColours);
HWY_EXPORT(useExcess);
HWY_EXPORT(leastNear);
HWY_EXPORT(resolveLight);

void clearTile(SceneTile& tile, const float* rgb) {
    HWY_DYNAMIC_DISPATCH(clearTile)(tile, rgb);
}
void useColours(SceneTile& tile, unsigned colours) {
    if ((colours & ~tile.colours) != 0) HWY_DYNAMIC_DISPATCH(useColours)(tile, colours);
}
void useExcess(SceneTile& tile, unsigned colours) {
    if ((colours & ~tile.excessColours) != 0) HWY_DYNAMIC_DISPATCH(useExcess)(tile, colours);
}
void sampleNearness(SceneTile& tile) {
    if (tile.sampledNear) return;
    std::fill_n(tile.sampled - kTileMargin, kTilePlane + 2 * kTileMargin, SceneTile::kNothing);
    tile.faces = 0;
    tile.sampledNear = true;
}
float leastNear(const SceneTile& tile) {
    return HWY_DYNAMIC_DISPATCH(leastNear)(tile);
}
void resolveLight(SceneTile& tile) {
    if (tile.sampledLight) HWY_DYNAMIC_DISPATCH(resolveLight)(tile);
}

}  // namespace platform
#endif
