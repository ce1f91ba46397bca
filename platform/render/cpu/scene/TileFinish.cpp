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

void sampleLight(SceneTile& tile) {
    if (tile.sampledLight) return;
    for (const auto& sample : tile.sampleLight)
        for (std::size_t k = 0; k < 3; ++k)
            copyPlane(tile.light[k], sample[k]);
    tile.sampledLight = true;
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
    for (std::size_t k = 0; k < 3; ++k) {
        for (std::size_t i = 0; i < SceneTile::kPlane; i += hn::Lanes(d)) {
            const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(i) - kTileMargin;
            auto sum = hn::LoadU(d, tile.sampleLight[0][k] + at);
            for (std::size_t s = 1; s < kSamples; ++s)
                sum = hn::Add(sum, hn::LoadU(d, tile.sampleLight[s][k] + at));
            hn::StoreU(hn::Mul(sum, share), d, tile.light[k] + at);
        }
    }
    tile.sampledLight = false;
}

// The light of a row above the threshold, column by column.
template <typename V>
V addBright(V light, V excess, float threshold, float* sums) {
    const F d;
    const V above = hn::Max(hn::Sub(light, hn::Set(d, threshold)), excess);
    hn::StoreU(hn::Add(hn::LoadU(d, sums), above), d, sums);
    return above;
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

PackedTile packTile(const SceneTile& tile, const BrightCells* bright, std::uint32_t* packed) {
    const F d;
    const U du;
    const auto one = hn::Set(d, 1.0F);
    const auto half = hn::Set(d, 0.5F);
    const auto step10 = hn::Set(d, 1023.0F);
    const auto step12 = hn::Set(d, 4095.0F);
    auto any = hn::Zero(du);
    auto above = hn::Zero(d);
    std::array<std::array<float, kTileStride>, 3> sums{};
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int row = 0; row < tile.height; ++row) {
        for (int x = 0; x < tile.width; x += lanes) {
            const std::ptrdiff_t at = SceneTile::at(x, row);
            const auto r = hn::LoadU(d, tile.light[0] + at);
            const auto g = hn::LoadU(d, tile.light[1] + at);
            const auto b = hn::LoadU(d, tile.light[2] + at);
            const auto bits = [&](auto light, auto step) {
                const auto shown = hn::Min(hn::Max(light, hn::Zero(d)), one);
                const auto root = hn::Add(hn::Mul(hn::Sqrt(shown), step), half);
                return hn::BitCast(du, hn::ConvertTo(I(), root));
            };
            const auto word = hn::Or(hn::ShiftLeft<22>(bits(r, step10)),
                                     hn::Or(hn::ShiftLeft<10>(bits(g, step12)), bits(b, step10)));
            any = hn::Or(any, word);
            hn::StoreU(word, du, packed + static_cast<std::ptrdiff_t>(row) * kTileWidth + x);
            if (!bright) continue;
            const auto most = hn::Max(r, hn::Max(g, b));
            above = hn::Max(above, most);
            if (!tile.hasExcess) continue;
            const auto more = hn::Max(
                hn::LoadU(d, tile.excess[0] + at),
                hn::Max(hn::LoadU(d, tile.excess[1] + at), hn::LoadU(d, tile.excess[2] + at)));
            above = hn::IfThenElse(hn::Gt(more, hn::Zero(d)), hn::Set(d, 1e30F), above);
        }
    }
    PackedTile result{.lit = !hn::AllTrue(du, hn::Eq(any, hn::Zero(du)))};
    if (!bright || hn::GetLane(hn::MaxOfLanes(d, above)) <= bright->threshold) return result;
    result.bright = true;
    for (int row = 0; row < tile.height; ++row) {
        if (row % bright->reduction == 0)
            for (auto& plane : sums)
                plane.fill(0.0F);
        for (int x = 0; x < tile.width; x += lanes)
            for (std::size_t k = 0; k < 3; ++k) {
                const std::ptrdiff_t at = SceneTile::at(x, row);
                const auto excess =
                    tile.hasExcess ? hn::LoadU(d, tile.excess[k] + at) : hn::Zero(d);
                addBright(hn::LoadU(d, tile.light[k] + at), excess, bright->threshold,
                          sums[k].data() + x);
            }
        for (auto& plane : sums)
            std::fill(plane.begin() + tile.width, plane.end(), 0.0F);
        if ((row + 1) % bright->reduction == 0 || row + 1 == tile.height)
            putCells(sums, *bright, row / bright->reduction);
    }
    return result;
}

template <typename V>
auto rounded(V light, V noise) {
    const F d;
    return hn::BitCast(U(), hn::ConvertTo(I(), hn::Add(encoded(d, light), noise)));
}

void encodeRow(const std::uint32_t* packed, const std::array<const float*, 3>& glow, bool glows,
               const float* noise, std::uint32_t* to, int width) {
    const F d;
    const U du;
    const auto opaque = hn::Set(du, 0xFF000000U);
    const auto unpack10 = hn::Set(d, 1.0F / 1023.0F);
    const auto unpack12 = hn::Set(d, 1.0F / 4095.0F);
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int x = 0; x < width; x += lanes) {
        const auto word = hn::LoadU(du, packed + x);
        auto result = opaque;
        if (glows || !hn::AllTrue(du, hn::Eq(word, hn::Zero(du)))) {
            const auto grain = hn::LoadU(d, noise + x);
            const auto shown = [&](auto bits, auto step, std::size_t k) {
                const auto root = hn::Mul(hn::ConvertTo(d, hn::BitCast(I(), bits)), step);
                if (!glows) return rounded(root, grain);
                const auto light = hn::Add(hn::Mul(root, root), hn::LoadU(d, glow[k] + x));
                return rounded(hn::Sqrt(hn::Min(light, hn::Set(d, 1.0F))), grain);
            };
            const auto r = shown(hn::ShiftRight<22>(word), unpack10, 0);
            const auto g =
                shown(hn::And(hn::ShiftRight<10>(word), hn::Set(du, 4095U)), unpack12, 1);
            const auto b = shown(hn::And(word, hn::Set(du, 1023U)), unpack10, 2);
            result = hn::Or(hn::Or(opaque, hn::ShiftLeft<16>(r)), hn::Or(hn::ShiftLeft<8>(g), b));
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

void encodeTile(const std::uint32_t* packed, const TileGlow* glow, const float* noise,
                const TilePixels& to) {
    for (int row = 0; row < to.height; ++row) {
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(row) * kTileWidth;
        std::array<const float*, 3> rows{};
        for (std::size_t k = 0; glow && k < 3; ++k)
            rows[k] = glow->plane[k] + at;
        encodeRow(packed + at, rows, glow != nullptr, noise + at,
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
void sampleLight(SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(sampleLight)(tile);
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
void encodeTile(const std::uint32_t* packed, const TileGlow* glow, const TilePixels& to) {
    static const std::array<float, kPackedTile + 16> kNoise = makeNoise();
    HWY_DYNAMIC_DISPATCH(encodeTile)(packed, glow, kNoise.data(), to);
}

}  // namespace platform
#endif
