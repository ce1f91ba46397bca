// SPDX-License-Identifier: MIT
// Dots and lines in a tile; private to platform/render.
#pragma once

#include <array>
#include <vector>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"

namespace platform {

// The coverage of a round dot of one diameter, tabulated for kPhases² places of its middle
// within a pixel.
struct DotKernel {
    static constexpr int kPhases = 8;
    // Above this, dots are drawn without a table.
    static constexpr float kMostDiameter = 12.0F;

    explicit DotKernel(float dotDiameter);

    float diameter = 1.0F;
    int side = 0;                // pixels of a table's row that matter, and rows
    int before = 0;              // pixels from the first one's to the middle's
    std::vector<float> covered;  // rows of kTileMargin
};

// The coverage of a line of one thickness, tabulated by the distance of its middle from the
// pixel's middle, for kSlopes directions.
struct LineKernel {
    static constexpr int kSlopes = 32;
    static constexpr int kSteps = 32;  // a pixel

    explicit LineKernel(float lineThickness);

    float thickness = 1.0F;
    float reach = 0.0F;  // pixels; beyond it nothing is covered
    int entries = 0;
    std::vector<float> covered;
};

// The part of an ink above the tile's threshold of bloom.
[[nodiscard]] Ink excessOf(const Ink& ink, const SceneTile& tile);
// Whether the ink has such a part.
[[nodiscard]] bool isBright(const Ink& ink, const SceneTile& tile);

void drawDot(const ScreenDot& dot, const DotStyle& style, SceneTile& tile);
void drawLine(const ScreenLine& line, const LineKernel& kernel, SceneTile& tile);

}  // namespace platform
