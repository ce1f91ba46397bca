// SPDX-License-Identifier: MIT
#include "platform/animation/Animation.h"

#include <gtest/gtest.h>

#include <optional>

using namespace platform;

namespace {

Animation basic(const AnimationTiming& timing, double now = 100.0) {
    return {BasicAnimation{.keyPath = KeyPath::Opacity, .from = 0.0, .to = 10.0, .timing = timing},
            now};
}

Animation frames(const std::vector<double>& values, const std::vector<double>& keyTimes) {
    return {KeyframeAnimation{.values = values, .keyTimes = keyTimes, .timing = {.duration = 10.0}},
            100.0};
}

TEST(Animation, HasTheDefaultsOfItsTiming) {
    const AnimationTiming timing;
    EXPECT_EQ(timing.time, (LocalTime{0.0, 0.0, 1.0}));
    EXPECT_EQ(timing.duration, 0.0);
    EXPECT_EQ(timing.repeatCount, 0.0);
    EXPECT_FALSE(timing.autoreverses);
    EXPECT_EQ(timing.fillMode, FillMode::Removed);
    EXPECT_TRUE(timing.removedOnCompletion);
    EXPECT_TRUE(timing.function.isLinear());
}

TEST(Animation, DurationZeroIsAQuarterOfASecondOnce) {
    const Animation animation = basic({});
    EXPECT_DOUBLE_EQ(*animation.value(100.125), 5.0);
    EXPECT_TRUE(animation.value(100.2499).has_value());
    EXPECT_FALSE(animation.value(100.25).has_value());
}

TEST(Animation, BeginZeroIsTheLayersNow) {
    const Animation animation = basic({.duration = 2.0}, 100.0);
    EXPECT_EQ(animation.data().timing.time.beginTime, 100.0);
    EXPECT_DOUBLE_EQ(*animation.value(101.0), 5.0);
}

TEST(Animation, AnyOtherBeginIsTheLayersLocalTime) {
    const Animation animation = basic({.time = {.beginTime = 103.0}, .duration = 2.0}, 100.0);
    EXPECT_FALSE(animation.value(102.9).has_value());
    EXPECT_DOUBLE_EQ(*animation.value(104.0), 5.0);
}

TEST(Animation, HasNoEffectBeforeItsBeginAndAfterItsEnd) {
    const Animation animation = basic({.time = {.beginTime = 103.0}, .duration = 2.0});
    EXPECT_FALSE(animation.value(102.999).has_value());
    EXPECT_EQ(animation.value(103.0), 0.0);
    EXPECT_TRUE(animation.value(104.999).has_value());
    EXPECT_FALSE(animation.value(105.0).has_value());
}

TEST(Animation, FillForwardsHoldsTheLastValue) {
    const Animation animation = basic({.time = {.beginTime = 103.0},
                                       .duration = 2.0,
                                       .repeatCount = 3.0,
                                       .fillMode = FillMode::Forwards});
    EXPECT_FALSE(animation.value(102.0).has_value());
    EXPECT_DOUBLE_EQ(*animation.value(109.0), 10.0);
    EXPECT_DOUBLE_EQ(*animation.value(1e6), 10.0);
}

TEST(Animation, FillBackwardsShowsTheFirstValueBeforehand) {
    const Animation animation =
        basic({.time = {.beginTime = 103.0}, .duration = 2.0, .fillMode = FillMode::Backwards});
    EXPECT_DOUBLE_EQ(*animation.value(1.0), 0.0);
    EXPECT_FALSE(animation.value(105.0).has_value());
}

TEST(Animation, FillBothDoesBoth) {
    const Animation animation =
        basic({.time = {.beginTime = 103.0}, .duration = 2.0, .fillMode = FillMode::Both});
    EXPECT_DOUBLE_EQ(*animation.value(1.0), 0.0);
    EXPECT_DOUBLE_EQ(*animation.value(105.0), 10.0);
}

TEST(Animation, FillForwardsHoldsWhereAPartOfAPassEnded) {
    const Animation half =
        basic({.duration = 2.0, .repeatCount = 2.5, .fillMode = FillMode::Forwards});
    EXPECT_DOUBLE_EQ(*half.value(200.0), 5.0);
    const Animation shifted =
        basic({.time = {.timeOffset = 0.5}, .duration = 2.0, .fillMode = FillMode::Forwards});
    EXPECT_DOUBLE_EQ(*shifted.value(200.0), 2.5);
    const Animation thirds =
        basic({.duration = 0.1, .repeatCount = 3.0, .fillMode = FillMode::Forwards});
    EXPECT_DOUBLE_EQ(*thirds.value(200.0), 10.0);
}

TEST(Animation, TimeOffsetStartsItPartWayInAndTheCycleWraps) {
    const Animation animation =
        basic({.time = {.timeOffset = 1.5}, .duration = 2.0, .repeatCount = kForever});
    EXPECT_DOUBLE_EQ(*animation.value(100.0), 7.5);
    EXPECT_DOUBLE_EQ(*animation.value(100.5), 0.0);
    EXPECT_DOUBLE_EQ(*animation.value(101.0), 2.5);
}

TEST(Animation, TimeOffsetDoesNotShortenIt) {
    const Animation animation = basic({.time = {.timeOffset = 1.5}, .duration = 2.0});
    EXPECT_DOUBLE_EQ(*animation.value(101.5), 5.0);
    EXPECT_FALSE(animation.value(102.0).has_value());
}

TEST(Animation, SpeedIsItsOwn) {
    const Animation animation = basic({.time = {.speed = 2.0}, .duration = 2.0});
    EXPECT_DOUBLE_EQ(*animation.value(100.5), 5.0);
    EXPECT_FALSE(animation.value(101.0).has_value());
}

TEST(Animation, RepeatsAsOftenAsItSays) {
    const Animation animation = basic({.duration = 2.0, .repeatCount = 2.0});
    EXPECT_DOUBLE_EQ(*animation.value(103.0), 5.0);
    EXPECT_FALSE(animation.value(104.0).has_value());
}

TEST(Animation, AutoreversingGoesThereAndBack) {
    const Animation animation =
        basic({.duration = 2.0, .autoreverses = true, .fillMode = FillMode::Forwards});
    EXPECT_DOUBLE_EQ(*animation.value(101.5), 7.5);
    EXPECT_DOUBLE_EQ(*animation.value(102.5), 7.5);
    EXPECT_DOUBLE_EQ(*animation.value(103.5), 2.5);
    EXPECT_DOUBLE_EQ(*animation.value(104.0), 0.0);
}

TEST(Animation, BasicIsLinearWithoutATimingFunctionAndFollowsOneOtherwise) {
    EXPECT_DOUBLE_EQ(*basic({.duration = 4.0}).value(101.0), 2.5);
    const Animation eased = basic({.duration = 4.0, .function = TimingFunction::easeIn()});
    EXPECT_NEAR(*eased.value(101.0), 0.93465, 1e-5);
}

TEST(Animation, LinearWithKeyTimesIsLinearWithinEachSegment) {
    const Animation animation = frames({0.0, 1.0, 5.0, 3.0}, {0.0, 0.1, 0.5, 1.0});
    EXPECT_DOUBLE_EQ(*animation.value(100.5), 0.5);
    EXPECT_DOUBLE_EQ(*animation.value(101.0), 1.0);
    EXPECT_DOUBLE_EQ(*animation.value(103.0), 3.0);
    EXPECT_DOUBLE_EQ(*animation.value(105.0), 5.0);
    EXPECT_DOUBLE_EQ(*animation.value(107.5), 4.0);
    EXPECT_NEAR(*animation.value(110.0 - 1e-9), 3.0, 1e-8);
}

TEST(Animation, LinearWithoutKeyTimesHasEqualSegments) {
    const Animation animation = frames({0.0, 10.0, 0.0}, {});
    EXPECT_DOUBLE_EQ(*animation.value(102.5), 5.0);
    EXPECT_DOUBLE_EQ(*animation.value(105.0), 10.0);
    EXPECT_DOUBLE_EQ(*animation.value(107.5), 5.0);
}

TEST(Animation, ASingleValueHolds) {
    EXPECT_DOUBLE_EQ(*frames({4.0}, {}).value(107.0), 4.0);
    EXPECT_DOUBLE_EQ(*frames({4.0}, {0.0}).value(107.0), 4.0);
}

TEST(Animation, AMovingOneChangesAtOnceUntilItEnds) {
    const Animation animation = basic({.time = {.beginTime = 103.0}, .duration = 2.0});
    EXPECT_EQ(animation.nextChange(100.0), 103.0);
    EXPECT_EQ(animation.nextChange(104.0), 104.0);
    EXPECT_EQ(animation.nextChange(105.0), kForever);
}

TEST(Animation, FrozenBySpeedZeroItNeverChanges) {
    const Animation animation = basic({.time = {.timeOffset = 1.0, .speed = 0.0}, .duration = 2.0});
    EXPECT_EQ(animation.value(100.0), 5.0);
    EXPECT_EQ(animation.value(1e9), 5.0);
    EXPECT_EQ(animation.nextChange(100.0), kForever);
}

TEST(Animation, HasFinishedOnlyWhenItEndsAndAskedForIt) {
    EXPECT_FALSE(basic({.duration = 2.0}).isFinished(101.9));
    EXPECT_TRUE(basic({.duration = 2.0}).isFinished(102.0));
    EXPECT_FALSE(basic({.duration = 2.0, .removedOnCompletion = false}).isFinished(102.0));
    EXPECT_FALSE(basic({.duration = 2.0, .repeatCount = kForever}).isFinished(1e9));
}

TEST(AnimationDeathTest, WithoutValuesOrWithTooFewKeyTimesIsAProgrammingError) {
    EXPECT_DEATH(frames({}, {}), "");
    EXPECT_DEATH(frames({1.0, 2.0}, {0.0}), "");
}

}  // namespace
