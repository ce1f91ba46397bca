// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>
#include <vector>

#include "platform/render/SceneQuality.h"

namespace platform {

// The rungs, best first.
[[nodiscard]] std::span<const SceneQuality> qualityRungs();

// Picks the best quality that holds a frame rate: down one rung when frames cost
// too much, up one when there is room for it, and seldomer each time that going
// up proved too much. It has no clock: it is told what frames cost.
class QualityLadder {
  public:
    struct Options {
        double budget = 1.0 / 60.0;  // seconds that a frame may cost
        int firstRung = 0;
    };
    explicit QualityLadder(const Options& options);

    // A frame was drawn at quality() and cost this much. True if the quality is
    // another from now on.
    bool frameCost(double seconds);

    // The frames from now on are of another size, so that what is known of costs
    // no longer holds. The rung stays.
    void sizeChanged();

    [[nodiscard]] int rung() const { return rung_; }
    [[nodiscard]] const SceneQuality& quality() const;

  private:
    bool moveTo(int rung);

    double budget_;
    int rung_;
};

}  // namespace platform
