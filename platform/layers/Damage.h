// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"

namespace platform {

// Replaces the contents of `rects` by the pixels that may differ between two
// lists: each changed item's old and new place. The rectangles lie within the picture, and may
// overlap. No rectangle means that both lists look the same.
// Lists of different structure differ everywhere. The caller owns all
// arguments; nothing is allocated once `rects` has grown. Any thread.
void findDamage(const DisplayList& before, const DisplayList& after, const PixelGrid& grid,
                std::vector<QRect>& rects);

}  // namespace platform
