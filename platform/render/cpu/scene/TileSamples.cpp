// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileSamples.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileSamples.cpp"
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

// A vector holds samples of one pixel.
using SampleF = hn::CappedTag<float, kSamples>;
using SampleV = hn::Vec<SampleF>;
using Samples = std::array<float, kSamples>;

inline constexpr unsigned kWhole = (1U << kSamples) - 1;
inline constexpr std::size_t kLanes = hn::MaxLanes(SampleF());
// A number for each sample of a pixel.
using SampleVs = std::array<SampleV, kSamples / kLanes>;

HWY_INLINE unsigned bitsOf(hn::Mask<SampleF> in) {
    std::array<std::uint8_t, 8> bits{};
    hn::StoreMaskBits(SampleF(), in, bits.data());
    return bits[0];
}

// The change of a plane from a pixel's middle to each sample.
inline Samples shiftsOf(const Flat& plane) {
    Samples shifts;
    for (std::size_t s = 0; s < kSamples; ++s)
        shifts[s] = plane.a * kSamplePlaces[s][0] + plane.b * kSamplePlaces[s][1];
    return shifts;
}

// The pixels of a row that a polygon touches, perhaps with a pixel more, and those of which it
// holds every sample.
struct TouchedRow {
    PixelSpan any, whole;
};

// The part of each row of a tile that lies within a polygon's edges, sample by sample.
class SampledRows {
  public:
    // Without an outline a pixel is inside where its middle is.
    SampledRows(const TileOutline& outline, bool isOutlined) : columns_(outline.columns()) {
        for (int i = 0; i < outline.edges(); ++i)
            add(outline.edge(i), isOutlined);
    }

    // Goes to a row.
    HWY_INLINE TouchedRow enter(int row) {
        const SampleF d;
        first_.fill(hn::Set(d, static_cast<float>(columns_.first)));
        last_.fill(hn::Set(d, static_cast<float>(columns_.end - 1)));
        float low = static_cast<float>(columns_.first);
        float high = static_cast<float>(columns_.end - 1);
        float wholeLow = low;
        float wholeHigh = high;
        for (int i = 0; i < count_; ++i) {
            const Edge& edge = edge_[static_cast<std::size_t>(i)];
            const float at = edge.down * static_cast<float>(row) + edge.along;
            if (edge.side == Side::Left) {
                low = std::max(low, at + edge.least);
                wholeLow = std::max(wholeLow, at + edge.most);
                narrow(edge, at, [](SampleV& first, SampleV&, SampleV cut) HWY_ATTR {
                    first = hn::Max(first, cut);
                });
            } else if (edge.side == Side::Right) {
                high = std::min(high, at + edge.most);
                wholeHigh = std::min(wholeHigh, at + edge.least);
                narrow(edge, at, [](SampleV&, SampleV& last, SampleV cut) HWY_ATTR {
                    last = hn::Min(last, cut);
                });
            } else {
                if (at + edge.most < 0.0F) return {};
                if (at + edge.least < 0.0F) wholeHigh = -1.0F;
                narrow(edge, at, [](SampleV&, SampleV& last, SampleV cut) HWY_ATTR {
                    const auto in = hn::Ge(cut, hn::Zero(SampleF()));
                    last = hn::IfThenElse(in, last, hn::Set(SampleF(), -1.0F));
                });
            }
        }
        if (!(low <= high)) return {};
        const PixelSpan any{static_cast<int>(low), static_cast<int>(high) + 1};
        if (!(wholeLow <= wholeHigh)) return {any, {any.end, any.end}};
        const int first = static_cast<int>(std::ceil(wholeLow));
        return {any, {first, std::max(first, static_cast<int>(wholeHigh) + 1)}};
    }

    // Part number `i` of the samples of the row's pixel at `column` that lie inside.
    [[nodiscard]] HWY_INLINE hn::Mask<SampleF> inside(SampleV column, std::size_t i) const {
        return hn::And(hn::Ge(column, first_[i]), hn::Le(column, last_[i]));
    }

  private:
    enum class Side : std::uint8_t { Left, Right, Level };
    // Where the edge cuts a row, in columns; of a level edge the distance from it.
    struct Edge {
        Side side;
        float down, along;  // the change from row to row, and the place in the tile's first row
        float least, most;  // of the shifts
        Samples shifts;     // from a pixel's middle to each sample
    };

    void add(const Flat& line, bool isOutlined) {
        Edge& edge = edge_[static_cast<std::size_t>(count_++)];
        const bool isLevel = std::abs(line.a) < 1e-6F;
        edge.side = isLevel ? Side::Level : line.a > 0.0F ? Side::Left : Side::Right;
        const float share = isLevel ? 1.0F : -1.0F / line.a;
        edge.down = line.b * share;
        edge.along = line.c * share;
        edge.least = 0.0F;
        edge.most = 0.0F;
        edge.shifts.fill(0.0F);
        if (!isOutlined) return;
        edge.shifts = shiftsOf(line);
        for (float& shift : edge.shifts) {
            shift *= share;
            edge.least = std::min(edge.least, shift);
            edge.most = std::max(edge.most, shift);
        }
    }

    template <typename Change>
    HWY_INLINE void narrow(const Edge& edge, float at, Change change) {
        const SampleF d;
        for (std::size_t i = 0; i < first_.size(); ++i)
            change(first_[i], last_[i],
                   hn::Add(hn::Set(d, at), hn::LoadU(d, edge.shifts.data() + i * kLanes)));
    }

    const PixelSpan columns_;
    int count_ = 0;
    std::array<Edge, ScreenPolygon::kMaxEdges> edge_;
    // The columns of the row from and up to which each sample is inside.
    SampleVs first_, last_;
};

// One polygon at work in one tile.
class SampledWork {
  public:
    SampledWork(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                SceneTile& tile)
        : surface_(surface),
          tile_(tile),
          outline_(polygon, tile),
          rows_(outline_, surface.outlined),
          shade_(polygon, surface, frame, tile),
          nearShifts_(shiftsOf(shade_.near())),
          leastShift_(*std::min_element(nearShifts_.begin(), nearShifts_.end())) {}

    void draw() {
        const PixelSpan rows = outline_.rows();
        if (rows.end <= rows.first) return;
        for (int row = rows.first; row < rows.end; ++row) {
            const TouchedRow touched = rows_.enter(row);
            takeSpan({touched.any.first, touched.whole.first}, row);
            takeWhole(touched.whole, row);
            takeSpan({touched.whole.end, touched.any.end}, row);
        }
        putPixels();
        tile_.sampledTop = tile_.sampledLight ? std::min(tile_.sampledTop, rows.first) : rows.first;
        tile_.sampledEnd = tile_.sampledLight ? std::max(tile_.sampledEnd, rows.end) : rows.end;
        tile_.sampledLight = true;
    }

  private:
    // Pixels that are shaded together, twice, and room for a vector behind them.
    static constexpr int kBatch = 32;
    static constexpr std::size_t kRoom = 2 * kBatch + kTileMargin;

    HWY_INLINE void takeSpan(PixelSpan span, int row) {
        for (int x = span.first; x < span.end; x += kBatch) {
            if (count_ > kBatch) putPixels();
            takePixels({x, std::min(x + kBatch, span.end)}, row);
        }
    }

    // Takes pixels of which the polygon holds every sample.
    HWY_INLINE void takeWhole(PixelSpan span, int row) {
        constexpr int kFewest = 3;  // pixels that are worth a vector
        constexpr int kMost = static_cast<int>(hn::MaxLanes(TileF()));
        for (int x = span.first; x < span.end; x += kMost) {
            const int count = std::min(kMost, span.end - x);
            if (count < kFewest || !putWhole(x, row, count)) takeSpan({x, x + count}, row);
        }
    }

    // Shades some pixels at once if nothing is kept of their samples and the polygon is the
    // nearest in all of them. The pixels then keep the polygon's number.
    HWY_INLINE bool putWhole(int x, int row, int count) {
        const TileF d;
        const std::ptrdiff_t at = SceneTile::at(x, row);
        const auto pixels = static_cast<std::size_t>(count);
        if (!isUntouched(at, pixels)) return false;
        const auto column = columnsFrom(x);
        const auto near = shade_.near().at(column, static_cast<float>(row));
        const auto first = hn::FirstN(d, pixels);
        auto seen = hn::Gt(near, hn::Zero(d));
        if (surface_.hiding.reads)
            seen = hn::And(seen, hn::Ge(hn::Add(near, hn::Set(d, leastShift_)),
                                        hn::LoadU(d, tile_.near + at)));
        if (!hn::AllFalse(d, hn::AndNot(seen, first)) || !hasNumber()) return false;
        TileV alpha = hn::Set(d, 1.0F);
        auto kept = seen;
        const Rgb light = shade_.shade(column, static_cast<float>(row),
                                       hn::Max(near, hn::Set(d, 1e-7F)), alpha, kept);
        const TileV colours[3] = {light.r, light.g, light.b};
        for (std::size_t k = 0; k < 3; ++k)
            if (holds(tile_.colours, k))
                hn::BlendedStore(colours[k], first, d, tile_.light[k] + at);
        hn::BlendedStore(near, first, d, tile_.near + at);
        std::fill_n(tile_.sampled + at, count, SceneTile::kFace);
        std::fill_n(tile_.face + at, count, static_cast<std::uint8_t>(number_));
        return true;
    }

    // Gives the polygon a number in the tile, if there is one left.
    HWY_INLINE bool hasNumber() {
        if (number_ < SceneTile::kMostFaces) return true;
        if (tile_.faces == SceneTile::kMostFaces) return false;
        number_ = tile_.faces++;
        tile_.faceShifts[number_] = nearShifts_;
        return true;
    }

    [[nodiscard]] HWY_INLINE bool isUntouched(std::ptrdiff_t at, std::size_t pixels) const {
        static_assert(SceneTile::kNothing == 0);
        std::array<std::uint64_t, 2> words;
        std::memcpy(words.data(), tile_.sampled + at, sizeof words);
        const auto low = [](std::size_t bytes) {
            return bytes >= 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << 8 * bytes) - 1;
        };
        return (words[0] & low(pixels)) == 0 && (pixels <= 8 || (words[1] & low(pixels - 8)) == 0);
    }

    // Adds the pixels of a row where the polygon is seen.
    HWY_INLINE void takePixels(PixelSpan columns, int row) {
        const Flat& plane = shade_.near();
        const float nearAtRow = plane.b * static_cast<float>(row) + plane.c;
        for (int x = columns.first; x < columns.end; ++x) {
            const auto column = static_cast<float>(x);
            const std::ptrdiff_t at = SceneTile::at(x, row);
            const unsigned samples = samplesSeen(column, column * plane.a + nearAtRow, at);
            if (samples == 0) continue;
            const auto i = static_cast<std::size_t>(count_++);
            column_[i] = column;
            row_[i] = static_cast<float>(row);
            at_[i] = static_cast<int>(at);
            samples_[i] = samples;
        }
    }

    // The samples of a pixel in which the polygon is the nearest; they keep its nearness.
    HWY_INLINE unsigned samplesSeen(float column, float near, std::ptrdiff_t at) {
        const SampleF d;
        float* const kept = tile_.sampleNear + kSamples * at;
        const auto sampled = static_cast<SceneTile::Sampled>(tile_.sampled[at]);
        const bool isKept = sampled == SceneTile::kNear || sampled == SceneTile::kNearAndLight;
        const auto base = hn::Set(d, tile_.near[at]);
        const float* const shifts =
            sampled == SceneTile::kFace ? tile_.faceShifts[tile_.face[at]].data() : nullptr;
        // The edges alone do not cut off a part behind the camera.
        const auto ahead = hn::Gt(hn::Set(d, near), hn::Zero(d));
        unsigned samples = 0;
        SampleVs nearest;
        for (std::size_t i = 0; i < nearest.size(); ++i) {
            const auto old = isKept   ? hn::LoadU(d, kept + i * kLanes)
                             : shifts ? hn::Add(base, hn::LoadU(d, shifts + i * kLanes))
                                      : base;
            const auto there =
                hn::Add(hn::Set(d, near), hn::LoadU(d, nearShifts_.data() + i * kLanes));
            auto in = hn::And(ahead, rows_.inside(hn::Set(d, column), i));
            if (surface_.hiding.reads) in = hn::And(in, hn::Ge(there, old));
            samples |= bitsOf(in) << (i * kLanes);
            nearest[i] = hn::IfThenElse(in, there, old);
        }
        if (samples == 0) return 0;
        for (std::size_t i = 0; i < nearest.size(); ++i)
            hn::StoreU(nearest[i], d, kept + i * kLanes);
        if (!isKept) tile_.sampled[at] = SceneTile::kNear;
        return samples;
    }

    // Shades the pixels taken, whichever rows they lie in, and gives them their light.
    void putPixels() {
        const TileF d;
        if (count_ == 0) return;
        const auto count = static_cast<std::size_t>(count_);
        count_ = 0;
        // The last vector ends with the last pixel over and over.
        hn::StoreU(hn::Set(d, column_[count - 1]), d, column_.data() + count);
        hn::StoreU(hn::Set(d, row_[count - 1]), d, row_.data() + count);
        for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
            const auto column = hn::Load(d, column_.data() + i);
            const auto row = hn::Load(d, row_.data() + i);
            const auto near = hn::Max(shade_.near().at(column, row), hn::Set(d, 1e-7F));
            TileV alpha = hn::Set(d, 1.0F);
            // The polygon ends at the mirror.
            auto kept = hn::Ge(near, near);
            const Rgb light = shade_.shade(column, row, near, alpha, kept);
            hn::Store(light.r, d, light_[0].data() + i);
            hn::Store(light.g, d, light_[1].data() + i);
            hn::Store(light.b, d, light_[2].data() + i);
        }
        for (std::size_t i = 0; i < count; ++i)
            putLight(i);
    }

    HWY_INLINE void putLight(std::size_t pixel) {
        const std::ptrdiff_t at = at_[pixel];
        const unsigned samples = samples_[pixel];
        std::uint8_t& sampled = tile_.sampled[at];
        if (samples == kWhole) {
            for (std::size_t k = 0; k < 3; ++k)
                if (holds(tile_.colours, k)) tile_.light[k][at] = light_[k][pixel];
            sampled = SceneTile::kNear;
            return;
        }
        const SampleF d;
        const bool isKept = sampled == SceneTile::kNearAndLight;
        sampled = SceneTile::kNearAndLight;
        for (std::size_t s = 0; s < kSamples; s += kLanes) {
            const std::array<std::uint8_t, 8> bits{static_cast<std::uint8_t>(samples >> s)};
            const auto in = hn::LoadMaskBits(d, bits.data());
            for (std::size_t k = 0; k < 3; ++k) {
                if (!holds(tile_.colours, k)) continue;
                float* const to = tile_.sampleLight[k] + kSamples * at + s;
                const auto old = isKept ? hn::LoadU(d, to) : hn::Set(d, tile_.light[k][at]);
                hn::StoreU(hn::IfThenElse(in, hn::Set(d, light_[k][pixel]), old), d, to);
            }
        }
    }

    const Surface& surface_;
    SceneTile& tile_;
    const TileOutline outline_;
    SampledRows rows_;
    const PolygonShade shade_;
    const Samples nearShifts_;
    const float leastShift_;
    std::size_t number_ = SceneTile::kMostFaces;  // of the polygon in the tile, once it has one
    // The place of each pixel taken, the samples in which the polygon is seen, a bit for each,
    // and its light.
    int count_ = 0;
    alignas(64) std::array<float, kRoom> column_;
    alignas(64) std::array<float, kRoom> row_;
    std::array<int, kRoom> at_;
    std::array<unsigned, kRoom> samples_;
    alignas(64) std::array<std::array<float, kRoom>, 3> light_;
};

void drawSampled(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                 SceneTile& tile) {
    SampledWork(polygon, surface, frame, tile).draw();
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawSampled);

void drawSampled(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                 SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawSampled)(polygon, surface, frame, tile);
}

}  // namespace platform
#endif
