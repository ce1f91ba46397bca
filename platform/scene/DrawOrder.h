// SPDX-License-Identifier: MIT
// The order of drawing; private to platform/scene.
#pragma once

#include "platform/scene/DrawList.h"

namespace platform {

// Sorts the items into drawing order, and items that can share a draw call next
// to one another.
void putInDrawingOrder(std::vector<DrawList::Item>& items);

}  // namespace platform
