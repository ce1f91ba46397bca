// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileBodies.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileBodies.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

TileV middlesFrom(int x) {
    return hn::Add(columnsFrom(x), hn::Set(TileF(), 0.5F));
}

int inside(float value, int most) {
    return static_cast<int>(std::clamp(value, 0.0F, static_cast<float>(most)));
}

// A ball's coverage and nearness, for each pixel.
struct BallHit {
    TileV covered;
    TileV near;
};

BallHit hit(const ScreenBall& ball, const ScreenLens& lens, TileV dx, float dy) {
    const TileF d;
    const glm::vec3& c = ball.middle;
    const float square = ball.radius * ball.radius;
    const auto one = hn::Set(d, 1.0F);
    const auto length = hn::Add(hn::Mul(dx, dx), hn::Set(d, dy * dy + 1.0F));
    // The distance at which the pixel's ray passes the middle: the ray's cross product with it.
    const auto crossX = hn::Set(d, dy * c.z - c.y);
    const auto crossY = hn::Sub(hn::Set(d, c.x), hn::Mul(dx, hn::Set(d, c.z)));
    const auto crossZ = hn::Sub(hn::Mul(dx, hn::Set(d, c.y)), hn::Set(d, dy * c.x));
    const auto past =
        hn::Add(hn::Add(hn::Mul(crossX, crossX), hn::Mul(crossY, crossY)), hn::Mul(crossZ, crossZ));
    const auto depth = hn::Sub(hn::Mul(length, hn::Set(d, square)), past);
    // The growth of the depth from a pixel to the next gives the distance of the rim.
    const auto growX =
        hn::Add(hn::Mul(dx, hn::Set(d, square)),
                hn::Sub(hn::Mul(crossY, hn::Set(d, c.z)), hn::Mul(crossZ, hn::Set(d, c.y))));
    const auto growY = hn::Add(hn::Set(d, dy * square), hn::Sub(hn::Mul(crossZ, hn::Set(d, c.x)),
                                                                hn::Mul(crossX, hn::Set(d, c.z))));
    const auto stepX = hn::Mul(growX, hn::Set(d, 2.0F * lens.perPixel.x));
    const auto stepY = hn::Mul(growY, hn::Set(d, 2.0F * lens.perPixel.y));
    const auto step = hn::Sqrt(hn::Add(hn::Mul(stepX, stepX), hn::Mul(stepY, stepY)));
    const auto tiny = hn::Set(d, 1e-20F);
    const auto rim = hn::Div(depth, hn::Max(step, tiny));
    const auto covered = hn::Min(hn::Max(hn::Add(rim, hn::Set(d, 0.5F)), hn::Zero(d)), one);
    const auto along = hn::Add(hn::Mul(dx, hn::Set(d, c.x)), hn::Set(d, dy * c.y + c.z));
    const auto away = hn::Sub(along, hn::Sqrt(hn::Max(depth, hn::Zero(d))));
    return {covered, hn::Div(length, hn::Max(away, tiny))};
}

// Whether every pixel of the tile lies well within the ball's outline.
bool holdsTile(const ScreenBall& ball, const ScreenLens& lens, const SceneTile& tile) {
    const TileF d;
    for (const int y : {tile.y, tile.y + tile.height}) {
        const float dy = (lens.middle.y - static_cast<float>(y)) * lens.perPixel.y;
        for (const int x : {tile.x, tile.x + tile.width}) {
            const float dx = (static_cast<float>(x) - lens.middle.x) * lens.perPixel.x;
            if (hn::GetLane(hit(ball, lens, hn::Set(d, dx), dy).covered) < 1.0F) return false;
        }
    }
    return true;
}

// Fills a tile with a ball of one colour that covers the whole tile, and with its nearness.
void fillWithBall(const ScreenBall& ball, const ScreenLens& lens, SceneTile& tile) {
    const TileF d;
    const glm::vec3& c = ball.middle;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const float past = glm::dot(c, c) - ball.radius * ball.radius;
    for (int row = 0; row < tile.height; ++row) {
        const float dy =
            (lens.middle.y - (static_cast<float>(tile.y + row) + 0.5F)) * lens.perPixel.y;
        for (int x = 0; x < tile.width; x += lanes) {
            const std::ptrdiff_t at = SceneTile::at(x, row);
            for (std::size_t k = 0; k < 3; ++k)
                hn::StoreU(hn::Set(d, ball.ink.light[static_cast<int>(k)]), d, tile.light[k] + at);
            const auto dx = hn::Mul(hn::Sub(middlesFrom(tile.x + x), hn::Set(d, lens.middle.x)),
                                    hn::Set(d, lens.perPixel.x));
            const auto length = hn::Add(hn::Mul(dx, dx), hn::Set(d, dy * dy + 1.0F));
            const auto along = hn::Add(hn::Mul(dx, hn::Set(d, c.x)), hn::Set(d, dy * c.y + c.z));
            const auto depth = hn::Sub(hn::Mul(along, along), hn::Mul(length, hn::Set(d, past)));
            // The nearer of two crossings, as 1 over the product with the farther one.
            const auto far = hn::Add(along, hn::Sqrt(hn::Max(depth, hn::Zero(d))));
            hn::StoreU(hn::Mul(far, hn::Set(d, 1.0F / past)), d, tile.near + at);
        }
    }
}

void drawBall(const ScreenBall& ball, const ScreenLens& lens, SceneTile& tile) {
    if (tile.hidesNothing && ball.hiding.writes && ball.ink.alpha >= 1.0F && !tile.hasExcess &&
        holdsTile(ball, lens, tile))
        return fillWithBall(ball, lens, tile);
    const TileF d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const int firstColumn = inside(ball.low.x - static_cast<float>(tile.x), tile.width);
    const int endColumn = inside(ball.high.x - static_cast<float>(tile.x) + 1.0F, tile.width);
    const int endRow = inside(ball.high.y - static_cast<float>(tile.y) + 1.0F, tile.height);
    for (int row = inside(ball.low.y - static_cast<float>(tile.y), tile.height); row < endRow;
         ++row) {
        const float dy =
            (lens.middle.y - (static_cast<float>(tile.y + row) + 0.5F)) * lens.perPixel.y;
        for (int x = firstColumn; x < endColumn; x += lanes) {
            const auto dx = hn::Mul(hn::Sub(middlesFrom(tile.x + x), hn::Set(d, lens.middle.x)),
                                    hn::Set(d, lens.perPixel.x));
            const BallHit found = hit(ball, lens, dx, dy);
            if (hn::AllTrue(d, hn::Le(found.covered, hn::Zero(d)))) continue;
            const std::ptrdiff_t at = SceneTile::at(x, row);
            const auto seen = ball.hiding.reads
                                  ? hn::Mul(found.covered, shareSeen(tile, at, found.near))
                                  : found.covered;
            putInk(tile, at, ball.ink, seen);
            // More than half of a pixel hides what is behind.
            if (ball.hiding.writes)
                putNear(tile, at, found.near, hn::Sub(seen, hn::Set(d, 0.499F)));
        }
    }
}

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

// The shares of all kinds along one side of the picture.
void stripeShares(const StripePicture::Kind* kinds, std::size_t count, TileV at, TileV wide,
                  TileV* shares) {
    const TileF d;
    const auto half = hn::Mul(wide, hn::Set(d, 0.5F));
    // Numbers near 0 are the most precise.
    const auto middle = hn::Sub(at, hn::Floor(at));
    const auto perWidth = hn::Div(hn::Set(d, 1.0F), wide);
    auto rest = hn::Set(d, 1.0F);
    for (std::size_t i = 1; i < count; ++i) {
        shares[i] = stripeShare(kinds[i], hn::Sub(middle, half), hn::Add(middle, half), perWidth);
        rest = hn::Sub(rest, shares[i]);
    }
    shares[0] = rest;
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

// The light of each kind of column where a pixel shows these rows.
void mixRows(const StripePicture& stripes, TileV at, TileV wide,
             TileV (&colours)[StripePicture::kMostKinds][3]) {
    const TileF d;
    TileV rows[StripePicture::kMostKinds];
    stripeShares(stripes.row, stripes.rowKinds, at, wide, rows);
    for (std::size_t i = 0; i < stripes.columnKinds; ++i)
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

// One row of a tile's pixels at work.
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
          isLevel_(isEven(floor, tile, row)) {}

    void draw() {
        const TileF d;
        if (isLevel_) {
            // Where the camera stands upright, a row of pixels shows one row of the picture.
            const auto nearness = near_.at(hn::Set(d, 0.5F * kTileWidth));
            mixAt(hn::Set(d, 0.5F * kTileWidth), hn::Div(hn::Set(d, 1.0F), nearness));
        }
        for (int x = 0; x < tile_.width; x += static_cast<int>(hn::Lanes(d)))
            drawSome(x);
    }

  private:
    void mixAt(TileV column, TileV depth) {
        const auto at = hn::Mul(v_.at(column), depth);
        mixRows(floor_.stripes, at, across(v_, near_, at, depth, floor_.stripes.texel.y), colours_);
    }

    void drawSome(int x) {
        const TileF d;
        const auto column = middlesFrom(x);
        const auto nearness = near_.at(column);
        const auto before = hn::Gt(nearness, hn::Set(d, 1e-5F));
        if (hn::AllFalse(d, before)) return;
        const std::ptrdiff_t at = SceneTile::at(x, row_);
        const auto one = hn::Set(d, 1.0F);
        const auto depth = hn::Div(one, hn::IfThenElse(before, nearness, one));
        TileV light[3];
        const bool isLit = lightAt(column, depth, light);
        if (!isLit && !floor_.hiding.writes) return;
        const auto seen = hn::IfThenElseZero(before, shareSeen(tile_, at, nearness));
        for (std::size_t k = 0; isLit && k < 3; ++k) {
            float* const plane = tile_.light[k] + at;
            hn::StoreU(hn::Add(hn::LoadU(d, plane), hn::Mul(light[k], seen)), d, plane);
        }
        if (floor_.hiding.writes) putNear(tile_, at, nearness, seen);
    }

    // False where there is none.
    bool lightAt(TileV column, TileV depth, TileV* light) {
        const TileF d;
        const auto one = hn::Set(d, 1.0F);
        auto clear = one;
        if (floor_.hasFog) {
            const auto dx = dx_.at(column);
            const auto away =
                hn::Mul(depth, hn::Sqrt(hn::Add(hn::Mul(dx, dx), hn::Set(d, dy_ * dy_ + 1.0F))));
            const auto fog =
                hn::Mul(hn::Sub(away, hn::Set(d, floor_.fogStart)), hn::Set(d, floor_.fogShare));
            clear = hn::Sub(one, hn::Min(hn::Max(fog, hn::Zero(d)), one));
        }
        // Far away there is only fog, which adds nothing where it is black.
        const bool isDark = floor_.additive || floor_.fog == glm::vec3(0.0F);
        if (isDark && hn::AllTrue(d, hn::Le(clear, hn::Zero(d)))) return false;
        TileV columns[StripePicture::kMostKinds];
        const StripePicture& stripes = floor_.stripes;
        const auto uAt = hn::Mul(u_.at(column), depth);
        stripeShares(stripes.column, stripes.columnKinds, uAt,
                     across(u_, near_, uAt, depth, stripes.texel.x), columns);
        if (!isLevel_) mixAt(column, depth);
        auto most = hn::Zero(d);
        for (int k = 0; k < 3; ++k) {
            auto sum = hn::Mul(colours_[0][k], columns[0]);
            for (std::size_t i = 1; i < stripes.columnKinds; ++i)
                sum = hn::Add(sum, hn::Mul(colours_[i][k], columns[i]));
            light[k] = hn::Mul(hn::Mul(sum, hn::Set(d, floor_.light[k])), clear);
            most = hn::Max(most, light[k]);
        }
        if (isDark) return !hn::AllTrue(d, hn::Le(most, hn::Zero(d)));
        const auto foggy = hn::Sub(one, clear);
        for (int k = 0; k < 3; ++k)
            light[k] = hn::Add(light[k], hn::Mul(foggy, hn::Set(d, floor_.fog[k])));
        return true;
    }

    const ScreenFloor& floor_;
    SceneTile& tile_;
    const int row_;
    const RowOf near_, u_, v_, dx_;
    const float dy_;
    const bool isLevel_;
    TileV colours_[StripePicture::kMostKinds][3];  // of each kind of column
};

// Removes the light behind the floor.
void blackenRow(const ScreenFloor& floor, SceneTile& tile, int row) {
    const TileF d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const RowOf near(floor.near, tile, row);
    for (int x = 0; x < tile.width; x += lanes) {
        const auto before = hn::Gt(near.at(middlesFrom(x)), hn::Set(d, 1e-5F));
        for (float* const light : tile.light) {
            float* const plane = light + SceneTile::at(x, row);
            hn::StoreU(hn::IfThenZeroElse(before, hn::LoadU(d, plane)), d, plane);
        }
    }
}

void drawFloor(const ScreenFloor& floor, const ScreenLens& lens, SceneTile& tile) {
    for (int row = 0; row < tile.height; ++row) {
        if (floor.blackens) {
            blackenRow(floor, tile, row);
        } else {
            FloorRow(floor, lens, tile, row).draw();
        }
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawBall);
HWY_EXPORT(drawFloor);

void drawBall(const ScreenBall& ball, const ScreenLens& lens, SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawBall)(ball, lens, tile);
}
void drawFloor(const ScreenFloor& floor, const ScreenLens& lens, SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawFloor)(floor, lens, tile);
}

}  // namespace platform
#endif
