// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileTextures.h"

#include <algorithm>
#include <cstring>
#include <optional>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileTextures.cpp"
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

// A row, and room for a vector that ends behind it.
constexpr std::size_t kRowRoom = kTileWidth + kTileMargin;

// The depth and the picture's places along a row of pixels. A depth of 0 stands for no polygon.
struct PlaceRow {
    enum Plane : std::size_t { kDepth, kU, kV, kUAcross, kVAcross, kUDown, kVDown, kPlanes };
    alignas(64) std::array<std::array<float, kRowRoom>, kPlanes> plane;
    PixelSpan span;
    bool hasSteps = true;  // the planes from kUAcross on hold

    void clear() {
        for (std::size_t i = 0; i < (hasSteps ? kPlanes : kUAcross); ++i)
            plane[i].fill(0.0F);
        span = {kTileWidth, 0};
    }

    [[nodiscard]] TileV at(Plane number, int x) const {
        return hn::LoadU(TileF(), plane[number].data() + x);
    }
    [[nodiscard]] TexelPlaces placesAt(int x) const {
        return {at(kU, x),       at(kV, x),     at(kUAcross, x),
                at(kVAcross, x), at(kUDown, x), at(kVDown, x)};
    }
    void put(Plane number, int x, hn::Mask<TileF> in, TileV value) {
        float* const to = plane[number].data() + x;
        hn::StoreU(hn::IfThenElse(in, value, hn::LoadU(TileF(), to)), TileF(), to);
    }
    void putSteps(int x, hn::Mask<TileF> in, const TexelPlaces& places) {
        put(kUAcross, x, in, places.uAcross);
        put(kVAcross, x, in, places.vAcross);
        put(kUDown, x, in, places.uDown);
        put(kVDown, x, in, places.vDown);
    }
};

// One polygon, which says where in the picture each pixel lies.
class TexturedFace {
  public:
    TexturedFace(const ScreenPolygon& polygon, const SceneTile& tile)
        : outline_(polygon, tile), near_(polygon.near, tile), picture_(polygon, near_, tile) {}

    [[nodiscard]] PixelSpan rows() const { return outline_.rows(); }

    // Whether some pixel may take more than one reading of the picture.
    [[nodiscard]] bool hasSmallTexels(const RipPicture& picture) const {
        const glm::vec2 size(picture.width, picture.height);
        // Nearly as wide is as wide: the pixel's own numbers are rounded.
        return picture_.widest(outline_.columns(), outline_.rows(), size) > 0.98F * kOneReading;
    }

    void placeRow(int row, SceneTile& tile, PlaceRow& to) const {
        if (row < outline_.rows().first || row >= outline_.rows().end) return;
        const PixelSpan span = outline_.columns(row);
        if (span.first >= span.end) return;
        to.span = {std::min(to.span.first, span.first), std::max(to.span.end, span.end)};
        for (int x = span.first; x < span.end; x += static_cast<int>(hn::Lanes(TileF())))
            placeSome(x, row, tile, to);
    }

  private:
    void placeSome(int x, int row, SceneTile& tile, PlaceRow& to) const {
        const TileF d;
        const auto column = columnsFrom(x);
        const auto down = static_cast<float>(row);
        const auto near = near_.at(column, down);
        float* const nearest = tile.near + SceneTile::at(x, row);
        const auto before = hn::LoadU(d, nearest);
        // The edges alone do not cut off a part behind the camera.
        auto in = hn::And(hn::Gt(near, hn::Zero(d)), hn::Ge(near, before));
        for (int i = 0; i < outline_.edges(); ++i)
            in = hn::And(in, hn::Ge(outline_.edge(i).at(column, down), hn::Zero(d)));
        if (hn::AllFalse(d, in)) return;
        const auto depth = hn::Div(hn::Set(d, 1.0F), hn::Max(near, hn::Set(d, 1e-7F)));
        to.put(PlaceRow::kDepth, x, in, depth);
        to.put(PlaceRow::kU, x, in, picture_.u(column, down, depth));
        to.put(PlaceRow::kV, x, in, picture_.v(column, down, depth));
        if (to.hasSteps) to.putSteps(x, in, picture_.at(column, down, depth));
        hn::StoreU(hn::IfThenElse(in, near, before), d, nearest);
    }

    TileOutline outline_;
    Flat near_;
    TilePicturePlane picture_;
};

// The readings of a row of pixels. Their texels are copied one by one between the vectors' work
// on all of them: a processor's own gathering of vectors waits for each.
class ReadingRow {
  public:
    void clear() { count_ = 0; }

    void place(const TexelSpots& spots) {
        hn::StoreU(spots.above, TexelI(), above_.data() + count_);
        hn::StoreU(spots.below, TexelI(), below_.data() + count_);
        hn::StoreU(spots.right, TileF(), right_.data() + count_);
        hn::StoreU(spots.lower, TileF(), lower_.data() + count_);
        count_ += hn::Lanes(TileF());
    }

    void fetch(const std::uint32_t* texels) {
        for (std::size_t i = 0; i < count_; ++i) {
            std::memcpy(aboveWords_.data() + 2 * i, texels + above_[i], 8);
            std::memcpy(belowWords_.data() + 2 * i, texels + below_[i], 8);
        }
        count_ = 0;
    }

    // The light of the readings, in the order in which they were placed.
    TexelLight next() {
        const auto wordsOf = [&](const auto& from) {
            TexelWords words;
            hn::LoadInterleaved2(TexelU(), from.data() + 2 * count_, words.left, words.right);
            return words;
        };
        const TexelLight light = mixedLight(wordsOf(aboveWords_), wordsOf(belowWords_),
                                            hn::LoadU(TileF(), right_.data() + count_),
                                            hn::LoadU(TileF(), lower_.data() + count_));
        count_ += hn::Lanes(TileF());
        return light;
    }

  private:
    static constexpr std::size_t kRoom = kMostReadings * kRowRoom;
    std::size_t count_ = 0;
    alignas(64) std::array<std::int32_t, kRoom> above_;
    alignas(64) std::array<std::int32_t, kRoom> below_;
    alignas(64) std::array<float, kRoom> right_;
    alignas(64) std::array<float, kRoom> lower_;
    alignas(64) std::array<std::uint32_t, 2 * kRoom> aboveWords_;
    alignas(64) std::array<std::uint32_t, 2 * kRoom> belowWords_;
};

// Reads the picture for rows of pixels.
class TextureWork {
  public:
    TextureWork(const Surface& surface, const PolygonFrame& frame, SceneTile& tile)
        : surface_(surface),
          manner_{surface.repeatS, surface.repeatT, false},
          tile_(tile),
          fog_(frame, surface, tile) {}

    void drawRow(const PlaceRow& places, int row) {
        const int lanes = static_cast<int>(hn::Lanes(TileF()));
        const int end = std::min(places.span.end, tile_.width);
        readings_.clear();
        for (int x = places.span.first; x < end; x += lanes)
            place(places, x, row);
        readings_.fetch(surface_.picture->texels.data());
        for (int x = places.span.first; x < end; x += lanes)
            shade(places, x, row);
    }

  private:
    void place(const PlaceRow& places, int x, int row) {
        const TileF d;
        const auto at = static_cast<std::size_t>(x);
        const auto column = columnsFrom(x);
        const auto depth = places.at(PlaceRow::kDepth, x);
        const auto fog = fog_.at(column, static_cast<float>(row), depth);
        const auto none = hn::Le(depth, hn::Zero(d));
        hn::StoreU(fog, d, fogs_.data() + at);
        isHidden_[at] = fog_.hides(hn::IfThenElse(none, hn::Set(d, 1.0F), fog));
        if (isHidden_[at]) return;
        if (!places.hasSteps) {
            readings_.place(wholeSpots(*surface_.picture, places.at(PlaceRow::kU, x),
                                       places.at(PlaceRow::kV, x), manner_));
            return;
        }
        const auto wide = placeReadings(*surface_.picture, places.placesAt(x), manner_,
                                        [&](const TexelSpots& spots) { readings_.place(spots); });
        hn::StoreU(wide, d, wide_.data() + at);
    }

    void shade(const PlaceRow& places, int x, int row) {
        const TileF d;
        const auto at = static_cast<std::size_t>(x);
        const auto in = hn::Gt(places.at(PlaceRow::kDepth, x), hn::Zero(d));
        const auto put = [&](TileV value, int k) {
            float* const to = tile_.light[static_cast<std::size_t>(k)] + SceneTile::at(x, row);
            hn::StoreU(hn::IfThenElse(in, value, hn::LoadU(d, to)), d, to);
        };
        if (isHidden_[at]) {
            for (int k = 0; k < 3; ++k)
                put(hn::Zero(d), k);
            return;
        }
        const TexelLight texel = places.hasSteps ? averaged(hn::LoadU(d, wide_.data() + at),
                                                            [&] { return readings_.next(); })
                                                 : readings_.next();
        const TileV colours[3] = {texel.r, texel.g, texel.b};
        const auto fog = hn::LoadU(d, fogs_.data() + at);
        for (int k = 0; k < 3; ++k)
            put(fog_.behind(fog, hn::Mul(hn::Set(d, surface_.tint[k]), colours[k]),
                            hn::Set(d, 1.0F), k),
                k);
    }

    const Surface& surface_;
    const TexelManner manner_;
    SceneTile& tile_;
    const TileFog fog_;
    ReadingRow readings_;
    alignas(64) std::array<float, kRowRoom> fogs_;
    alignas(64) std::array<float, kRowRoom> wide_;
    std::array<bool, kRowRoom> isHidden_;  // by a vector's first pixel
};

void drawTextured(std::span<const ScreenPolygon* const> polygons, const Surface& surface,
                  const PolygonFrame& frame, SceneTile& tile) {
    std::array<std::optional<TexturedFace>, kMostTextured> faces;
    PixelSpan rows{kTileHeight, 0};
    PlaceRow places;
    places.hasSteps = false;
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        const TexturedFace& face = faces[i].emplace(*polygons[i], tile);
        rows = {std::min(rows.first, face.rows().first), std::max(rows.end, face.rows().end)};
        places.hasSteps = places.hasSteps || face.hasSmallTexels(*surface.picture);
    }
    TextureWork work(surface, frame, tile);
    for (int row = rows.first; row < rows.end; ++row) {
        places.clear();
        for (std::size_t i = 0; i < polygons.size(); ++i)
            faces[i]->placeRow(row, tile, places);
        work.drawRow(places, row);
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawTextured);

bool isTextured(const Surface& surface) {
    return surface.opaque && !surface.outlined && surface.picture && !surface.lambert &&
           !surface.mirrored && surface.hiding.reads && surface.hiding.writes;
}

void drawTextured(std::span<const ScreenPolygon* const> polygons, const Surface& surface,
                  const PolygonFrame& frame, SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawTextured)(polygons, surface, frame, tile);
}

}  // namespace platform
#endif
