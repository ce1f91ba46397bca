// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/layers/Rgba.h"

// Draws a list pixel by pixel in double precision, by the rules of
// platform/render/cpu/CpuDrawer.h. Slow; the reference for all drawers.
// Premultiplied ARGB of the grid's size.
[[nodiscard]] QImage drawReference(const platform::DisplayList& list,
                                   const platform::PixelGrid& grid,
                                   const platform::Rgba& background);

// The largest difference of any component of any pixel, in 255ths.
[[nodiscard]] int largestDifference(const QImage& a, const QImage& b);
