// SPDX-License-Identifier: MIT
#include "platform/time/MediaClock.h"

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

#include "platform/time/TimerState.h"

namespace platform {

namespace {
constexpr double kNever = std::numeric_limits<double>::infinity();
}

MediaClock::~MediaClock() {
    for (auto& timer : timers_)
        timer->clock = nullptr;
}

void MediaClock::add(std::shared_ptr<TimerState> timer) {
    timers_.push_back(std::move(timer));
    rearm();
}

void MediaClock::remove(const TimerState* timer) {
    std::erase_if(timers_, [&](const auto& t) { return t.get() == timer; });
    rearm();
}

double MediaClock::earliestDue() const {
    double due = kNever;
    for (const auto& timer : timers_)
        due = std::min(due, timer->due);
    return due;
}

double MediaClock::nextWake() const {
    double limit = kNever;
    for (const auto& timer : timers_)
        limit = std::min(limit, timer->due + timer->tolerance);
    double wake = -kNever;
    for (const auto& timer : timers_)
        if (timer->due <= limit) wake = std::max(wake, timer->due);
    return timers_.empty() ? kNever : wake;
}

void MediaClock::fireDue() {
    const double at = now();
    for (;;) {
        const auto next =
            std::min_element(timers_.begin(), timers_.end(),
                             [](const auto& a, const auto& b) { return a->due < b->due; });
        if (next == timers_.end() || (*next)->due > at) break;
        // Held here, since the action may drop its own timer.
        const std::shared_ptr<TimerState> timer = *next;
        if (timer->repeats) {
            timer->advancePast(at);
        } else {
            timer->clock = nullptr;
            timers_.erase(next);
        }
        timer->action();
    }
    rearm();
}

struct SystemClock::Waker {
    QTimer timer;
};

SystemClock::SystemClock() = default;
SystemClock::~SystemClock() = default;

double SystemClock::now() const {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

void SystemClock::rearm() {
    const double wake = nextWake();
    if (wake == kNever) {
        if (waker_) waker_->timer.stop();
        return;
    }
    if (!waker_) {
        waker_ = std::make_unique<Waker>();
        waker_->timer.setSingleShot(true);
        waker_->timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&waker_->timer, &QTimer::timeout, [this] { fireDue(); });
    }
    // Rounded up: a timer may be late, never early.
    const double wait = std::clamp((wake - now()) * 1000.0, 0.0, 1e9);
    waker_->timer.start(static_cast<int>(std::ceil(wait)));
}

void ManualClock::advance(double seconds) {
    const double target = now_ + seconds;
    for (double due = earliestDue(); due <= target; due = earliestDue()) {
        now_ = std::max(now_, due);
        fireDue();
    }
    now_ = target;
}

void ManualClock::leap(double seconds) {
    now_ += seconds;
    fireDue();
}

}  // namespace platform
