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

// The first rung when the processor draws. Coming down from the top rung would
// stutter for some seconds.
inline constexpr int kFirstSoftwareRung = 5;
// The highest rung when the processor draws. Several samples per pixel cost a
// processor several times the work, and the machine has other things to do.
inline constexpr int kBestSoftwareRung = 3;

// Picks the best rung of kQualityRungs that holds a frame rate. Goes down one
// rung when most frames exceed the budget, and up one after ample room for a
// while; waits longer after each step up that proved too much. Has no clock:
// the caller reports each frame's cost. One owner, on one thread.
class QualityLadder {
  public:
    struct Options {
        double budget = 1.0 / 60.0;  // seconds that a frame may cost
        int firstRung = 0;
        int bestRung = 0;  // the ladder never goes above this rung
    };
    explicit QualityLadder(const Options& options);

    // Reports the cost, in seconds, of a frame drawn at quality(). True if the
    // quality changes from here on.
    bool frameCost(double seconds);

    // Reports another frame size, which makes earlier costs meaningless. The
    // rung stays.
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
    // Counts within the present window of frames.
    int frames_ = 0;
    int slow_ = 0;
    int roomy_ = 0;
    // Windows since the rung changed, and consecutive windows with room.
    int windows_ = 0;
    int roomyWindows_ = 0;
    bool onTrial_ = false;  // went up, and is not confirmed yet
    // Windows with room needed before each rung is tried.
    std::array<int, kQualityRungs.size()> patience_{};
};

}  // namespace platform
