// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TilePainter.h"

#include <hwy/cache_control.h>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/render/cpu/scene/TileFinish.h"
#include "platform/render/cpu/scene/TileSamples.h"
#include "platform/render/cpu/scene/TileTextures.h"

namespace platform {

namespace {

// A plane begins within its first row, and a vector may end behind the last row.
constexpr std::size_t kPlaneRoom = kTilePlane + 2 * kTileMargin;

float* planeAt(std::vector<float>& room, std::size_t number) {
    return room.data() + number * kPlaneRoom + kTileMargin;
}

// Whether a surface's edges are drawn at every sample, nearness and light.
bool isSampled(const Surface& surface) {
    return surface.opaque && surface.outlined && surface.hiding.writes;
}

// Asks for a polygon ahead of its turn: all polygons of a picture do not fit into the nearest
// caches.
void announce(const ScreenPolygon& polygon) {
    constexpr std::ptrdiff_t kLine = 64;  // bytes
    const char* const first = reinterpret_cast<const char*>(&polygon);
    for (std::ptrdiff_t at = 0; at < static_cast<std::ptrdiff_t>(sizeof polygon); at += kLine)
        hwy::Prefetch(first + at);
}

}  // namespace

TilePainter::TilePainter() : planes_(7 * kPlaneRoom) {
    for (std::size_t k = 0; k < 3; ++k) {
        tile_.light[k] = planeAt(planes_, k);
        tile_.excess[k] = planeAt(planes_, 4 + k);
    }
    tile_.near = planeAt(planes_, 3);
}

void TilePainter::prepare(const ScenePlan& plan) {
    for (const ScreenSprite& sprite : plan.sprites())
        fitDesk(sprite, desk_);
    fronts_.reserve(plan.polygons().size());
    if (!samples_.empty() ||
        std::none_of(plan.surfaces().begin(), plan.surfaces().end(), isSampled))
        return;
    constexpr std::size_t kRoom = kSamples * kTilePlane;
    samples_.resize(4 * kRoom);
    sampled_.resize(2 * kPlaneRoom);
    faceShifts_.resize(SceneTile::kMostFaces);
    for (std::size_t k = 0; k < 3; ++k)
        tile_.sampleLight[k] = samples_.data() + k * kRoom;
    tile_.sampleNear = samples_.data() + 3 * kRoom;
    tile_.sampled = sampled_.data() + kTileMargin;
    tile_.face = tile_.sampled + kPlaneRoom;
    tile_.faceShifts = faceShifts_.data();
}

void TilePainter::paint(const ScenePlan& plan, std::span<const ShapeCall> calls,
                        const Canvas& canvas) {
    tile_.x = canvas.rect.left();
    tile_.y = canvas.rect.top();
    tile_.width = canvas.rect.width();
    tile_.height = canvas.rect.height();
    clearTile(tile_, &canvas.background.x);
    tile_.blooms = canvas.threshold.has_value();
    tile_.threshold = canvas.threshold.value_or(0.0F);
    floor_ = canvas.floor;
    while (!calls.empty()) {
        std::size_t drawn = drawOpaque(plan, calls);
        if (drawn == 0) drawn = drawStrokes(plan, calls);
        if (drawn == 0) draw(plan, calls.front(), calls.size() == 1);
        calls = calls.subspan(std::max<std::size_t>(drawn, 1));
    }
    resolveLight(tile_);
}

std::size_t TilePainter::drawOpaque(const ScenePlan& plan, std::span<const ShapeCall> calls) {
    fronts_.clear();
    for (const ShapeCall call : calls) {
        if (call.kind() != ShapeKind::Polygon) break;
        const ScreenPolygon& polygon = plan.polygons()[call.index()];
        const Surface& surface = plan.surfaces()[polygon.surface];
        if (!surface.opaque || !surface.hiding.reads || !surface.hiding.writes) break;
        const Plane& near = polygon.near;
        const double middle = near.at(tile_.x + 0.5 * kTileWidth, tile_.y + 0.5 * kTileHeight);
        const double reach = 0.5 * (std::abs(near.a) * kTileWidth + std::abs(near.b) * kTileHeight);
        fronts_.push_back({middle, middle + reach, call});
    }
    if (fronts_.size() > 1)
        std::sort(fronts_.begin(), fronts_.end(), [](const Front& a, const Front& b) {
            return a.near != b.near ? a.near > b.near : a.call.word < b.call.word;
        });
    for (std::size_t i = 0; i < fronts_.size(); ++i) {
        if (i + 1 < fronts_.size()) announce(plan.polygons()[fronts_[i + 1].call.index()]);
        if (!tile_.hidesNothing && !tile_.sampledNear &&
            fronts_[i].most < static_cast<double>(leastNear(tile_)))
            continue;
        const std::size_t textured = drawTextures(plan, i);
        if (textured == 0) drawPolygonCall(plan, fronts_[i].call);
        i += std::max<std::size_t>(textured, 1) - 1;
    }
    return fronts_.size();
}

std::size_t TilePainter::drawStrokes(const ScenePlan& plan, std::span<const ShapeCall> calls) {
    const ShapeKind kind = calls.front().kind();
    if (kind != ShapeKind::Dot && kind != ShapeKind::Line) return 0;
    const auto end = std::find_if(calls.begin(), calls.end(),
                                  [&](ShapeCall call) { return call.kind() != kind; });
    const std::span<const ShapeCall> strokes(calls.begin(), end);
    resolveLight(tile_);
    const StrokeShapes shapes{plan.dots().data(), plan.dotStyles().data(), plan.lines().data(),
                              &plan.lineKernel()};
    kind == ShapeKind::Dot ? drawDots(strokes, shapes, tile_) : drawLines(strokes, shapes, tile_);
    return strokes.size();
}

std::size_t TilePainter::drawTextures(const ScenePlan& plan, std::size_t first) {
    if (tile_.sampledNear) return 0;
    std::array<const ScreenPolygon*, kMostTextured> polygons{};
    std::size_t count = 0;
    const auto polygonAt = [&](std::size_t i) -> const ScreenPolygon& {
        return plan.polygons()[fronts_[i].call.index()];
    };
    const std::uint32_t number = polygonAt(first).surface;
    const Surface& surface = plan.surfaces()[number];
    if (!isTextured(surface)) return 0;
    while (count < kMostTextured && first + count < fronts_.size() &&
           polygonAt(first + count).surface == number) {
        polygons[count] = &polygonAt(first + count);
        ++count;
    }
    useColours(tile_, surface.colours);
    drawTextured(std::span(polygons).first(count), surface, plan.frame(), tile_);
    tile_.hidesNothing = false;
    return count;
}

void TilePainter::drawPolygonCall(const ScenePlan& plan, ShapeCall call) {
    const ScreenPolygon& polygon = plan.polygons()[call.index()];
    const Surface& surface = plan.surfaces()[polygon.surface];
    // Samples are kept of the colours that there are when they begin.
    if ((surface.colours & ~tile_.colours) != 0) resolveLight(tile_);
    useColours(tile_, surface.colours);
    const bool isSolid = surface.opaque && surface.hiding.writes;
    if (isSolid && (surface.outlined || tile_.sampledNear)) {
        sampleNearness(tile_);
        drawSampled(polygon, surface, plan.frame(), tile_);
    } else {
        resolveLight(tile_);
        drawPolygon(polygon, surface, plan.frame(), tile_);
    }
    if (surface.hiding.writes) tile_.hidesNothing = false;
}

void TilePainter::draw(const ScenePlan& plan, ShapeCall call, bool isLast) {
    if (call.kind() == ShapeKind::Polygon) return drawPolygonCall(plan, call);
    resolveLight(tile_);
    bool writes = false;
    switch (call.kind()) {
        case ShapeKind::Sprite: {
            const ScreenSprite& sprite = plan.sprites()[call.index()];
            drawSprite(sprite, tile_, desk_);
            writes = sprite.hiding.writes;
            break;
        }
        case ShapeKind::Ball: {
            const ScreenBall& ball = plan.balls()[call.index()];
            useColours(tile_, coloursOf(ball.ink.light));
            drawBall(ball, plan.lens(), tile_);
            writes = ball.hiding.writes;
            break;
        }
        case ShapeKind::Floor: {
            const ScreenFloor& floor = plan.floors()[call.index()];
            useColours(tile_, floor.colours);
            drawFloor(floor, plan.lens(), tile_, isLast, floor_);
            writes = floor.hiding.writes && !floor.blackens;
            break;
        }
        case ShapeKind::Polygon:
        case ShapeKind::Dot:
        case ShapeKind::Line:
            break;
    }
    if (writes) tile_.hidesNothing = false;
}

}  // namespace platform
