// SPDX-License-Identifier: MIT
// A process whose clock something shifts or speeds up: its C library tells other times than
// the kernel's timers keep, or gives the kernel shorter times than it was given.
#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <ctime>

#include "platform/time/Timer.h"
#include "tests/support/Until.h"

// The sanitizers put a function of their own in this one's place.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {
time_t shift = 0;  // seconds
long rate = 1;     // the times that the kernel gets are this many times shorter
}  // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (result == 0) time->tv_sec += shift;
    return static_cast<int>(result);
}

extern "C" int timerfd_settime(int file, int flags, const itimerspec* wanted,
                               itimerspec* before) noexcept {
    itimerspec given = *wanted;
    const long whole = given.it_value.tv_sec * 1'000'000'000L + given.it_value.tv_nsec;
    given.it_value = {.tv_sec = whole / rate / 1'000'000'000L,
                      .tv_nsec = whole / rate % 1'000'000'000L};
    return static_cast<int>(syscall(SYS_timerfd_settime, file, flags, &given, before));
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

// Where the clock runs faster, the kernel timer of a time that has come is never disarmed.
TEST(FastClock, ATimerThatIsDueFiresAllTheSame) {
    for (const long times : {2L, 60L, 1000L}) {
        rate = times;
        platform::SystemClock clock;
        bool fired = false;
        const platform::Timer timer(clock, {.interval = 0.0}, [&] { fired = true; });
        EXPECT_TRUE(until([&] { return fired; })) << times;
        rate = 1;
    }
}

INSTANTIATE_TEST_SUITE_P(Shifts, ShiftedClock, testing::Values(0, 1'000'000, -1'000));

}  // namespace

#endif
