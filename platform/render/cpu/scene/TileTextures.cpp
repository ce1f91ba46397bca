// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileTextures.h"

#include <algorithm>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileTextures.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileFaces-inl.h"
#include "platform/render/cpu/scene/TileOutline-inl.h"
#include "platform/render/cpu/scene/TileTexels-inl.h"
#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// A row, and room for a vector that ends behind it.
constexpr std::size_t kRowRoom = kTileWidth + kTileMargin;

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
        for (std::size_t i = 0; i < count; i += kLanes)
            for (std::size_t j = i; j < i + kLanes; ++j)
                hwy::Prefetch(texels + 2 * static_cast<std::ptrdiff_t>(places_[j]));
    }

    void fetch(const std::uint32_t* texels) {
        const std::size_t count = count_;
        for (std::size_t i = 0; i < count; i += kLanes)
            for (std::size_t j = i; j < i + kLanes; ++j)
                std::memcpy(words_.data() + 4 * j,
                            texels + 2 * static_cast<std::ptrdiff_t>(places_[j]), 16);
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
    // The number of readings is a multiple of a vector's, which spares steps of the loops.
    static constexpr std::size_t kLanes = hn::MaxLanes(TileF());
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
    PixelSpan span;
    bool hasSteps = false;  // `wide` holds
    ReadingRow readings;
    alignas(64) std::array<float, kRowRoom> depth;  // 0 where no polygon is
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
    void begin(int number, TexturedFaces& faces, TextureRow& row) const {
        row.row = number;
        row.span = faces.enter(number);
        row.hasSteps = faces.hasSteps();
        row.readings.clear();
        for (int x = row.span.first; x < endOf(row); x += kLanes)
            place(row, faces, x);
        row.readings.announce(surface_.picture->texels.data());
    }

    void finish(TextureRow& row) const {
        row.readings.fetch(surface_.picture->texels.data());
        for (int x = row.span.first; x < endOf(row); x += kLanes)
            shade(row, x);
    }

  private:
    static constexpr int kLanes = static_cast<int>(hn::MaxLanes(TileF()));

    [[nodiscard]] int endOf(const TextureRow& row) const {
        return std::min(row.span.end, tile_.width);
    }

    void place(TextureRow& row, const TexturedFaces& faces, int x) const {
        const TileF d;
        const auto at = static_cast<std::size_t>(x);
        const auto column = columnsFrom(x);
        float* const nearest = tile_.near + SceneTile::at(x, row.row);
        const ShownFaces shown = faces.shownAt(x, column, hn::LoadU(d, nearest));
        const auto one = hn::Set(d, 1.0F);
        const auto depth =
            hn::IfThenElseZero(shown.in, hn::Div(one, hn::Max(shown.near, hn::Set(d, 1e-7F))));
        hn::StoreU(shown.near, d, nearest);
        hn::StoreU(depth, d, row.depth.data() + at);
        const auto fog = fog_.at(column, static_cast<float>(row.row), depth);
        hn::StoreU(fog, d, row.fog.data() + at);
        row.isHidden[at] = fog_.hides(hn::IfThenElse(shown.in, fog, one));
        if (row.isHidden[at]) return;
        const RipPicture& picture = *surface_.picture;
        const TexelPlaces places = shown.placesAt(column, depth, row.hasSteps);
        if (!row.hasSteps) {
            row.readings.place(wholeSpots(picture, places.u, places.v, manner_));
            return;
        }
        const auto wide = placeReadings(
            picture, places, manner_, [&](const TexelSpots& spots) { row.readings.place(spots); });
        hn::StoreU(wide, d, row.wide.data() + at);
    }

    void shade(TextureRow& row, int x) const {
        const TileF d;
        const auto at = static_cast<std::size_t>(x);
        const auto in = hn::Gt(hn::LoadU(d, row.depth.data() + at), hn::Zero(d));
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
            row.hasSteps ? averaged(hn::LoadU(d, row.wide.data() + at), read) : read();
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

void drawTextured(std::span<const ScreenPolygon* const> polygons, const Surface& surface,
                  const PolygonFrame& frame, SceneTile& tile) {
    TexturedFaces faces(polygons, *surface.picture, tile);
    const TextureWork work(surface, frame, tile);
    const PixelSpan rows = faces.rows();
    // While a row's texels come, the next row is begun.
    std::array<TextureRow, 2> both;
    for (int i = rows.first; i < rows.end; ++i) {
        work.begin(i, faces, both[static_cast<std::size_t>(i) % 2]);
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
