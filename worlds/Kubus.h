// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

#include "platform/scene/Node.h"
#include "platform/time/RandomSource.h"

namespace brixtel {

// The cube's digits, which flip, and the bright wave that now and then sweeps through them.
// The cube node owns the nodes; this class changes which of the four shared geometries they
// show. Owned by the scene's tick; main thread.
class KubusCijfers {
  public:
    static constexpr int kZijde = 7;         // digits along each axis
    static constexpr double kStap = 0.42;    // units from digit to digit
    static constexpr double kHoogte = 0.17;  // of a digit, in units
    static constexpr int kSprongen = 12;     // flips a tick

    struct Cel {
        platform::NodePtr node;
        std::array<int, 3> plek;  // 0 ... 6 along x, y and z
        bool een;
    };

    // The wave's place along an axis, in steps of the grid.
    struct Golf {
        double positie = -1.0;  // below 0: none is running
        std::uint32_t as = 0;   // 0 = x, 1 = y, 2 = z

        [[nodiscard]] bool loopt() const { return positie >= 0.0; }
        [[nodiscard]] bool raakt(const Cel& cel) const;
        // Advances by one tick's distance; ends one step beyond the last layer.
        void verder();
    };

    // Draws the digits and adds their nodes to `kubus`.
    KubusCijfers(platform::Node& kubus, platform::RandomSource toeval);

    // Runs one tick: flips, perhaps a new wave, the colours, and the wave's advance.
    void tik();

    // The digits in the order x, y, z, the last running fastest.
    [[nodiscard]] const std::vector<Cel>& cellen() const { return cellen_; }
    [[nodiscard]] const Golf& golf() const { return golf_; }
    void zetGolf(const Golf& golf) { golf_ = golf; }

    // The shared geometries: dim 0, dim 1, bright 0, bright 1.
    [[nodiscard]] const std::array<platform::GeometryPtr, 4>& vlakken() const { return vlakken_; }

  private:
    void spring();
    void kleur();

    platform::RandomSource toeval_;
    const std::array<platform::GeometryPtr, 4> vlakken_;
    std::vector<Cel> cellen_;
    Golf golf_;
};

}  // namespace brixtel
