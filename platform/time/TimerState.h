// SPDX-License-Identifier: MIT
// A clock's data about one timer; private to platform/time.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>

namespace platform {

class MediaClock;

struct TimerState {
    MediaClock* clock = nullptr;
    double start = 0.0;
    double interval = 0.0;
    double tolerance = 0.0;
    bool repeats = false;
    double due = 0.0;
    double fired = 0.0;  // intervals that have passed
    std::function<void()> action;

    // Due times are multiples of the interval from the start, so lateness never
    // adds up. Missed intervals are skipped.
    void advancePast(double now) {
        const double passed = std::floor((now - start) / interval);
        fired = std::max(fired + 1.0, passed);
        due = start + (fired + 1.0) * interval;
    }
};

}  // namespace platform
