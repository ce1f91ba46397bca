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

// What shows outside the animation's active time; the model value where it
// does not fill.
enum class FillMode { Removed, Forwards, Backwards, Both };

inline constexpr double kForever = std::numeric_limits<double>::infinity();

struct AnimationTiming {
    // In the layer's local time. A beginTime of 0 means: now, when it is added.
    // The timeOffset starts the animation part-way in, and the cycle wraps.
    LocalTime time = {};
    double duration = 0.0;     // seconds of one pass; 0 means a quarter of a second
    double repeatCount = 0.0;  // passes; 0 means one, kForever no end
    bool autoreverses = false;
    FillMode fillMode = FillMode::Removed;
    bool removedOnCompletion = true;
    TimingFunction function = TimingFunction::linear();
};

struct KeyframeAnimation {
    KeyPath keyPath = KeyPath::Opacity;
    std::vector<double> values = {};
    // Empty, or as many as there are values, rising from 0 to 1 (linear mode).
    // Empty means: equal slots (discrete) or equal segments (linear).
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

// One animation as a layer keeps it: pure data that answers what the value is
// at a time and when it next becomes another. It never changes anything.
class Animation {
  public:
    // `now` is the layer's local time at the moment of adding.
    Animation(KeyframeAnimation animation, double now);
    Animation(BasicAnimation animation, double now);

    [[nodiscard]] KeyPath keyPath() const { return data_.keyPath; }
    [[nodiscard]] const KeyframeAnimation& data() const { return data_; }

    // The value at the layer's local time; none where the model value shows.
    [[nodiscard]] std::optional<double> value(double layerTime) const;

    // The layer's local time from which the value differs from the one at
    // `layerTime`: the next slot's for discrete key frames, `layerTime` itself
    // while it moves continuously, infinity when it has ended or stands still.
    [[nodiscard]] double nextChange(double layerTime) const;

    // Whether it has ended and asked to be removed then.
    [[nodiscard]] bool isFinished(double layerTime) const;

  private:
    // Seconds since its begin in its own speed; and the whole active time.
    [[nodiscard]] double elapsed(double layerTime) const;
    [[nodiscard]] double activeDuration() const;
    // Seconds into the current pass, within [0, duration].
    [[nodiscard]] double positionInPass(double elapsed) const;
    [[nodiscard]] double endPosition() const;
    [[nodiscard]] double valueAt(double position) const;

    KeyframeAnimation data_;
};

}  // namespace platform
