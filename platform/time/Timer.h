// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "platform/time/MediaClock.h"

namespace platform {

struct TimerState;

struct TimerOptions {
    double interval = 0.0;  // seconds; a repeating timer needs more than 0
    bool repeats = false;
    double tolerance = 0.0;  // seconds that it may be late, to save wake-ups
};

// Calls an action on the main thread once, or every `interval` seconds, first
// after one interval. Never early, without drift; missed intervals are skipped.
// Owns its registration: dropping the timer ends it, also from inside its own
// action. A timer that outlives its clock never fires.
class Timer {
  public:
    Timer() = default;  // an absent timer
    Timer(MediaClock& clock, TimerOptions options, std::function<void()> action);
    Timer(Timer&&) noexcept;
    Timer& operator=(Timer&&) noexcept;
    ~Timer();

    void invalidate();

    // Sets the next firing time of a repeating timer, on its clock; later ones
    // follow every interval. Infinity means not until told again.
    void fireNextAt(double time);

    // Whether the timer is still going to fire.
    [[nodiscard]] bool isValid() const;

    // Seconds; 0 for an absent timer.
    [[nodiscard]] double interval() const;
    [[nodiscard]] double tolerance() const;

  private:
    std::shared_ptr<TimerState> state_;
};

}  // namespace platform
