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

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

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

// The place of a pixel's middle in repeats of the picture, and the step to the next
// pixel.
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

// The number of times that a side is halved for a pixel of this many texels squared.
// Interpolation between texels smooths the rest.
inline hnt::Vec<TexelI> levelOf(TexelV texelsSquared, int levels) {
    const TexelF d;
    const TexelI di;
    const auto wide =
        hnt::Add(hnt::Mul(texelsSquared, hnt::Set(d, 2.0F / 3.0F)), hnt::Set(d, 2.0F));
    // The exponent counts doublings of the square; two are one of the side.
    const auto doublings = hnt::Sub(hnt::ShiftRight<23>(hnt::BitCast(di, wide)), hnt::Set(di, 127));
    return hnt::Min(hnt::ShiftRight<1>(doublings), hnt::Set(di, levels - 1));
}

// The first of two neighbouring texels along a side, and the second one's share.
struct TexelPair {
    TexelV first;
    TexelV share;
};

inline TexelPair repeatedPairAt(TexelV at, TexelV size) {
    const TexelF d;
    const auto zero = hnt::Zero(d);
    const auto part = hnt::Sub(at, hnt::Floor(at));
    // A place that is no number reads the rim.
    const auto within = hnt::IfThenElseZero(hnt::Gt(part, zero), part);
    const auto place = hnt::Sub(hnt::Mul(within, size), hnt::Set(d, 0.5F));
    const auto base = hnt::Floor(place);
    const auto last = hnt::Sub(size, hnt::Set(d, 1.0F));
    return {hnt::IfThenElse(hnt::Lt(base, zero), last, base), hnt::Sub(place, base)};
}

inline TexelPair pairAt(TexelV at, TexelV size, bool repeat) {
    if (repeat) return repeatedPairAt(at, size);
    const TexelF d;
    const auto zero = hnt::Zero(d);
    const auto one = hnt::Set(d, 1.0F);
    const auto last = hnt::Sub(size, one);
    // Far outside, every place reads the rim; a place that is no number does too.
    const auto least = hnt::Neg(one);
    at = hnt::Min(hnt::IfThenElse(hnt::Gt(at, least), at, least), hnt::Set(d, 2.0F));
    const auto place = hnt::Sub(hnt::Mul(at, size), hnt::Set(d, 0.5F));
    const auto base = hnt::Floor(place);
    // Outside, the second texel may be any.
    const auto share = hnt::IfThenElseZero(hnt::And(hnt::Ge(base, zero), hnt::Lt(base, last)),
                                           hnt::Sub(place, base));
    return {hnt::Min(hnt::Max(base, zero), last), share};
}

// Four neighbouring texels: above left and right, below left and right.
struct TexelWords {
    hnt::Vec<TexelU> of[4];
};

// Texels are copied one by one: a processor's own gathering of vectors takes longer.
inline TexelWords wordsAt(const std::uint32_t* texels, hnt::Vec<TexelI> places) {
    constexpr std::size_t kLanes = hnt::MaxLanes(TexelI());
    alignas(64) std::array<std::int32_t, kLanes> at;
    alignas(64) std::array<std::uint32_t, 4 * kLanes> copied;
    hnt::Store(places, TexelI(), at.data());
    for (std::size_t i = 0; i < kLanes; ++i)
        std::memcpy(copied.data() + 4 * i, texels + 2 * static_cast<std::ptrdiff_t>(at[i]), 16);
    TexelWords words;
    hnt::LoadInterleaved4(TexelU(), copied.data(), words.of[0], words.of[2], words.of[1],
                          words.of[3]);
    return words;
}

// The place that a reading takes, with the one right of it, and the share of the right and of
// the lower texels.
struct TexelSpots {
    hnt::Vec<TexelI> place;
    TexelV right, lower;
};

// Whole numbers from 0 up to 2²³, without the care that a conversion takes of others.
inline hnt::Vec<TexelI> wholeNumbers(TexelV values) {
    const TexelI di;
    const auto shifted = hnt::Add(values, hnt::Set(TexelF(), 8388608.0F));
    return hnt::And(hnt::BitCast(di, shifted), hnt::Set(di, 0x7FFFFF));
}

// One level of each side of a picture: its size, and its first place.
struct TexelLevel {
    TexelV width, height;
    hnt::Vec<TexelI> first;
};

inline TexelLevel levelAt(const RipPicture& picture, hnt::Vec<TexelI> across,
                          hnt::Vec<TexelI> down) {
    const TexelF d;
    const TexelI di;
    const auto level = hnt::Add(hnt::Mul(across, hnt::Set(di, picture.levelsDown)), down);
    const auto at = static_cast<std::size_t>(hnt::GetLane(level));
    if (!hnt::AllTrue(di, hnt::Eq(level, hnt::Set(di, static_cast<std::int32_t>(at)))))
        return {hnt::GatherIndex(d, picture.widths.data(), across),
                hnt::GatherIndex(d, picture.heights.data(), down),
                hnt::GatherIndex(di, picture.first.data(), level)};
    const auto levelsDown = static_cast<std::size_t>(picture.levelsDown);
    return {hnt::Set(d, picture.widths[at / levelsDown]),
            hnt::Set(d, picture.heights[at % levelsDown]), hnt::Set(di, picture.first[at])};
}

inline TexelSpots spotsOf(TexelV u, TexelV v, const TexelLevel& level, const TexelManner& manner) {
    const TexelI di;
    const TexelPair columns = pairAt(u, level.width, manner.repeatS);
    const TexelPair rows = pairAt(v, level.height, manner.repeatT);
    const auto stride = hnt::Add(wholeNumbers(level.width), hnt::Set(di, 1));
    const auto column = hnt::Add(level.first, wholeNumbers(columns.first));
    return {hnt::Add(column, hnt::Mul(wholeNumbers(rows.first), stride)), columns.share,
            rows.share};
}

// The spots of a place in the whole picture.
inline TexelSpots wholeSpots(const RipPicture& picture, TexelV u, TexelV v,
                             const TexelManner& manner) {
    const TexelF d;
    const TexelLevel whole{hnt::Set(d, picture.widths[0]), hnt::Set(d, picture.heights[0]),
                           hnt::Set(TexelI(), picture.first[0])};
    return spotsOf(u, v, whole, manner);
}

// The shares of the four texels of a reading: above left and right, below left and right.
struct TexelShares {
    TexelV of[4];
    TexelShares(TexelV right, TexelV lower) {
        const auto one = hnt::Set(TexelF(), 1.0F);
        const auto left = hnt::Sub(one, right);
        const auto upper = hnt::Sub(one, lower);
        of[0] = hnt::Mul(left, upper);
        of[1] = hnt::Mul(right, upper);
        of[2] = hnt::Mul(left, lower);
        of[3] = hnt::Mul(right, lower);
    }
};

// The light of four texels; its alpha is 1.
inline TexelLight mixedLight(const TexelWords& texels, TexelV right, TexelV lower) {
    const TexelF d;
    const TexelI di;
    const TexelU du;
    TexelLight light{hnt::Zero(d), hnt::Zero(d), hnt::Zero(d), hnt::Set(d, 1.0F)};
    const hnt::Vec<TexelU>(&words)[4] = texels.of;
    const auto any = hnt::Or(hnt::Or(words[0], words[1]), hnt::Or(words[2], words[3]));
    if (hnt::AllTrue(du, hnt::Eq(any, hnt::Zero(du)))) return light;
    const TexelShares shares(right, lower);
    // Most pictures are green, with little or no red.
    const auto add = [&](TexelV& sum, const auto& bitsOf) {
        if (hnt::AllTrue(du, hnt::Eq(bitsOf(any), hnt::Zero(du)))) return;
        for (int i = 0; i < 4; ++i) {
            const auto root = hnt::ConvertTo(d, hnt::BitCast(di, bitsOf(words[i])));
            sum = hnt::Add(sum, hnt::Mul(hnt::Mul(root, root), shares.of[i]));
        }
    };
    add(light.r, [](hnt::Vec<TexelU> word) { return hnt::ShiftRight<22>(word); });
    add(light.g, [](hnt::Vec<TexelU> word) {
        return hnt::And(hnt::ShiftRight<10>(word), hnt::Set(TexelU(), 4095U));
    });
    add(light.b, [](hnt::Vec<TexelU> word) { return hnt::And(word, hnt::Set(TexelU(), 1023U)); });
    light.r = hnt::Mul(light.r, hnt::Set(d, 1.0F / (1023.0F * 1023.0F)));
    light.g = hnt::Mul(light.g, hnt::Set(d, 1.0F / (4095.0F * 4095.0F)));
    light.b = hnt::Mul(light.b, hnt::Set(d, 1.0F / (1023.0F * 1023.0F)));
    return light;
}

inline TexelV alphaAt(const RipPicture& picture, const TexelSpots& spots) {
    const TexelF d;
    const TexelI di;
    const TexelU du;
    const TexelWords words = wordsAt(picture.alphas.data(), spots.place);
    const auto any = hnt::Or(hnt::Or(words.of[0], words.of[1]), hnt::Or(words.of[2], words.of[3]));
    auto alpha = hnt::Zero(d);
    if (hnt::AllTrue(du, hnt::Eq(any, hnt::Zero(du)))) return alpha;
    const TexelShares shares(spots.right, spots.lower);
    for (int i = 0; i < 4; ++i)
        alpha = hnt::Add(alpha,
                         hnt::Mul(hnt::ConvertTo(d, hnt::BitCast(di, words.of[i])), shares.of[i]));
    return hnt::Mul(alpha, hnt::Set(d, 1.0F / 65535.0F));
}

// The light at some spots.
inline TexelLight sampleTexels(const RipPicture& picture, const TexelSpots& spots,
                               const TexelManner& manner) {
    if (!manner.wantsAlpha || !picture.hasAlpha)
        return mixedLight(wordsAt(picture.texels.data(), spots.place), spots.right, spots.lower);
    const auto alpha = alphaAt(picture, spots);
    if (picture.stencil) {
        const auto times = [&](float part) { return hnt::Mul(alpha, hnt::Set(TexelF(), part)); };
        return {times(picture.stencil->r), times(picture.stencil->g), times(picture.stencil->b),
                alpha};
    }
    TexelLight light =
        mixedLight(wordsAt(picture.texels.data(), spots.place), spots.right, spots.lower);
    light.alpha = alpha;
    return light;
}

inline TexelLight plus(const TexelLight& a, const TexelLight& b) {
    return {hnt::Add(a.r, b.r), hnt::Add(a.g, b.g), hnt::Add(a.b, b.b), hnt::Add(a.alpha, b.alpha)};
}

inline TexelLight times(const TexelLight& light, float share) {
    const auto by = hnt::Set(TexelF(), share);
    return {hnt::Mul(light.r, by), hnt::Mul(light.g, by), hnt::Mul(light.b, by),
            hnt::Mul(light.alpha, by)};
}

inline TexelLight chosen(hnt::Mask<TexelF> which, const TexelLight& a, const TexelLight& b) {
    return {hnt::IfThenElse(which, a.r, b.r), hnt::IfThenElse(which, a.g, b.g),
            hnt::IfThenElse(which, a.b, b.b), hnt::IfThenElse(which, a.alpha, b.alpha)};
}

// A pixel's sides in texels of the whole picture, squared.
struct TexelSquares {
    TexelV uAcross, uDown, vAcross, vDown;
    TexelSquares(const RipPicture& picture, const TexelPlaces& places)
        : uAcross(square(places.uAcross, picture.width)),
          uDown(square(places.uDown, picture.width)),
          vAcross(square(places.vAcross, picture.height)),
          vDown(square(places.vDown, picture.height)) {}
    [[nodiscard]] TexelV wide() const {
        return hnt::Max(hnt::Add(uAcross, uDown), hnt::Add(vAcross, vDown));
    }

  private:
    static TexelV square(TexelV x, int side) {
        const auto size = hnt::Set(TexelF(), static_cast<float>(side) * static_cast<float>(side));
        return hnt::Mul(hnt::Mul(x, x), size);
    }
};

// A pixel that is less wide takes one reading.
inline constexpr float kOneReading = 2.0F;

// The number of readings whose average is a pixel's: one where texels are as large as pixels,
// two where they are somewhat smaller, and four where they are much smaller.
struct TexelCount {
    hnt::Mask<TexelF> one, four;
    explicit TexelCount(TexelV wide)
        : one(hnt::Lt(wide, hnt::Set(TexelF(), kOneReading))),
          four(hnt::Ge(wide, hnt::Set(TexelF(), 12.0F))) {}
    [[nodiscard]] bool anyOne() const { return !hnt::AllFalse(TexelF(), one); }
    [[nodiscard]] bool anyTwo() const { return !hnt::AllTrue(TexelF(), hnt::Or(one, four)); }
    [[nodiscard]] bool anyFour() const { return !hnt::AllFalse(TexelF(), four); }
};

// Two readings, each of half of the pixel. The halves lie beside one another along the pixel's
// side that more texels stand along. Calls `place` with the spots of each.
template <typename Place>
void placeHalves(const RipPicture& picture, const TexelPlaces& places, const TexelSquares& squares,
                 const TexelManner& manner, const Place& place) {
    const TexelF d;
    const auto isWide =
        hnt::Ge(hnt::Add(squares.uAcross, squares.vAcross), hnt::Add(squares.uDown, squares.vDown));
    const auto quarter = hnt::Set(d, 0.25F);
    const auto along = [&](TexelV acrossSide, TexelV downSide) {
        return hnt::IfThenElse(isWide, acrossSide, downSide);
    };
    const auto stepU = hnt::Mul(along(places.uAcross, places.uDown), quarter);
    const auto stepV = hnt::Mul(along(places.vAcross, places.vDown), quarter);
    // Half a side is a quarter of its square. Reading between texels smooths as well, which
    // makes up for the rest.
    const auto ofHalf = [&](TexelV acrossSide, TexelV downSide) {
        return hnt::Mul(
            hnt::Add(hnt::Mul(along(acrossSide, downSide), quarter), along(downSide, acrossSide)),
            hnt::Set(d, 0.7F));
    };
    const auto across = levelOf(ofHalf(squares.uAcross, squares.uDown), picture.levelsAcross);
    const auto down = levelOf(ofHalf(squares.vAcross, squares.vDown), picture.levelsDown);
    const TexelLevel level = levelAt(picture, across, down);
    place(spotsOf(hnt::Sub(places.u, stepU), hnt::Sub(places.v, stepV), level, manner));
    place(spotsOf(hnt::Add(places.u, stepU), hnt::Add(places.v, stepV), level, manner));
}

// Four readings, each of a quarter of the pixel.
template <typename Place>
void placeQuarters(const RipPicture& picture, const TexelPlaces& places,
                   const TexelSquares& squares, const TexelManner& manner, const Place& place) {
    const TexelF d;
    const auto quarter = hnt::Set(d, 0.25F);
    const auto across =
        levelOf(hnt::Mul(hnt::Add(squares.uAcross, squares.uDown), quarter), picture.levelsAcross);
    const auto down =
        levelOf(hnt::Mul(hnt::Add(squares.vAcross, squares.vDown), quarter), picture.levelsDown);
    const TexelLevel level = levelAt(picture, across, down);
    for (int i = 0; i < 4; ++i) {
        const auto right = hnt::Set(d, (i & 1) != 0 ? 0.25F : -0.25F);
        const auto lower = hnt::Set(d, (i & 2) != 0 ? 0.25F : -0.25F);
        const auto u = hnt::Add(
            places.u, hnt::Add(hnt::Mul(places.uAcross, right), hnt::Mul(places.uDown, lower)));
        const auto v = hnt::Add(
            places.v, hnt::Add(hnt::Mul(places.vAcross, right), hnt::Mul(places.vDown, lower)));
        place(spotsOf(u, v, level, manner));
    }
}

// The most readings that some pixels take, which may differ in their number.
inline constexpr int kMostReadings = 7;

// Calls `place` with the spots of every reading that some of the pixels take. Returns how wide
// the pixels are.
template <typename Place>
TexelV placeReadings(const RipPicture& picture, const TexelPlaces& places,
                     const TexelManner& manner, const Place& place) {
    const TexelSquares squares(picture, places);
    const TexelV wide = squares.wide();
    const TexelCount count(wide);
    if (count.anyOne()) place(wholeSpots(picture, places.u, places.v, manner));
    if (count.anyTwo()) placeHalves(picture, places, squares, manner, place);
    if (count.anyFour()) placeQuarters(picture, places, squares, manner, place);
    return wide;
}

// The average of the readings, which `read` gives in the order in which they were placed.
template <typename Read>
TexelLight averaged(TexelV wide, const Read& read) {
    const TexelF d;
    const auto zero = hnt::Zero(d);
    const TexelCount count(wide);
    TexelLight light{zero, zero, zero, zero};
    if (count.anyOne()) light = read();
    if (count.anyTwo()) {
        const TexelLight first = read();
        light = chosen(count.one, light, times(plus(first, read()), 0.5F));
    }
    if (!count.anyFour()) return light;
    TexelLight sum{zero, zero, zero, zero};
    for (int i = 0; i < 4; ++i)
        sum = plus(sum, read());
    return chosen(count.four, times(sum, 0.25F), light);
}

// The average over a pixel.
inline TexelLight readTexels(const RipPicture& picture, const TexelPlaces& places,
                             const TexelManner& manner) {
    TexelLight lights[kMostReadings];
    int count = 0;
    const TexelV wide = placeReadings(picture, places, manner, [&](const TexelSpots& spots) {
        lights[count++] = sampleTexels(picture, spots, manner);
    });
    count = 0;
    return averaged(wide, [&] { return lights[count++]; });
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
