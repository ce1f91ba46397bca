// SPDX-License-Identifier: MIT
// Draws the shapes of one tile after another; private to platform/render.
#pragma once

#include <QRect>
#include <glm/vec3.hpp>
#include <optional>
#include <span>
#include <vector>

#include "platform/render/cpu/scene/ScenePlan.h"
#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/TileSprites.h"

namespace platform {

// Draws tiles on one thread, in working space that it owns.
class TilePainter {
  public:
    TilePainter();

    // Allocates the space that the plan's calls need, before any of them is drawn.
    void prepare(const ScenePlan& plan);
    struct Canvas {
        QRect rect;  // the tile's part of the picture
        glm::vec3 background{0.0F};
        // Light above the threshold blooms; without a threshold nothing blooms.
        std::optional<float> threshold;
        KeptFloor* floor = nullptr;  // the tile's, if any
    };
    // Draws all calls over the background.
    void paint(const ScenePlan& plan, std::span<const ShapeCall> calls, const Canvas& canvas);

    [[nodiscard]] SceneTile& tile() { return tile_; }

  private:
    // `isLast` tells that no call follows in the tile.
    void draw(const ScenePlan& plan, ShapeCall call, bool isLast);
    // Draws the leading calls of opaque polygons from front to back, so that hidden parts cost
    // little. Returns the number of these calls.
    std::size_t drawOpaque(const ScenePlan& plan, std::span<const ShapeCall> calls);
    // Draws the leading calls of dots, or of lines. Returns the number of these calls.
    std::size_t drawStrokes(const ScenePlan& plan, std::span<const ShapeCall> calls);
    // Draws the polygons from `fronts_[first]` on that lie on one surface with a picture, at once.
    // Returns their number, or 0 where there is no such surface.
    std::size_t drawTextures(const ScenePlan& plan, std::size_t first);
    void drawPolygonCall(const ScenePlan& plan, ShapeCall call);

    SceneTile tile_;
    KeptFloor* floor_ = nullptr;  // of the tile
    SpriteDesk desk_;
    struct Front {
        double near = 0.0;  // in the tile's middle
        double most = 0.0;  // anywhere in the tile
        ShapeCall call;
    };
    std::vector<Front> fronts_;
    std::vector<float> planes_;
    // Made when first needed.
    std::vector<float> samples_;
    std::vector<std::uint8_t> sampled_;
    std::vector<std::array<float, kSamples>> faceShifts_;
};

}  // namespace platform
