// SPDX-License-Identifier: MIT
// A polygon's part of a tile, and the fog before it; included once per vector target. Any
// thread; owns nothing.
#if defined(PLATFORM_TILE_OUTLINE_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef PLATFORM_TILE_OUTLINE_INL
#undef PLATFORM_TILE_OUTLINE_INL
#else
#define PLATFORM_TILE_OUTLINE_INL
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <glm/vec2.hpp>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/TilePolygons.h"
#include "platform/render/cpu/scene/TileTexels-inl.h"
#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hno = hwy::HWY_NAMESPACE;

// From `first` up to, but excluding, `end`.
struct PixelSpan {
    int first = 0;
    int end = 0;
};

// The edges of a polygon that cut a tile.
class TileOutline {
  public:
    TileOutline(const ScreenPolygon& polygon, const SceneTile& tile)
        : rows_(within(polygon.low.y, polygon.high.y, tile.y, tile.height)),
          columns_(within(polygon.low.x, polygon.high.x, tile.x, tile.width)) {
        for (int i = 0; i < polygon.edges; ++i)
            if (cuts(polygon.edge[static_cast<std::size_t>(i)], tile))
                edge_[static_cast<std::size_t>(edges_++)] =
                    Flat(polygon.edge[static_cast<std::size_t>(i)], tile);
    }

    [[nodiscard]] int edges() const { return edges_; }
    [[nodiscard]] const Flat& edge(int i) const { return edge_[static_cast<std::size_t>(i)]; }
    [[nodiscard]] PixelSpan rows() const { return rows_; }
    // The columns of the polygon's box.
    [[nodiscard]] PixelSpan columns() const { return columns_; }

    // The pixels of a row that the polygon may touch, with half a pixel and more to spare.
    [[nodiscard]] PixelSpan columns(int row) const {
        float low = static_cast<float>(columns_.first);
        float high = static_cast<float>(columns_.end);
        for (int i = 0; i < edges_; ++i) {
            const Flat& side = edge(i);
            const float reach = side.b * static_cast<float>(row) + side.c +
                                0.5F * (std::abs(side.a) + std::abs(side.b));
            if (std::abs(side.a) < 1e-6F) {
                if (reach < 0.0F) return {};
                continue;
            }
            const float at = -reach / side.a;
            if (side.a > 0.0F) {
                low = std::max(low, std::min(at, high));
            } else {
                high = std::min(high, std::max(at + 1.0F, low));
            }
        }
        return {std::max(columns_.first, static_cast<int>(low)),
                std::min(columns_.end, static_cast<int>(high) + 1)};
    }

  private:
    static PixelSpan within(float low, float high, int tile, int most) {
        const auto inside = [&](float value) {
            return static_cast<int>(std::clamp(value, 0.0F, static_cast<float>(most)));
        };
        const auto from = static_cast<float>(tile);
        return {inside(low - from), inside(high - from + 1.0F)};
    }

    // Whether some of the tile lies outside an edge, or nearly.
    static bool cuts(const Plane& edge, const SceneTile& tile) {
        const double middle = edge.at(tile.x + 0.5 * kTileWidth, tile.y + 0.5 * kTileHeight);
        return middle - 0.5 * (std::abs(edge.a) * kTileWidth + std::abs(edge.b) * kTileHeight) <
               1.0;
    }

    PixelSpan rows_, columns_;
    int edges_ = 0;
    std::array<Flat, ScreenPolygon::kMaxEdges> edge_;
};

// The frame's fog in a tile.
class TileFog {
  public:
    TileFog(const PolygonFrame& frame, const Surface& surface, const SceneTile& tile)
        : frame_(frame), surface_(surface), right_(frame.right, tile), down_(frame.down, tile) {}

    // The fog's share of the light. The rows are one for all pixels, or a vector.
    template <class Rows>
    [[nodiscard]] TileV at(TileV column, Rows down, TileV depth) const {
        const TileF d;
        if (!frame_.hasFog) return hno::Zero(d);
        const auto right = right_.at(column, down);
        const auto below = down_.atRow(down);
        const auto away = hno::Mul(
            depth, hno::Sqrt(hno::Add(hno::Mul(right, right),
                                      hno::Add(hno::Mul(below, below), hno::Set(d, 1.0F)))));
        const auto fog =
            hno::Mul(hno::Sub(away, hno::Set(d, frame_.fogStart)), hno::Set(d, frame_.fogShare));
        return hno::Min(hno::Max(fog, hno::Zero(d)), hno::Set(d, 1.0F));
    }

    // Whether black fog leaves nothing of an opaque surface.
    [[nodiscard]] bool hides(TileV fog) const {
        if (!frame_.hasFog || !surface_.opaque || surface_.mirrored) return false;
        if (frame_.fogColour != glm::vec3(0.0F)) return false;
        const TileF d;
        return hno::AllTrue(d, hno::Ge(fog, hno::Set(d, 1.0F)));
    }

    // One colour of the light behind the fog.
    [[nodiscard]] TileV behind(TileV fog, TileV light, TileV alpha, int colour) const {
        const TileF d;
        if (!frame_.hasFog) return light;
        const auto kept = hno::Mul(light, hno::Sub(hno::Set(d, 1.0F), fog));
        const float added = frame_.fogColour[colour];
        if (surface_.additive || added == 0.0F) return kept;
        return hno::Add(kept, hno::Mul(hno::Mul(alpha, fog), hno::Set(d, added)));
    }

  private:
    const PolygonFrame& frame_;
    const Surface& surface_;
    Flat right_, down_;
};

// A polygon's place in its surface's picture.
class TilePicturePlane {
  public:
    TilePicturePlane() = default;
    TilePicturePlane(const ScreenPolygon& polygon, const Flat& near, const SceneTile& tile)
        : near_(near),
          u_(polygon.attribute[ScreenPolygon::kPicture], tile),
          v_(polygon.attribute[ScreenPolygon::kPicture + 1], tile) {}

    [[nodiscard]] const Flat& uPlane() const { return u_; }
    [[nodiscard]] const Flat& vPlane() const { return v_; }

    template <class Rows>
    [[nodiscard]] TileV u(TileV column, Rows down, TileV depth) const {
        return hno::Mul(u_.at(column, down), depth);
    }
    template <class Rows>
    [[nodiscard]] TileV v(TileV column, Rows down, TileV depth) const {
        return hno::Mul(v_.at(column, down), depth);
    }

    template <class Rows>
    [[nodiscard]] TexelPlaces at(TileV column, Rows down, TileV depth) const {
        const TileF d;
        TexelPlaces places;
        const auto step = [&](float plane, TileV value, float near) {
            return hno::Mul(hno::Sub(hno::Set(d, plane), hno::Mul(value, hno::Set(d, near))),
                            depth);
        };
        places.u = u(column, down, depth);
        places.v = v(column, down, depth);
        places.uAcross = step(u_.a, places.u, near_.a);
        places.vAcross = step(v_.a, places.v, near_.a);
        places.uDown = step(u_.b, places.u, near_.b);
        places.vDown = step(v_.b, places.v, near_.b);
        return places;
    }

    // At least the larger square of a pixel's side along the picture's width and along its
    // height, in repeats, times the square of those sizes, wherever in the box.
    [[nodiscard]] float widest(PixelSpan columns, PixelSpan rows, glm::vec2 size) const {
        const auto left = static_cast<float>(columns.first);
        const auto right = static_cast<float>(columns.end);
        const auto top = static_cast<float>(rows.first);
        const auto low = static_cast<float>(rows.end);
        const float least = near_.c + std::min(near_.a * left, near_.a * right) +
                            std::min(near_.b * top, near_.b * low);
        if (!(least > 1e-6F)) return 1e30F;
        // A step to the side is the same along a column, but for the depth; likewise a step down.
        const auto most = [&](const Flat& plane) {
            const auto across = [&](float y) {
                return std::abs(plane.a * (near_.b * y + near_.c) -
                                near_.a * (plane.b * y + plane.c));
            };
            const auto down = [&](float x) {
                return std::abs(plane.b * (near_.a * x + near_.c) -
                                near_.b * (plane.a * x + plane.c));
            };
            const float a = std::max(across(top), across(low)) / (least * least);
            const float b = std::max(down(left), down(right)) / (least * least);
            return a * a + b * b;
        };
        return std::max(most(u_) * size.x * size.x, most(v_) * size.y * size.y);
    }

  private:
    Flat near_, u_, v_;
};

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
