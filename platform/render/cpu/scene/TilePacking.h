// SPDX-License-Identifier: MIT
// From a tile's light to pixels; private to platform/render.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/render/cpu/LargeArray.h"
#include "platform/render/cpu/scene/SceneTile.h"

namespace platform {

inline constexpr int kPackedTile = kTileWidth * kTileHeight;

// The light of a picture's tiles in 65535ths of the most that a pixel shows; a plane for each
// colour, tile by tile, row by row without margins. A tile of a colour without light is never
// touched, so that its memory need not be there.
class PackedLight {
  public:
    // The numbers of a row may be read and written up to a vector further.
    void fit(std::size_t tiles);
    // Most tiles are about to have light for the first time.
    void expectMost();
    [[nodiscard]] std::uint16_t* plane(std::size_t colour, std::size_t tile) {
        return planes_[colour].data() + tile * kPackedTile;
    }

  private:
    std::size_t tiles_ = 0;
    bool isExpected_ = false;
    std::array<LargeArray<std::uint16_t>, 3> planes_;
};

// Sets of colours, as SceneTile::colours.
struct PackedColours {
    unsigned lit = 0;     // of which some pixel has light
    unsigned bright = 0;  // of which some light is above the threshold
};
// Cells of `reduction` pixels a side that gather light above the threshold, each the average
// of its pixels. `plane` is the tile's first cell of three planes.
struct BrightCells {
    float* plane[3] = {};
    int stride = 0;
    int reduction = 4;
    float threshold = 0.0F;
};
// Packs the light into the planes of the colours that have some, and of green and blue, and
// adds its bright part to the cells, if any.
PackedColours packTile(SceneTile& tile, const BrightCells* bright,
                       const std::array<std::uint16_t*, 3>& to);

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
// Adds the glow, if any, encodes as sRGB and rounds with a pattern. A colour without light has
// no plane.
void encodeTile(const std::array<const std::uint16_t*, 3>& light, const TileGlow& glow,
                const TilePixels& to);

}  // namespace platform
