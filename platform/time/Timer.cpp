// SPDX-License-Identifier: MIT
#include "platform/time/Timer.h"

#include <utility>

#include "platform/time/Require.h"
#include "platform/time/TimerState.h"

namespace platform {

Timer::Timer(MediaClock& clock, TimerOptions options, std::function<void()> action)
    : state_(std::make_shared<TimerState>()) {
    require(!options.repeats || options.interval > 0.0);
    state_->clock = &clock;
    state_->start = clock.now();
    state_->interval = options.interval;
    state_->tolerance = options.tolerance;
    state_->repeats = options.repeats;
    state_->due = state_->start + options.interval;
    state_->action = std::move(action);
    clock.add(state_);
}

Timer::Timer(Timer&&) noexcept = default;

Timer& Timer::operator=(Timer&& other) noexcept {
    if (this != &other) {
        invalidate();
        state_ = std::move(other.state_);
    }
    return *this;
}

Timer::~Timer() {
    invalidate();
}

void Timer::invalidate() {
    if (!state_) return;
    if (state_->clock) std::exchange(state_->clock, nullptr)->remove(state_.get());
    state_.reset();
}

void Timer::fireNextAt(double time) {
    require(!state_ || state_->repeats);
    if (!isValid()) return;
    state_->start = time - state_->interval;
    state_->fired = 0.0;
    state_->due = time;
    state_->clock->rearm();
}

bool Timer::isValid() const {
    return state_ && state_->clock;
}
double Timer::interval() const {
    return state_ ? state_->interval : 0.0;
}
double Timer::tolerance() const {
    return state_ ? state_->tolerance : 0.0;
}

}  // namespace platform
