// SPDX-License-Identifier: MIT
// The inner loops of spreading light; private to platform/render.
#pragma once

#include <cstddef>

namespace platform {

// count numbers: from × weight[0], and the pairs i steps away × weight[i].
void blurCells(const float* from, std::ptrdiff_t step, const float* weight, int radius, float* to,
               int count, float scale);
// count numbers: four rows weighed.
void weighCells(const float* const rows[4], const float weight[4], float* to, int count);

}  // namespace platform
