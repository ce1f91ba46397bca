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
          fog_(frame, surface, tile) {
        if (surface.picture) picture_ = TilePicturePlane(polygon, near_, tile);
        if (surface.mirrored) height_ = Flat(polygon.attribute[ScreenPolygon::kHeight], tile);
        for (std::size_t i = 0; surface.lambert && i < 3; ++i) {
            if (!polygon.flat)
                normal_[i] = Flat(polygon.attribute[ScreenPolygon::kNormal + i], tile);
            ray_[i] = Flat(frame.ray[i], tile);
        }
        for (std::size_t s = 0; s < kSamples; ++s) {
            const auto [x, y] = kSamplePlaces[s];
            nearShift_[s] = near_.a * x + near_.b * y;
            for (int i = 0; i < outline_.edges(); ++i)
                edgeShift_[static_cast<std::size_t>(i)][s] =
                    outline_.edge(i).a * x + outline_.edge(i).b * y;
        }
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

    // Whether the tile has light of a colour.
    [[nodiscard]] bool keeps(std::size_t colour) const {
        return (tile_.colours >> colour & 1U) != 0;
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
        const TileV colours[3] = {light.r, light.g, light.b};
        for (std::size_t k = 0; k < 3; ++k)
            if (keeps(k)) hn::BlendedStore(colours[k], in, d, tile_.light[k] + at);
        if (surface_.hiding.writes) hn::BlendedStore(near, in, d, tile_.near + at);
    }

    // The edges that cut some pixels: the signed distances of the pixels' middles, and what a
    // sample adds to each.
    struct Cuts {
        TileV distance[ScreenPolygon::kMaxEdges];
        const float* shift[ScreenPolygon::kMaxEdges];
        int count = 0;
        bool none = false;  // an edge leaves nothing of the pixels

        [[nodiscard]] Mask middles() const {
            const TileF d;
            auto in = hn::Ge(hn::Zero(d), hn::Zero(d));
            for (int i = 0; i < count; ++i)
                in = hn::And(in, hn::Ge(distance[i], hn::Zero(d)));
            return in;
        }
        // Only where there are cuts.
        [[nodiscard]] Mask sample(std::size_t s) const {
            const TileF d;
            auto least = hn::Add(distance[0], hn::Set(d, shift[0][s]));
            for (int i = 1; i < count; ++i)
                least = hn::Min(least, hn::Add(distance[i], hn::Set(d, shift[i][s])));
            return hn::Ge(least, hn::Zero(d));
        }
    };

    [[nodiscard]] Cuts cutsAt(TileV column, float down) const {
        const TileF d;
        const auto reach = hn::Set(d, kFurthestSample);
        Cuts cuts;
        for (int i = 0; i < outline_.edges(); ++i) {
            const auto distance = outline_.edge(i).at(column, down);
            if (hn::AllTrue(d, hn::Ge(distance, reach))) continue;
            cuts.none = cuts.none || hn::AllTrue(d, hn::Lt(distance, hn::Neg(reach)));
            cuts.distance[cuts.count] = distance;
            cuts.shift[cuts.count++] = edgeShift_[static_cast<std::size_t>(i)].data();
        }
        return cuts;
    }

    void drawSamples(TileV column, float down, TileV near, Mask ahead, std::ptrdiff_t at) {
        const TileF d;
        const Cuts cuts = cutsAt(column, down);
        if (cuts.none) return;
        const auto zero = hn::Zero(d);
        auto any = hn::Gt(zero, zero);
        TileV nearest[kSamples];
        const bool whole = !surface_.outlined || cuts.count == 0;
        const auto middles = hn::And(ahead, cuts.middles());
        for (std::size_t s = 0; s < kSamples; ++s) {
            const auto there = hn::Add(near, hn::Set(d, nearShift_[s]));
            auto in = whole ? middles : hn::And(ahead, cuts.sample(s));
            if (surface_.hiding.reads)
                in = hn::And(in, hn::Ge(there, hn::LoadU(d, tile_.sampleNear[s] + at)));
            any = hn::Or(any, in);
            // A sample outside the polygon has no nearness.
            nearest[s] = hn::IfThenElse(in, there, hn::Set(d, -1.0F));
        }
        if (hn::AllFalse(d, any)) return;
        const auto safe = hn::Max(near, hn::Set(d, 1e-7F));
        TileV alpha = hn::Set(d, 1.0F);
        Mask kept = ahead;
        const Rgb light = shade(column, down, safe, alpha, kept);
        for (std::size_t s = 0; s < kSamples; ++s) {
            const auto in = hn::And(kept, hn::Ge(nearest[s], zero));
            const auto put = [&](TileV value, float* plane) {
                hn::StoreU(hn::IfThenElse(in, value, hn::LoadU(d, plane + at)), d, plane + at);
            };
            if (keeps(0)) put(light.r, tile_.sampleLight[s][0]);
            if (keeps(1)) put(light.g, tile_.sampleLight[s][1]);
            if (keeps(2)) put(light.b, tile_.sampleLight[s][2]);
            if (surface_.hiding.writes) put(nearest[s], tile_.sampleNear[s]);
        }
    }

    // The visible share of the polygon in each pixel.
    TileV covered(TileV column, float down, TileV near, Mask ahead, std::ptrdiff_t at) const {
        const TileF d;
        const Cuts cuts = cutsAt(column, down);
        const auto zero = hn::Zero(d);
        if (cuts.none) return zero;
        const bool bySample = tile_.sampledNear && surface_.hiding.reads && !tile_.hidesNothing;
        const bool whole = !surface_.outlined || cuts.count == 0;
        const auto middles = cuts.middles();
        auto sum = zero;
        if (whole && !bySample) {
            sum = hn::IfThenElseZero(middles, hn::Set(d, 1.0F));
        } else {
            for (std::size_t s = 0; s < kSamples; ++s) {
                auto in = whole ? middles : cuts.sample(s);
                if (bySample) {
                    const auto there = hn::Add(near, hn::Set(d, nearShift_[s]));
                    in = hn::And(in, hn::Ge(there, hn::LoadU(d, tile_.sampleNear[s] + at)));
                }
                sum = hn::Add(sum, hn::IfThenElseZero(in, hn::Set(d, 1.0F / kSamples)));
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
        if (keeps(0)) put(light.r, tile_.light[0]);
        if (keeps(1)) put(light.g, tile_.light[1]);
        if (keeps(2)) put(light.b, tile_.light[2]);
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

    // The direction of the side that is seen, of length 1.
    Rgb normalAt(TileV column, float down) const {
        const TileF d;
        if (polygon_.flat)
            return {hn::Set(d, polygon_.normal.x), hn::Set(d, polygon_.normal.y),
                    hn::Set(d, polygon_.normal.z)};
        const auto x = normal_[0].at(column, down);
        const auto y = normal_[1].at(column, down);
        const auto z = normal_[2].at(column, down);
        const auto size = hn::Sqrt(hn::Add(hn::Add(hn::Mul(x, x), hn::Mul(y, y)), hn::Mul(z, z)));
        const auto unit =
            hn::Div(hn::Set(d, polygon_.back ? -1.0F : 1.0F), hn::Max(size, hn::Set(d, 1e-20F)));
        return {hn::Mul(x, unit), hn::Mul(y, unit), hn::Mul(z, unit)};
    }

    Rgb lit(const Rgb& colour, TileV alpha, TileV column, float down, TileV depth) const {
        const TileF d;
        const Rgb ray{hn::Mul(ray_[0].at(column, down), depth),
                      hn::Mul(ray_[1].at(column, down), depth),
                      hn::Mul(ray_[2].at(column, down), depth)};
        const auto zero = hn::Zero(d);
        const Rgb normal = normalAt(column, down);
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
            const auto dot = hn::Add(hn::Add(hn::Mul(lx, normal.r), hn::Mul(ly, normal.g)),
                                     hn::Mul(lz, normal.b));
            const auto share = hn::Max(hn::Div(dot, hn::Max(length, hn::Set(d, 1e-20F))), zero);
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
        const auto height = hn::Mul(height_.at(column, down), depth);
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
    Flat height_;
    std::array<Flat, 3> normal_;
    std::array<Flat, 3> ray_;
    // A sample adds this to a pixel's nearness and to its distance from each edge.
    std::array<float, kSamples> nearShift_;
    std::array<std::array<float, kSamples>, ScreenPolygon::kMaxEdges> edgeShift_;
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
