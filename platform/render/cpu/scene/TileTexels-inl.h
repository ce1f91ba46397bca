// SPDX-License-Identifier: MIT
// Reading a picture on a slanting surface; included once per vector target.
#if defined(PLATFORM_TILE_TEXELS_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef PLATFORM_TILE_TEXELS_INL
#undef PLATFORM_TILE_TEXELS_INL
#else
#define PLATFORM_TILE_TEXELS_INL
#endif

#include <hwy/highway.h>

#include "platform/render/cpu/scene/RipPicture.h"
#include "platform/render/cpu/scene/SceneTile.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hnt = hwy::HWY_NAMESPACE;
using TexelF = hnt::CappedTag<float, kTileMargin>;
using TexelI = hnt::RebindToSigned<TexelF>;
using TexelU = hnt::RebindToUnsigned<TexelF>;
using TexelV = hnt::Vec<TexelF>;

// In repeats of the picture, and how much of it a pixel is across, squared.
struct TexelPlaces {
    TexelV u, v;
    TexelV wideU, wideV;
};

struct TexelLight {
    TexelV r, g, b, alpha;
};

// How often a side is halved for a pixel of this many texels squared: reading
// between texels smooths as well, and is meant to make up for what is left.
inline hnt::Vec<TexelI> levelOf(TexelV texelsSquared, int levels) {
    const TexelF d;
    const TexelI di;
    const auto wide = hnt::Add(hnt::Mul(texelsSquared, hnt::Set(d, 1.0F / 3.0F)),
                               hnt::Set(d, 1.0F));
    auto level = hnt::Zero(di);
    float above = 2.0F;
    for (int i = 1; i < levels; ++i, above *= 4.0F)
        level = hnt::Add(level, hnt::IfThenElseZero(hnt::RebindMask(di, hnt::Ge(wide, hnt::Set(d, above))),
                                                    hnt::Set(di, 1)));
    return level;
}

// Two neighbouring texels along a side, and the second one's share.
struct TexelPair {
    hnt::Vec<TexelI> first, second;
    TexelV share;
};

inline TexelPair pairAt(TexelV at, TexelV size, bool repeat) {
    const TexelF d;
    const TexelI di;
    const auto half = hnt::Set(d, 0.5F);
    const auto last = hnt::Sub(size, hnt::Set(d, 1.0F));
    const auto zero = hnt::Zero(d);
    if (repeat) at = hnt::Sub(at, hnt::Floor(at));
    // Far outside there is nothing but the rim.
    at = hnt::Min(hnt::Max(at, hnt::Set(d, -1.0F)), hnt::Set(d, 2.0F));
    const auto place = hnt::Sub(hnt::Mul(at, size), half);
    const auto base = hnt::Floor(place);
    auto first = base;
    auto second = hnt::Add(base, hnt::Set(d, 1.0F));
    if (repeat) {
        first = hnt::IfThenElse(hnt::Lt(first, zero), last, first);
        second = hnt::IfThenElse(hnt::Gt(second, last), zero, second);
    }
    first = hnt::Min(hnt::Max(first, zero), last);
    second = hnt::Min(hnt::Max(second, zero), last);
    return {hnt::ConvertTo(di, first), hnt::ConvertTo(di, second), hnt::Sub(place, base)};
}

inline TexelLight sampleTexels(const RipPicture& picture, const TexelPlaces& places, bool repeatS,
                               bool repeatT, bool wantsAlpha) {
    const TexelF d;
    const TexelI di;
    const TexelU du;
    const auto width = hnt::Set(d, static_cast<float>(picture.width));
    const auto height = hnt::Set(d, static_cast<float>(picture.height));
    const auto across = levelOf(hnt::Mul(places.wideU, hnt::Mul(width, width)), picture.levelsAcross);
    const auto down = levelOf(hnt::Mul(places.wideV, hnt::Mul(height, height)), picture.levelsDown);
    const auto level = hnt::Add(hnt::Mul(across, hnt::Set(di, picture.levelsDown)), down);
    const auto one = hnt::Set(d, 1.0F);
    auto levelWidth = one;
    auto levelHeight = one;
    auto first = hnt::Zero(di);
    const auto at = static_cast<std::size_t>(hnt::GetLane(level));
    if (hnt::AllTrue(di, hnt::Eq(level, hnt::Set(di, static_cast<std::int32_t>(at))))) {
        const auto levelsDown = static_cast<std::size_t>(picture.levelsDown);
        levelWidth = hnt::Set(d, picture.widths[at / levelsDown]);
        levelHeight = hnt::Set(d, picture.heights[at % levelsDown]);
        first = hnt::Set(di, picture.first[at]);
    } else {
        levelWidth = hnt::GatherIndex(d, picture.widths.data(), across);
        levelHeight = hnt::GatherIndex(d, picture.heights.data(), down);
        first = hnt::GatherIndex(di, picture.first.data(), level);
    }
    const TexelPair columns = pairAt(places.u, levelWidth, repeatS);
    const TexelPair rows = pairAt(places.v, levelHeight, repeatT);
    const auto stride = hnt::ConvertTo(di, levelWidth);
    const auto above = hnt::Add(first, hnt::Mul(rows.first, stride));
    const auto below = hnt::Add(first, hnt::Mul(rows.second, stride));
    const auto* const texels = reinterpret_cast<const std::int32_t*>(picture.texels.data());
    const hnt::Vec<TexelI> places4[4] = {
        hnt::Add(above, columns.first), hnt::Add(above, columns.second),
        hnt::Add(below, columns.first), hnt::Add(below, columns.second)};
    const auto left = hnt::Sub(one, columns.share);
    const auto upper = hnt::Sub(one, rows.share);
    const TexelV weights[4] = {hnt::Mul(left, upper), hnt::Mul(columns.share, upper),
                               hnt::Mul(left, rows.share), hnt::Mul(columns.share, rows.share)};
    TexelLight light{hnt::Zero(d), hnt::Zero(d), hnt::Zero(d), one};
    for (int i = 0; i < 4; ++i) {
        const auto word = hnt::BitCast(du, hnt::GatherIndex(di, texels, places4[i]));
        const auto add = [&](TexelV& sum, hnt::Vec<TexelU> bits) {
            const auto root = hnt::ConvertTo(d, hnt::BitCast(di, bits));
            sum = hnt::Add(sum, hnt::Mul(hnt::Mul(root, root), weights[i]));
        };
        add(light.r, hnt::ShiftRight<22>(word));
        add(light.g, hnt::And(hnt::ShiftRight<10>(word), hnt::Set(du, 4095U)));
        add(light.b, hnt::And(word, hnt::Set(du, 1023U)));
    }
    light.r = hnt::Mul(light.r, hnt::Set(d, 1.0F / (1023.0F * 1023.0F)));
    light.g = hnt::Mul(light.g, hnt::Set(d, 1.0F / (4095.0F * 4095.0F)));
    light.b = hnt::Mul(light.b, hnt::Set(d, 1.0F / (1023.0F * 1023.0F)));
    if (!wantsAlpha || !picture.hasAlpha) return light;
    light.alpha = hnt::Zero(d);
    const auto* const alphas = reinterpret_cast<const std::int32_t*>(picture.alphas.data());
    for (int i = 0; i < 4; ++i)
        light.alpha = hnt::Add(
            light.alpha,
            hnt::Mul(hnt::ConvertTo(d, hnt::GatherIndex(di, alphas, places4[i])), weights[i]));
    light.alpha = hnt::Mul(light.alpha, hnt::Set(d, 1.0F / 65535.0F));
    return light;
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
