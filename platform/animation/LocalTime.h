// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

namespace platform {

// Maps a parent's time to an object's own time, in seconds. The superlayer is a
// layer's parent; the layer is an animation's; the media clock is the root
// layer's. A value: any thread, like any other value.
struct LocalTime {
    double beginTime = 0.0;
    double timeOffset = 0.0;
    double speed = 1.0;

    [[nodiscard]] double fromParent(double parent) const {
        return (parent - beginTime) * speed + timeOffset;
    }

    // The parent's time at which the local time is reached; infinity at speed
    // 0.
    [[nodiscard]] double toParent(double local) const {
        if (speed == 0.0) return std::numeric_limits<double>::infinity();
        return (local - timeOffset) / speed + beginTime;
    }

    friend bool operator==(const LocalTime&, const LocalTime&) = default;
};

}  // namespace platform
