// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileStrokes.h"

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/TileStrokes.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

#include "platform/render/cpu/scene/TileVision-inl.h"

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

void putDot(const ScreenDot& dot, const Hiding& hiding, SceneTile& tile, std::ptrdiff_t at,
            TileV covered) {
    const TileF d;
    const auto near = hn::Set(d, dot.near);
    const auto share =
        hiding.reads && !tile.hidesNothing ? hn::Mul(covered, shareSeen(tile, at, near)) : covered;
    putInk(tile, at, dot.ink, share);
    if (isBright(dot.ink, tile)) putExcess(tile, at, excessOf(dot.ink, tile), share);
    // A pixel that is not all but covered lets other dots through, or a crowd of dots
    // would lose the light of all rims.
    if (hiding.writes) putNear(tile, at, near, hn::Sub(share, hn::Set(d, 0.9F)));
}

// Without a table, for dots of any size.
void drawLargeDot(const ScreenDot& dot, const DotStyle& style, SceneTile& tile) {
    const TileF d;
    const hn::RebindToSigned<TileF> di;
    const float reach = 0.5F * style.kernel->diameter + 0.5F;
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
            const auto across =
                hn::Add(hn::ConvertTo(d, hn::Iota(di, column)), hn::Set(d, 0.5F - x));
            const auto away = hn::Sqrt(hn::Add(hn::Mul(across, across), hn::Set(d, down * down)));
            const auto covered =
                hn::Min(hn::Max(hn::Sub(hn::Set(d, reach), away), hn::Zero(d)), hn::Set(d, 1.0F));
            putDot(dot, style.hiding, tile, SceneTile::at(column, row), covered);
        }
    }
}

void drawDot(const ScreenDot& dot, const DotStyle& style, SceneTile& tile) {
    const DotKernel& kernel = *style.kernel;
    if (kernel.covered.empty()) return drawLargeDot(dot, style, tile);
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
    const TileF d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int i = std::max(0, -row); i < std::min(kernel.side, tile.height - row); ++i)
        for (int x = 0; x < kernel.side; x += lanes)
            putDot(dot, style.hiding, tile, SceneTile::at(column + x, row + i),
                   hn::LoadU(d, table + static_cast<std::ptrdiff_t>(i) * kTileMargin + x));
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

float shareSeenAt(const SceneTile& tile, std::ptrdiff_t at, float near) {
    if (tile.hidesNothing) return 1.0F;
    if (!tile.sampledNear) return near >= tile.near[at] ? 1.0F : 0.0F;
    float sum = 0.0F;
    for (const float* const plane : tile.sampleNear)
        sum += near >= plane[at] ? 1.0F / kSamples : 0.0F;
    return sum;
}

void putLinePixel(const ScreenLine& line, SceneTile& tile, std::ptrdiff_t at, float share,
                  float covered) {
    const float near = line.nearFrom + share * (line.nearTo - line.nearFrom);
    if (line.hiding.reads) covered *= shareSeenAt(tile, at, near);
    if (covered <= 0.0F) return;
    const float alpha = line.inkFrom.alpha + share * (line.inkTo.alpha - line.inkFrom.alpha);
    for (std::size_t k = 0; k < 3; ++k) {
        const int i = static_cast<int>(k);
        const float light =
            line.inkFrom.light[i] + share * (line.inkTo.light[i] - line.inkFrom.light[i]);
        float& pixel = tile.light[k][at];
        pixel = pixel * (1.0F - alpha * covered) + light * covered;
        if (!tile.hasExcess) continue;
        float& excess = tile.excess[k][at];
        excess =
            excess * (1.0F - alpha * covered) + std::max(light - tile.threshold, 0.0F) * covered;
    }
    if (!line.hiding.writes) return;
    const auto put = [&](float* plane) { plane[at] = std::max(plane[at], near); };
    if (!tile.sampledNear) return put(tile.near);
    for (float* const plane : tile.sampleNear)
        put(plane);
}

void drawAcross(const ScreenLine& line, const LineKernel& kernel, const Course& course, int along,
                SceneTile& tile) {
    const float ahead = static_cast<float>(along) + 0.5F - course.along0;
    const float middle = course.across0 + ahead * course.slope - 0.5F;
    const float reach = kernel.reach / course.upright;
    const int most = course.steep ? tile.width : tile.height;
    const float low = std::clamp(std::ceil(middle - reach), 0.0F, static_cast<float>(most));
    const float high =
        std::clamp(std::floor(middle + reach) + 1.0F, 0.0F, static_cast<float>(most));
    for (int i = static_cast<int>(low); i < static_cast<int>(high); ++i) {
        const float beside = static_cast<float>(i) - middle;
        const float away = std::abs(beside) * course.upright;
        const float entry = away * LineKernel::kSteps;
        const int at = static_cast<int>(entry);
        if (at + 1 >= kernel.entries) continue;
        const float a = course.table[at];
        const float b = course.table[at + 1];
        const float covered = a + (entry - static_cast<float>(at)) * (b - a);
        // The place along the line of the pixel's foot on it, in pixels.
        const float foot =
            course.onward * (ahead + beside * course.slope * course.upright * course.upright);
        const float ends = unit(foot + 0.5F) * unit(course.length - foot + 0.5F);
        if (covered * ends <= 0.0F) continue;
        const float share = course.length > 0.0F ? unit(foot / course.length) : 0.0F;
        putLinePixel(line, tile, course.steep ? SceneTile::at(i, along) : SceneTile::at(along, i),
                     share, covered * ends);
    }
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
    const float low = std::min(course.along0, course.along0 + longer) - kernel.reach - 1.0F;
    const float high = std::max(course.along0, course.along0 + longer) + kernel.reach + 1.0F;
    const auto most = static_cast<float>(course.steep ? tile.height : tile.width);
    const int end = static_cast<int>(std::clamp(high, 0.0F, most));
    for (int along = static_cast<int>(std::clamp(low, 0.0F, most)); along < end; ++along)
        drawAcross(line, kernel, course, along, tile);
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(drawDot);
HWY_EXPORT(drawLine);

void drawDot(const ScreenDot& dot, const DotStyle& style, SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawDot)(dot, style, tile);
}
void drawLine(const ScreenLine& line, const LineKernel& kernel, SceneTile& tile) {
    HWY_DYNAMIC_DISPATCH(drawLine)(line, kernel, tile);
}

}  // namespace platform
#endif
