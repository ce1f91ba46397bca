// SPDX-License-Identifier: MIT
#include "platform/time/RestableClock.h"

#include <limits>

#include "platform/time/Require.h"

namespace platform {

RestableClock::RestableClock(MediaClock& runsWith)
    : other_(runsWith),
      // The interval matters only until the next rearm().
      wake_(runsWith, {.interval = 1.0, .repeats = true}, [this] {
          fireDue();
          rearm();
      }) {
    rearm();
}

RestableClock::~RestableClock() = default;

double RestableClock::now() const {
    return resting_ ? stands_ : other_.now() - behind_;
}

void RestableClock::setResting(bool resting) {
    if (resting_ == resting) return;
    const double at = now();
    resting_ = resting;
    stands_ = at;
    behind_ = other_.now() - at;
    rearm();
}

void RestableClock::leap(double seconds) {
    require(resting_ && seconds >= 0.0);
    stands_ += seconds;
    fireDue();
}

void RestableClock::rearm() {
    if (!wake_.isValid()) return;
    wake_.fireNextAt(resting_ ? std::numeric_limits<double>::infinity() : nextWake() + behind_);
}

}  // namespace platform
