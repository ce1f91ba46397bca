// SPDX-License-Identifier: MIT
// A picture at another size; private to platform/render.
#pragma once

#include "platform/render/cpu/CpuDrawer.h"

namespace platform {

// Fills `to` with all of `from`, between the middles of its pixels.
void stretchPicture(const PixelBuffer& from, const PixelBuffer& to);

}  // namespace platform
