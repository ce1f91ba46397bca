// SPDX-License-Identifier: MIT
// The light of a polygon in a tile, as it meets the eye; included once per vector target. Any
// thread; owns nothing.
#if defined(PLATFORM_TILE_SHADING_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef PLATFORM_TILE_SHADING_INL
#undef PLATFORM_TILE_SHADING_INL
#else
#define PLATFORM_TILE_SHADING_INL
#endif

#include <hwy/highway.h>

#include <array>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/TileOutline-inl.h"
#include "platform/render/cpu/scene/TilePolygons.h"
#include "platform/render/cpu/scene/TileTexels-inl.h"
#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hns = hwy::HWY_NAMESPACE;

struct Rgb {
    TileV r, g, b;
};

class PolygonShade {
  public:
    using Mask = hns::Mask<TileF>;

    PolygonShade(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                 const SceneTile& tile)
        : polygon_(polygon),
          surface_(surface),
          frame_(frame),
          near_(polygon.near, tile),
          fog_(frame, surface, tile) {
        if (polygon.even) {
            for (std::size_t k = 0; k < 3; ++k)
                even_[k] = Flat(polygon.attribute[ScreenPolygon::kLight + k], tile);
            return;
        }
        if (surface.picture) picture_ = TilePicturePlane(polygon, near_, tile);
        if (surface.mirrored) height_ = Flat(polygon.attribute[ScreenPolygon::kHeight], tile);
        for (std::size_t i = 0; surface.lambert && i < 3; ++i) {
            if (!polygon.flat)
                normal_[i] = Flat(polygon.attribute[ScreenPolygon::kNormal + i], tile);
            ray_[i] = Flat(frame.ray[i], tile);
        }
    }

    // The nearness of the polygon's plane.
    [[nodiscard]] const Flat& near() const { return near_; }

    // The light of some pixels. Multiplies `alpha` by the picture's, and leaves of `kept` what
    // lies above the mirror.
    template <class Rows>
    Rgb shade(TileV column, Rows down, TileV near, TileV& alpha, Mask& kept) const {
        if (polygon_.even) return evenAt(column, down);
        const TileF d;
        const auto one = hns::Set(d, 1.0F);
        const auto depth = hns::Div(one, near);
        Rgb light{hns::Set(d, surface_.tint.r), hns::Set(d, surface_.tint.g),
                  hns::Set(d, surface_.tint.b)};
        const auto fog = fog_.at(column, down, depth);
        if (fog_.hides(fog)) return {hns::Zero(d), hns::Zero(d), hns::Zero(d)};
        if (surface_.picture) {
            const TexelLight texel =
                readTexels(*surface_.picture, picture_.at(column, down, depth),
                           {surface_.repeatS, surface_.repeatT, !surface_.opaque});
            light = {hns::Mul(light.r, texel.r), hns::Mul(light.g, texel.g),
                     hns::Mul(light.b, texel.b)};
            alpha = hns::Mul(alpha, texel.alpha);
        }
        if (surface_.lambert) light = lit(light, alpha, column, down, depth);
        light = {fog_.behind(fog, light.r, alpha, 0), fog_.behind(fog, light.g, alpha, 1),
                 fog_.behind(fog, light.b, alpha, 2)};
        if (surface_.mirrored) light = reflected(light, column, down, depth, kept);
        return light;
    }

  private:
    // The light of a polygon that has it as planes, which a surface's rim may leave below 0.
    template <class Rows>
    Rgb evenAt(TileV column, Rows down) const {
        const auto none = hns::Zero(TileF());
        return {hns::Max(even_[0].at(column, down), none),
                hns::Max(even_[1].at(column, down), none),
                hns::Max(even_[2].at(column, down), none)};
    }

    // The direction of the side that is seen, of length 1.
    template <class Rows>
    Rgb normalAt(TileV column, Rows down) const {
        const TileF d;
        if (polygon_.flat)
            return {hns::Set(d, polygon_.normal.x), hns::Set(d, polygon_.normal.y),
                    hns::Set(d, polygon_.normal.z)};
        const auto x = normal_[0].at(column, down);
        const auto y = normal_[1].at(column, down);
        const auto z = normal_[2].at(column, down);
        const auto size =
            hns::Sqrt(hns::Add(hns::Add(hns::Mul(x, x), hns::Mul(y, y)), hns::Mul(z, z)));
        const auto unit = hns::Div(hns::Set(d, polygon_.back ? -1.0F : 1.0F),
                                   hns::Max(size, hns::Set(d, 1e-20F)));
        return {hns::Mul(x, unit), hns::Mul(y, unit), hns::Mul(z, unit)};
    }

    template <class Rows>
    Rgb lit(const Rgb& colour, TileV alpha, TileV column, Rows down, TileV depth) const {
        const TileF d;
        const Rgb ray{hns::Mul(ray_[0].at(column, down), depth),
                      hns::Mul(ray_[1].at(column, down), depth),
                      hns::Mul(ray_[2].at(column, down), depth)};
        const auto zero = hns::Zero(d);
        const Rgb normal = normalAt(column, down);
        Rgb sum{hns::Set(d, frame_.ambient.r), hns::Set(d, frame_.ambient.g),
                hns::Set(d, frame_.ambient.b)};
        for (std::size_t i = 0; i < frame_.lights; ++i) {
            const glm::vec3& place =
                surface_.mirrored ? frame_.mirroredPlace[i] : frame_.lightPlace[i];
            const auto lx = hns::Sub(hns::Set(d, place.x), ray.r);
            const auto ly = hns::Sub(hns::Set(d, place.y), ray.g);
            const auto lz = hns::Sub(hns::Set(d, place.z), ray.b);
            const auto length =
                hns::Sqrt(hns::Add(hns::Add(hns::Mul(lx, lx), hns::Mul(ly, ly)), hns::Mul(lz, lz)));
            const auto dot = hns::Add(hns::Add(hns::Mul(lx, normal.r), hns::Mul(ly, normal.g)),
                                      hns::Mul(lz, normal.b));
            const auto share = hns::Max(hns::Div(dot, hns::Max(length, hns::Set(d, 1e-20F))), zero);
            const glm::vec3& lamp = frame_.lightColour[i];
            sum.r = hns::Add(sum.r, hns::Mul(share, hns::Set(d, lamp.r)));
            sum.g = hns::Add(sum.g, hns::Mul(share, hns::Set(d, lamp.g)));
            sum.b = hns::Add(sum.b, hns::Mul(share, hns::Set(d, lamp.b)));
        }
        const glm::vec3& own = surface_.emission;
        return {hns::Add(hns::Mul(colour.r, sum.r), hns::Mul(alpha, hns::Set(d, own.r))),
                hns::Add(hns::Mul(colour.g, sum.g), hns::Mul(alpha, hns::Set(d, own.g))),
                hns::Add(hns::Mul(colour.b, sum.b), hns::Mul(alpha, hns::Set(d, own.b)))};
    }

    template <class Rows>
    Rgb reflected(const Rgb& light, TileV column, Rows down, TileV depth, Mask& kept) const {
        const TileF d;
        const auto height = hns::Mul(height_.at(column, down), depth);
        kept = hns::And(kept, hns::Ge(height, hns::Zero(d)));
        auto share =
            hns::Sub(hns::Set(d, 1.0F), hns::Mul(height, hns::Set(d, frame_.reflectionShare)));
        share = hns::Min(hns::Max(share, hns::Zero(d)), hns::Set(d, 1.0F));
        share = hns::Mul(share, hns::Set(d, frame_.reflectivity));
        return {hns::Mul(light.r, share), hns::Mul(light.g, share), hns::Mul(light.b, share)};
    }

    const ScreenPolygon& polygon_;
    const Surface& surface_;
    const PolygonFrame& frame_;
    Flat near_;
    TileFog fog_;
    TilePicturePlane picture_;
    Flat height_;
    std::array<Flat, 3> normal_;
    std::array<Flat, 3> ray_;
    std::array<Flat, 3> even_;
};

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
