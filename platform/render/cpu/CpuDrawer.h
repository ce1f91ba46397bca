// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/layers/Rgba.h"

namespace platform {

// A picture in memory that someone else owns: premultiplied ARGB, one number a
// pixel in the machine's byte order, row 0 at the top.
struct PixelBuffer {
    std::uint32_t* pixels = nullptr;
    int stride = 0;  // from one row to the next, in pixels
    QSize size;      // in pixels
};

// Draws display lists with the processor alone: only the rectangles it is told
// to, so that a mostly still picture costs next to nothing. Where a picture is
// shown pixel for pixel under a mask that is even along a row, as digits under
// falling trails are, that takes a few integer operations a pixel; all else is
// right but slower. Keep one per window: it reuses its memory and allocates
// nothing once that has grown. Any one thread at a time.
//
// Rules, which every drawer of display lists keeps:
// - Edges lie on whole pixels (PixelGrid::snap) and are never softened.
// - A picture whose size in pixels is within less than one of the rectangle it
//   fills, both ways, is not stretched: its lower left pixel lies at the snapped
//   lower left corner, and what sticks out at the top or right is cut off.
//   Other pictures are stretched to the snapped rectangle, bilinearly between
//   pixel centres, the outermost pixels extending to the edge.
// - A gradient is taken at the pixel's centre, in the unit square of the
//   rectangle before snapping. An axis without length shows the first colour.
// - Premultiplied source-over; an item's alpha is multiplied by its opacity and
//   its mask's alpha. The pieces of a mask lie over one another, a + b - ab.
class CpuDrawer {
  public:
    CpuDrawer();
    ~CpuDrawer();
    CpuDrawer(const CpuDrawer&) = delete;
    CpuDrawer& operator=(const CpuDrawer&) = delete;

    // Makes the given rectangles of `target` (in its pixels; they may reach
    // outside) show the list over the background, whatever they showed; without
    // a background, over what they showed, and then they must not overlap.
    // Touches no other pixel.
    void draw(const DisplayList& list, const PixelGrid& grid, std::span<const QRect> rects,
              std::optional<Rgba> background, const PixelBuffer& target);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace platform
