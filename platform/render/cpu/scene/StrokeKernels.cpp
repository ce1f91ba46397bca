// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "platform/render/cpu/scene/TileStrokes.h"

namespace platform {

namespace {

// The part of a pixel's row, `low` to `high`, that lies within a circle round (x, y).
double rowCovered(double low, double high, double y, double left, double x, double radius) {
    constexpr int kRows = 16;
    double sum = 0.0;
    for (int i = 0; i < kRows; ++i) {
        const double away = low + (high - low) * (i + 0.5) / kRows - y;
        const double square = radius * radius - away * away;
        if (square <= 0.0) continue;
        const double half = std::sqrt(square);
        sum += std::max(0.0, std::min(left + 1.0, x + half) - std::max(left, x - half));
    }
    return sum / kRows;
}

// The second integral of a box of this width and area 1, centred on 0.
double ramp(double x) {
    return x > 0.0 ? 0.5 * x * x : 0.0;
}

// The part of a unit square that lies on the near side of a line: two boxes, one the
// square's shadow along x on the line's normal and one along y, folded together.
double squareBelow(double distance, double nx, double ny) {
    const double a = 0.5 * (nx + ny);
    const double b = 0.5 * (nx - ny);
    return (ramp(distance + a) - ramp(distance + b) - ramp(distance - b) + ramp(distance - a)) /
           (nx * ny);
}

}  // namespace

DotKernel::DotKernel(float dotDiameter) : diameter(dotDiameter) {
    if (!(diameter <= kMostDiameter)) return;
    const double radius = 0.5 * static_cast<double>(diameter);
    before = static_cast<int>(std::ceil(radius));
    side = 2 * before + 1;
    covered.assign(static_cast<std::size_t>(kPhases * kPhases * side * kTileMargin), 0.0F);
    for (int phase = 0; phase < kPhases * kPhases; ++phase) {
        const double x = before + (phase % kPhases + 0.5) / kPhases;
        const double y = before + static_cast<double>(phase / kPhases) / kPhases + 0.5 / kPhases;
        for (int row = 0; row < side; ++row)
            for (int column = 0; column < side; ++column)
                covered[static_cast<std::size_t>((phase * side + row) * kTileMargin + column)] =
                    static_cast<float>(rowCovered(row, row + 1.0, y, column, x, radius));
    }
}

LineKernel::LineKernel(float lineThickness) : thickness(lineThickness) {
    reach = 0.5F * thickness + 0.7072F;
    entries = static_cast<int>(std::ceil(static_cast<double>(reach) * kSteps)) + 2;
    for (int slope = 0; slope <= kSlopes; ++slope) {
        const double m = std::max(1e-3, static_cast<double>(slope) / kSlopes);
        const double length = std::sqrt(1.0 + m * m);
        for (int i = 0; i < entries; ++i) {
            const double away = static_cast<double>(i) / kSteps;
            const double half = 0.5 * static_cast<double>(thickness);
            const double share = squareBelow(away + half, 1.0 / length, m / length) -
                                 squareBelow(away - half, 1.0 / length, m / length);
            covered.push_back(static_cast<float>(std::clamp(share, 0.0, 1.0)));
        }
    }
}

}  // namespace platform
