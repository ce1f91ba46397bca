// SPDX-License-Identifier: MIT
#pragma once

#include "platform/time/MediaClock.h"
#include "platform/time/Timer.h"

namespace platform {

// A clock that runs with another and can be brought to rest: then it stands
// still, and so does all that moves by it, but for leaps by hand. Going on, it
// goes on from where it stood. Starts running. Main thread; the other outlives it.
class RestableClock final : public MediaClock {
  public:
    explicit RestableClock(MediaClock& runsWith);
    ~RestableClock() override;

    [[nodiscard]] double now() const override;

    void setResting(bool resting);
    [[nodiscard]] bool isResting() const { return resting_; }

    // Moves a resting clock on by `seconds` (>= 0) at once, and then fires what is
    // due.
    void leap(double seconds);

  private:
    void rearm() override;

    MediaClock& other_;
    bool resting_ = false;
    double behind_ = 0.0;  // of the other, while running
    double stands_ = 0.0;  // while resting
    Timer wake_;
};

}  // namespace platform
