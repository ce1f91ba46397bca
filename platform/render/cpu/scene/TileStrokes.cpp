// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileStrokes.h"

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileStrokes.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileInk-inl.h"
#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// A dot's rows are hardly longer.
using DotF = hn::CappedTag<float, 8>;
using DotV = hn::Vec<DotF>;

// A dot on its way into a tile.
struct DotInTile {
    const ScreenDot& dot;
    const DotStyle& style;
    TileInk ink;
};

void putDot(const DotInTile& from, SceneTile& tile, std::ptrdiff_t at, DotV covered) {
    const DotF d;
    if (hn::AllTrue(d, hn::Le(covered, hn::Zero(d)))) return;
    const auto near = hn::Set(d, from.dot.near);
    const Hiding& hiding = from.style.hiding;
    const auto share = hiding.reads && !tile.hidesNothing
                           ? hn::Mul(covered, shareSeen(d, tile, at, near))
                           : covered;
    blendInk(d, from.ink, at, share);
    // A pixel that is not all but covered lets other dots through, or a crowd of dots
    // would lose the light of all rims.
    if (hiding.writes) putNear(d, tile, at, near, hn::Sub(share, hn::Set(d, 0.9F)));
}

// Without a table, for dots of any size.
void drawLargeDot(const DotInTile& from, SceneTile& tile) {
    const DotF d;
    const ScreenDot& dot = from.dot;
    const float reach = 0.5F * from.style.kernel->diameter + 0.5F;
    const float x = dot.middle.x - static_cast<float>(tile.x);
    const float y = dot.middle.y - static_cast<float>(tile.y);
    const auto clamped = [](float value, int most) {
        return static_cast<int>(std::clamp(value, 0.0F, static_cast<float>(most)));
    };
    const int lanes = static_cast<int>(hn::Lanes(d));
    const int firstColumn = clamped(x - reach, tile.width);
    const int endColumn = clamped(x + reach + 1.0F, tile.width);
    const int endRow = clamped(y + reach + 1.0F, tile.height);
    for (int row = clamped(y - reach, tile.height); row < endRow; ++row) {
        const float down = static_cast<float>(row) + 0.5F - y;
        for (int column = firstColumn; column < endColumn; column += lanes) {
            const auto across = hn::Add(columnsFrom(d, column), hn::Set(d, 0.5F - x));
            const auto away = hn::Sqrt(hn::Add(hn::Mul(across, across), hn::Set(d, down * down)));
            const auto covered =
                hn::Min(hn::Max(hn::Sub(hn::Set(d, reach), away), hn::Zero(d)), hn::Set(d, 1.0F));
            putDot(from, tile, SceneTile::at(column, row), covered);
        }
    }
}

void drawDot(const DotInTile& from, SceneTile& tile) {
    const ScreenDot& dot = from.dot;
    const DotKernel& kernel = *from.style.kernel;
    if (kernel.covered.empty()) return drawLargeDot(from, tile);
    constexpr auto kPhases = static_cast<float>(DotKernel::kPhases);
    const float left = std::floor(dot.middle.x);
    const float top = std::floor(dot.middle.y);
    const int phaseX = std::min(static_cast<int>((dot.middle.x - left) * kPhases), 7);
    const int phaseY = std::min(static_cast<int>((dot.middle.y - top) * kPhases), 7);
    const int column = static_cast<int>(left) - kernel.before - tile.x;
    const int row = static_cast<int>(top) - kernel.before - tile.y;
    if (column <= -kTileMargin || column >= kTileWidth) return;
    const float* const table =
        kernel.covered.data() + static_cast<std::ptrdiff_t>(phaseY * DotKernel::kPhases + phaseX) *
                                    kernel.side * kTileMargin;
    const DotF d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int i = std::max(0, -row); i < std::min(kernel.side, tile.height - row); ++i)
        for (int x = 0; x < kernel.side; x += lanes)
            putDot(from, tile, SceneTile::at(column + x, row + i),
                   hn::LoadU(d, table + static_cast<std::ptrdiff_t>(i) * kTileMargin + x));
}

void drawDots(std::span<const ShapeCall> calls, const StrokeShapes& shapes, SceneTile& tile) {
    for (const ShapeCall call : calls) {
        const ScreenDot& dot = shapes.dots[call.index()];
        const DotStyle& style = shapes.styles[dot.style];
        drawDot({dot, style, inkFor(dot.ink, excessOf(dot.ink, tile), tile)}, tile);
        if (style.hiding.writes) tile.hidesNothing = false;
    }
}

// A line as it is followed: along its longer direction one pixel at a time.
struct Course {
    bool steep = false;  // follows the columns instead of the rows
    float along0 = 0.0F, across0 = 0.0F;
    float slope = 0.0F;    // across, for a pixel along
    float upright = 0.0F;  // of a pixel across, how far from the line
    float onward = 1.0F;   // of the line's length, a pixel along; below 0 if it runs back
    float length = 0.0F;
    const float* table = nullptr;
};

float unit(float value) {
    return std::clamp(value, 0.0F, 1.0F);
}

// A line on its way into a tile.
struct LineInTile {
    const ScreenLine& line;
    const LineKernel& kernel;
    SceneTile& tile;
    Course course;
    TileInk ink;                    // at the line's beginning
    std::array<float, 6> change{};  // of the ink's values, on the way to the end
    std::array<float, 6> less{};    // taken off a value
    float alphaChange = 0.0F;
    bool isEven = true;  // the ink does not change
    float nearChange = 0.0F;
    float perLength = 0.0F;  // 1 / the length, 0 for a point
};

// The properties of a line at one of its places.
struct LinePlace {
    std::array<float, 6> value{};
    float alpha = 0.0F;
    float near = 0.0F;
};

void setInk(const LineInTile& from, float share, LinePlace& place) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(from.ink.planes); ++i)
        place.value[i] = std::max(from.ink.value[i] + share * from.change[i] - from.less[i], 0.0F);
    place.alpha = from.ink.alpha + share * from.alphaChange;
}

// Moves a place of the same line.
HWY_INLINE void moveTo(const LineInTile& from, float foot, LinePlace& place) {
    const float share = unit(foot * from.perLength);
    if (!from.isEven) setInk(from, share, place);
    place.near = from.line.nearFrom + share * from.nearChange;
}

void putLinePixel(const LineInTile& from, const LinePlace& place, std::ptrdiff_t at,
                  float covered) {
    SceneTile& tile = from.tile;
    if (from.line.hiding.reads) covered *= shareSeenAt(tile, at, place.near);
    if (covered <= 0.0F) return;
    const float left = 1.0F - place.alpha * covered;
    for (std::size_t i = 0; i < static_cast<std::size_t>(from.ink.planes); ++i) {
        float& pixel = from.ink.plane[i][at];
        pixel = pixel * left + place.value[i] * covered;
    }
    if (from.line.hiding.writes) putNearAt(tile, at, place.near);
}

// The share of a line's length that makes no visible difference.
constexpr float kEven = 1.0F / 16.0F;

// Draws the pixels of one step along the line. `place` is any place of the line.
HWY_INLINE void drawAcross(const LineInTile& from, int along, LinePlace& place) {
    const Course& course = from.course;
    SceneTile& tile = from.tile;
    const float ahead = static_cast<float>(along) + 0.5F - course.along0;
    const float middle = course.across0 + ahead * course.slope - 0.5F;
    const float reach = from.kernel.reach / course.upright;
    const int most = course.steep ? tile.width : tile.height;
    const float low = middle - reach;
    const float high = middle + reach;
    if (!(high >= 0.0F && low < static_cast<float>(most))) return;
    // Places above −1, so that what is cut off leads to the first pixel that is not before it.
    const int first = low > 0.0F ? static_cast<int>(low) + 1 : 0;
    const int end = std::min(static_cast<int>(high) + 1, most);
    // The place along the line of a pixel's foot on it, in pixels, and its growth a pixel.
    const float foot = course.onward * ahead;
    const float footStep = course.onward * course.slope * course.upright * course.upright;
    const float beyond = std::abs(footStep) * (reach + 1.0F);
    const bool isInside = foot > 1.0F + beyond && course.length - foot > 1.0F + beyond;
    // The properties hardly change across a long line.
    const bool isEven = beyond * from.perLength < kEven;
    moveTo(from, foot, place);
    for (int i = first; i < end; ++i) {
        const float beside = static_cast<float>(i) - middle;
        const float entry = std::abs(beside) * course.upright * LineKernel::kSteps;
        const int at = static_cast<int>(entry);
        if (at + 1 >= from.kernel.entries) continue;
        const float a = course.table[at];
        float covered = a + (entry - static_cast<float>(at)) * (course.table[at + 1] - a);
        const float here = foot + beside * footStep;
        if (!isEven) moveTo(from, here, place);
        if (!isInside) covered *= unit(here + 0.5F) * unit(course.length - here + 0.5F);
        if (covered <= 0.0F) continue;
        putLinePixel(from, place, course.steep ? SceneTile::at(i, along) : SceneTile::at(along, i),
                     covered);
    }
}

LineInTile lineFor(const ScreenLine& line, const LineKernel& kernel, const Course& course,
                   SceneTile& tile) {
    useColours(tile, coloursOf(line.inkFrom.light) | coloursOf(line.inkTo.light));
    useExcess(tile,
              coloursOf(excessOf(line.inkFrom, tile)) | coloursOf(excessOf(line.inkTo, tile)));
    LineInTile result{.line = line, .kernel = kernel, .tile = tile, .course = course};
    result.ink.alpha = line.inkFrom.alpha;
    const bool adds = line.inkFrom.alpha == 0.0F && line.inkTo.alpha == 0.0F;
    for (std::size_t k = 0; k < 3; ++k) {
        const int i = static_cast<int>(k);
        const float first = line.inkFrom.light[i];
        const float last = line.inkTo.light[i];
        const auto add = [&](float* plane, float less) {
            if (adds && std::max(first, last) <= less) return;
            const auto number = static_cast<std::size_t>(result.ink.planes);
            result.change[number] = last - first;
            result.less[number] = less;
            result.ink.add(plane, first);
        };
        if (holds(tile.colours, k)) add(tile.light[k], 0.0F);
        if (holds(tile.excessColours, k)) add(tile.excess[k], tile.threshold);
    }
    result.alphaChange = line.inkTo.alpha - line.inkFrom.alpha;
    result.isEven = line.inkFrom.light == line.inkTo.light && result.alphaChange == 0.0F;
    result.nearChange = line.nearTo - line.nearFrom;
    result.perLength = course.length > 0.0F ? 1.0F / course.length : 0.0F;
    return result;
}

void drawLine(const ScreenLine& line, const LineKernel& kernel, SceneTile& tile) {
    const glm::vec2 corner(static_cast<float>(tile.x), static_cast<float>(tile.y));
    const glm::vec2 from = line.from - corner;
    const glm::vec2 way = line.to - line.from;
    Course course;
    course.length = std::sqrt(way.x * way.x + way.y * way.y);
    course.steep = std::abs(way.y) > std::abs(way.x);
    const float longer = course.steep ? way.y : way.x;
    const float shorter = course.steep ? way.x : way.y;
    course.along0 = course.steep ? from.y : from.x;
    course.across0 = course.steep ? from.x : from.y;
    course.slope = longer != 0.0F ? shorter / longer : 0.0F;
    const float stretch = std::sqrt(1.0F + course.slope * course.slope);
    course.upright = 1.0F / stretch;
    course.onward = longer < 0.0F ? -stretch : stretch;
    const int slope = static_cast<int>(std::abs(course.slope) * LineKernel::kSlopes + 0.5F);
    course.table =
        kernel.covered.data() +
        static_cast<std::ptrdiff_t>(std::min(slope, LineKernel::kSlopes)) * kernel.entries;
    // Half a pixel beyond an end, and a pixel's middle from its edges; beside a slanting line
    // its pixels' feet are further on.
    const float beyond = 1.0F + kernel.reach * std::abs(course.slope) * course.upright;
    const float low = std::min(course.along0, course.along0 + longer) - beyond;
    const float high = std::max(course.along0, course.along0 + longer) + beyond;
    const auto most = static_cast<float>(course.steep ? tile.height : tile.width);
    const int end = static_cast<int>(std::clamp(high, 0.0F, most));
    const LineInTile inTile = lineFor(line, kernel, course, tile);
    LinePlace place;
    setInk(inTile, 0.0F, place);
    for (int along = static_cast<int>(std::clamp(low, 0.0F, most)); along < end; ++along)
        drawAcross(inTile, along, place);
}

void drawLines(std::span<const ShapeCall> calls, const StrokeShapes& shapes, SceneTile& tile) {
    for (const ShapeCall call : calls) {
        const ScreenLine& line = shapes.lines[call.index()];
        drawLine(line, *shapes.kernel, tile);
        if (line.hiding.writes) tile.hidesNothing = false;
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawDots);
HWY_EXPORT(drawLines);

void drawDots(std::span<const ShapeCall> calls, const StrokeShapes& shapes, SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawDots)(calls, shapes, tile);
}
void drawLines(std::span<const ShapeCall> calls, const StrokeShapes& shapes, SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawLines)(calls, shapes, tile);
}

}  // namespace platform
#endif
