// SPDX-License-Identifier: MIT
// Pictures in the format of video memory; private to platform/render.
#pragma once

#include <QImage>
#include <QSize>
#include <cstdint>
#include <vector>

namespace platform {

// The picture's pixels, top row first, as 16 bits of linear light per component
// with alpha multiplied in. Plain averaging between two pixels is then right,
// in every driver. Memory that is refused throws std::bad_alloc.
[[nodiscard]] std::vector<std::uint16_t> linearPixels(const QImage& picture);
// The same for some rows, four numbers for each pixel.
void linearRows(const QImage& picture, int first, int count, std::uint16_t* to);

// The size of the next smaller level of a mipmap; a single pixel gives itself.
[[nodiscard]] QSize halvedSize(QSize size);

// The next smaller level of such pixels of that size: each result is the average of the area
// that it covers. Drivers leave out the rims of odd sizes, which brightens far digits, whose
// rims are empty; for even sizes their levels are the same.
[[nodiscard]] std::vector<std::uint16_t> halvedPixels(const std::vector<std::uint16_t>& pixels,
                                                      QSize size);

}  // namespace platform
