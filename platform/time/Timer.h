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
    double tolerance = 0.0;  // seconds that it may be late for the machine's sake
};

// Calls an action on the main thread once, or every `interval` seconds, first
// one interval from now. Never early, without drift; an interval that was
// missed altogether is skipped. Owns its registration: dropping the timer ends
// it, also from inside its own action. A timer outlived by its clock is dead.
class Timer {
  public:
    Timer() = default;  // an absent timer
    Timer(MediaClock& clock, TimerOptions options, std::function<void()> action);
    Timer(Timer&&) noexcept;
    Timer& operator=(Timer&&) noexcept;
    ~Timer();

    void invalidate();

    // Of a repeating timer: it next fires at this time of the clock, infinity
    // for not until told again, and every interval from there.
    void fireNextAt(double time);

    // Whether it is still going to fire.
    [[nodiscard]] bool isValid() const;

    // Seconds; 0 for an absent timer.
    [[nodiscard]] double interval() const;
    [[nodiscard]] double tolerance() const;

  private:
    std::shared_ptr<TimerState> state_;
};

}  // namespace platform
