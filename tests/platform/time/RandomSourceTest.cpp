// SPDX-License-Identifier: MIT
#include "platform/time/RandomSource.h"

#include <gtest/gtest.h>

#include <array>

using platform::RandomSource;

namespace {

TEST(RandomSource, TheSameSeedGivesTheSameNumbers) {
    RandomSource a(7), b(7), c(8);
    const double first = a.unit();
    EXPECT_EQ(first, b.unit());
    EXPECT_NE(first, c.unit());
}

TEST(RandomSource, UnitStaysBelowOne) {
    RandomSource source(1);
    double sum = 0.0;
    for (int i = 0; i < 100'000; ++i) {
        const double x = source.unit();
        ASSERT_GE(x, 0.0);
        ASSERT_LT(x, 1.0);
        sum += x;
    }
    EXPECT_NEAR(sum / 100'000, 0.5, 0.01);
}

TEST(RandomSource, BelowReachesEveryValueEvenly) {
    RandomSource source(2);
    std::array<int, 5> seen{};
    for (int i = 0; i < 50'000; ++i)
        ++seen.at(source.below(5));
    for (const int n : seen)
        EXPECT_NEAR(n, 10'000, 500);
}

}  // namespace
