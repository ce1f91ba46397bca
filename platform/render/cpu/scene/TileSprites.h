// SPDX-License-Identifier: MIT
// Sprites in a tile; private to platform/render.
#pragma once

#include <vector>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"
#include "platform/render/cpu/scene/SpritePicture.h"

namespace platform {

// Space to work in, of one thread; it keeps what it has taken.
struct SpriteDesk {
    std::vector<float> row;     // a run's pixels, by run and channel
    std::vector<float> mixed;   // of several runs: values and integrals of the nodes
    std::vector<int> madeRuns;  // runs whose pixels are there, by the tile's drawing
    std::vector<RunShare> shares;
};

// Takes the space that drawing the sprite wants. Drawing the sprite then allocates nothing.
void fitDesk(const ScreenSprite& sprite, SpriteDesk& desk);

// Draws what of a sprite lies in the tile, every pixel the average of what of the
// picture it covers. The desk is fit for the sprite.
void drawSprite(const ScreenSprite& sprite, SceneTile& tile, SpriteDesk& desk);

}  // namespace platform
