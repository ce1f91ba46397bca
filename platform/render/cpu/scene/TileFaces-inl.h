// SPDX-License-Identifier: MIT
// The faces of a picture's surface that a tile's pixels show; included once per vector target. Any
// thread; owns nothing.
#if defined(PLATFORM_TILE_FACES_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef PLATFORM_TILE_FACES_INL
#undef PLATFORM_TILE_FACES_INL
#else
#define PLATFORM_TILE_FACES_INL
#endif

#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <span>
#include <type_traits>

#include "platform/render/cpu/scene/RipPicture.h"
#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/TileOutline-inl.h"
#include "platform/render/cpu/scene/TileTexels-inl.h"
#include "platform/render/cpu/scene/TileTextures.h"
#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hnf = hwy::HWY_NAMESPACE;

// The planes of the face that each of some pixels shows; none where `in` is false.
struct ShownFaces {
    hnf::Mask<TileF> in;
    TileV near;  // of the face, or of what is there before
    // The changes of the nearness, and of the picture's place times nearness, from a pixel to the
    // next one and to the one below, and that place in the row's first column.
    TileV nearAcross, nearDown;
    TileV uAcross, uDown, uFirst;
    TileV vAcross, vDown, vFirst;

    explicit ShownFaces(TileV before)
        : in(hnf::Lt(before, before)),
          near(before),
          nearAcross(hnf::Zero(TileF())),
          nearDown(nearAcross),
          uAcross(nearAcross),
          uDown(nearAcross),
          uFirst(nearAcross),
          vAcross(nearAcross),
          vDown(nearAcross),
          vFirst(nearAcross) {}

    [[nodiscard]] TexelPlaces placesAt(TileV column, TileV depth, bool hasSteps) const {
        const auto along = [&](TileV across, TileV first) {
            return hnf::Mul(hnf::Add(hnf::Mul(column, across), first), depth);
        };
        const auto step = [&](TileV plane, TileV value, TileV nearStep) {
            return hnf::Mul(hnf::Sub(plane, hnf::Mul(value, nearStep)), depth);
        };
        TexelPlaces places;
        places.u = along(uAcross, uFirst);
        places.v = along(vAcross, vFirst);
        if (!hasSteps) return places;
        places.uAcross = step(uAcross, places.u, nearAcross);
        places.vAcross = step(vAcross, places.v, nearAcross);
        places.uDown = step(uDown, places.u, nearDown);
        places.vDown = step(vDown, places.v, nearDown);
        return places;
    }
};

// One polygon, which says where in the picture each pixel lies.
class TexturedFace {
  public:
    TexturedFace(const ScreenPolygon& polygon, const SceneTile& tile)
        : outline_(polygon, tile), near_(polygon.near, tile), picture_(polygon, near_, tile) {
        for (int i = 0; i < outline_.edges(); ++i) {
            const Flat& edge = outline_.edge(i);
            Cut& cut = cut_[static_cast<std::size_t>(i)];
            const bool isLevel = std::abs(edge.a) < 1e-6F;
            cut.side = isLevel ? Side::Level : edge.a > 0.0F ? Side::Left : Side::Right;
            const float share = isLevel ? 1.0F : -1.0F / edge.a;
            cut.down = edge.b * share;
            cut.along = (edge.c + kRounding) * share;
        }
    }

    [[nodiscard]] PixelSpan rows() const { return outline_.rows(); }
    [[nodiscard]] PixelSpan columns() const { return outline_.columns(); }

    // The row's pixels whose middles may lie in the polygon.
    [[nodiscard]] PixelSpan columns(int row) const {
        if (row < outline_.rows().first || row >= outline_.rows().end) return {};
        auto low = static_cast<float>(outline_.columns().first);
        auto high = static_cast<float>(outline_.columns().end - 1);
        for (int i = 0; i < outline_.edges(); ++i) {
            const Cut& cut = cut_[static_cast<std::size_t>(i)];
            const float at = cut.down * static_cast<float>(row) + cut.along;
            if (cut.side == Side::Left) {
                low = std::max(low, at);
            } else if (cut.side == Side::Right) {
                high = std::min(high, at);
            } else if (at < 0.0F) {
                return {};
            }
        }
        if (!(low <= high)) return {};
        const int first = static_cast<int>(low);
        return {static_cast<float>(first) < low ? first + 1 : first, static_cast<int>(high) + 1};
    }

    // Whether some pixel of a box may take more than one reading of the picture.
    [[nodiscard]] bool hasSmallTexels(const RipPicture& picture, PixelSpan columns,
                                      PixelSpan rows) const {
        const glm::vec2 size(picture.width, picture.height);
        // Nearly as wide is as wide: the pixel's own numbers are rounded.
        return picture_.widest(columns, rows, size) > 0.98F * kOneReading;
    }

    // Shows the face where it is the nearest.
    HWY_INLINE void show(TileV column, float row, bool hasSteps, ShownFaces& shown) const {
        const TileF d;
        const auto near = near_.at(column, row);
        // The edges alone do not cut off a part behind the camera.
        auto in = hnf::And(hnf::Gt(near, hnf::Zero(d)), hnf::Ge(near, shown.near));
        for (int i = 0; i < outline_.edges(); ++i)
            in = hnf::And(in, hnf::Ge(outline_.edge(i).at(column, row), hnf::Zero(d)));
        if (hnf::AllFalse(d, in)) return;
        const auto put = [&](TileV& to, float value)
                             HWY_ATTR { to = hnf::IfThenElse(in, hnf::Set(d, value), to); };
        const Flat& u = picture_.uPlane();
        const Flat& v = picture_.vPlane();
        shown.in = hnf::Or(shown.in, in);
        shown.near = hnf::IfThenElse(in, near, shown.near);
        put(shown.uAcross, u.a);
        put(shown.vAcross, v.a);
        put(shown.uFirst, u.b * row + u.c);
        put(shown.vFirst, v.b * row + v.c);
        if (!hasSteps) return;
        put(shown.nearAcross, near_.a);
        put(shown.nearDown, near_.b);
        put(shown.uDown, u.b);
        put(shown.vDown, v.b);
    }

  private:
    // Pixels by which rounding may misplace an edge, and more.
    static constexpr float kRounding = 0.01F;
    enum class Side : std::uint8_t { Left, Right, Level };
    // Where an edge cuts a row, in columns; of a level edge the distance from it.
    struct Cut {
        Side side;
        float down, along;  // the change from row to row, and the place in the tile's first row
    };

    TileOutline outline_;
    std::array<Cut, ScreenPolygon::kMaxEdges> cut_;
    Flat near_;
    TilePicturePlane picture_;
};

// Some polygons of a tile.
class TexturedFaces {
  public:
    TexturedFaces(std::span<const ScreenPolygon* const> polygons, const RipPicture& picture,
                  const SceneTile& tile)
        : picture_(picture), count_(polygons.size()) {
        for (std::size_t i = 0; i < count_; ++i) {
            const TexturedFace& face = *std::construct_at(&face_[i].face, *polygons[i], tile);
            rows_ = {std::min(rows_.first, face.rows().first),
                     std::max(rows_.end, face.rows().end)};
            hasSmall_[i] = face.hasSmallTexels(picture, face.columns(), face.rows());
        }
    }

    [[nodiscard]] PixelSpan rows() const { return rows_; }

    // Goes to a row. Returns the pixels that the polygons may touch.
    PixelSpan enter(int row) {
        row_ = static_cast<float>(row);
        hasSteps_ = false;
        PixelSpan all{kTileWidth, 0};
        // One array for each end: a span that is written in halves is slow to read as a whole.
        std::array<int, kMostTextured> first, end;
        for (std::size_t i = 0; i < count_; ++i) {
            const PixelSpan span = face_[i].face.columns(row);
            first[i] = span.first;
            end[i] = span.end;
            if (span.first >= span.end) continue;
            all = {std::min(all.first, span.first), std::max(all.end, span.end)};
            if (!hasSmall_[i] || hasSteps_) continue;
            hasSteps_ = face_[i].face.hasSmallTexels(picture_, span, {row, row});
        }
        first_ = all.first;
        shown_.fill(0);
        for (std::size_t i = 0; i < count_; ++i)
            for (int x = first[i]; x < end[i];) {
                const int number = (x - first_) / kLanes;
                shown_[static_cast<std::size_t>(number)] |= std::uint64_t{1} << i;
                x = first_ + (number + 1) * kLanes;
            }
        return all;
    }
    // Whether some pixel of the row may take more than one reading.
    [[nodiscard]] bool hasSteps() const { return hasSteps_; }

    // The faces that the row's pixels from `x` on show, before what has this nearness. Whole
    // vectors lie between the row's first pixel and `x`.
    [[nodiscard]] HWY_INLINE ShownFaces shownAt(int x, TileV column, TileV before) const {
        ShownFaces shown(before);
        for (std::uint64_t rest = shown_[static_cast<std::size_t>((x - first_) / kLanes)];
             rest != 0; rest &= rest - 1)
            face_[static_cast<std::size_t>(std::countr_zero(rest))].face.show(column, row_,
                                                                              hasSteps_, shown);
        return shown;
    }

  private:
    static constexpr int kLanes = static_cast<int>(hnf::MaxLanes(TileF()));

    const RipPicture& picture_;
    std::size_t count_;
    PixelSpan rows_{kTileHeight, 0};
    // Room for a face; that of an optional would be cleared, all of it for each tile.
    union Room {
        TexturedFace face;
        Room() {}
    };
    static_assert(std::is_trivially_destructible_v<TexturedFace>);
    std::array<Room, kMostTextured> face_;
    std::array<bool, kMostTextured> hasSmall_;  // texels, perhaps, somewhere in the tile
    float row_ = 0.0F;
    int first_ = 0;
    bool hasSteps_ = false;
    // The faces that each vector of the row may show, a bit for each.
    static_assert(kMostTextured <= 64);
    std::array<std::uint64_t, kTileWidth / kLanes + 1> shown_;
};

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
