// SPDX-License-Identifier: MIT
// Balls in a tile; private to platform/render.
#pragma once

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"

namespace platform {

// The direction of a pixel's ray, at one unit before the camera: (x, y) / focus from the
// middle, y up.
struct ScreenLens {
    glm::vec2 middle{0.0F};  // pixels
    glm::vec2 perPixel{0.0F};
    bool operator==(const ScreenLens&) const = default;
};

void drawBall(const ScreenBall& ball, const ScreenLens& lens, SceneTile& tile);

}  // namespace platform
