// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>

#include "platform/render/SceneQuality.h"

namespace platform {

inline constexpr std::array<SceneQuality, 7> kQualityRungs{{
    {.samples = 4, .resolution = 1.0, .fineBloom = true, .anisotropy = 16},
    {.samples = 4, .resolution = 1.0, .fineBloom = false, .anisotropy = 8},
    {.samples = 2, .resolution = 1.0, .fineBloom = false, .anisotropy = 4},
    {.samples = 1, .resolution = 1.0, .fineBloom = false, .anisotropy = 1},
    {.samples = 1, .resolution = 0.8, .fineBloom = false, .anisotropy = 1},
    {.samples = 1, .resolution = 0.65, .fineBloom = false, .anisotropy = 1},
    {.samples = 1, .resolution = 0.5, .fineBloom = false, .anisotropy = 1},
}};

// Where to begin when the processor does the drawing: it would stutter for some
// seconds on its way down from the top.
inline constexpr int kFirstSoftwareRung = 5;
// And where to stop going up: several samples a pixel cost a processor several
// times the work, and the machine has other things to do.
inline constexpr int kBestSoftwareRung = 3;

// Picks the best rung of kQualityRungs that holds a frame rate: down one when
// most frames cost more than the budget, up one when there has been ample room
// for a while, and the later each time that going up proved too much. It has no
// clock: it is told what frames cost.
class QualityLadder {
  public:
    struct Options {
        double budget = 1.0 / 60.0;  // seconds that a frame may cost
        int firstRung = 0;
        int bestRung = 0;  // it never goes above this one
    };
    explicit QualityLadder(const Options& options);

    // A frame was drawn at quality() and cost this much. True if the quality is
    // another from now on.
    bool frameCost(double seconds);

    // Frames are of another size from now on: what went before says nothing about
    // them. The rung stays.
    void sizeChanged();

    [[nodiscard]] int rung() const { return rung_; }
    [[nodiscard]] const SceneQuality& quality() const {
        return kQualityRungs[static_cast<std::size_t>(rung_)];
    }

  private:
    bool endWindow();
    bool moveTo(int rung);

    const double budget_;
    const int best_;
    int rung_;
    // Within the present window of frames.
    int frames_ = 0;
    int slow_ = 0;
    int roomy_ = 0;
    // Windows since the rung changed, and those in a row that had room.
    int windows_ = 0;
    int roomyWindows_ = 0;
    bool onTrial_ = false;  // went up and has not proved itself yet
    // Windows with room before each rung is tried.
    std::array<int, kQualityRungs.size()> patience_{};
};

}  // namespace platform
