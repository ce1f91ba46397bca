// SPDX-License-Identifier: MIT
#include "platform/view/Fade.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/animation/TimingFunction.h"

namespace platform {

namespace {
constexpr double kStep = 1.0 / 60.0;
}

Fade::Fade(MediaClock& clock, std::function<void(double)> show)
    : clock_(clock), show_(std::move(show)) {}

double Fade::share() const {
    if (duration_ <= 0.0) return 1.0;
    return std::clamp((clock_.now() - begin_) / duration_, 0.0, 1.0);
}

double Fade::value() const {
    return std::lerp(from_, to_, TimingFunction::standard()(share()));
}

void Fade::set(double value) {
    timer_ = Timer();
    from_ = to_ = std::clamp(value, 0.0, 1.0);
    show_(to_);
    // The token is dropped last: its end may run an action that calls this fade.
    const AnimationGroup::Token ended = std::move(token_);
}

void Fade::start(double to, double duration, AnimationGroup::Token token) {
    const AnimationGroup::Token ended = std::exchange(token_, std::move(token));
    from_ = value();
    to_ = std::clamp(to, 0.0, 1.0);
    begin_ = clock_.now();
    duration_ = duration;
    timer_ = Timer(clock_, {.interval = kStep, .repeats = true}, [this] { step(); });
}

void Fade::step() {
    if (share() >= 1.0) {
        set(to_);
    } else {
        show_(value());
    }
}

}  // namespace platform
