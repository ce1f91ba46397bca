// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileTextures.h"

#include <algorithm>
#include <cstring>
#include <optional>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileTextures.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/cache_control.h>
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
    [[nodiscard]] PixelSpan columns() const { return outline_.columns(); }

    // The row's pixels that the polygon may touch.
    [[nodiscard]] PixelSpan columns(int row) const {
        if (row < outline_.rows().first || row >= outline_.rows().end) return {};
        return outline_.columns(row);
    }

    // Whether some pixel of a box may take more than one reading of the picture.
    [[nodiscard]] bool hasSmallTexels(const RipPicture& picture, PixelSpan columns,
                                      PixelSpan rows) const {
        const glm::vec2 size(picture.width, picture.height);
        // Nearly as wide is as wide: the pixel's own numbers are rounded.
        return picture_.widest(columns, rows, size) > 0.98F * kOneReading;
    }

    void placeRow(int row, PixelSpan span, SceneTile& tile, PlaceRow& to) const {
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
        hn::StoreU(spots.place, TexelI(), places_.data() + count_);
        hn::StoreU(spots.right, TileF(), right_.data() + count_);
        hn::StoreU(spots.lower, TileF(), lower_.data() + count_);
        count_ += hn::Lanes(TileF());
    }

    // Asks for the texels, which are seldom in the nearest cache.
    void announce(const std::uint32_t* texels) const {
        const std::size_t count = count_;
        for (std::size_t i = 0; i < count; ++i)
            hwy::Prefetch(texels + 2 * static_cast<std::ptrdiff_t>(places_[i]));
    }

    void fetch(const std::uint32_t* texels) {
        const std::size_t count = count_;
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(words_.data() + 4 * i, texels + 2 * static_cast<std::ptrdiff_t>(places_[i]),
                        16);
        count_ = 0;
    }

    // The light of the readings, in the order in which they were placed.
    TexelLight next() {
        TexelWords words;
        hn::LoadInterleaved4(TexelU(), words_.data() + 4 * count_, words.of[0], words.of[2],
                             words.of[1], words.of[3]);
        const TexelLight light = mixedLight(words, hn::LoadU(TileF(), right_.data() + count_),
                                            hn::LoadU(TileF(), lower_.data() + count_));
        count_ += hn::Lanes(TileF());
        return light;
    }

  private:
    static constexpr std::size_t kRoom = kMostReadings * kRowRoom;
    std::size_t count_ = 0;
    alignas(64) std::array<std::int32_t, kRoom> places_;
    alignas(64) std::array<float, kRoom> right_;
    alignas(64) std::array<float, kRoom> lower_;
    alignas(64) std::array<std::uint32_t, 4 * kRoom> words_;
};

// A row of pixels between the steps of its drawing.
struct TextureRow {
    int row = 0;
    PlaceRow places;
    ReadingRow readings;
    alignas(64) std::array<float, kRowRoom> fog;
    alignas(64) std::array<float, kRowRoom> wide;
    std::array<bool, kRowRoom> isHidden;  // by a vector's first pixel
};

// Reads the picture for rows of pixels.
class TextureWork {
  public:
    TextureWork(const Surface& surface, const PolygonFrame& frame, SceneTile& tile)
        : surface_(surface),
          manner_{surface.repeatS, surface.repeatT, false},
          tile_(tile),
          fog_(frame, surface, tile) {}

    // Finds the row's texels, and asks for them.
    void begin(TextureRow& row) const {
        row.readings.clear();
        for (int x = row.places.span.first; x < endOf(row); x += kLanes)
            place(row, x);
        row.readings.announce(surface_.picture->texels.data());
    }

    void finish(TextureRow& row) const {
        row.readings.fetch(surface_.picture->texels.data());
        for (int x = row.places.span.first; x < endOf(row); x += kLanes)
            shade(row, x);
    }

  private:
    static constexpr int kLanes = static_cast<int>(hn::MaxLanes(TileF()));

    [[nodiscard]] int endOf(const TextureRow& row) const {
        return std::min(row.places.span.end, tile_.width);
    }

    void place(TextureRow& row, int x) const {
        const TileF d;
        const auto at = static_cast<std::size_t>(x);
        const PlaceRow& places = row.places;
        const auto depth = places.at(PlaceRow::kDepth, x);
        const auto fog = fog_.at(columnsFrom(x), static_cast<float>(row.row), depth);
        const auto none = hn::Le(depth, hn::Zero(d));
        hn::StoreU(fog, d, row.fog.data() + at);
        row.isHidden[at] = fog_.hides(hn::IfThenElse(none, hn::Set(d, 1.0F), fog));
        if (row.isHidden[at]) return;
        const RipPicture& picture = *surface_.picture;
        if (!places.hasSteps) {
            row.readings.place(wholeSpots(picture, places.at(PlaceRow::kU, x),
                                          places.at(PlaceRow::kV, x), manner_));
            return;
        }
        const auto wide =
            placeReadings(picture, places.placesAt(x), manner_,
                          [&](const TexelSpots& spots) { row.readings.place(spots); });
        hn::StoreU(wide, d, row.wide.data() + at);
    }

    void shade(TextureRow& row, int x) const {
        const TileF d;
        const auto at = static_cast<std::size_t>(x);
        const auto in = hn::Gt(row.places.at(PlaceRow::kDepth, x), hn::Zero(d));
        const auto put = [&](TileV value, int k) {
            if ((tile_.colours >> k & 1U) == 0) return;
            float* const to = tile_.light[static_cast<std::size_t>(k)] + SceneTile::at(x, row.row);
            hn::StoreU(hn::IfThenElse(in, value, hn::LoadU(d, to)), d, to);
        };
        if (row.isHidden[at]) {
            for (int k = 0; k < 3; ++k)
                put(hn::Zero(d), k);
            return;
        }
        const auto read = [&] { return row.readings.next(); };
        const TexelLight texel =
            row.places.hasSteps ? averaged(hn::LoadU(d, row.wide.data() + at), read) : read();
        const TileV colours[3] = {texel.r, texel.g, texel.b};
        const auto fog = hn::LoadU(d, row.fog.data() + at);
        for (int k = 0; k < 3; ++k)
            put(fog_.behind(fog, hn::Mul(hn::Set(d, surface_.tint[k]), colours[k]),
                            hn::Set(d, 1.0F), k),
                k);
    }

    const Surface& surface_;
    const TexelManner manner_;
    SceneTile& tile_;
    const TileFog fog_;
};

// Some polygons of a tile.
class TexturedFaces {
  public:
    TexturedFaces(std::span<const ScreenPolygon* const> polygons, const RipPicture& picture,
                  const SceneTile& tile)
        : picture_(picture), count_(polygons.size()) {
        for (std::size_t i = 0; i < count_; ++i) {
            const TexturedFace& face = face_[i].emplace(*polygons[i], tile);
            rows_ = {std::min(rows_.first, face.rows().first),
                     std::max(rows_.end, face.rows().end)};
            hasSmall_[i] = face.hasSmallTexels(picture, face.columns(), face.rows());
        }
    }

    [[nodiscard]] PixelSpan rows() const { return rows_; }

    void placeRow(int row, SceneTile& tile, PlaceRow& to) const {
        std::array<PixelSpan, kMostTextured> spans;
        to.hasSteps = false;
        for (std::size_t i = 0; i < count_; ++i) {
            spans[i] = face_[i]->columns(row);
            if (spans[i].first >= spans[i].end || !hasSmall_[i] || to.hasSteps) continue;
            to.hasSteps = face_[i]->hasSmallTexels(picture_, spans[i], {row, row});
        }
        to.clear();
        for (std::size_t i = 0; i < count_; ++i)
            if (spans[i].first < spans[i].end) face_[i]->placeRow(row, spans[i], tile, to);
    }

  private:
    const RipPicture& picture_;
    std::size_t count_;
    PixelSpan rows_{kTileHeight, 0};
    std::array<std::optional<TexturedFace>, kMostTextured> face_;
    std::array<bool, kMostTextured> hasSmall_;  // texels, perhaps, somewhere in the tile
};

void drawTextured(std::span<const ScreenPolygon* const> polygons, const Surface& surface,
                  const PolygonFrame& frame, SceneTile& tile) {
    const TexturedFaces faces(polygons, *surface.picture, tile);
    const TextureWork work(surface, frame, tile);
    const PixelSpan rows = faces.rows();
    // While a row's texels come, the next row is begun.
    std::array<TextureRow, 2> both;
    for (int i = rows.first; i < rows.end; ++i) {
        TextureRow& row = both[static_cast<std::size_t>(i) % 2];
        row.row = i;
        faces.placeRow(i, tile, row.places);
        work.begin(row);
        if (i > rows.first) work.finish(both[static_cast<std::size_t>(i - 1) % 2]);
    }
    if (rows.first < rows.end) work.finish(both[static_cast<std::size_t>(rows.end - 1) % 2]);
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
