// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TilePacking.h"

#include <algorithm>
#include <utility>

#include "platform/render/cpu/scene/TileFinish.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TilePacking.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileEncoding-inl.h"

#ifndef PLATFORM_TILE_PACKING_ONCE
#define PLATFORM_TILE_PACKING_ONCE
namespace platform {
namespace {

inline constexpr float kMostPacked = 65535.0F;

}  // namespace
}  // namespace platform
#endif

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using F = hn::CappedTag<float, kTileMargin>;
using U = hn::RebindToUnsigned<F>;
using I = hn::RebindToSigned<F>;
using Packed = hn::Rebind<std::uint16_t, F>;

// The bright light of a row of cells, column by column.
using ColumnSums = std::array<std::array<float, kTileWidth + kTileMargin>, 3>;

struct Light {
    hn::Vec<F> r, g, b;
};

HWY_INLINE Light noLight() {
    const F d;
    return {hn::Zero(d), hn::Zero(d), hn::Zero(d)};
}

HWY_INLINE hn::Vec<F> mostOf(const Light& light) {
    return hn::Max(light.r, hn::Max(light.g, light.b));
}

HWY_INLINE bool isNone(hn::Vec<F> most) {
    return hn::AllTrue(F(), hn::Le(most, hn::Zero(F())));
}

// Packs some rows of a tile, and sums their bright light. Without kWithRed there is no red light.
template <bool kWithRed>
class PackRows {
  public:
    PackRows(const SceneTile& tile, const BrightCells* bright,
             const std::array<std::uint16_t*, 3>& to)
        : tile_(tile), bright_(bright), to_(to), threshold_(bright ? bright->threshold : 0.0F) {}

    void pack(int top, int end) {
        brightColours_ = 0;
        for (int x = 0; x < tile_.width; x += static_cast<int>(hn::Lanes(F())))
            packColumns(x, top, end);
    }
    // The colours with bright light in the last rows packed.
    [[nodiscard]] unsigned brightColours() const { return brightColours_; }
    [[nodiscard]] const ColumnSums& sums() const { return sums_; }
    [[nodiscard]] unsigned lit() const { return coloursIn(lit_); }

  private:
    static unsigned coloursIn(const Light& light) {
        return (isNone(light.r) ? 0U : 1U) | (isNone(light.g) ? 0U : 2U) |
               (isNone(light.b) ? 0U : 4U);
    }

    void packColumns(int x, int top, int end) {
        const F d;
        Light sum = noLight();
        Light lit = noLight();
        for (int row = top; row < end; ++row)
            packSome(x, row, sum, lit);
        lit_ = {hn::Max(lit_.r, lit.r), hn::Max(lit_.g, lit.g), hn::Max(lit_.b, lit.b)};
        if (!bright_) return;
        if constexpr (kWithRed) hn::StoreU(sum.r, d, sums_[0].data() + x);
        hn::StoreU(sum.g, d, sums_[1].data() + x);
        hn::StoreU(sum.b, d, sums_[2].data() + x);
        if (!isNone(mostOf(sum))) brightColours_ |= coloursIn(sum);
    }

    HWY_INLINE void packSome(int x, int row, Light& sum, Light& lit) const {
        const std::ptrdiff_t from = SceneTile::at(x, row);
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(row) * kTileWidth + x;
        Light light = noLight();
        if constexpr (kWithRed) light.r = lightAt(0, x, from);
        light.g = lightAt(1, x, from);
        light.b = lightAt(2, x, from);
        const auto most = mostOf(light);
        if (isNone(most)) {
            for (std::size_t k = kWithRed ? 0 : 1; k < 3; ++k)
                hn::StoreU(hn::Zero(Packed()), Packed(), to_[k] + at);
            return;
        }
        if constexpr (kWithRed) lit.r = hn::Max(lit.r, packed(light.r, to_[0] + at));
        lit.g = hn::Max(lit.g, packed(light.g, to_[1] + at));
        lit.b = hn::Max(lit.b, packed(light.b, to_[2] + at));
        if (bright_) addBright(light, most, from, sum);
    }

    // Packs some light, and returns how much there is to see.
    static HWY_INLINE hn::Vec<F> packed(hn::Vec<F> light, std::uint16_t* to) {
        const F d;
        const auto share = hn::Min(hn::Max(light, hn::Zero(d)), hn::Set(d, 1.0F));
        const auto steps =
            hn::ConvertTo(I(), hn::Add(hn::Mul(share, hn::Set(d, kMostPacked)), hn::Set(d, 0.5F)));
        hn::StoreU(hn::DemoteTo(Packed(), steps), Packed(), to);
        return share;
    }

    // Adds what is above the threshold, or what a dot or a line has above it.
    HWY_INLINE void addBright(const Light& light, hn::Vec<F> most, std::ptrdiff_t from,
                              Light& sum) const {
        const F d;
        Light excess = noLight();
        if (tile_.hasExcess) {
            const auto shown = hn::Gt(most, hn::Zero(d));
            const auto excessAt = [&](std::size_t k) {
                return holds(tile_.excessColours, k)
                           ? hn::IfThenElseZero(shown, hn::LoadU(d, tile_.excess[k] + from))
                           : hn::Zero(d);
            };
            if constexpr (kWithRed) excess.r = excessAt(0);
            excess.g = excessAt(1);
            excess.b = excessAt(2);
        }
        const auto threshold = hn::Set(d, threshold_);
        if (isNone(hn::Max(hn::Sub(most, threshold), mostOf(excess)))) return;
        const auto above = [&](hn::Vec<F> of, hn::Vec<F> thin) {
            return hn::Max(hn::Max(hn::Sub(of, threshold), thin), hn::Zero(d));
        };
        if constexpr (kWithRed) sum.r = hn::Add(sum.r, above(light.r, excess.r));
        sum.g = hn::Add(sum.g, above(light.g, excess.g));
        sum.b = hn::Add(sum.b, above(light.b, excess.b));
    }

    // Black right of the tile, where vectors end behind it.
    [[nodiscard]] HWY_INLINE hn::Vec<F> lightAt(std::size_t k, int x, std::ptrdiff_t from) const {
        const F d;
        const auto light = hn::LoadU(d, tile_.light[k] + from);
        if (x + static_cast<int>(hn::Lanes(d)) <= tile_.width) return light;
        return hn::IfThenElseZero(hn::FirstN(d, static_cast<std::size_t>(tile_.width - x)), light);
    }

    const SceneTile& tile_;
    const BrightCells* const bright_;
    const std::array<std::uint16_t*, 3> to_;
    const float threshold_;
    Light lit_ = noLight();
    unsigned brightColours_ = 0;
    alignas(64) ColumnSums sums_;
};

// A row of cells, each the average of those of its pixels that lie in the picture.
void putCells(const ColumnSums& sums, unsigned colours, const BrightCells& bright,
              const SceneTile& tile, int row) {
    const int reduction = bright.reduction;
    const int down = std::min(reduction, tile.height - row * reduction);
    for (std::size_t k = 0; k < 3; ++k) {
        if (!holds(colours, k)) continue;
        float* const to = bright.plane[k] + static_cast<std::ptrdiff_t>(row) * bright.stride;
        for (int first = 0; first < tile.width; first += reduction) {
            const int end = std::min(first + reduction, tile.width);
            float sum = 0.0F;
            for (int i = first; i < end; ++i)
                sum += sums[k][static_cast<std::size_t>(i)];
            to[first / reduction] += sum / static_cast<float>((end - first) * down);
        }
    }
}

template <bool kWithRed>
PackedColours packColours(const SceneTile& tile, const BrightCells* bright,
                          const std::array<std::uint16_t*, 3>& to) {
    PackedColours result;
    PackRows<kWithRed> rows(tile, bright, to);
    const int step = bright ? bright->reduction : kTileHeight;
    for (int top = 0; top < tile.height; top += step) {
        rows.pack(top, std::min(top + step, tile.height));
        if (rows.brightColours() == 0) continue;
        putCells(rows.sums(), rows.brightColours(), *bright, tile, top / step);
        result.bright |= rows.brightColours();
    }
    result.lit = rows.lit();
    return result;
}

PackedColours packTile(const SceneTile& tile, const BrightCells* bright,
                       const std::array<std::uint16_t*, 3>& to) {
    return holds(tile.colours, 0) ? packColours<true>(tile, bright, to)
                                  : packColours<false>(tile, bright, to);
}

// A row of a tile: its light and its glow, each of which may be none, by the colour.
struct LitRow {
    std::array<const std::uint16_t*, 3> light{};
    std::array<const float*, 3> glow{};
};

// The encoded sum of packed light and glow.
HWY_INLINE hn::Vec<U> shownAt(const LitRow& row, std::size_t k, int x, hn::Vec<F> noise) {
    const F d;
    auto light = hn::Zero(d);
    if (row.light[k]) {
        const auto packed = hn::PromoteTo(I(), hn::LoadU(Packed(), row.light[k] + x));
        if (!row.glow[k] && hn::AllTrue(I(), hn::Eq(packed, hn::Zero(I())))) return hn::Zero(U());
        light = hn::Mul(hn::ConvertTo(d, packed), hn::Set(d, 1.0F / kMostPacked));
    }
    if (row.glow[k])
        light = hn::Min(hn::Add(light, hn::LoadU(d, row.glow[k] + x)), hn::Set(d, 1.0F));
    return hn::BitCast(U(), hn::ConvertTo(I(), hn::Add(encoded(d, hn::Sqrt(light)), noise)));
}

void encodeRow(const LitRow& row, const float* noise, std::uint32_t* to, int width) {
    const F d;
    const U du;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int x = 0; x < width; x += lanes) {
        auto result = hn::Set(du, 0xFF000000U);
        const auto grain = hn::LoadU(d, noise + x);
        if (row.light[0] || row.glow[0])
            result = hn::Or(result, hn::ShiftLeft<16>(shownAt(row, 0, x, grain)));
        if (row.light[1] || row.glow[1])
            result = hn::Or(result, hn::ShiftLeft<8>(shownAt(row, 1, x, grain)));
        if (row.light[2] || row.glow[2]) result = hn::Or(result, shownAt(row, 2, x, grain));
        if (x + lanes <= width) {
            hn::StoreU(result, du, to + x);
        } else {
            std::array<std::uint32_t, HWY_MAX_BYTES / 4> last{};
            hn::StoreU(result, du, last.data());
            std::copy_n(last.data(), width - x, to + x);
        }
    }
}

void encodeTile(const std::array<const std::uint16_t*, 3>& light, const TileGlow& glow,
                const float* noise, const TilePixels& to) {
    for (int y = 0; y < to.height; ++y) {
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(y) * kTileWidth;
        LitRow row;
        for (std::size_t k = 0; k < 3; ++k) {
            row.light[k] = light[k] ? light[k] + at : nullptr;
            row.glow[k] = glow.plane[k] ? glow.plane[k] + at : nullptr;
        }
        encodeRow(row, noise + at, to.pixels + static_cast<std::ptrdiff_t>(y) * to.stride,
                  to.width);
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(packTile);
HWY_EXPORT(encodeTile);

namespace {

// Light's steps on their way to eight bits are broken by a pattern, as OpenGL's
// last shader does it.
std::array<float, kPackedTile + 16> makeNoise() {
    std::array<float, kPackedTile + 16> noise{};
    const auto fraction = [](double value) { return value - static_cast<int>(value); };
    for (int y = 0; y < kTileHeight; ++y)
        for (int x = 0; x < kTileWidth; ++x)
            noise[static_cast<std::size_t>(y * kTileWidth + x)] = static_cast<float>(
                fraction(52.9829189 * fraction(0.06711056 * x + 0.00583715 * y)));
    return noise;
}

}  // namespace

void PackedLight::fit(std::size_t tiles) {
    if (tiles == tiles_) return;
    // A row may be read a vector further than it is long.
    constexpr std::size_t kBeyond = 64;
    for (auto& plane : planes_)
        plane = LargeArray<std::uint16_t>(tiles * kPackedTile + kBeyond);
    tiles_ = tiles;
    isExpected_ = false;
}

void PackedLight::expectMost() {
    if (std::exchange(isExpected_, true)) return;
    for (auto& plane : planes_)
        plane.expectAll();
}

PackedColours packTile(SceneTile& tile, const BrightCells* bright,
                       const std::array<std::uint16_t*, 3>& to) {
    useColours(tile, kGreen | kBlue);
    return HWY_DYNAMIC_DISPATCH(packTile)(tile, bright, to);
}
void encodeTile(const std::array<const std::uint16_t*, 3>& light, const TileGlow& glow,
                const TilePixels& to) {
    static const std::array<float, kPackedTile + 16> kNoise = makeNoise();
    HWY_DYNAMIC_DISPATCH(encodeTile)(light, glow, kNoise.data(), to);
}

}  // namespace platform
#endif
