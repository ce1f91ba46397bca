// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "platform/animation/LocalTime.h"
#include "platform/animation/TimingFunction.h"

namespace platform {

enum class KeyPath { PositionX, PositionY, Opacity };

enum class CalculationMode {
    Linear,    // in between, along the segment
    Discrete,  // holds each value for its slot, then jumps
};

// The value outside the animation's active time: the first or last value on a
// side that fills, else the layer's model value.
enum class FillMode { Removed, Forwards, Backwards, Both };

inline constexpr double kForever = std::numeric_limits<double>::infinity();

struct AnimationTiming {
    // In the layer's local time. A beginTime of 0 means the time of adding. The
    // timeOffset starts the animation part-way in, and the cycle wraps.
    LocalTime time = {};
    double duration = 0.0;     // seconds per pass; 0 means 0.25
    double repeatCount = 0.0;  // passes; 0 means one, kForever no end
    bool autoreverses = false;
    FillMode fillMode = FillMode::Removed;
    bool removedOnCompletion = true;
    TimingFunction function = TimingFunction::linear();
};

struct KeyframeAnimation {
    KeyPath keyPath = KeyPath::Opacity;
    std::vector<double> values = {};
    // Empty, or one per value, rising from 0 to 1 (linear mode). Empty means
    // equal slots (discrete) or equal segments (linear).
    std::vector<double> keyTimes = {};
    CalculationMode calculationMode = CalculationMode::Linear;
    AnimationTiming timing = {};
};

struct BasicAnimation {
    KeyPath keyPath = KeyPath::Opacity;
    double from = 0.0;
    double to = 0.0;
    AnimationTiming timing = {};
};

// One animation of a layer: tells its value at a time, and when the value next changes.
// Pure data that the layer owns. A value: any thread, like any other value.
class Animation {
  public:
    // Adds at `now`, in the layer's local time.
    Animation(KeyframeAnimation animation, double now);
    Animation(BasicAnimation animation, double now);

    [[nodiscard]] KeyPath keyPath() const { return data_.keyPath; }
    [[nodiscard]] const KeyframeAnimation& data() const { return data_; }

    // The value at the layer's local time; none where the model value applies.
    [[nodiscard]] std::optional<double> value(double layerTime) const;

    // The layer's local time at which the value next differs: the next slot for
    // discrete key frames, `layerTime` itself while the value moves
    // continuously, infinity once the value stands still.
    [[nodiscard]] double nextChange(double layerTime) const;

    // Whether the animation has ended and wants to be removed.
    [[nodiscard]] bool isFinished(double layerTime) const;

  private:
    // Seconds since the animation's begin, at its own speed; and its whole active time.
    [[nodiscard]] double elapsed(double layerTime) const;
    [[nodiscard]] double activeDuration() const;
    // Seconds into the current pass, in [0, duration].
    [[nodiscard]] double positionInPass(double elapsed) const;
    [[nodiscard]] double endPosition() const;
    [[nodiscard]] double valueAt(double position) const;

    KeyframeAnimation data_;
};

}  // namespace platform
