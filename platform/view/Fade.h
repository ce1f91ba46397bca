// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/time/Timer.h"
#include "platform/view/AnimationGroup.h"

namespace platform {

// Moves a window's opacity from one value to another, along the standard curve. The window
// owns its fade. Main thread.
class Fade {
  public:
    // `show` receives each value that the window is to show. The clock outlives the fade.
    Fade(MediaClock& clock, std::function<void(double)> show);

    // The value at the clock's present time.
    [[nodiscard]] double value() const;

    // Sets the value at once, and ends a running fade.
    void set(double value);
    // Starts a fade, and keeps the token until the value is reached or replaced.
    void start(double to, double duration, AnimationGroup::Token token);

  private:
    [[nodiscard]] double share() const;
    void step();

    MediaClock& clock_;
    const std::function<void(double)> show_;
    double from_ = 1.0;
    double to_ = 1.0;
    double begin_ = 0.0;
    double duration_ = 0.0;
    AnimationGroup::Token token_;
    Timer timer_;
};

}  // namespace platform
