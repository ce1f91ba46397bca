// SPDX-License-Identifier: MIT
// From a tile's light to pixels; private to platform/render.
#pragma once

#include <cstdint>

#include "platform/render/cpu/scene/SceneTile.h"

namespace platform {

// A tile's light packed in one number a pixel, row by row without margins:
// square roots of what is shown, 10 bits of red, 12 of green and 10 of blue.
inline constexpr int kPackedTile = kTileWidth * kTileHeight;

// Some light over all of the tile; nothing is near.
void clearTile(SceneTile& tile, const float* rgb);
// From here on what is brighter than what blooms is kept.
void startExcess(SceneTile& tile);
// From here on nearness is kept per sample.
void sampleNearness(SceneTile& tile);
// From here on the light of the rows from `top` to before `end` is kept per sample.
void sampleLight(SceneTile& tile, int top, int end);
// The least nearness of the tile's pixels; only while it is kept once per pixel.
float leastNear(const SceneTile& tile);
// Averages the samples' light.
void resolveLight(SceneTile& tile);

struct PackedTile {
    bool lit = false;     // some pixel is not black
    bool bright = false;  // some light is above the threshold
};
// Packs the light, and adds what of it is above the threshold to the bright cells
// of `reduction` pixels a side, each cell the average of its pixels. `bright` is
// the tile's first cell of three planes.
struct BrightCells {
    float* plane[3] = {};
    int stride = 0;
    int reduction = 4;
    float threshold = 0.0F;
};
PackedTile packTile(const SceneTile& tile, const BrightCells* bright, std::uint32_t* packed);

// The glow of a tile: three planes of kTileWidth × kTileHeight, none where there is none.
struct TileGlow {
    const float* plane[3] = {};
};

struct TilePixels {
    std::uint32_t* pixels = nullptr;
    int stride = 0;
    int width = 0;
    int height = 0;
};
// Adds the glow where there is some, encodes as sRGB and rounds with a pattern.
void encodeTile(const std::uint32_t* packed, const TileGlow& glow, const TilePixels& to);

}  // namespace platform
