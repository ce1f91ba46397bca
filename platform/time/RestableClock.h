// SPDX-License-Identifier: MIT
#pragma once

#include "platform/time/MediaClock.h"
#include "platform/time/Timer.h"

namespace platform {

// A clock that follows another clock and can rest. A resting clock stands
// still, except for leaps by hand, and later goes on from the same time. Starts
// running. Main thread. The other clock must outlive it.
class RestableClock final : public MediaClock {
  public:
    explicit RestableClock(MediaClock& runsWith);
    ~RestableClock() override;

    [[nodiscard]] double now() const override;

    void setResting(bool resting);
    [[nodiscard]] bool isResting() const { return resting_; }

    // Moves a resting clock on by `seconds` (>= 0) at once, then fires what is
    // due.
    void leap(double seconds);

  private:
    void rearm() override;

    MediaClock& other_;
    bool resting_ = false;
    double behind_ = 0.0;  // behind the other clock, while running
    double stands_ = 0.0;  // the time shown, while resting
    Timer wake_;
};

}  // namespace platform
