// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TilePacking.h"

#include <algorithm>

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

inline bool holds(unsigned colours, std::size_t k) {
    return (colours >> k & 1U) != 0;
}

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

// Packs some rows of a tile, and sums their bright light.
class PackRows {
  public:
    PackRows(const SceneTile& tile, const BrightCells* bright,
             const std::array<std::uint16_t*, 3>& to)
        : tile_(tile), bright_(bright), to_(to) {}

    void pack(int top, int end) {
        brightColours_ = 0;
        for (int x = 0; x < tile_.width; x += static_cast<int>(hn::Lanes(F())))
            packColumns(x, top, end);
    }
    // The colours with bright light in the last rows packed.
    [[nodiscard]] unsigned brightColours() const { return brightColours_; }
    [[nodiscard]] const ColumnSums& sums() const { return sums_; }
    [[nodiscard]] unsigned lit() const {
        unsigned lit = 0;
        for (std::size_t k = 0; k < 3; ++k)
            if (!hn::AllTrue(I(), hn::Eq(any_[k], hn::Zero(I())))) lit |= 1U << k;
        return lit;
    }

  private:
    void packColumns(int x, int top, int end) {
        const F d;
        hn::Vec<F> sum[3] = {hn::Zero(d), hn::Zero(d), hn::Zero(d)};
        bool isBright = false;
        for (int row = top; row < end; ++row)
            isBright |= packSome(x, row, sum);
        if (!bright_) return;
        for (std::size_t k = 0; k < 3; ++k)
            hn::StoreU(sum[k], d, sums_[k].data() + x);
        if (!isBright) return;
        for (std::size_t k = 0; k < 3; ++k)
            if (!hn::AllTrue(d, hn::Le(sum[k], hn::Zero(d)))) brightColours_ |= 1U << k;
    }

    // Returns whether bright light was added to the sums.
    bool packSome(int x, int row, hn::Vec<F> (&sum)[3]) {
        const F d;
        const Packed dp;
        const std::ptrdiff_t from = SceneTile::at(x, row);
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(row) * kTileWidth + x;
        hn::Vec<F> light[3];
        auto most = hn::Zero(d);
        for (std::size_t k = 0; k < 3; ++k) {
            light[k] = hn::Zero(d);
            if (!holds(tile_.colours, k)) continue;
            light[k] = shown(x, hn::LoadU(d, tile_.light[k] + from));
            most = hn::Max(most, light[k]);
        }
        if (hn::AllTrue(d, hn::Le(most, hn::Zero(d)))) {
            for (std::size_t k = 0; k < 3; ++k)
                if (holds(tile_.colours, k)) hn::StoreU(hn::Zero(dp), dp, to_[k] + at);
            return false;
        }
        for (std::size_t k = 0; k < 3; ++k) {
            if (!holds(tile_.colours, k)) continue;
            const auto share = hn::Min(hn::Max(light[k], hn::Zero(d)), hn::Set(d, 1.0F));
            const auto steps = hn::ConvertTo(
                I(), hn::Add(hn::Mul(share, hn::Set(d, kMostPacked)), hn::Set(d, 0.5F)));
            any_[k] = hn::Or(any_[k], steps);
            hn::StoreU(hn::DemoteTo(dp, steps), dp, to_[k] + at);
        }
        return bright_ && addBright(light, most, from, sum);
    }

    // Adds what is above the threshold, or what a dot or a line has above it.
    bool addBright(const hn::Vec<F> (&light)[3], hn::Vec<F> most, std::ptrdiff_t from,
                   hn::Vec<F> (&sum)[3]) const {
        const F d;
        const auto threshold = hn::Set(d, bright_->threshold);
        hn::Vec<F> excess[3] = {hn::Zero(d), hn::Zero(d), hn::Zero(d)};
        auto above = hn::Sub(most, threshold);
        for (std::size_t k = 0; k < 3; ++k) {
            if (!holds(tile_.excessColours, k)) continue;
            excess[k] =
                hn::IfThenElseZero(hn::Gt(most, hn::Zero(d)), hn::LoadU(d, tile_.excess[k] + from));
            above = hn::Max(above, excess[k]);
        }
        if (hn::AllTrue(d, hn::Le(above, hn::Zero(d)))) return false;
        for (std::size_t k = 0; k < 3; ++k)
            if (holds(tile_.colours, k))
                sum[k] = hn::Add(
                    sum[k], hn::Max(hn::Max(hn::Sub(light[k], threshold), excess[k]), hn::Zero(d)));
        return true;
    }

    // Black right of the tile, where vectors end behind it.
    [[nodiscard]] hn::Vec<F> shown(int x, hn::Vec<F> light) const {
        const F d;
        if (x + static_cast<int>(hn::Lanes(d)) <= tile_.width) return light;
        return hn::IfThenElseZero(hn::FirstN(d, static_cast<std::size_t>(tile_.width - x)), light);
    }

    const SceneTile& tile_;
    const BrightCells* const bright_;
    const std::array<std::uint16_t*, 3>& to_;
    hn::Vec<I> any_[3] = {hn::Zero(I()), hn::Zero(I()), hn::Zero(I())};
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

PackedColours packTile(const SceneTile& tile, const BrightCells* bright,
                       const std::array<std::uint16_t*, 3>& to) {
    PackedColours result;
    PackRows rows(tile, bright, to);
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

// A row of a tile: its light and its glow, each of which may be none, by the colour.
struct LitRow {
    std::array<const std::uint16_t*, 3> light{};
    std::array<const float*, 3> glow{};
};

// The encoded sum of packed light and glow.
hn::Vec<U> shownAt(const LitRow& row, std::size_t k, int x, hn::Vec<F> noise) {
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
        plane = std::make_unique_for_overwrite<std::uint16_t[]>(tiles * kPackedTile + kBeyond);
    tiles_ = tiles;
}

PackedColours packTile(const SceneTile& tile, const BrightCells* bright,
                       const std::array<std::uint16_t*, 3>& to) {
    return HWY_DYNAMIC_DISPATCH(packTile)(tile, bright, to);
}
void encodeTile(const std::array<const std::uint16_t*, 3>& light, const TileGlow& glow,
                const TilePixels& to) {
    static const std::array<float, kPackedTile + 16> kNoise = makeNoise();
    HWY_DYNAMIC_DISPATCH(encodeTile)(light, glow, kNoise.data(), to);
}

}  // namespace platform
#endif
