// SPDX-License-Identifier: MIT
// The inner loops of spreading light; private to platform/render.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace platform {

// A box of numbers; `stride` lies between its rows.
struct CellBox {
    const float* first = nullptr;
    std::ptrdiff_t stride = 0;
    int width = 0;
    int height = 0;
};
struct BlurWeights {
    const float* weight = nullptr;
    int radius = 0;
    float scale = 1.0F;  // of the result
};
// Each number × weight[0], and the pairs i steps away × weight[i], into a box of the same
// stride.
void blurCells(const CellBox& from, std::ptrdiff_t step, const BlurWeights& weights, float* to);
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

// The largest of the numbers, at least 0.
[[nodiscard]] float mostOf(const CellBox& from);

}  // namespace platform
