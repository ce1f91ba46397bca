// SPDX-License-Identifier: MIT
#include "platform/animation/TimingFunction.h"

#include <gtest/gtest.h>

#include <array>

using platform::TimingFunction;

namespace {

constexpr std::array kTimes = {0.1, 0.25, 0.5, 0.75, 0.9};

// The curves' values at kTimes, worked out by Newton's method from the control
// points.
void expectValues(const TimingFunction& curve, const std::array<double, 5>& values) {
    for (std::size_t i = 0; i < kTimes.size(); ++i)
        EXPECT_NEAR(curve(kTimes[i]), values[i], 1e-6) << "at " << kTimes[i];
}

TEST(TimingFunction, LinearIsTheTimeItself) {
    EXPECT_TRUE(TimingFunction::linear().isLinear());
    for (const double time : kTimes)
        EXPECT_EQ(TimingFunction::linear()(time), time);
}

TEST(TimingFunction, EaseInIsTheNamedCurve) {
    expectValues(TimingFunction::easeIn(), {0.017027, 0.093465, 0.315357, 0.621862, 0.839428});
}

TEST(TimingFunction, EaseOutIsTheNamedCurve) {
    expectValues(TimingFunction::easeOut(), {0.160572, 0.378138, 0.684643, 0.906535, 0.982973});
}

TEST(TimingFunction, EaseInEaseOutIsTheNamedCurve) {
    expectValues(TimingFunction::easeInEaseOut(), {0.019722, 0.129162, 0.5, 0.870838, 0.980278});
}

TEST(TimingFunction, TheDefaultCurveIsTheNamedCurve) {
    expectValues(TimingFunction::standard(), {0.094796, 0.408511, 0.802403, 0.960459, 0.994316});
}

TEST(TimingFunction, StartsAtNothingEndsAtAllAndNeverFalls) {
    for (const TimingFunction& curve :
         {TimingFunction::linear(), TimingFunction::easeIn(), TimingFunction::easeOut(),
          TimingFunction::easeInEaseOut(), TimingFunction::standard()}) {
        EXPECT_EQ(curve(0.0), 0.0);
        EXPECT_EQ(curve(1.0), 1.0);
        double last = 0.0;
        for (int i = 0; i <= 1000; ++i) {
            const double value = curve(i / 1000.0);
            EXPECT_GE(value, last);
            last = value;
        }
    }
}

TEST(TimingFunction, TimesOutsideAreTakenAsTheEnds) {
    EXPECT_EQ(TimingFunction::easeIn()(-0.5), 0.0);
    EXPECT_EQ(TimingFunction::easeIn()(1.5), 1.0);
}

}  // namespace
