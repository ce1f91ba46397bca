// SPDX-License-Identifier: MIT
// The floor in a tile; private to platform/render.
#pragma once

#include <cstddef>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "platform/render/cpu/scene/FloorLight.h"
#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/TileBodies.h"

namespace platform {

// A picture of stripes along its rows and columns. A texel's colour depends on the kind of its
// column and the kind of its row alone. Every kind but the first is one stretch of the
// picture's side; the first kind is the rest of the side.
struct StripePicture {
    static constexpr std::size_t kMostKinds = 4;
    struct Kind {
        float from = 0.0F;  // of the side, 0 … 1
        float to = 0.0F;
        bool operator==(const Kind&) const = default;
    };
    std::size_t columnKinds = 1;
    std::size_t rowKinds = 1;
    Kind column[kMostKinds];
    Kind row[kMostKinds];
    glm::vec3 colour[kMostKinds][kMostKinds];  // by column, then row
    glm::vec2 texel{1.0F};                     // of the side
    bool operator==(const StripePicture&) const = default;
};

struct ScreenFloor {
    Plane near;
    Plane u;  // times nearness; one repeat is 1
    Plane v;
    glm::vec3 light{0.0F};  // times the stripes' colour
    glm::vec3 fog{0.0F};    // its colour
    bool hasFog = false;
    float fogStart = 0.0F;
    float fogShare = 0.0F;  // the fog's growth a unit
    bool additive = false;
    bool blackens = false;  // removes the light behind the floor
    Hiding hiding;
    unsigned colours = 0;  // a bit for each of red, green and blue that may have light
    StripePicture stripes;
    bool operator==(const ScreenFloor&) const = default;
};

// Draws the floor over its mirrored scene alone, which is all behind it. `isLast` tells that no
// shape follows in the tile. Sets or adds the floor's kept light, if any.
void drawFloor(const ScreenFloor& floor, const ScreenLens& lens, SceneTile& tile, bool isLast,
               KeptFloor* kept);

}  // namespace platform
