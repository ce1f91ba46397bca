// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

namespace platform {

struct TimerState;

// The one clock. Everything that moves is handed a clock and asks it for the
// time; nothing else in the program reads the system's. Timers belong to the
// same clock (see Timer.h), so that a test that moves the clock moves them.
//
// Seconds as double, monotonic, from an arbitrary start. Main thread only,
// except now() of SystemClock, which any thread may call.
class MediaClock {
  public:
    MediaClock(const MediaClock&) = delete;
    MediaClock& operator=(const MediaClock&) = delete;
    virtual ~MediaClock();

    [[nodiscard]] virtual double now() const = 0;

    // How many timers wait on this clock; a test's proof that one was dropped.
    [[nodiscard]] std::size_t timerCount() const { return timers_.size(); }

  protected:
    MediaClock() = default;

    // Called whenever the earliest due time may have changed.
    virtual void rearm() {}

    // Fires every timer that is due at now(), in order of due time, then of
    // creation. A repeating timer fires once however late it is.
    void fireDue();

    // The time at which the clock should wake: the latest due time that keeps
    // every timer within its tolerance. Infinity when no timer waits.
    [[nodiscard]] double nextWake() const;
    [[nodiscard]] double earliestDue() const;

  private:
    friend class Timer;
    void add(std::shared_ptr<TimerState> timer);
    void remove(const TimerState* timer);

    std::vector<std::shared_ptr<TimerState>> timers_;
};

// The system's monotonic clock; its timers run on the Qt event loop of the
// thread that made it, nested loops included. Needs a QCoreApplication by the
// time a timer is to fire.
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

// A clock that stands still until it is moved by hand.
class ManualClock final : public MediaClock {
  public:
    explicit ManualClock(double start = 1000.0) : now_(start) {}
    [[nodiscard]] double now() const override { return now_; }

    // Moves on by `seconds` (>= 0), stopping at every timer on the way, so that
    // each fires exactly at its due time.
    void advance(double seconds);

    // Moves on in one leap, as a machine that was too busy or asleep does, and
    // only then fires what is due.
    void leap(double seconds);

  private:
    double now_;
};

}  // namespace platform
