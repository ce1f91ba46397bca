// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TilePolygons.h"

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TilePolygons.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileOutline-inl.h"
#include "platform/render/cpu/scene/TileTexels-inl.h"
#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Mask = hn::Mask<TileF>;

struct Rgb {
    TileV r, g, b;
};

// One polygon at work in one tile.
class PolygonWork {
  public:
    PolygonWork(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                SceneTile& tile)
        : polygon_(polygon),
          surface_(surface),
          frame_(frame),
          tile_(tile),
          near_(polygon.near, tile),
          outline_(polygon, tile),
          fog_(frame, surface, tile),
          picture_(polygon, near_, tile) {
        for (std::size_t i = 0; i < attribute_.size(); ++i)
            attribute_[i] = Flat(polygon.attribute[i], tile);
        for (std::size_t i = 0; i < ray_.size(); ++i)
            ray_[i] = Flat(frame.ray[i], tile);
    }

    void draw() {
        const PixelSpan rows = outline_.rows();
        for (int row = rows.first; row < rows.end; ++row) {
            const PixelSpan columns = outline_.columns(row);
            for (int x = columns.first; x < columns.end; x += static_cast<int>(hn::Lanes(TileF())))
                drawSome(x, row);
        }
    }

  private:
    void drawSome(int x, int row) {
        const TileF d;
        const auto column = columnsFrom(x);
        const auto down = static_cast<float>(row);
        const auto near = near_.at(column, down);
        // The edges alone do not cut off a part behind the camera.
        const auto ahead = hn::Gt(near, hn::Zero(d));
        const std::ptrdiff_t at = SceneTile::at(x, row);
        if (tile_.sampledNear && tile_.sampledLight && surface_.opaque) {
            drawSamples(column, down, near, ahead, at);
            return;
        }
        if (surface_.opaque && !surface_.outlined && !tile_.sampledNear) {
            drawSolid(column, down, near, ahead, at);
            return;
        }
        drawBlended(column, down, near, ahead, at);
    }

    // Pixels that are the surface's or are not.
    void drawSolid(TileV column, float down, TileV near, Mask ahead, std::ptrdiff_t at) {
        const TileF d;
        auto in = ahead;
        if (surface_.hiding.reads) {
            in = hn::And(in, hn::Ge(near, hn::LoadU(d, tile_.near + at)));
            if (hn::AllFalse(d, in)) return;
        }
        for (int i = 0; i < outline_.edges(); ++i)
            in = hn::And(in, hn::Ge(outline_.edge(i).at(column, down), hn::Zero(d)));
        if (hn::AllFalse(d, in)) return;
        TileV alpha = hn::Set(d, 1.0F);
        Mask kept = ahead;
        const Rgb light = shade(column, down, hn::Max(near, hn::Set(d, 1e-7F)), alpha, kept);
        in = hn::And(in, kept);
        hn::BlendedStore(light.r, in, d, tile_.light[0] + at);
        hn::BlendedStore(light.g, in, d, tile_.light[1] + at);
        hn::BlendedStore(light.b, in, d, tile_.light[2] + at);
        if (surface_.hiding.writes) hn::BlendedStore(near, in, d, tile_.near + at);
    }

    // The least distance of a sample from the edges, inside positive.
    TileV inside(const TileV* edges, float x, float y) const {
        const TileF d;
        if (outline_.edges() == 0) return hn::Set(d, 1.0F);
        const auto moved = [&](int i) {
            const Flat& edge = outline_.edge(i);
            return hn::Add(edges[i], hn::Set(d, edge.a * x + edge.b * y));
        };
        auto least = moved(0);
        for (int i = 1; i < outline_.edges(); ++i)
            least = hn::Min(least, moved(i));
        return least;
    }

    void edgesAt(TileV column, float down, TileV* edges) const {
        for (int i = 0; i < outline_.edges(); ++i)
            edges[i] = outline_.edge(i).at(column, down);
    }

    void drawSamples(TileV column, float down, TileV near, Mask ahead, std::ptrdiff_t at) {
        const TileF d;
        TileV edges[ScreenPolygon::kMaxEdges];
        edgesAt(column, down, edges);
        const auto zero = hn::Zero(d);
        auto any = hn::Gt(zero, zero);
        TileV nearest[kSamples];
        std::size_t s = 0;
        const auto middle = inside(edges, 0.0F, 0.0F);
        const bool whole =
            !surface_.outlined || hn::AllTrue(d, hn::Ge(middle, hn::Set(d, kFurthestSample)));
        for (const auto& [sx, sy] : kSamplePlaces) {
            const auto there = hn::Add(near, hn::Set(d, near_.a * sx + near_.b * sy));
            auto in = hn::Ge(whole ? middle : inside(edges, sx, sy), zero);
            in = hn::And(in, ahead);
            if (surface_.hiding.reads)
                in = hn::And(in, hn::Ge(there, hn::LoadU(d, tile_.sampleNear[s] + at)));
            any = hn::Or(any, in);
            // A sample outside the polygon has no nearness.
            nearest[s++] = hn::IfThenElse(in, there, hn::Set(d, -1.0F));
        }
        if (hn::AllFalse(d, any)) return;
        const auto safe = hn::Max(near, hn::Set(d, 1e-7F));
        TileV alpha = hn::Set(d, 1.0F);
        Mask kept = ahead;
        const Rgb light = shade(column, down, safe, alpha, kept);
        for (s = 0; s < kSamples; ++s) {
            const auto in = hn::And(kept, hn::Ge(nearest[s], zero));
            const auto put = [&](TileV value, float* plane) {
                hn::StoreU(hn::IfThenElse(in, value, hn::LoadU(d, plane + at)), d, plane + at);
            };
            put(light.r, tile_.sampleLight[s][0]);
            put(light.g, tile_.sampleLight[s][1]);
            put(light.b, tile_.sampleLight[s][2]);
            if (surface_.hiding.writes) put(nearest[s], tile_.sampleNear[s]);
        }
    }

    // The visible share of the polygon in each pixel.
    TileV covered(TileV column, float down, TileV near, Mask ahead, std::ptrdiff_t at) const {
        const TileF d;
        TileV edges[ScreenPolygon::kMaxEdges];
        edgesAt(column, down, edges);
        const auto zero = hn::Zero(d);
        const bool bySample = tile_.sampledNear && surface_.hiding.reads && !tile_.hidesNothing;
        auto sum = zero;
        if ((!surface_.outlined || outline_.edges() == 0) && !bySample) {
            sum = hn::IfThenElseZero(hn::Ge(inside(edges, 0.0F, 0.0F), zero), hn::Set(d, 1.0F));
        } else {
            const auto part = hn::Set(d, 1.0F / kSamples);
            std::size_t s = 0;
            for (const auto& [sx, sy] : kSamplePlaces) {
                auto in = surface_.outlined ? hn::Ge(inside(edges, sx, sy), zero)
                                            : hn::Ge(inside(edges, 0.0F, 0.0F), zero);
                if (bySample) {
                    const auto there = hn::Add(near, hn::Set(d, near_.a * sx + near_.b * sy));
                    in = hn::And(in, hn::Ge(there, hn::LoadU(d, tile_.sampleNear[s] + at)));
                }
                sum = hn::Add(sum, hn::IfThenElseZero(in, part));
                ++s;
            }
        }
        if (!bySample && surface_.hiding.reads && !tile_.hidesNothing)
            sum = hn::IfThenElseZero(hn::Ge(near, hn::LoadU(d, tile_.near + at)), sum);
        return hn::IfThenElseZero(ahead, sum);
    }

    void drawBlended(TileV column, float down, TileV near, Mask ahead, std::ptrdiff_t at) {
        const TileF d;
        auto share = covered(column, down, near, ahead, at);
        if (hn::AllTrue(d, hn::Le(share, hn::Zero(d)))) return;
        const auto safe = hn::Max(near, hn::Set(d, 1e-7F));
        TileV alpha = hn::Set(d, surface_.tint.a);
        Mask kept = ahead;
        const Rgb light = shade(column, down, safe, alpha, kept);
        share = hn::IfThenElseZero(kept, share);
        const auto left = hn::Sub(hn::Set(d, 1.0F), hn::Mul(alpha, share));
        const auto put = [&](TileV value, float* plane) {
            const auto old = hn::LoadU(d, plane + at);
            hn::StoreU(hn::Add(surface_.additive ? old : hn::Mul(old, left), hn::Mul(value, share)),
                       d, plane + at);
        };
        put(light.r, tile_.light[0]);
        put(light.g, tile_.light[1]);
        put(light.b, tile_.light[2]);
        if (surface_.hiding.writes) putNear(tile_, at, near, hn::Sub(share, hn::Set(d, 0.499F)));
    }

    Rgb shade(TileV column, float down, TileV near, TileV& alpha, Mask& kept) const {
        const TileF d;
        const auto one = hn::Set(d, 1.0F);
        const auto depth = hn::Div(one, near);
        Rgb light{hn::Set(d, surface_.tint.r), hn::Set(d, surface_.tint.g),
                  hn::Set(d, surface_.tint.b)};
        const auto fog = fog_.at(column, down, depth);
        if (fog_.hides(fog)) return {hn::Zero(d), hn::Zero(d), hn::Zero(d)};
        if (surface_.picture) {
            const TexelLight texel =
                readTexels(*surface_.picture, picture_.at(column, down, depth),
                           {surface_.repeatS, surface_.repeatT, !surface_.opaque});
            light = {hn::Mul(light.r, texel.r), hn::Mul(light.g, texel.g),
                     hn::Mul(light.b, texel.b)};
            alpha = hn::Mul(alpha, texel.alpha);
        }
        if (surface_.lambert) light = lit(light, alpha, column, down, depth);
        light = {fog_.behind(fog, light.r, alpha, 0), fog_.behind(fog, light.g, alpha, 1),
                 fog_.behind(fog, light.b, alpha, 2)};
        if (surface_.mirrored) light = reflected(light, column, down, depth, kept);
        return light;
    }

    Rgb lit(const Rgb& colour, TileV alpha, TileV column, float down, TileV depth) const {
        const TileF d;
        const Rgb ray{hn::Mul(ray_[0].at(column, down), depth),
                      hn::Mul(ray_[1].at(column, down), depth),
                      hn::Mul(ray_[2].at(column, down), depth)};
        const auto zero = hn::Zero(d);
        constexpr std::size_t kNormal = ScreenPolygon::kNormal;
        const auto nx = attribute_[kNormal].at(column, down);
        const auto ny = attribute_[kNormal + 1].at(column, down);
        const auto nz = attribute_[kNormal + 2].at(column, down);
        const auto size =
            hn::Sqrt(hn::Add(hn::Add(hn::Mul(nx, nx), hn::Mul(ny, ny)), hn::Mul(nz, nz)));
        const auto unit =
            hn::Div(hn::Set(d, polygon_.back ? -1.0F : 1.0F), hn::Max(size, hn::Set(d, 1e-20F)));
        Rgb sum{hn::Set(d, frame_.ambient.r), hn::Set(d, frame_.ambient.g),
                hn::Set(d, frame_.ambient.b)};
        for (std::size_t i = 0; i < frame_.lights; ++i) {
            const glm::vec3& place =
                surface_.mirrored ? frame_.mirroredPlace[i] : frame_.lightPlace[i];
            const auto lx = hn::Sub(hn::Set(d, place.x), ray.r);
            const auto ly = hn::Sub(hn::Set(d, place.y), ray.g);
            const auto lz = hn::Sub(hn::Set(d, place.z), ray.b);
            const auto length =
                hn::Sqrt(hn::Add(hn::Add(hn::Mul(lx, lx), hn::Mul(ly, ly)), hn::Mul(lz, lz)));
            const auto dot = hn::Add(hn::Add(hn::Mul(lx, nx), hn::Mul(ly, ny)), hn::Mul(lz, nz));
            const auto share =
                hn::Max(hn::Div(hn::Mul(dot, unit), hn::Max(length, hn::Set(d, 1e-20F))), zero);
            const glm::vec3& lamp = frame_.lightColour[i];
            sum.r = hn::Add(sum.r, hn::Mul(share, hn::Set(d, lamp.r)));
            sum.g = hn::Add(sum.g, hn::Mul(share, hn::Set(d, lamp.g)));
            sum.b = hn::Add(sum.b, hn::Mul(share, hn::Set(d, lamp.b)));
        }
        const glm::vec3& own = surface_.emission;
        return {hn::Add(hn::Mul(colour.r, sum.r), hn::Mul(alpha, hn::Set(d, own.r))),
                hn::Add(hn::Mul(colour.g, sum.g), hn::Mul(alpha, hn::Set(d, own.g))),
                hn::Add(hn::Mul(colour.b, sum.b), hn::Mul(alpha, hn::Set(d, own.b)))};
    }

    Rgb reflected(const Rgb& light, TileV column, float down, TileV depth, Mask& kept) const {
        const TileF d;
        const auto height = hn::Mul(attribute_[ScreenPolygon::kHeight].at(column, down), depth);
        kept = hn::And(kept, hn::Ge(height, hn::Zero(d)));
        auto share = hn::Sub(hn::Set(d, 1.0F), hn::Mul(height, hn::Set(d, frame_.reflectionShare)));
        share = hn::Min(hn::Max(share, hn::Zero(d)), hn::Set(d, 1.0F));
        share = hn::Mul(share, hn::Set(d, frame_.reflectivity));
        return {hn::Mul(light.r, share), hn::Mul(light.g, share), hn::Mul(light.b, share)};
    }

    const ScreenPolygon& polygon_;
    const Surface& surface_;
    const PolygonFrame& frame_;
    SceneTile& tile_;
    Flat near_;
    TileOutline outline_;
    TileFog fog_;
    TilePicturePlane picture_;
    std::array<Flat, ScreenPolygon::kAttributes> attribute_;
    std::array<Flat, 3> ray_;
};

void drawPolygon(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                 SceneTile& tile) {
    PolygonWork(polygon, surface, frame, tile).draw();
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawPolygon);

void drawPolygon(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                 SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawPolygon)(polygon, surface, frame, tile);
}

}  // namespace platform
#endif
