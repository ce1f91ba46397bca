// SPDX-License-Identifier: MIT
#include "platform/animation/Animation.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/time/Require.h"

namespace platform {

namespace {

// Discrete values begin this many seconds early. nextChange() then lies within
// the new value's slot, whatever rounding the conversions between the layers'
// times brought.
constexpr double kEarly = 1e-6;

bool fillsBefore(FillMode mode) {
    return mode == FillMode::Backwards || mode == FillMode::Both;
}
bool fillsAfter(FillMode mode) {
    return mode == FillMode::Forwards || mode == FillMode::Both;
}

}  // namespace

Animation::Animation(KeyframeAnimation animation, double now) : data_(std::move(animation)) {
    require(!data_.values.empty());
    require(data_.keyTimes.empty() || data_.keyTimes.size() == data_.values.size());
    if (data_.timing.time.beginTime == 0.0) data_.timing.time.beginTime = now;
    if (data_.timing.duration <= 0.0) data_.timing.duration = 0.25;
    if (data_.timing.repeatCount <= 0.0) data_.timing.repeatCount = 1.0;
}

Animation::Animation(BasicAnimation animation, double now)
    : Animation(KeyframeAnimation{.keyPath = animation.keyPath,
                                  .values = {animation.from, animation.to},
                                  .keyTimes = {},
                                  .calculationMode = CalculationMode::Linear,
                                  .timing = animation.timing},
                now) {}

double Animation::elapsed(double layerTime) const {
    const double passed = (layerTime - data_.timing.time.beginTime) * data_.timing.time.speed;
    return data_.calculationMode == CalculationMode::Discrete ? passed + kEarly : passed;
}

double Animation::activeDuration() const {
    const double pass = data_.timing.duration * (data_.timing.autoreverses ? 2.0 : 1.0);
    return pass * data_.timing.repeatCount;
}

double Animation::positionInPass(double elapsed) const {
    const double duration = data_.timing.duration;
    const double cycle = data_.timing.autoreverses ? 2.0 * duration : duration;
    double position = std::fmod(elapsed + data_.timing.time.timeOffset, cycle);
    if (position < 0.0) position += cycle;
    return position > duration ? cycle - position : position;
}

double Animation::endPosition() const {
    const double duration = data_.timing.duration;
    const double position = positionInPass(activeDuration());
    // The end of a pass must not wrap to its beginning.
    return !data_.timing.autoreverses && position < 1e-9 * duration ? duration : position;
}

double Animation::valueAt(double position) const {
    const auto& values = data_.values;
    const double share = data_.timing.function(position / data_.timing.duration);
    const auto count = static_cast<double>(values.size());
    if (data_.calculationMode == CalculationMode::Discrete) {
        const double slot = std::min(std::floor(share * count), count - 1.0);
        return values[static_cast<std::size_t>(slot)];
    }
    if (values.size() == 1) return values.front();
    if (data_.keyTimes.empty()) {
        const double place = share * (count - 1.0);
        const double segment = std::min(std::floor(place), count - 2.0);
        const auto i = static_cast<std::size_t>(segment);
        return std::lerp(values[i], values[i + 1], place - segment);
    }
    const auto& times = data_.keyTimes;
    const auto above = std::upper_bound(times.begin(), times.end(), share);
    if (above == times.begin()) return values.front();
    if (above == times.end()) return values.back();
    const auto i = static_cast<std::size_t>(above - times.begin()) - 1;
    return std::lerp(values[i], values[i + 1], (share - times[i]) / (times[i + 1] - times[i]));
}

std::optional<double> Animation::value(double layerTime) const {
    const double passed = elapsed(layerTime);
    if (passed < 0.0) {
        if (!fillsBefore(data_.timing.fillMode)) return std::nullopt;
        return valueAt(positionInPass(0.0));
    }
    if (passed < activeDuration()) return valueAt(positionInPass(passed));
    if (!fillsAfter(data_.timing.fillMode)) return std::nullopt;
    return valueAt(endPosition());
}

double Animation::nextChange(double layerTime) const {
    const AnimationTiming& timing = data_.timing;
    const double passed = elapsed(layerTime);
    if (timing.time.speed <= 0.0) return timing.time.speed < 0.0 ? layerTime : kForever;
    if (passed < 0.0) return timing.time.beginTime;
    if (passed >= activeDuration()) return kForever;
    if (data_.calculationMode != CalculationMode::Discrete || timing.autoreverses ||
        !timing.function.isLinear())
        return layerTime;
    const double slot = timing.duration / static_cast<double>(data_.values.size());
    const double position = positionInPass(passed);
    const double untilNext = (std::floor(position / slot) + 1.0) * slot - position;
    const double change = std::min(passed + untilNext, activeDuration());
    return timing.time.beginTime + change / timing.time.speed;
}

bool Animation::isFinished(double layerTime) const {
    return data_.timing.removedOnCompletion && elapsed(layerTime) >= activeDuration();
}

}  // namespace platform
