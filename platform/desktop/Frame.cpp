// SPDX-License-Identifier: MIT
#include "platform/desktop/Frame.h"

#include "platform/layers/Damage.h"

namespace platform {

void findFrameDamage(const Frame& before, const Frame& after, std::vector<QRect>& rects) {
    // Passes are not compared across each other: there is one of layers so far.
    if (before.grid == after.grid && before.background == after.background &&
        before.passes.size() == 1 && after.passes.size() == 1) {
        findDamage(before.passes[0].layers, after.passes[0].layers, after.grid, rects);
        return;
    }
    rects.clear();
    rects.emplace_back(QPoint(0, 0), after.grid.size);
}

}  // namespace platform
