// SPDX-License-Identifier: MIT
#include "platform/time/RestableClock.h"

#include <gtest/gtest.h>

using platform::ManualClock;
using platform::RestableClock;
using platform::Timer;

namespace {

struct RestableClockTest : testing::Test {
    ManualClock real{1000.0};
    RestableClock clock{real};
    int fired = 0;
    Timer timer{clock, {.interval = 1.0, .repeats = true}, [this] { ++fired; }};
};

TEST_F(RestableClockTest, RunsWithTheOtherAndItsTimersDoToo) {
    real.advance(3.5);
    EXPECT_DOUBLE_EQ(clock.now(), 1003.5);
    EXPECT_EQ(fired, 3);
}

TEST_F(RestableClockTest, AtRestItStandsStillAndNothingFires) {
    real.advance(1.5);
    clock.setResting(true);
    real.advance(60.0);
    EXPECT_DOUBLE_EQ(clock.now(), 1001.5);
    EXPECT_EQ(fired, 1);
}

TEST_F(RestableClockTest, GoesOnFromWhereItStood) {
    real.advance(1.5);
    clock.setResting(true);
    real.advance(60.0);
    clock.setResting(false);
    EXPECT_DOUBLE_EQ(clock.now(), 1001.5);
    real.advance(0.4);
    EXPECT_EQ(fired, 1);
    real.advance(0.2);
    EXPECT_EQ(fired, 2);
    EXPECT_DOUBLE_EQ(clock.now(), 1002.1);
}

TEST_F(RestableClockTest, ALeapMovesItOnAndFiresWhatIsDueOnce) {
    clock.setResting(true);
    clock.leap(10.0);
    EXPECT_DOUBLE_EQ(clock.now(), 1010.0);
    EXPECT_EQ(fired, 1);
    clock.setResting(false);
    real.advance(1.0);
    EXPECT_DOUBLE_EQ(clock.now(), 1011.0);
    EXPECT_EQ(fired, 2);
}

TEST_F(RestableClockTest, ATimerMadeAtRestWaitsForItToGoOn) {
    clock.setResting(true);
    int later = 0;
    const Timer one(clock, {.interval = 0.5}, [&] { ++later; });
    real.advance(5.0);
    EXPECT_EQ(later, 0);
    clock.setResting(false);
    real.advance(0.5);
    EXPECT_EQ(later, 1);
}

TEST_F(RestableClockTest, WithoutTimersOfItsOwnItWakesTheOtherForNothing) {
    timer = Timer();
    int others = 0;
    const Timer other(real, {.interval = 7.0}, [&] { ++others; });
    real.advance(3600.0);
    EXPECT_EQ(others, 1);
    EXPECT_DOUBLE_EQ(clock.now(), 4600.0);
}

}  // namespace
