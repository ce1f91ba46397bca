// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/layers/Rgba.h"

// Draws a list pixel by pixel in double precision, straight from the rules that
// every drawer keeps (platform/render/cpu/CpuDrawer.h): slow, and what the drawers
// are measured against. Premultiplied ARGB of the grid's size.
[[nodiscard]] QImage drawReference(const platform::DisplayList& list,
                                   const platform::PixelGrid& grid,
                                   const platform::Rgba& background);

// The largest difference of any component of any pixel, in 255ths.
[[nodiscard]] int largestDifference(const QImage& a, const QImage& b);
