// SPDX-License-Identifier: MIT
// Opaque surfaces with smooth edges in a tile; private to platform/render.
#pragma once

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"

namespace platform {

struct PolygonFrame;

// Draws a polygon of an opaque surface that writes its nearness, sample by sample. Only the pixels
// that it touches come to be kept per sample. Needs sampleNearness() before, and resolveLight()
// after the last of such polygons.
void drawSampled(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                 SceneTile& tile);

}  // namespace platform
