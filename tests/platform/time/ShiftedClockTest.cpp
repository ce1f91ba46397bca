// SPDX-License-Identifier: MIT
// A process whose clock something shifts: its C library tells other times than the
// kernel's timers keep.
#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>

#include <QCoreApplication>
#include <ctime>

#include "platform/time/Timer.h"
#include "tests/support/Until.h"

// The sanitizers put a function of their own in this one's place.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {
time_t shift = 0;  // seconds
}

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (result == 0) time->tv_sec += shift;
    return static_cast<int>(result);
}

namespace {

struct ShiftedClock : testing::TestWithParam<time_t> {
    ShiftedClock() { shift = GetParam(); }
    ~ShiftedClock() override { shift = 0; }
};

TEST_P(ShiftedClock, ItsTimersFireAllTheSame) {
    platform::SystemClock clock;
    int fired = 0;
    const double begin = clock.now();
    const platform::Timer timer(clock, {.interval = 0.02, .repeats = true}, [&] { ++fired; });
    EXPECT_TRUE(until([&] { return fired >= 3; }));
    EXPECT_GE(clock.now() - begin, 0.06);
}

INSTANTIATE_TEST_SUITE_P(Shifts, ShiftedClock, testing::Values(0, 1'000'000, -1'000));

}  // namespace

#endif
