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

// A picture in memory that another object owns: premultiplied ARGB, one number
// per pixel in the machine's byte order, row 0 at the top.
struct PixelBuffer {
    std::uint32_t* pixels = nullptr;
    int stride = 0;  // from one row to the next, in pixels
    QSize size;      // in pixels
};

// Draws display lists on the processor, only inside the given rectangles, so a
// mostly still picture costs next to nothing. The fast path takes a few integer
// operations per pixel: a picture shown pixel for pixel, under a mask that is
// even along a row (digits under falling trails). All other items are drawn correctly but
// more slowly. A window keeps one drawer, which owns and reuses its working memory, and
// allocates nothing once that has grown. One thread at a time.
//
// Rules, which every drawer of display lists follows:
// - Edges lie on whole pixels (PixelGrid::snap) and are never softened.
// - A picture is not stretched when its size in pixels differs from the
//   rectangle it fills by less than one, both ways: its lower left pixel lies at
//   the snapped lower left corner, and any excess at the top or right is cut off.
//   Other pictures are stretched to the snapped rectangle, bilinearly between
//   pixel centres; the outermost pixels extend to the edge.
// - A gradient is sampled at the pixel's centre, in the unit square of the
//   rectangle before snapping. An axis of zero length shows the first colour.
// - Premultiplied source-over; an item's alpha is multiplied by its opacity and
//   its mask's alpha. The pieces of a mask combine as a + b - ab.
class CpuDrawer {
  public:
    CpuDrawer();
    ~CpuDrawer();
    CpuDrawer(const CpuDrawer&) = delete;
    CpuDrawer& operator=(const CpuDrawer&) = delete;

    // Makes the given rectangles of `target` (in its pixels; they may reach
    // outside) show the list over the background, whatever they showed before.
    // Without a background, draws over their present contents; the rectangles
    // must then not overlap. Touches no other pixel.
    void draw(const DisplayList& list, const PixelGrid& grid, std::span<const QRect> rects,
              std::optional<Rgba> background, const PixelBuffer& target);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace platform
