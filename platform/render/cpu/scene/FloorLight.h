// SPDX-License-Identifier: MIT
// The light of a floor that stays as it is; private to platform/render.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/render/cpu/scene/SceneTile.h"

namespace platform {

// The floor's own light in one tile, set by the first draw of the floor into the tile and added
// by later ones. A row has kFloorParts parts. Those with light lie side by side in a plane of
// each of the floor's colours, row after row.
inline constexpr int kFloorPart = kTileMargin;  // pixels
inline constexpr int kFloorParts = kTileWidth / kFloorPart;
struct KeptFloor {
    std::array<float*, 3> plane{};
    std::array<std::uint8_t, kTileHeight> lit{};  // a bit by the part, for each row
    bool isKnown = false;
};

// Keeps the light of a tile that shows the floor alone.
void keepTile(const SceneTile& tile, unsigned colours, KeptFloor& kept);

// The floor's own light in the tiles that also show things in motion. A frame asks for its
// tiles on one thread; each tile's light is then written by one thread at a time.
class FloorLight {
  public:
    // Starts a frame of a picture of so many tiles. Forgets the light of another floor.
    // `colours` are the floor's.
    void begin(std::size_t tiles, unsigned colours, bool isSameFloor);
    // Gives a tile a place for its light. Allocates for the first tile of a picture's size.
    void want(int tile);
    // The tile's light; null where it has no place.
    [[nodiscard]] KeptFloor* of(int tile);

  private:
    void makePlanes();

    static constexpr std::size_t kPlane =
        static_cast<std::size_t>(kTileWidth) * static_cast<std::size_t>(kTileHeight);
    std::size_t tiles_ = 0;
    unsigned colours_ = 0;
    std::array<std::unique_ptr<float[]>, 3> planes_;  // memory that no tile has asked for is free
    std::vector<KeptFloor> kept_;                     // in the order in which tiles asked
    std::vector<std::int32_t> placeOf_;               // by the tile; negative: none
};

}  // namespace platform
