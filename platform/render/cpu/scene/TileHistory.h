// SPDX-License-Identifier: MIT
// The changes of a picture's tiles from draw to draw; private to platform/render.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace platform {

// Knows when each tile last changed, and when each picture's memory was last drawn into. A
// picture of one size may be drawn into some memories in turn.
class TileHistory {
  public:
    // The memory of one picture.
    struct Memory {
        const std::uint32_t* pixels = nullptr;
        std::uint64_t drawn =
            0;  // the number of the last draw into it; 0: what it shows is unknown
    };
    // A tile's light in the present draw.
    struct Light {
        bool isLit = false;
        bool glows = false;   // bloom is part of that light
        bool isSame = false;  // all other light is the draw before's
    };

    // Starts a draw; forgets everything where the picture's size is not the last one's.
    void begin(std::size_t tiles, bool isSameSize);
    // The memory with these pixels; what it shows is unknown unless it is kept. Valid until the
    // next call.
    Memory& memoryOf(const std::uint32_t* pixels, bool isKept);

    // Takes a tile's light, once in a draw. Returns whether the tile's pixels may change.
    bool take(int tile, const Light& light);
    // Whether the tile has light in the present draw.
    [[nodiscard]] bool shines(int tile) const {
        return shines_[static_cast<std::size_t>(tile)] != 0;
    }
    // Whether the memory does not show the tile as it is now.
    [[nodiscard]] bool isStale(int tile, const Memory& memory) const {
        return memory.drawn < changed_[static_cast<std::size_t>(tile)];
    }
    // The memory shows the present draw.
    void setDrawn(Memory& memory) const { memory.drawn = number_; }

  private:
    std::uint64_t number_ = 0;            // of the present draw, from 1
    std::vector<Memory> memories_;        // the last used last
    std::vector<std::uint64_t> changed_;  // the number of the last draw that changed a tile
    std::vector<char> shines_, glows_;    // by the tile, in the last draw
};

}  // namespace platform
