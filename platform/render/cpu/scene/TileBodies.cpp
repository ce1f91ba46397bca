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
            const auto dx = hn::Mul(hn::Sub(pixelsFrom(tile.x + x), hn::Set(d, lens.middle.x)),
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
            const auto dx = hn::Mul(hn::Sub(pixelsFrom(tile.x + x), hn::Set(d, lens.middle.x)),
                                    hn::Set(d, lens.perPixel.x));
            const BallHit found = hit(ball, lens, dx, dy);
            if (hn::AllTrue(d, hn::Le(found.covered, hn::Zero(d)))) continue;
            const std::ptrdiff_t at = SceneTile::at(x, row);
            const auto seen = ball.hiding.reads
                                  ? hn::Mul(found.covered, shareSeen(d, tile, at, found.near))
                                  : found.covered;
            putInk(tile, at, ball.ink, seen);
            // More than half of a pixel hides what is behind.
            if (ball.hiding.writes)
                putNear(d, tile, at, found.near, hn::Sub(seen, hn::Set(d, 0.499F)));
        }
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawBall);

void drawBall(const ScreenBall& ball, const ScreenLens& lens, SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawBall)(ball, lens, tile);
}

}  // namespace platform
#endif
