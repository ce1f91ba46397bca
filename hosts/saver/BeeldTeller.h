// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/desktop/View.h"
#include "platform/time/Timer.h"

namespace brixtel {

// The frame rate, written in a corner of the picture and renewed every second.
class BeeldTeller : public platform::View {
  public:
    // `boven` is the height of the view that it is laid over, in points.
    BeeldTeller(platform::MediaClock& klok, double boven);

  private:
    void tel();
    void schrijf(double perSeconde);

    platform::MediaClock& klok_;
    std::uint64_t beelden_ = 0;
    double sinds_;
    platform::Timer timer_;
};

}  // namespace brixtel
