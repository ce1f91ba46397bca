// SPDX-License-Identifier: MIT
// Spreads a scene's bright light with the processor; private to platform/render.
#pragma once

#include <QSize>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/render/BloomPlan.h"
#include "platform/render/cpu/scene/GlowCells.h"
#include "platform/render/cpu/scene/TilePacking.h"
#include "platform/render/cpu/scene/TileWorkers.h"

namespace platform {

// Bright light, averaged over cells of some pixels a side, blurred there and
// stretched again by cubic splines. Beyond its edges the picture goes on as at them. Only the tiles
// that bright light reaches are worked on. Steady sizes allocate nothing.
class SceneGlow {
  public:
    struct Options {
        QSize picture;  // pixels
        QSize tiles;
        float intensity = 0.0F;  // 0: none
        float threshold = 1.0F;
        double sigma = 1.0;  // pixels
    };

    // Starts a frame: no tile is bright.
    void begin(const Options& options);
    [[nodiscard]] bool isOn() const { return options_.intensity > 0.0F; }
    // The cells that gather a tile's bright light. Tiles share no cell, so threads need no
    // lock.
    [[nodiscard]] BrightCells cellsOf(int tileX, int tileY);
    // The colours that are bright in a tile.
    void setBright(int tile, unsigned colours) {
        bright_[static_cast<std::size_t>(tile)] = static_cast<char>(colours);
    }

    // Blurs the gathered light.
    void spread(TileWorkers& workers);
    // Whether a tile has a visible glow.
    [[nodiscard]] bool glows(int tile) const { return seen_[static_cast<std::size_t>(tile)] != 0; }
    // Computes the glow of a glowing tile, in the given working space. A colour without glow
    // has no plane.
    static constexpr std::size_t kWorkSize = 3 * kPackedTile + kPackedTile;
    void expand(int tile, float* work, TileGlow& glow) const;

    // The number of tiles that the last frame's blur reached.
    [[nodiscard]] int tilesSpread() const { return tilesSpread_; }

  private:
    using Flags = std::vector<char>;  // a bit by the colour, for each tile
    // Numbers, all 0 at first. Those that nobody writes take no memory.
    class Plane {
      public:
        void fit(std::size_t count);
        [[nodiscard]] float* data() { return first_.get(); }
        [[nodiscard]] const float* data() const { return first_.get(); }

      private:
        struct Free {
            void operator()(float* first) const { std::free(first); }
        };
        std::unique_ptr<float[], Free> first_;
    };
    using Planes = std::array<Plane, 3>;

    void fit();
    void clearCells(Planes& planes, int tile, unsigned colours);
    void repeatSides(Planes& planes, unsigned colours, int reach) const;
    void repeatEnds(Planes& planes, unsigned colours, int reach) const;
    [[nodiscard]] char coloursSeen(int tile) const;
    [[nodiscard]] std::size_t cellAt(int tileX, int tileY) const;
    // The colours that some tile near this one has.
    [[nodiscard]] unsigned coloursNear(const Flags& flags, int tile, int across, int down) const;
    template <typename Work>
    void pass(TileWorkers& workers, const Flags& from, Flags& to, Planes& planes, int across,
              int down, Work work);

    Options options_;
    Options planned_;
    BloomPlan plan_;
    int reduction_ = 4;
    int cellsAcross_ = 0;  // of one tile
    int cellsDown_ = 0;
    int margin_ = 0;
    int stride_ = 0;
    int tilesSpread_ = 0;
    Flags bright_, along_, glow_, seen_;
    Planes cells_, blurred_, spread_;
    std::vector<GlowPhase> phases_;  // by the pixel within a cell
};

}  // namespace platform
