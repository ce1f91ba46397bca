// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/layers/Rgba.h"

// The inner loops of the CPU drawer: a run of pixels within one row. Pixels are premultiplied
// ARGB as in PixelBuffer. Every loop is source-over. The caller owns all memory. Any thread.
namespace platform::rows {

// A share for the integer loops; 65535 is the whole.
using Share = std::uint16_t;

// The share for an alpha, which is clamped to [0, 1].
[[nodiscard]] Share share(float alpha);

// The pixel nearest to a colour whose components lie in [0, 1].
[[nodiscard]] std::uint32_t pixel(const Rgba& colour);

inline void fill(std::uint32_t* to, int count, std::uint32_t pixel) {
    std::fill_n(to, count, pixel);
}

// Draws a run of a picture's pixels, each times `alpha`.
void blend(std::uint32_t* to, const std::uint32_t* from, int count, Share alpha);

// The same to the last bit, without vector instructions.
void blendPortable(std::uint32_t* to, const std::uint32_t* from, int count, Share alpha);

// Draws one colour.
void blend(std::uint32_t* to, int count, const Rgba& colour);

// Draws a colour for each pixel, each times its own alpha. Slow.
void blend(std::uint32_t* to, const Rgba* from, const float* alpha, int count);

}  // namespace platform::rows
