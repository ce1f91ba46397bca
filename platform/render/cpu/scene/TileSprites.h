// SPDX-License-Identifier: MIT
// Sprites in a tile; private to platform/render.
#pragma once

#include <vector>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/SpritePicture.h"

namespace platform {

// The working space of one thread; it only grows.
struct SpriteDesk {
    std::vector<float> row;     // a run's pixels, by run and channel
    std::vector<float> mixed;   // of several runs: values and integrals of the nodes
    std::vector<int> madeRuns;  // runs whose pixels are there, by the tile's drawing
    std::vector<RunShare> shares;
};

// Allocates the space for the sprite. Drawing the sprite then allocates nothing.
void fitDesk(const ScreenSprite& sprite, SpriteDesk& desk);

// Draws the part of a sprite inside the tile. Every pixel averages the part of the picture
// that it covers. The desk was fitted to the sprite.
void drawSprite(const ScreenSprite& sprite, SceneTile& tile, SpriteDesk& desk);

}  // namespace platform
