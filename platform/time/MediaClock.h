// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <vector>

namespace platform {

struct TimerState;

// The program's only clock. A moving object is handed a clock and asks it for
// the time; nothing else in the program reads the system's clock. Timers belong
// to the same clock (see Timer.h), so a test that moves the clock moves them.
//
// Seconds as double, monotonic, from an arbitrary start. Main thread, except now(), which any
// thread may call. The program owns its clock, which outlives every user.
class MediaClock {
  public:
    MediaClock(const MediaClock&) = delete;
    MediaClock& operator=(const MediaClock&) = delete;
    virtual ~MediaClock();

    [[nodiscard]] virtual double now() const = 0;

    // The number of waiting timers; a test's proof that a timer was dropped.
    [[nodiscard]] std::size_t timerCount() const { return timers_.size(); }

  protected:
    MediaClock() = default;

    // Called whenever the earliest due time may have changed.
    virtual void rearm() {}

    // Fires every timer due at now(), in order of due time, then of creation. A
    // repeating timer fires once, however late it is.
    void fireDue();

    // The time to wake: the latest time that keeps every timer within its
    // tolerance. Infinity when no timer waits.
    [[nodiscard]] double nextWake() const;
    [[nodiscard]] double earliestDue() const;

  private:
    friend class Timer;
    void add(std::shared_ptr<TimerState> timer);
    void remove(const TimerState* timer);

    std::vector<std::shared_ptr<TimerState>> timers_;
};

// The system's monotonic clock. Its timers run on the Qt event loop of the
// thread that made it, nested loops included. A QCoreApplication must exist
// when a timer is to fire.
class SystemClock final : public MediaClock {
  public:
    SystemClock();
    ~SystemClock() override;
    [[nodiscard]] double now() const override;

  private:
    void rearm() override;
    struct Waker;
    std::unique_ptr<Waker> waker_;
};

// A clock that stands still until moved by hand.
class ManualClock final : public MediaClock {
  public:
    explicit ManualClock(double start = 1000.0) : now_(start) {}
    [[nodiscard]] double now() const override { return now_.load(std::memory_order_relaxed); }

    // Moves on by `seconds` (>= 0) and stops at every timer on the way: each
    // timer fires exactly at its due time.
    void advance(double seconds);

    // Moves on in one leap, like a busy or sleeping machine, and then fires
    // what is due.
    void leap(double seconds);

  private:
    std::atomic<double> now_;
};

}  // namespace platform
