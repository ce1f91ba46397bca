// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/time/Timer.h"
#include "platform/view/AnimationGroup.h"

namespace platform {

// A window's opacity on its way from one value to another, along the standard
// curve. The window owns its fade. Main thread.
class Fade {
  public:
    // `show` is given each value that is to be seen.
    Fade(MediaClock& clock, std::function<void(double)> show);

    // The value at the clock's now.
    [[nodiscard]] double value() const;

    // At once, ending a fade that runs.
    void set(double value);
    // The token is held until the value is reached, or another one is asked for.
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
