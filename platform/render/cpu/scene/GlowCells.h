// SPDX-License-Identifier: MIT
// The inner loops of spreading light; private to platform/render.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace platform {

// count numbers: from × weight[0], and the pairs i steps away × weight[i].
void blurCells(const float* from, std::ptrdiff_t step, const float* weight, int radius, float* to,
               int count, float scale);
// count numbers: four rows weighed.
void weighCells(const float* const rows[4], const float weight[4], float* to, int count);

// A pixel's place within a cell: the first of four cells that it is mixed of, counted from
// its own, and their weights.
struct GlowPhase {
    int first = 0;
    std::array<float, 4> weight{};
};
// A row of cells stretched: as many numbers per cell as there are phases, at most 16. Up to
// 64 numbers come out.
void stretchCells(const float* from, std::span<const GlowPhase> phases, float* to, int cells);

// The largest of some numbers, at least 0.
[[nodiscard]] float mostOf(const float* from, int count);

}  // namespace platform
