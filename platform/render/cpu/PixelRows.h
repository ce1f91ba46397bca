// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/layers/Rgba.h"

// The inner loops of the CPU drawer: a run of pixels within one row. Pixels are
// premultiplied ARGB as in PixelBuffer. All are source-over.
namespace platform::rows {

// A share as the integer loops take it; 65535 is whole.
using Share = std::uint16_t;

// Of an alpha; what lies outside [0, 1] is taken as its nearer end.
[[nodiscard]] Share share(float alpha);

// The nearest pixel to a colour whose components lie in [0, 1].
[[nodiscard]] std::uint32_t pixel(const Rgba& colour);

void fill(std::uint32_t* to, int count, std::uint32_t pixel);

// Draws a run of a picture's pixels, each times `alpha`.
void blend(std::uint32_t* to, const std::uint32_t* from, int count, Share alpha);

// The same to the last bit without the processor's vector instructions.
void blendPortable(std::uint32_t* to, const std::uint32_t* from, int count, Share alpha);

// Draws one colour.
void blend(std::uint32_t* to, int count, const Rgba& colour);

// Draws a colour for each pixel, each times its own alpha. Slow.
void blend(std::uint32_t* to, const Rgba* from, const float* alpha, int count);

}  // namespace platform::rows
