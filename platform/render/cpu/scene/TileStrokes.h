// SPDX-License-Identifier: MIT
// Dots and lines in a tile; private to platform/render.
#pragma once

#include <span>
#include <vector>

#include "platform/render/cpu/scene/SceneBins.h"
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

// All dots and lines of a picture, by their numbers.
struct StrokeShapes {
    const ScreenDot* dots = nullptr;
    const DotStyle* styles = nullptr;
    const ScreenLine* lines = nullptr;
    const LineKernel* kernel = nullptr;
};

// Draw calls of one kind, one after another.
void drawDots(std::span<const ShapeCall> calls, const StrokeShapes& shapes, SceneTile& tile);
void drawLines(std::span<const ShapeCall> calls, const StrokeShapes& shapes, SceneTile& tile);

}  // namespace platform
