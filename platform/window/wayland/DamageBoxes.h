// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <span>
#include <vector>

namespace platform::wayland {

// The largest number of boxes: each box costs the compositor more than the pixels between
// two near boxes.
constexpr std::size_t kMostBoxes = 4;
// The largest area of the boxes, as a multiple of the rectangles' sum, for joining further.
constexpr double kWorthJoining = 1.5;

// Replaces the contents of `boxes` by at most four boxes that hold all rectangles. Boxes are
// joined where joining wastes least, down to four, and further while their area stays
// below 1.5 times the rectangles' sum. Empty rectangles are ignored. Allocates nothing once
// `boxes` has grown. The caller owns `boxes`; any thread.
void joinDamage(std::span<const QRect> rects, std::vector<QRect>& boxes);

}  // namespace platform::wayland
