// SPDX-License-Identifier: MIT
// Pictures as slanting surfaces want them; private to platform/render.
#pragma once

#include <QImage>
#include <array>
#include <cstdint>
#include <glm/vec3.hpp>
#include <optional>
#include <vector>

#include "platform/render/cpu/LargeArray.h"

namespace platform {

class TileWorkers;

// A picture at every combination of halved widths and halved heights. A surface seen at a
// slant is thus averaged along one side only. A texel is one number of square roots of light,
// with alpha multiplied in: 10 bits of red, 12 of green, 10 of
// blue. A place of a level holds its texel and the one below. Below the last row stands the
// first, and behind a row's last place stands its first once more. Two places in a row thus
// hold four neighbours.
struct RipPicture {
    static constexpr int kMostLevels = 12;

    // The threads share the work on a large picture.
    RipPicture(const QImage& picture, TileWorkers& workers);

    [[nodiscard]] int levelAt(int across, int down) const { return across * levelsDown + down; }

    int width = 0;
    int height = 0;
    int levelsAcross = 1;
    int levelsDown = 1;
    bool hasAlpha = false;
    std::optional<glm::vec3> stencil;  // the colour of every texel, for its alpha
    unsigned colours = 0;              // a bit for each of red, green and blue that some texel has
    std::array<float, kMostLevels> widths{};  // by the level
    std::array<float, kMostLevels> heights{};
    std::vector<std::int32_t> first;   // place of a level; see levelAt()
    LargeArray<std::uint32_t> texels;  // two for each place
    LargeArray<std::uint32_t> alphas;  // of 65535, likewise; empty where all is opaque
};

}  // namespace platform
