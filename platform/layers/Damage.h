// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"

namespace platform {

// Writes into `rects` (emptied first) which pixels of the picture may differ
// between two lists: for each thing that changed, where it was and where it is.
// Rectangles lie within the picture and may overlap. Empty means: both look
// exactly the same. Lists of different structure differ everywhere. Allocates
// nothing once `rects` has grown.
void findDamage(const DisplayList& before, const DisplayList& after, const PixelGrid& grid,
                std::vector<QRect>& rects);

}  // namespace platform
