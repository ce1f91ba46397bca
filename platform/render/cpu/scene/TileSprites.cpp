// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileSprites.h"

#include <algorithm>
#include <cmath>
#include <optional>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileSprites.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileInk-inl.h"
#include "platform/render/cpu/scene/TileVision-inl.h"

#ifndef PLATFORM_TILE_SPRITES_ONCE
#define PLATFORM_TILE_SPRITES_ONCE
namespace platform {
namespace {

// Whether the picture's rows are mixed first: cheaper where a pixel row shows several rows,
// and few of them are alike.
bool mixesRows(const ScreenSprite& sprite) {
    const SpritePicture& picture = *sprite.picture;
    return picture.hasManyRuns() && std::abs(sprite.size.y) < 2.0 * picture.height;
}

std::size_t rowFloatsOf(const SpritePicture& picture) {
    return picture.channels * kTileStride;
}

}  // namespace
}  // namespace platform
#endif

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// A row of a picture: what its nodes hold, and their integral.
struct SpriteRow {
    const float* values = nullptr;
    const float* integrals = nullptr;
    int width = 0;  // texels
};

// The integral of a row up to the left edges of `count` pixels; the first edge is
// at `edge`, in texels, the next ones `step` on. One by one, since gathering three numbers for
// every edge takes processors longer.
void integrate(const SpriteRow& row, float edge, float step, int count, float* to) {
    const float last = static_cast<float>(row.width) + 0.5F;
    for (int i = 0; i < count; ++i) {
        const float along = edge + static_cast<float>(i) * step;
        // In this order a NaN becomes 0.5.
        const float at = std::min(std::max(0.5F, along + 0.5F), last);
        const int node = static_cast<int>(at);
        const float share = at - static_cast<float>(node);
        const float a = row.values[node];
        const float bend = share * share * 0.5F * (row.values[node + 1] - a);
        to[i] = row.integrals[node] + (share * a + bend);
    }
}

// The averages of pixels between the edges, and zeros behind them.
void makeRow(const SpriteRow& row, double edge, double step, int count, float* to) {
    const TileF d;
    alignas(64) float edges[kTileStride];
    integrate(row, static_cast<float>(edge), static_cast<float>(step), count + 1, edges);
    const auto share = hn::Set(d, static_cast<float>(1.0 / step));
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int i = 0; i < count; i += lanes) {
        const auto both = hn::Sub(hn::LoadU(d, edges + i + 1), hn::LoadU(d, edges + i));
        hn::StoreU(hn::Max(hn::Mul(both, share), hn::Zero(d)), d, to + i);
    }
    for (int i = count; i < (count + kTileMargin) / kTileMargin * kTileMargin; ++i)
        to[i] = 0.0F;
}

// The integral of a texel's share of the rows, from above all to `at`: the texel's
// middle is at 0 and its neighbours' are at −1 and 1.
inline double tentIntegral(double at) {
    if (at <= -1.0) return 0.0;
    if (at >= 1.0) return 1.0;
    return at < 0.0 ? 0.5 * (at + 1.0) * (at + 1.0) : 1.0 - 0.5 * (1.0 - at) * (1.0 - at);
}

// The nodes from `first` on of several rows weighed, into the desk's own row.
SpriteRow mixRows(const SpritePicture& picture, std::size_t channel, int first, int end,
                  SpriteDesk& desk) {
    const TileF d;
    float* const values = desk.mixed.data();
    float* const integrals = values + picture.stride;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int i = first; i < end; i += lanes) {
        auto value = hn::Zero(d);
        auto integral = hn::Zero(d);
        for (const RunShare& share : desk.shares) {
            const auto weight = hn::Set(d, share.share);
            const float* const from = picture.values(channel, share.run) + i;
            value = hn::Add(value, hn::Mul(hn::LoadU(d, from), weight));
            integral = hn::Add(integral, hn::Mul(hn::LoadU(d, from + picture.stride), weight));
        }
        hn::StoreU(value, d, values + i);
        hn::StoreU(integral, d, integrals + i);
    }
    return {values, integrals, picture.width};
}

// The share of each run in a pixel row, from `low` to `high` in texels.
void shareRuns(const SpritePicture& picture, double low, double high, SpriteDesk& desk) {
    desk.shares.clear();
    const double from = std::max(low, 0.0);
    const double to = std::min(high, static_cast<double>(picture.height));
    if (!(to > from)) return;
    const int last = picture.height - 1;
    const int end = std::min(last, static_cast<int>(std::floor(to + 0.5)));
    for (int y = std::max(0, static_cast<int>(std::floor(from - 0.5))); y <= end; ++y) {
        // The outermost texels reach on to the picture's edge.
        const auto upTo = [&](double at) {
            const double beyond = at - (y + 0.5);
            if (beyond < 0.0) return y == 0 ? 0.5 + beyond : tentIntegral(beyond);
            return y == last ? 0.5 + beyond : tentIntegral(beyond);
        };
        const auto share = static_cast<float>((upTo(to) - upTo(from)) / (high - low));
        const int run = picture.runOf[static_cast<std::size_t>(y)];
        if (share <= 0.0F || picture.runIsEmpty[static_cast<std::size_t>(run)]) continue;
        if (!desk.shares.empty() && desk.shares.back().run == run) {
            desk.shares.back().share += share;
        } else {
            desk.shares.push_back({run, share});
        }
    }
}

struct Columns {
    int first = 0;  // of the tile
    int count = 0;
    double edge = 0.0;  // where in the picture the first one begins, in texels
    double step = 1.0;  // texels a pixel
};

Columns columnsOf(double at, double size, int texels, int tileFirst, int tileCount) {
    const double low = std::min(at, at + size);
    const double high = std::max(at, at + size);
    const double first = std::max(std::floor(low), static_cast<double>(tileFirst));
    const double end = std::min(std::ceil(high), static_cast<double>(tileFirst + tileCount));
    Columns columns;
    if (!(end > first)) return columns;
    columns.first = static_cast<int>(first) - tileFirst;
    columns.count = static_cast<int>(end - first);
    columns.step = texels / size;
    columns.edge = (first - at) * columns.step;
    return columns;
}

// The covered share of each pixel that nothing nearer hides.
HWY_INLINE TileV seen(const ScreenSprite& sprite, const SceneTile& tile, std::ptrdiff_t at,
                      TileV covered) {
    const TileF d;
    if (tile.hidesNothing && !sprite.hiding.writes) return covered;
    const auto near = hn::Set(d, sprite.near);
    const auto share = sprite.hiding.reads ? shareSeen(d, tile, at, near) : hn::Set(d, 1.0F);
    return hn::Mul(covered, share);
}

// The weighed runs of a channel.
HWY_INLINE TileV weighed(const float* rows, std::ptrdiff_t runStride, const SpriteDesk& desk,
                         int x) {
    const TileF d;
    auto sum = hn::Zero(d);
    for (const RunShare& share : desk.shares)
        sum = hn::Add(
            sum, hn::Mul(hn::LoadU(d, rows + share.run * runStride + x), hn::Set(d, share.share)));
    return sum;
}

// `ink` is the sprite's only colour, if there is one.
void putRow(const ScreenSprite& sprite, SceneTile& tile, const SpriteDesk& desk,
            const Columns& columns, const TileInk* ink, int row) {
    const TileF d;
    const SpritePicture& picture = *sprite.picture;
    const auto runStride = static_cast<std::ptrdiff_t>(picture.channels) * kTileStride;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int x = 0; x < columns.count; x += lanes) {
        const std::ptrdiff_t at = SceneTile::at(columns.first + x, row);
        if (picture.hasOneColour) {
            const auto covered = weighed(desk.row.data(), runStride, desk, x);
            if (hn::AllTrue(d, hn::Le(covered, hn::Zero(d)))) continue;
            blendInk(d, *ink, at, seen(sprite, tile, at, covered));
            if (sprite.hiding.writes) putNear(d, tile, at, hn::Set(d, sprite.near), covered);
            continue;
        }
        const auto share = seen(sprite, tile, at, hn::Set(d, 1.0F));
        const auto alpha =
            hn::Mul(weighed(desk.row.data() + 3 * kTileStride, runStride, desk, x), share);
        const auto left = hn::Sub(hn::Set(d, 1.0F), hn::Mul(alpha, hn::Set(d, sprite.tint.a)));
        for (std::size_t k = 0; k < 3; ++k) {
            float* const plane = tile.light[k] + at;
            const auto texels = weighed(desk.row.data() + k * kTileStride, runStride, desk, x);
            const auto added =
                hn::Mul(hn::Mul(texels, share), hn::Set(d, sprite.tint[static_cast<int>(k)]));
            const auto old = hn::LoadU(d, plane);
            hn::StoreU(hn::Add(sprite.additive ? old : hn::Mul(old, left), added), d, plane);
        }
        if (sprite.hiding.writes) putNear(d, tile, at, hn::Set(d, sprite.near), alpha);
    }
}

// The pixels of a row of a sprite, and its picture's nodes that they show.
struct RowReach {
    Columns across;
    int firstNode = 0;
    int endNode = 0;
    RowReach(const SpritePicture& picture, const Columns& columns) : across(columns) {
        const double otherEdge = across.edge + across.step * across.count;
        const auto node = [&](double at) {
            return static_cast<int>(std::clamp(at, 0.0, static_cast<double>(picture.width)));
        };
        firstNode = node(std::min(across.edge, otherEdge) - 1.0);
        endNode = node(std::max(across.edge, otherEdge) + 1.0) + 3;
    }
};

// Mixes the desk's runs into one row. `mixedRun` is the run that the mixed row of before shows
// alone, if there is one: this row may show it too.
void makeMixedRow(const SpritePicture& picture, const RowReach& reach, int& mixedRun,
                  SpriteDesk& desk) {
    const Columns& across = reach.across;
    if (desk.shares.size() == 1 && desk.shares.front().run == mixedRun) {
        desk.shares.front().run = 0;
        return;
    }
    mixedRun = desk.shares.size() == 1 ? desk.shares.front().run : -1;
    const float share = mixedRun < 0 ? 1.0F : desk.shares.front().share;
    if (mixedRun >= 0) desk.shares.front().share = 1.0F;
    for (std::size_t k = 0; k < picture.channels; ++k)
        makeRow(mixRows(picture, k, reach.firstNode, reach.endNode, desk), across.edge, across.step,
                across.count, desk.row.data() + k * kTileStride);
    desk.shares.assign(1, {0, share});
}

// Makes the rows of the desk's runs that have not been made.
void makeRuns(const SpritePicture& picture, const Columns& across, SpriteDesk& desk) {
    for (const RunShare& share : desk.shares) {
        const auto run = static_cast<std::size_t>(share.run);
        if (desk.madeRuns[run]) continue;
        desk.madeRuns[run] = 1;
        for (std::size_t k = 0; k < picture.channels; ++k)
            makeRow({picture.values(k, share.run), picture.integrals(k, share.run), picture.width},
                    across.edge, across.step, across.count,
                    desk.row.data() + run * rowFloatsOf(picture) + k * kTileStride);
    }
}

void drawSprite(const ScreenSprite& sprite, SceneTile& tile, SpriteDesk& desk) {
    const SpritePicture& picture = *sprite.picture;
    const Columns across = columnsOf(sprite.at.x, sprite.size.x, picture.width, tile.x, tile.width);
    const Columns down = columnsOf(sprite.at.y, sprite.size.y, picture.height, tile.y, tile.height);
    if (across.count <= 0 || down.count <= 0) return;
    std::optional<TileInk> ink;
    if (picture.hasOneColour) {
        const glm::vec4 colour = picture.colour * sprite.tint;
        ink = inkFor({glm::vec3(colour), sprite.additive ? 0.0F : colour.a}, tile);
    } else {
        useColours(tile, kAllColours);
    }
    const bool mixes = mixesRows(sprite);
    const RowReach reach(picture, across);
    if (!mixes) desk.madeRuns.assign(static_cast<std::size_t>(picture.runs), 0);
    int mixedRun = -1;
    for (int row = 0; row < down.count; ++row) {
        const double a = down.edge + row * down.step;
        shareRuns(picture, std::min(a, a + down.step), std::max(a, a + down.step), desk);
        if (desk.shares.empty()) continue;
        if (mixes)
            makeMixedRow(picture, reach, mixedRun, desk);
        else
            makeRuns(picture, across, desk);
        putRow(sprite, tile, desk, across, ink ? &*ink : nullptr, down.first + row);
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawSprite);

void fitDesk(const ScreenSprite& sprite, SpriteDesk& desk) {
    const SpritePicture& picture = *sprite.picture;
    const bool mixes = mixesRows(sprite);
    const std::size_t rows = mixes ? 1 : static_cast<std::size_t>(picture.runs);
    const auto grow = [](auto& room, std::size_t needed) {
        if (room.size() < needed) room.resize(needed);
    };
    grow(desk.row, rowFloatsOf(picture) * rows + kTileMargin);
    if (mixes) grow(desk.mixed, 2 * static_cast<std::size_t>(picture.stride));
    desk.madeRuns.reserve(static_cast<std::size_t>(picture.runs));
    desk.shares.reserve(static_cast<std::size_t>(picture.height));
}

void drawSprite(const ScreenSprite& sprite, SceneTile& tile, SpriteDesk& desk) {
    HWY_DYNAMIC_DISPATCH(drawSprite)(sprite, tile, desk);
}

}  // namespace platform
#endif
