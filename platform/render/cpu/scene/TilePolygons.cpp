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
#include "platform/render/cpu/scene/TileShading-inl.h"
#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Mask = hn::Mask<TileF>;

// One polygon at work in one tile.
class PolygonWork {
  public:
    PolygonWork(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                SceneTile& tile)
        : surface_(surface),
          tile_(tile),
          outline_(polygon, tile),
          shade_(polygon, surface, frame, tile) {
        const Flat& near = shade_.near();
        for (std::size_t s = 0; s < kSamples; ++s) {
            const auto [x, y] = kSamplePlaces[s];
            nearShift_[s] = near.a * x + near.b * y;
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
        const auto near = shade_.near().at(column, down);
        // The edges alone do not cut off a part behind the camera.
        const auto ahead = hn::Gt(near, hn::Zero(d));
        const std::ptrdiff_t at = SceneTile::at(x, row);
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
        const Rgb light = shade_.shade(column, down, hn::Max(near, hn::Set(d, 1e-7F)), alpha, kept);
        in = hn::And(in, kept);
        const TileV colours[3] = {light.r, light.g, light.b};
        for (std::size_t k = 0; k < 3; ++k)
            if (holds(tile_.colours, k)) hn::BlendedStore(colours[k], in, d, tile_.light[k] + at);
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

    // The visible share of the polygon in each pixel.
    TileV covered(TileV column, float down, TileV near, Mask ahead, std::ptrdiff_t at) const {
        const TileF d;
        const Cuts cuts = cutsAt(column, down);
        const auto zero = hn::Zero(d);
        if (cuts.none) return zero;
        const bool isHidden = surface_.hiding.reads && !tile_.hidesNothing;
        if (isHidden && tile_.sampledNear) return coveredSamples(cuts, near, ahead, at);
        const bool whole = !surface_.outlined || cuts.count == 0;
        const auto middles = cuts.middles();
        auto sum = zero;
        if (whole) {
            sum = hn::IfThenElseZero(middles, hn::Set(d, 1.0F));
        } else {
            for (std::size_t s = 0; s < kSamples; ++s)
                sum = hn::Add(sum, hn::IfThenElseZero(cuts.sample(s), hn::Set(d, 1.0F / kSamples)));
        }
        if (isHidden) sum = hn::IfThenElseZero(hn::Ge(near, hn::LoadU(d, tile_.near + at)), sum);
        return hn::IfThenElseZero(ahead, sum);
    }

    // The same where nearness may be kept per sample.
    TileV coveredSamples(const Cuts& cuts, TileV near, Mask ahead, std::ptrdiff_t at) const {
        const TileF d;
        const bool whole = !surface_.outlined || cuts.count == 0;
        const auto middles = cuts.middles();
        const NearSamples present(d, tile_, at);
        auto sum = hn::Zero(d);
        for (std::size_t s = 0; s < kSamples; ++s) {
            const auto there = hn::Add(near, hn::Set(d, nearShift_[s]));
            const auto in = hn::And(whole ? middles : cuts.sample(s),
                                    hn::Ge(there, hn::Load(d, present.of[s].data())));
            sum = hn::Add(sum, hn::IfThenElseZero(in, hn::Set(d, 1.0F / kSamples)));
        }
        return hn::IfThenElseZero(ahead, sum);
    }

    void drawBlended(TileV column, float down, TileV near, Mask ahead, std::ptrdiff_t at) {
        const TileF d;
        auto share = covered(column, down, near, ahead, at);
        if (hn::AllTrue(d, hn::Le(share, hn::Zero(d)))) return;
        const auto safe = hn::Max(near, hn::Set(d, 1e-7F));
        TileV alpha = hn::Set(d, surface_.tint.a);
        Mask kept = ahead;
        const Rgb light = shade_.shade(column, down, safe, alpha, kept);
        share = hn::IfThenElseZero(kept, share);
        const auto left = hn::Sub(hn::Set(d, 1.0F), hn::Mul(alpha, share));
        const auto put = [&](TileV value, float* plane) {
            const auto old = hn::LoadU(d, plane + at);
            hn::StoreU(hn::Add(surface_.additive ? old : hn::Mul(old, left), hn::Mul(value, share)),
                       d, plane + at);
        };
        if (holds(tile_.colours, 0)) put(light.r, tile_.light[0]);
        if (holds(tile_.colours, 1)) put(light.g, tile_.light[1]);
        if (holds(tile_.colours, 2)) put(light.b, tile_.light[2]);
        if (surface_.hiding.writes) putNear(d, tile_, at, near, hn::Sub(share, hn::Set(d, 0.499F)));
    }

    const Surface& surface_;
    SceneTile& tile_;
    const TileOutline outline_;
    const PolygonShade shade_;
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
