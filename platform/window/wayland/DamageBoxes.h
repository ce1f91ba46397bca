// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <span>
#include <vector>

namespace platform::wayland {

// How many boxes a compositor is told at most: each costs it more than the
// pixels between two near ones.
constexpr std::size_t kMostBoxes = 4;
// How much larger than the rectangles together the boxes may be for being fewer
// than that.
constexpr double kWorthJoining = 1.5;

// Writes into `boxes` (emptied first) at most four boxes that hold all the
// rectangles: joined where that wastes least, down to four, and further while
// their area stays below 1.5 times the rectangles' sum. Empty rectangles count
// for nothing. Plain values; any thread. Allocates nothing once `boxes` has grown.
void joinDamage(std::span<const QRect> rects, std::vector<QRect>& boxes);

}  // namespace platform::wayland
