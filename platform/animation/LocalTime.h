// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

namespace platform {

// How an object's own time follows from its parent's: a layer's from its
// superlayer's, an animation's from its layer's. The root's parent is the media
// clock. Seconds.
struct LocalTime {
    double beginTime = 0.0;
    double timeOffset = 0.0;
    double speed = 1.0;

    [[nodiscard]] double fromParent(double parent) const {
        return (parent - beginTime) * speed + timeOffset;
    }

    // The parent time at which the local time is reached; infinity for a time
    // that stands still.
    [[nodiscard]] double toParent(double local) const {
        if (speed == 0.0) return std::numeric_limits<double>::infinity();
        return (local - timeOffset) / speed + beginTime;
    }

    friend bool operator==(const LocalTime&, const LocalTime&) = default;
};

}  // namespace platform
