// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "platform/animation/Animation.h"
#include "platform/time/RandomSource.h"

using namespace platform;

namespace {

std::vector<double> upTo(int count) {
    std::vector<double> values(static_cast<std::size_t>(count));
    std::iota(values.begin(), values.end(), 0.0);
    return values;
}

Animation discrete(int count, const AnimationTiming& timing, double now = 0.0) {
    return {KeyframeAnimation{.values = upTo(count),
                              .keyTimes = {},
                              .calculationMode = CalculationMode::Discrete,
                              .timing = timing},
            now};
}

TEST(DiscreteAnimation, GivesNValuesNEqualSlots) {
    const Animation animation = discrete(4, {.duration = 2.0}, 10.0);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(animation.value(10.0 + 0.5 * i), i);
        EXPECT_EQ(animation.value(10.49 + 0.5 * i), i);
    }
    EXPECT_FALSE(animation.value(12.0).has_value());
}

TEST(DiscreteAnimation, NextChangeIsTheNextSlot) {
    const Animation animation = discrete(4, {.duration = 2.0, .repeatCount = 2.0}, 10.0);
    EXPECT_DOUBLE_EQ(animation.nextChange(10.0), 10.5);
    EXPECT_DOUBLE_EQ(animation.nextChange(10.3), 10.5);
    EXPECT_DOUBLE_EQ(animation.nextChange(11.8), 12.0);
    EXPECT_DOUBLE_EQ(animation.nextChange(13.6), 14.0);
    EXPECT_EQ(animation.nextChange(14.0), kForever);
}

TEST(DiscreteAnimation, NextChangeBeforeItsBeginIsItsBegin) {
    const Animation animation =
        discrete(4, {.time = {.beginTime = 20.0, .timeOffset = 0.3}, .duration = 2.0}, 10.0);
    EXPECT_EQ(animation.nextChange(10.0), 20.0);
    EXPECT_EQ(animation.value(20.0), 0.0);
    EXPECT_DOUBLE_EQ(animation.nextChange(20.0), 20.2);
}

TEST(DiscreteAnimation, FillForwardsHoldsTheLastSlot) {
    const Animation animation =
        discrete(4, {.duration = 0.7, .repeatCount = 3.0, .fillMode = FillMode::Forwards}, 10.0);
    EXPECT_EQ(animation.value(12.2), 3.0);
}

// Follows an animation from change to change and checks that each is one: the
// same value up to it, another from it on.
void followChanges(const Animation& animation, double from, int changes) {
    double time = from;
    for (int i = 0; i < changes; ++i) {
        const double next = animation.nextChange(time);
        ASSERT_GT(next, time);
        ASSERT_FALSE(std::isinf(next));
        // A slot begins a millionth of an animated second early.
        EXPECT_EQ(animation.value(next - 1e-5), animation.value(time)) << "at " << time;
        EXPECT_EQ(animation.value(0.5 * (time + next)), animation.value(time)) << "at " << time;
        EXPECT_NE(animation.value(next), animation.value(time)) << "at " << time;
        time = next;
    }
}

TEST(DiscreteAnimation, TheValueBeforeNextChangeIsTheSameAndAtItDiffers) {
    RandomSource random(7);
    for (int i = 0; i < 200; ++i) {
        const int count = 2 + static_cast<int>(random.below(80));
        const double duration = count * random.between(0.05, 0.12);
        const Animation animation =
            discrete(count, {.time = {.beginTime = random.between(-50.0, 50.0),
                                      .timeOffset = random.between(0.0, duration),
                                      .speed = random.between(0.2, 3.0)},
                             .duration = duration,
                             .repeatCount = kForever});
        followChanges(animation, 100.0, 200);
    }
}

TEST(DiscreteAnimation, AYearOfClockTimeKeepsItsPrecision) {
    constexpr double kYear = 365.25 * 86400.0;
    const int count = 70;
    const double slot = 0.07;
    const Animation animation = discrete(count, {.time = {.beginTime = 1000.0, .timeOffset = 1.23},
                                                 .duration = count * slot,
                                                 .repeatCount = kForever});
    for (const double start : {1000.0 + 7.0 * 86400.0, 1000.0 + kYear}) {
        followChanges(animation, start, 500);
        // The beat is that of the first minute: so many whole slots later.
        const double slots = std::floor((animation.nextChange(start) - 1000.0 + 1.23) / slot + 0.5);
        EXPECT_NEAR(animation.nextChange(start), 1000.0 - 1.23 + slots * slot, 5e-6);
    }
}

TEST(DiscreteAnimation, OneThatReversesOrIsEasedIsTakenAsMoving) {
    EXPECT_EQ(discrete(4, {.duration = 2.0, .autoreverses = true}).nextChange(0.7), 0.7);
    EXPECT_EQ(discrete(4, {.duration = 2.0, .function = TimingFunction::easeIn()}).nextChange(0.7),
              0.7);
}

TEST(DiscreteAnimation, ReversingShowsTheSlotsBackwards) {
    const Animation animation = discrete(4, {.duration = 2.0, .autoreverses = true}, 10.0);
    EXPECT_EQ(animation.value(11.7), 3.0);
    EXPECT_EQ(animation.value(12.3), 3.0);
    EXPECT_EQ(animation.value(12.7), 2.0);
    EXPECT_EQ(animation.value(13.9), 0.0);
}

}  // namespace
