// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileFinish.h"

#include <algorithm>
#include <array>

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

void copyPlane(const float* from, float* to) {
    const F d;
    for (std::size_t i = 0; i < SceneTile::kPlane; i += hn::Lanes(d))
        hn::StoreU(hn::LoadU(d, from - kTileMargin + i), d, to - kTileMargin + i);
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

void sampleNearness(SceneTile& tile) {
    if (tile.sampledNear) return;
    for (float* const plane : tile.sampleNear)
        copyPlane(tile.near, plane);
    tile.sampledNear = true;
}

void sampleLight(SceneTile& tile, int top, int end) {
    if (tile.sampledLight) return;
    const F d;
    const std::ptrdiff_t first = SceneTile::at(-kTileMargin, top);
    const std::ptrdiff_t last = SceneTile::at(-kTileMargin, end);
    for (std::size_t k = 0; k < 3; ++k) {
        if ((tile.colours >> k & 1U) == 0) continue;
        for (std::ptrdiff_t at = first; at < last;
             at += static_cast<std::ptrdiff_t>(hn::Lanes(d))) {
            const auto light = hn::LoadU(d, tile.light[k] + at);
            for (const auto& sample : tile.sampleLight)
                hn::StoreU(light, d, sample[k] + at);
        }
    }
    tile.sampledLight = true;
    tile.sampledTop = top;
    tile.sampledEnd = end;
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

void resolveLight(SceneTile& tile) {
    if (!tile.sampledLight) return;
    const F d;
    const auto share = hn::Set(d, 1.0F / kSamples);
    const std::ptrdiff_t first = SceneTile::at(-kTileMargin, tile.sampledTop);
    const std::ptrdiff_t last = SceneTile::at(-kTileMargin, tile.sampledEnd);
    for (std::size_t k = 0; k < 3; ++k) {
        if ((tile.colours >> k & 1U) == 0) continue;
        for (std::ptrdiff_t at = first; at < last;
             at += static_cast<std::ptrdiff_t>(hn::Lanes(d))) {
            auto sum = hn::LoadU(d, tile.sampleLight[0][k] + at);
            for (std::size_t s = 1; s < kSamples; ++s)
                sum = hn::Add(sum, hn::LoadU(d, tile.sampleLight[s][k] + at));
            hn::StoreU(hn::Mul(sum, share), d, tile.light[k] + at);
        }
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
HWY_EXPORT(sampleNearness);
HWY_EXPORT(sampleLight);
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
    HWY_DYNAMIC_DISPATCH(sampleNearness)(tile);
}
void sampleLight(SceneTile& tile, int top, int end) {
    HWY_DYNAMIC_DISPATCH(sampleLight)(tile, top, end);
}
float leastNear(const SceneTile& tile) {
    return HWY_DYNAMIC_DISPATCH(leastNear)(tile);
}
void resolveLight(SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(resolveLight)(tile);
}

}  // namespace platform
#endif
