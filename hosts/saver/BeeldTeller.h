// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <cstdint>

#include "platform/time/Timer.h"
#include "platform/view/View.h"

namespace brixtel {

// The frame rate and its share of one processor, shown in a corner of the picture and
// renewed every second.
class BeeldTeller : public platform::View {
  public:
    // `boven` is the height of the view below this one, in points.
    BeeldTeller(platform::MediaClock& klok, double boven);

    // The lines of text; empty in the first second.
    [[nodiscard]] const std::array<QString, 2>& regels() const { return regels_; }

  private:
    void tel();
    void schrijf();

    platform::MediaClock& klok_;
    std::uint64_t beelden_ = 0;
    double sinds_;
    double cpu_;
    std::array<QString, 2> regels_;
    platform::Timer timer_;
};

}  // namespace brixtel
