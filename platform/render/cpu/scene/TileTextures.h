// SPDX-License-Identifier: MIT
// Pictures on flat surfaces that fill whole pixels; private to platform/render.
#pragma once

#include <span>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/TilePolygons.h"

namespace platform {

// The number of polygons that are drawn at once.
inline constexpr std::size_t kMostTextured = 32;

// Whether the surface is one that drawTextured() draws: opaque, with a picture, and with neither
// edges to smooth nor light from lamps.
bool isTextured(const Surface& surface);

// Draws polygons of one such surface, at most kMostTextured, in a tile that keeps nearness once
// per pixel. Each pixel's picture is read once, for the polygon that is seen there.
void drawTextured(std::span<const ScreenPolygon* const> polygons, const Surface& surface,
                  const PolygonFrame& frame, SceneTile& tile);

}  // namespace platform
