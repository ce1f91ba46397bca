// SPDX-License-Identifier: MIT
#include "platform/animation/LocalTime.h"

#include <gtest/gtest.h>

#include <cmath>

using platform::LocalTime;

namespace {

TEST(LocalTime, ByDefaultIsTheParentsTime) {
    const LocalTime time;
    EXPECT_EQ(time.beginTime, 0.0);
    EXPECT_EQ(time.timeOffset, 0.0);
    EXPECT_EQ(time.speed, 1.0);
    EXPECT_EQ(time.fromParent(123.25), 123.25);
}

TEST(LocalTime, IsTheParentsFromTheBeginOnTimesSpeedPlusOffset) {
    const LocalTime time{.beginTime = 10.0, .timeOffset = 3.0, .speed = 0.5};
    EXPECT_DOUBLE_EQ(time.fromParent(10.0), 3.0);
    EXPECT_DOUBLE_EQ(time.fromParent(14.0), 5.0);
    EXPECT_DOUBLE_EQ(time.fromParent(8.0), 2.0);
}

TEST(LocalTime, GoesBackToTheParent) {
    const LocalTime time{.beginTime = 10.0, .timeOffset = 3.0, .speed = -2.0};
    for (const double parent : {-4.0, 0.0, 10.0, 11.5})
        EXPECT_DOUBLE_EQ(time.toParent(time.fromParent(parent)), parent);
}

TEST(LocalTime, StandingStillNeverReachesAnotherTime) {
    const LocalTime time{.beginTime = 10.0, .timeOffset = 3.0, .speed = 0.0};
    EXPECT_EQ(time.fromParent(99.0), 3.0);
    EXPECT_TRUE(std::isinf(time.toParent(4.0)));
}

}  // namespace
