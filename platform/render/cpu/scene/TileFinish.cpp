// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileFinish.h"

#include <algorithm>
#include <array>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileFinish.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileEncoding-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using F = hn::CappedTag<float, kTileMargin>;
using U = hn::RebindToUnsigned<F>;
using I = hn::RebindToSigned<F>;

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
    for (std::size_t k = 0; k < 3; ++k)
        fillPlane(tile.light[k], rgb[k]);
    fillPlane(tile.near, 0.0F);
    tile.hidesNothing = true;
    tile.sampledNear = false;
    tile.sampledLight = false;
    tile.hasExcess = false;
}

void startExcess(SceneTile& tile) {
    if (tile.hasExcess) return;
    for (float* const plane : tile.excess)
        fillPlane(plane, 0.0F);
    tile.hasExcess = true;
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
    for (std::size_t k = 0; k < 3; ++k)
        for (std::ptrdiff_t at = first; at < last;
             at += static_cast<std::ptrdiff_t>(hn::Lanes(d))) {
            const auto light = hn::LoadU(d, tile.light[k] + at);
            for (const auto& sample : tile.sampleLight)
                hn::StoreU(light, d, sample[k] + at);
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

void putCells(const std::array<std::array<float, kTileStride>, 3>& sums, const BrightCells& bright,
              int row) {
    const int reduction = bright.reduction;
    const float share = 1.0F / static_cast<float>(reduction * reduction);
    const int across = std::max(1, kTileWidth / reduction);
    for (std::size_t k = 0; k < 3; ++k) {
        float* const to = bright.plane[k] + static_cast<std::ptrdiff_t>(row) * bright.stride;
        for (int cell = 0; cell < across; ++cell) {
            float sum = 0.0F;
            for (int i = 0; i < std::min(reduction, kTileWidth); ++i)
                sum += sums[k][static_cast<std::size_t>(cell * reduction + i)];
            to[cell] += sum * share;
        }
    }
}

// The light of some pixels, and how much there is of it at all.
struct SomeLight {
    hn::Vec<F> r, g, b;
    hn::Vec<F> most;
};

// Black right of the tile, where vectors end behind it.
SomeLight lightAt(const SceneTile& tile, int x, int row) {
    const F d;
    const std::ptrdiff_t at = SceneTile::at(x, row);
    SomeLight light{hn::LoadU(d, tile.light[0] + at), hn::LoadU(d, tile.light[1] + at),
                    hn::LoadU(d, tile.light[2] + at), hn::Zero(d)};
    if (x + static_cast<int>(hn::Lanes(d)) > tile.width) {
        const auto shown = hn::FirstN(d, static_cast<std::size_t>(tile.width - x));
        light.r = hn::IfThenElseZero(shown, light.r);
        light.g = hn::IfThenElseZero(shown, light.g);
        light.b = hn::IfThenElseZero(shown, light.b);
    }
    light.most = hn::Max(light.r, hn::Max(light.g, light.b));
    return light;
}

// Square roots in steps of 1 / `most`.
hn::Vec<U> stepsOf(hn::Vec<F> light, float most) {
    const F d;
    if (hn::AllTrue(d, hn::Le(light, hn::Zero(d)))) return hn::Zero(U());
    const auto shown = hn::Min(hn::Max(light, hn::Zero(d)), hn::Set(d, 1.0F));
    const auto root = hn::Add(hn::Mul(hn::Sqrt(shown), hn::Set(d, most)), hn::Set(d, 0.5F));
    return hn::BitCast(U(), hn::ConvertTo(I(), root));
}

// The bright light of some rows, column by column.
struct BrightSums {
    alignas(64) std::array<std::array<float, kTileStride>, 3> column{};
    bool any = false;

    void clear() {
        for (auto& plane : column)
            plane.fill(0.0F);
        any = false;
    }

    // Adds what is above the threshold, or what a dot or a line has above it.
    void add(const SceneTile& tile, const SomeLight& light, float threshold, int x, int row) {
        const F d;
        const hn::Vec<F> planes[3] = {light.r, light.g, light.b};
        hn::Vec<F> excess[3] = {hn::Zero(d), hn::Zero(d), hn::Zero(d)};
        auto most = hn::Sub(light.most, hn::Set(d, threshold));
        for (std::size_t k = 0; tile.hasExcess && k < 3; ++k) {
            excess[k] = hn::IfThenElseZero(hn::Gt(light.most, hn::Zero(d)),
                                           hn::LoadU(d, tile.excess[k] + SceneTile::at(x, row)));
            most = hn::Max(most, excess[k]);
        }
        if (hn::AllTrue(d, hn::Le(most, hn::Zero(d)))) return;
        any = true;
        for (std::size_t k = 0; k < 3; ++k) {
            const auto above = hn::Max(hn::Sub(planes[k], hn::Set(d, threshold)), excess[k]);
            float* const sum = column[k].data() + x;
            hn::StoreU(hn::Add(hn::LoadU(d, sum), hn::Max(above, hn::Zero(d))), d, sum);
        }
    }
};

PackedTile packTile(const SceneTile& tile, const BrightCells* bright, std::uint32_t* packed) {
    const F d;
    const U du;
    const int lanes = static_cast<int>(hn::Lanes(d));
    auto any = hn::Zero(du);
    PackedTile result;
    BrightSums sums;
    for (int row = 0; row < tile.height; ++row) {
        std::uint32_t* const to = packed + static_cast<std::ptrdiff_t>(row) * kTileWidth;
        for (int x = 0; x < tile.width; x += lanes) {
            const SomeLight light = lightAt(tile, x, row);
            if (hn::AllTrue(d, hn::Le(light.most, hn::Zero(d)))) {
                hn::StoreU(hn::Zero(du), du, to + x);
                continue;
            }
            const auto word = hn::Or(
                hn::ShiftLeft<22>(stepsOf(light.r, 1023.0F)),
                hn::Or(hn::ShiftLeft<10>(stepsOf(light.g, 4095.0F)), stepsOf(light.b, 1023.0F)));
            any = hn::Or(any, word);
            hn::StoreU(word, du, to + x);
            if (bright) sums.add(tile, light, bright->threshold, x, row);
        }
        if (!sums.any || ((row + 1) % bright->reduction != 0 && row + 1 != tile.height)) continue;
        putCells(sums.column, *bright, row / bright->reduction);
        sums.clear();
        result.bright = true;
    }
    result.lit = !hn::AllTrue(du, hn::Eq(any, hn::Zero(du)));
    return result;
}

// The encoded sum of packed light, as a square root, and of glow, which may be none.
hn::Vec<U> shownAt(hn::Vec<U> steps, float most, const float* glow, hn::Vec<F> noise) {
    const F d;
    if (!glow && hn::AllTrue(U(), hn::Eq(steps, hn::Zero(U())))) return steps;
    auto root = hn::Mul(hn::ConvertTo(d, hn::BitCast(I(), steps)), hn::Set(d, 1.0F / most));
    if (glow)
        root =
            hn::Sqrt(hn::Min(hn::Add(hn::Mul(root, root), hn::LoadU(d, glow)), hn::Set(d, 1.0F)));
    return hn::BitCast(U(), hn::ConvertTo(I(), hn::Add(encoded(d, root), noise)));
}

void encodeRow(const std::uint32_t* packed, const std::array<const float*, 3>& glow,
               const float* noise, std::uint32_t* to, int width) {
    const F d;
    const U du;
    const bool glows = glow[0] || glow[1] || glow[2];
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int x = 0; x < width; x += lanes) {
        const auto word = hn::LoadU(du, packed + x);
        auto result = hn::Set(du, 0xFF000000U);
        if (glows || !hn::AllTrue(du, hn::Eq(word, hn::Zero(du)))) {
            const auto grain = hn::LoadU(d, noise + x);
            const auto shown = [&](auto steps, float most, std::size_t k) {
                return shownAt(steps, most, glow[k] ? glow[k] + x : nullptr, grain);
            };
            const auto r = shown(hn::ShiftRight<22>(word), 1023.0F, 0);
            const auto g = shown(hn::And(hn::ShiftRight<10>(word), hn::Set(du, 4095U)), 4095.0F, 1);
            const auto b = shown(hn::And(word, hn::Set(du, 1023U)), 1023.0F, 2);
            result = hn::Or(hn::Or(result, hn::ShiftLeft<16>(r)), hn::Or(hn::ShiftLeft<8>(g), b));
        }
        if (x + lanes <= width) {
            hn::StoreU(result, du, to + x);
        } else {
            std::array<std::uint32_t, HWY_MAX_BYTES / 4> last{};
            hn::StoreU(result, du, last.data());
            std::copy_n(last.data(), width - x, to + x);
        }
    }
}

void encodeTile(const std::uint32_t* packed, const TileGlow& glow, const float* noise,
                const TilePixels& to) {
    for (int row = 0; row < to.height; ++row) {
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(row) * kTileWidth;
        std::array<const float*, 3> rows{};
        for (std::size_t k = 0; k < 3; ++k)
            rows[k] = glow.plane[k] ? glow.plane[k] + at : nullptr;
        encodeRow(packed + at, rows, noise + at,
                  to.pixels + static_cast<std::ptrdiff_t>(row) * to.stride, to.width);
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(clearTile);
HWY_EXPORT(startExcess);
HWY_EXPORT(sampleNearness);
HWY_EXPORT(sampleLight);
HWY_EXPORT(leastNear);
HWY_EXPORT(resolveLight);
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

void clearTile(SceneTile& tile, const float* rgb) {
    HWY_DYNAMIC_DISPATCH(clearTile)(tile, rgb);
}
void startExcess(SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(startExcess)(tile);
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
PackedTile packTile(const SceneTile& tile, const BrightCells* bright, std::uint32_t* packed) {
    return HWY_DYNAMIC_DISPATCH(packTile)(tile, bright, packed);
}
void encodeTile(const std::uint32_t* packed, const TileGlow& glow, const TilePixels& to) {
    static const std::array<float, kPackedTile + 16> kNoise = makeNoise();
    HWY_DYNAMIC_DISPATCH(encodeTile)(packed, glow, kNoise.data(), to);
}

}  // namespace platform
#endif
