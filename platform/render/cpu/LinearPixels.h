// SPDX-License-Identifier: MIT
// Pictures as video memory keeps them; private to platform/render.
#pragma once

#include <QImage>
#include <QSize>
#include <cstdint>
#include <vector>

namespace platform {

// The picture's pixels, top row first, as 16 bits of linear light a component
// with alpha multiplied in: what is between two of them is then right by plain
// averaging, in every driver.
[[nodiscard]] std::vector<std::uint16_t> linearPixels(const QImage& picture);

// The size of the next smaller level of a mipmap; of one pixel, itself.
[[nodiscard]] QSize halvedSize(QSize size);

// Such pixels at that size, each being what lies in the middle of the area that it
// stands for, as drivers make their levels: of even sides, the area's average.
[[nodiscard]] std::vector<std::uint16_t> halvedPixels(const std::vector<std::uint16_t>& pixels,
                                                      QSize size);

}  // namespace platform
