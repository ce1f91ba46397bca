// SPDX-License-Identifier: MIT
#include "platform/time/MediaClock.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <system_error>
#include <utility>

#include "platform/time/TimerState.h"

namespace platform {

namespace {
constexpr double kNever = std::numeric_limits<double>::infinity();

// The shortest time on the kernel timer, in seconds. A library that makes this process's
// clock run faster divides the time, and a time of 0 would disarm the timer.
constexpr double kShortest = 1e-6;
}  // namespace

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
        // Shared here, since the action may drop its own timer.
        const std::shared_ptr<TimerState> timer = *next;
        if (timer->repeats) {
            timer->advancePast(at);
        } else {
            timer->clock = nullptr;
            timers_.erase(next);
        }
        // The action may run an event loop of its own.
        rearm();
        timer->action();
    }
    rearm();
}

// A kernel timer: exact to the microsecond, and re-armed without the heap
// allocation that a Qt timer makes at every frame.
struct SystemClock::Waker {
    explicit Waker(std::function<void()> wake) : notifier(file.number, QSocketNotifier::Read) {
        QObject::connect(&notifier, &QSocketNotifier::activated, [this, wake = std::move(wake)] {
            std::uint64_t times = 0;
            if (read(file.number, &times, sizeof times) < 0) return;
            armed = kNever;
            wake();
        });
    }
    // Rounds up: a timer may be late, never early. Infinity disarms. The kernel gets
    // the time that is left: where something shifts this process's clock, the kernel's
    // own stands elsewhere.
    void set(double time, double now) {
        if (time == armed) return;
        armed = time;
        itimerspec alarm{};
        if (time != kNever) {
            const double left = std::max(time - now, kShortest);
            const double whole = std::floor(left);
            alarm.it_value.tv_sec = static_cast<time_t>(whole);
            alarm.it_value.tv_nsec =
                std::min(static_cast<long>(std::ceil((left - whole) * 1e9)), 999'999'999L);
        }
        timerfd_settime(file.number, 0, &alarm, nullptr);
    }

    struct File {
        // A program without timers would wait for ever.
        File() {
            if (number < 0) throw std::system_error(errno, std::generic_category());
        }
        ~File() { close(number); }
        const int number = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    };
    const File file;
    double armed = kNever;
    QSocketNotifier notifier;
};

SystemClock::SystemClock() = default;
SystemClock::~SystemClock() = default;

double SystemClock::now() const {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

void SystemClock::rearm() {
    const double wake = nextWake();
    if (!waker_) {
        if (wake == kNever) return;
        waker_ = std::make_unique<Waker>([this] { fireDue(); });
    }
    waker_->set(wake, now());
}

void ManualClock::advance(double seconds) {
    const double target = now() + seconds;
    for (double due = earliestDue(); due <= target; due = earliestDue()) {
        now_ = std::max(now(), due);
        fireDue();
    }
    now_ = target;
}

void ManualClock::leap(double seconds) {
    now_ = now() + seconds;
    fireDue();
}

}  // namespace platform
