// SPDX-License-Identifier: MIT
// Flat surfaces in a tile; private to platform/render.
#pragma once

#include <array>
#include <glm/vec3.hpp>

#include "platform/render/cpu/scene/RipPicture.h"
#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"

namespace platform {

// The frame's part in shading. World axes, places from the camera.
struct PolygonFrame {
    // The direction of a pixel's ray, for a depth of one: x, y and z of the world.
    std::array<Plane, 3> ray;
    // The same as the eye sees it: to the right and down.
    Plane right;
    Plane down;
    glm::vec3 ambient{0.0F};
    static constexpr std::size_t kMostLights = 8;
    std::size_t lights = 0;
    std::array<glm::vec3, kMostLights> lightPlace{};
    std::array<glm::vec3, kMostLights> mirroredPlace{};
    std::array<glm::vec3, kMostLights> lightColour{};
    bool hasFog = false;
    float fogStart = 0.0F;
    float fogShare = 0.0F;  // the fog's growth a unit
    glm::vec3 fogColour{0.0F};
    float reflectivity = 0.0F;
    float reflectionShare = 0.0F;  // the part of it that a unit of height removes
};

void drawPolygon(const ScreenPolygon& polygon, const Surface& surface, const PolygonFrame& frame,
                 SceneTile& tile);

}  // namespace platform
