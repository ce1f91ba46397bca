// SPDX-License-Identifier: MIT
// From a tile's light to pixels; private to platform/render.
#pragma once

#include <cstdint>

#include "platform/render/cpu/scene/SceneTile.h"

namespace platform {

// A tile's light packed in one number a pixel, row by row without margins:
// square roots of what is shown, 10 bits of red, 12 of green and 10 of blue.
inline constexpr int kPackedTile = kTileWidth * kTileHeight;

// Fills the tile with one light; every nearness is 0.
void clearTile(SceneTile& tile, const float* rgb);
// Starts keeping the light above the threshold of bloom.
void startExcess(SceneTile& tile);
// Starts keeping nearness per sample.
void sampleNearness(SceneTile& tile);
// Starts keeping the light of the rows from `top` up to, but excluding, `end` per sample.
void sampleLight(SceneTile& tile, int top, int end);
// The least nearness of the tile's pixels; only before sampleNearness().
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
// Adds the glow, if any, encodes as sRGB and rounds with a pattern.
void encodeTile(const std::uint32_t* packed, const TileGlow& glow, const TilePixels& to);

}  // namespace platform
