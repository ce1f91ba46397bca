// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"

namespace platform {

// Writes into `rects` (emptied first) the pixels that may differ between two
// lists: each changed item's old and new place. Rectangles lie within the
// picture and may overlap. Empty means that both lists look exactly the same.
// Lists of different structure differ everywhere. The caller owns all
// arguments; nothing is allocated once `rects` has grown. Any thread.
void findDamage(const DisplayList& before, const DisplayList& after, const PixelGrid& grid,
                std::vector<QRect>& rects);

}  // namespace platform
