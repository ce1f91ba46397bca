// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileFloor.h"

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileFloor.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// The share of each kind of stripe in a pixel: its middle is at `at` and it is
// `wide` across, both in repeats.
TileV stripeShare(const StripePicture::Kind& kind, TileV low, TileV high, TileV perWidth) {
    const TileF d;
    const float length = kind.to - kind.from;
    const auto upTo = [&](TileV at) {
        const auto whole = hn::Floor(at);
        const auto part = hn::Sub(hn::Sub(at, whole), hn::Set(d, kind.from));
        const auto within = hn::Min(hn::Max(part, hn::Zero(d)), hn::Set(d, length));
        return hn::Add(hn::Mul(whole, hn::Set(d, length)), within);
    };
    return hn::Mul(hn::Sub(upTo(high), upTo(low)), perWidth);
}

// The part of a picture's side that each pixel shows, from `low` to `high`, in repeats.
struct SidePart {
    TileV low, high, wide;
    SidePart(TileV at, TileV across) : wide(across) {
        const auto half = hn::Mul(across, hn::Set(TileF(), 0.5F));
        // Numbers near 0 are the most precise.
        const auto middle = hn::Sub(at, hn::Floor(at));
        low = hn::Sub(middle, half);
        high = hn::Add(middle, half);
    }
};

// The shares of all kinds along one side of the picture.
inline void stripeShares(const StripePicture::Kind* kinds, std::size_t count, const SidePart& part,
                         TileV* shares) {
    const auto one = hn::Set(TileF(), 1.0F);
    const auto perWidth = hn::Div(one, part.wide);
    shares[0] = one;
    for (std::size_t i = 1; i < count; ++i) {
        shares[i] = stripeShare(kinds[i], part.low, part.high, perWidth);
        shares[0] = hn::Sub(shares[0], shares[i]);
    }
}

// Whether the pixels show the first kind alone, the rest of the side.
inline bool isRest(const StripePicture::Kind* kinds, std::size_t count, const SidePart& part) {
    const TileF d;
    auto rest = hn::Ge(part.low, part.low);
    for (std::size_t i = 1; i < count; ++i)
        rest = hn::And(rest, hn::And(hn::Ge(part.low, hn::Set(d, kinds[i].to)),
                                     hn::Le(part.high, hn::Set(d, 1.0F + kinds[i].from))));
    return hn::AllTrue(d, rest);
}

// A plane's values along a row of a tile, and what a pixel down adds.
struct RowOf {
    float first = 0.0F;
    float step = 0.0F;
    float down = 0.0F;
    RowOf(const Plane& plane, const SceneTile& tile, int row)
        : first(static_cast<float>(plane.at(tile.x, tile.y + row + 0.5))),
          step(static_cast<float>(plane.a)),
          down(static_cast<float>(plane.b)) {}
    [[nodiscard]] TileV at(TileV column) const {
        const TileF d;
        return hn::Add(hn::Set(d, first), hn::Mul(column, hn::Set(d, step)));
    }
};

// The size of a pixel in repeats of the picture, from its width and its height; at least one
// texel.
TileV across(const RowOf& plane, const RowOf& near, TileV value, TileV depth, float texel) {
    const TileF d;
    const auto along =
        hn::Mul(hn::Sub(hn::Set(d, plane.step), hn::Mul(value, hn::Set(d, near.step))), depth);
    const auto down =
        hn::Mul(hn::Sub(hn::Set(d, plane.down), hn::Mul(value, hn::Set(d, near.down))), depth);
    return hn::Max(hn::Add(hn::Abs(along), hn::Abs(down)), hn::Set(d, texel));
}

// The light of each kind of column where a pixel shows this part of the rows.
template <std::size_t kColumns>
void mixRows(const StripePicture& stripes, const SidePart& part, TileV (&colours)[kColumns][3]) {
    const TileF d;
    TileV rows[StripePicture::kMostKinds];
    stripeShares(stripes.row, stripes.rowKinds, part, rows);
    for (std::size_t i = 0; i < kColumns; ++i)
        for (int k = 0; k < 3; ++k) {
            auto sum = hn::Mul(rows[0], hn::Set(d, stripes.colour[i][0][k]));
            for (std::size_t j = 1; j < stripes.rowKinds; ++j)
                sum = hn::Add(sum, hn::Mul(rows[j], hn::Set(d, stripes.colour[i][j][k])));
            colours[i][k] = sum;
        }
}

// Whether nearness and the picture's row are the same along a row of pixels.
bool isEven(const ScreenFloor& floor, const SceneTile& tile, int row) {
    constexpr double kEven = 1e-4;  // of what there is, or of a repeat
    const double near = floor.near.at(tile.x, tile.y + row + 0.5);
    if (!(near > 1e-5) || std::abs(floor.near.a) * kTileWidth > kEven * near) return false;
    const double v = floor.v.at(tile.x, tile.y + row + 0.5) / near;
    const double step = (floor.v.a - v * floor.near.a) / near;
    return std::abs(step) * kTileWidth < kEven;
}

// One row of a tile's pixels at work, for a picture of so many kinds of columns.
template <std::size_t kColumns>
class FloorRow {
  public:
    FloorRow(const ScreenFloor& floor, const ScreenLens& lens, SceneTile& tile, int row)
        : floor_(floor),
          tile_(tile),
          row_(row),
          near_(floor.near, tile, row),
          u_(floor.u, tile, row),
          v_(floor.v, tile, row),
          dx_(Plane{lens.perPixel.x, 0.0, -lens.middle.x * lens.perPixel.x}, tile, row),
          dy_((lens.middle.y - (static_cast<float>(tile.y + row) + 0.5F)) * lens.perPixel.y),
          isLevel_(isEven(floor, tile, row)),
          isDark_(floor.additive || floor.fog == glm::vec3(0.0F)) {}

    void draw() {
        const TileF d;
        const auto half = hn::Set(d, 0.5F * kTileWidth);
        if (isLevel_) {
            // Where the camera stands upright, a row of pixels shows one row of the picture.
            mixAt(half, hn::Div(hn::Set(d, 1.0F), near_.at(half)));
        }
        isSparse_ = isLevel_ && isDark_ && isRestBlack();
        const bool skips = isSparse_ && findStripes();
        for (int x = 0; x < tile_.width; x += static_cast<int>(hn::Lanes(d))) {
            if (skips) x = nextStripe(x);
            if (x < tile_.width) drawSome(x);
        }
    }

  private:
    void mixAt(TileV column, TileV depth) {
        const auto at = hn::Mul(v_.at(column), depth);
        mixRows(floor_.stripes, SidePart(at, across(v_, near_, at, depth, floor_.stripes.texel.y)),
                colours_);
    }

    // Whether there is light in the picture's special columns alone.
    [[nodiscard]] bool isRestBlack() const {
        const TileF d;
        const auto most = hn::Max(colours_[0][0], hn::Max(colours_[0][1], colours_[0][2]));
        return hn::AllTrue(d, hn::Le(most, hn::Zero(d)));
    }

    // Whether stripes lie at even distances along the row; finds their reach.
    bool findStripes() {
        if (std::abs(near_.step) * kTileWidth > 1e-7F * near_.first) return false;
        depth_ = 1.0F / near_.first;
        const auto slant = [&](float column) {
            const float u = (u_.first + column * u_.step) * depth_;
            return std::abs(u_.down - u * near_.down);
        };
        const float wide = std::abs(u_.step) + std::max(slant(0.0F), slant(kTileWidth));
        constexpr float kRounding = 1e-4F;
        reach_ = 0.5F * std::max(wide * depth_, floor_.stripes.texel.x) + kRounding;
        return std::abs(u_.step) * depth_ > 1e-6F;
    }

    // The first column from `x` on that may show a stripe, or a later one than the tile has.
    [[nodiscard]] int nextStripe(int x) const {
        const float step = u_.step * depth_;
        const float u = (u_.first + (static_cast<float>(x) + 0.5F) * u_.step) * depth_;
        float columns = kTileWidth;
        for (std::size_t i = 1; i < kColumns; ++i) {
            const float from = floor_.stripes.column[i].from - reach_;
            const float to = floor_.stripes.column[i].to + reach_;
            // The way to the stripe's near side, in repeats.
            const float way = step > 0.0F ? from - u : u - to;
            const float ahead = way - std::floor(way);
            if (ahead >= 1.0F - (to - from)) return x;
            columns = std::min(columns, ahead / std::abs(step));
        }
        return x + static_cast<int>(columns);
    }

    void drawSome(int x) {
        const TileF d;
        const auto column = pixelsFrom(x);
        const auto nearness = near_.at(column);
        const auto before = hn::Gt(nearness, hn::Set(d, 1e-5F));
        if (hn::AllFalse(d, before)) return;
        const std::ptrdiff_t at = SceneTile::at(x, row_);
        const auto one = hn::Set(d, 1.0F);
        const auto depth = hn::Div(one, hn::IfThenElse(before, nearness, one));
        TileV light[3] = {hn::Zero(d), hn::Zero(d), hn::Zero(d)};
        if (lightAt(column, depth, light)) {
            for (std::size_t k = 0; k < 3; ++k) {
                if (!holds(floor_.colours, k)) continue;
                float* const plane = tile_.light[k] + at;
                const auto seen = hn::IfThenElseZero(before, light[k]);
                hn::StoreU(hn::Add(hn::LoadU(d, plane), seen), d, plane);
            }
        }
    }

    // False where there is none.
    bool lightAt(TileV column, TileV depth, TileV* light) {
        const TileF d;
        const StripePicture& stripes = floor_.stripes;
        const auto uAt = hn::Mul(u_.at(column), depth);
        const SidePart part(uAt, across(u_, near_, uAt, depth, stripes.texel.x));
        if (isSparse_ && isRest(stripes.column, kColumns, part)) return false;
        const auto one = hn::Set(d, 1.0F);
        const auto clear = clearAt(column, depth);
        // Far away there is only fog, which adds nothing where it is black.
        if (isDark_ && hn::AllTrue(d, hn::Le(clear, hn::Zero(d)))) return false;
        TileV columns[kColumns];
        stripeShares(stripes.column, kColumns, part, columns);
        if (!isLevel_) mixAt(column, depth);
        auto most = hn::Zero(d);
        for (int k = 0; k < 3; ++k) {
            if (!holds(floor_.colours, static_cast<std::size_t>(k))) continue;
            auto sum = hn::Mul(colours_[0][k], columns[0]);
            for (std::size_t i = 1; i < kColumns; ++i)
                sum = hn::Add(sum, hn::Mul(colours_[i][k], columns[i]));
            light[k] = hn::Mul(hn::Mul(sum, hn::Set(d, floor_.light[k])), clear);
            most = hn::Max(most, light[k]);
        }
        if (isDark_) return !hn::AllTrue(d, hn::Le(most, hn::Zero(d)));
        const auto foggy = hn::Sub(one, clear);
        for (int k = 0; k < 3; ++k)
            if (holds(floor_.colours, static_cast<std::size_t>(k)))
                light[k] = hn::Add(light[k], hn::Mul(foggy, hn::Set(d, floor_.fog[k])));
        return true;
    }

    // The share of the light that the fog leaves.
    [[nodiscard]] TileV clearAt(TileV column, TileV depth) const {
        const TileF d;
        const auto one = hn::Set(d, 1.0F);
        if (!floor_.hasFog) return one;
        const auto dx = dx_.at(column);
        const auto away =
            hn::Mul(depth, hn::Sqrt(hn::Add(hn::Mul(dx, dx), hn::Set(d, dy_ * dy_ + 1.0F))));
        const auto fog =
            hn::Mul(hn::Sub(away, hn::Set(d, floor_.fogStart)), hn::Set(d, floor_.fogShare));
        return hn::Sub(one, hn::Min(hn::Max(fog, hn::Zero(d)), one));
    }

    const ScreenFloor& floor_;
    SceneTile& tile_;
    const int row_;
    const RowOf near_, u_, v_, dx_;
    const float dy_;
    const bool isLevel_;
    const bool isDark_;           // no light but the picture's
    bool isSparse_ = false;       // the first kind of column is black along the row
    float depth_ = 0.0F;          // of the row, while stripes are skipped to
    float reach_ = 0.0F;          // of a stripe beyond its sides, in repeats
    TileV colours_[kColumns][3];  // of each kind of column
};

// Removes the light behind the floor.
void blackenRow(const ScreenFloor& floor, SceneTile& tile, int row) {
    const TileF d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const RowOf near(floor.near, tile, row);
    for (int x = 0; x < tile.width; x += lanes) {
        const auto before = hn::Gt(near.at(pixelsFrom(x)), hn::Set(d, 1e-5F));
        for (std::size_t k = 0; k < 3; ++k) {
            if (!holds(tile.colours, k)) continue;
            float* const plane = tile.light[k] + SceneTile::at(x, row);
            hn::StoreU(hn::IfThenZeroElse(before, hn::LoadU(d, plane)), d, plane);
        }
    }
}

// Keeps how near the floor is.
void putNearness(const ScreenFloor& floor, SceneTile& tile, int row) {
    const TileF d;
    const RowOf near(floor.near, tile, row);
    for (int x = 0; x < tile.width; x += static_cast<int>(hn::Lanes(d))) {
        const auto nearness = near.at(pixelsFrom(x));
        const auto before = hn::Gt(nearness, hn::Set(d, 1e-5F));
        float* const to = tile.near + SceneTile::at(x, row);
        hn::StoreU(hn::IfThenElse(before, nearness, hn::LoadU(d, to)), d, to);
    }
}

template <std::size_t kColumns>
void drawRows(const ScreenFloor& floor, const ScreenLens& lens, SceneTile& tile) {
    for (int row = 0; row < tile.height; ++row)
        FloorRow<kColumns>(floor, lens, tile, row).draw();
}

void drawLight(const ScreenFloor& floor, const ScreenLens& lens, SceneTile& tile) {
    static_assert(StripePicture::kMostKinds == 4);
    constexpr decltype(&drawRows<1>) kDraw[] = {drawRows<1>, drawRows<2>, drawRows<3>, drawRows<4>};
    kDraw[floor.stripes.columnKinds - 1](floor, lens, tile);
}

// Draws the floor's light alone, into a tile of its own, and keeps it.
void keepLight(const ScreenFloor& floor, const ScreenLens& lens, const SceneTile& tile,
               KeptFloor& kept) {
    constexpr std::size_t kRoom = kTilePlane + 2 * kTileMargin;
    alignas(64) std::array<std::array<float, kRoom>, 3> room;
    SceneTile alone = tile;
    for (std::size_t k = 0; k < 3; ++k) {
        if (holds(floor.colours, k)) room[k].fill(0.0F);
        alone.light[k] = room[k].data() + kTileMargin;
    }
    drawLight(floor, lens, alone);
    keepTile(alone, floor.colours, kept);
}

void addLight(const ScreenFloor& floor, const KeptFloor& kept, SceneTile& tile) {
    const TileF d;
    for (std::size_t k = 0; k < 3; ++k) {
        if (!holds(floor.colours, k)) continue;
        const float* from = kept.plane[k];
        for (int row = 0; row < tile.height; ++row) {
            const unsigned lit = kept.lit[static_cast<std::size_t>(row)];
            for (int part = 0; part < kFloorParts; ++part) {
                if ((lit >> part & 1U) == 0) continue;
                float* const to = tile.light[k] + SceneTile::at(part * kFloorPart, row);
                for (std::size_t x = 0; x < kFloorPart; x += hn::Lanes(d))
                    hn::StoreU(hn::Add(hn::LoadU(d, to + x), hn::LoadU(d, from + x)), d, to + x);
                from += kFloorPart;
            }
        }
    }
}

void drawFloor(const ScreenFloor& floor, const ScreenLens& lens, SceneTile& tile, bool isLast,
               KeptFloor* kept) {
    if (floor.blackens) {
        for (int row = 0; row < tile.height; ++row)
            blackenRow(floor, tile, row);
        return;
    }
    if (kept) {
        if (!kept->isKnown) keepLight(floor, lens, tile, *kept);
        addLight(floor, *kept, tile);
    } else {
        drawLight(floor, lens, tile);
    }
    if (!floor.hiding.writes || isLast) return;
    for (int row = 0; row < tile.height; ++row)
        putNearness(floor, tile, row);
    // Only the mirrored scene lies behind the floor, and nothing of it where no floor is.
    tile.sampledNear = false;
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawFloor);

void drawFloor(const ScreenFloor& floor, const ScreenLens& lens, SceneTile& tile, bool isLast,
               KeptFloor* kept) {
    HWY_DYNAMIC_DISPATCH(drawFloor)(floor, lens, tile, isLast, kept);
}

}  // namespace platform
#endif
