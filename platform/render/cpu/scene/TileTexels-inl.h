// SPDX-License-Identifier: MIT
// Reading a picture on a slanting surface; included once per vector target. Any
// thread; it owns nothing.
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

// In repeats of the picture: where a pixel's middle is, and what the next pixel
// adds to it.
struct TexelPlaces {
    TexelV u, v;
    TexelV uAcross, vAcross;
    TexelV uDown, vDown;
};

struct TexelManner {
    bool repeatS = false;
    bool repeatT = false;
    bool wantsAlpha = false;
};

struct TexelLight {
    TexelV r, g, b, alpha;
};

// How often a side is halved for a pixel of this many texels squared: reading
// between texels smooths as well, and is meant to make up for what is left.
inline hnt::Vec<TexelI> levelOf(TexelV texelsSquared, int levels) {
    const TexelF d;
    const TexelI di;
    const auto wide =
        hnt::Add(hnt::Mul(texelsSquared, hnt::Set(d, 1.0F / 3.0F)), hnt::Set(d, 1.0F));
    auto level = hnt::Zero(di);
    float above = 2.0F;
    for (int i = 1; i < levels; ++i, above *= 4.0F)
        level = hnt::Add(level,
                         hnt::IfThenElseZero(hnt::RebindMask(di, hnt::Ge(wide, hnt::Set(d, above))),
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

// The light at a place, on the given level of each side.
inline TexelLight sampleTexels(const RipPicture& picture, TexelV u, TexelV v,
                               hnt::Vec<TexelI> across, hnt::Vec<TexelI> down,
                               const TexelManner& manner) {
    const TexelF d;
    const TexelI di;
    const TexelU du;
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
    const TexelPair columns = pairAt(u, levelWidth, manner.repeatS);
    const TexelPair rows = pairAt(v, levelHeight, manner.repeatT);
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
    hnt::Vec<TexelU> words[4];
    for (int i = 0; i < 4; ++i)
        words[i] = hnt::BitCast(du, hnt::GatherIndex(di, texels, places4[i]));
    const auto any = hnt::Or(hnt::Or(words[0], words[1]), hnt::Or(words[2], words[3]));
    const bool isBlack = hnt::AllTrue(du, hnt::Eq(any, hnt::Zero(du)));
    if (isBlack && !(manner.wantsAlpha && picture.hasAlpha)) return light;
    for (int i = 0; i < 4; ++i) {
        const auto word = words[i];
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
    if (!manner.wantsAlpha || !picture.hasAlpha) return light;
    light.alpha = hnt::Zero(d);
    const auto* const alphas = reinterpret_cast<const std::int32_t*>(picture.alphas.data());
    for (int i = 0; i < 4; ++i)
        light.alpha = hnt::Add(
            light.alpha,
            hnt::Mul(hnt::ConvertTo(d, hnt::GatherIndex(di, alphas, places4[i])), weights[i]));
    light.alpha = hnt::Mul(light.alpha, hnt::Set(d, 1.0F / 65535.0F));
    return light;
}

// The average over a pixel: one reading where texels are as large as pixels, and
// four, each of a quarter of the pixel, where they are smaller.
inline TexelLight readTexels(const RipPicture& picture, const TexelPlaces& places,
                             const TexelManner& manner) {
    const TexelF d;
    const TexelI di;
    const auto zero = hnt::Zero(di);
    const auto square = [&](TexelV x, TexelV y, int side) {
        const auto size = hnt::Set(d, static_cast<float>(side) * static_cast<float>(side));
        return hnt::Mul(hnt::Add(hnt::Mul(x, x), hnt::Mul(y, y)), size);
    };
    const auto wideU = square(places.uAcross, places.uDown, picture.width);
    const auto wideV = square(places.vAcross, places.vDown, picture.height);
    const auto large = hnt::Lt(hnt::Max(wideU, wideV), hnt::Set(d, 2.0F));
    TexelLight single{};
    if (!hnt::AllFalse(d, large)) {
        single = sampleTexels(picture, places.u, places.v, zero, zero, manner);
        if (hnt::AllTrue(d, large)) return single;
    }
    const auto quarter = hnt::Set(d, 0.25F);
    const auto across = levelOf(hnt::Mul(wideU, quarter), picture.levelsAcross);
    const auto down = levelOf(hnt::Mul(wideV, quarter), picture.levelsDown);
    TexelLight sum{hnt::Zero(d), hnt::Zero(d), hnt::Zero(d), hnt::Zero(d)};
    for (int i = 0; i < 4; ++i) {
        const auto right = hnt::Set(d, (i & 1) != 0 ? 0.25F : -0.25F);
        const auto lower = hnt::Set(d, (i & 2) != 0 ? 0.25F : -0.25F);
        const auto u = hnt::Add(
            places.u, hnt::Add(hnt::Mul(places.uAcross, right), hnt::Mul(places.uDown, lower)));
        const auto v = hnt::Add(
            places.v, hnt::Add(hnt::Mul(places.vAcross, right), hnt::Mul(places.vDown, lower)));
        const TexelLight part = sampleTexels(picture, u, v, across, down, manner);
        sum.r = hnt::Add(sum.r, hnt::Mul(part.r, quarter));
        sum.g = hnt::Add(sum.g, hnt::Mul(part.g, quarter));
        sum.b = hnt::Add(sum.b, hnt::Mul(part.b, quarter));
        sum.alpha = hnt::Add(sum.alpha, hnt::Mul(part.alpha, quarter));
    }
    if (hnt::AllFalse(d, large)) return sum;
    return {hnt::IfThenElse(large, single.r, sum.r), hnt::IfThenElse(large, single.g, sum.g),
            hnt::IfThenElse(large, single.b, sum.b),
            hnt::IfThenElse(large, single.alpha, sum.alpha)};
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
