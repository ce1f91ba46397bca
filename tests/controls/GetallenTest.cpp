// SPDX-License-Identifier: MIT
#include "controls/Getallen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using brixtel::bxGetal;
using brixtel::bxProcent;

namespace {

constexpr double kOneindig = std::numeric_limits<double>::infinity();

TEST(BxProcent, HalfAPercentIsRoundedUpToOne) {
    EXPECT_EQ(bxProcent(0.005), QStringLiteral("1%"));
}

TEST(BxProcent, OneIsAHundredPercent) {
    EXPECT_EQ(bxProcent(1.0), QStringLiteral("100%"));
}

TEST(BxProcent, IsRoundedToTheNearest) {
    EXPECT_EQ(bxProcent(0.256), QStringLiteral("26%"));
    EXPECT_EQ(bxProcent(0.254), QStringLiteral("25%"));
    EXPECT_EQ(bxProcent(0.0), QStringLiteral("0%"));
}

TEST(BxProcent, HalvesGoAwayFromZeroBelowItToo) {
    EXPECT_EQ(bxProcent(-0.005), QStringLiteral("-1%"));
    EXPECT_EQ(bxProcent(-0.125), QStringLiteral("-13%"));
}

TEST(BxProcent, ThereIsNoMinusZero) {
    EXPECT_EQ(bxProcent(-0.001), QStringLiteral("0%"));
}

TEST(BxProcent, ABigNumberIsNotGrouped) {
    EXPECT_EQ(bxProcent(12345.0), QStringLiteral("1234500%"));
}

TEST(BxProcentDeathTest, NotANumberStopsTheProcess) {
    EXPECT_DEATH(static_cast<void>(bxProcent(std::nan(""))), "");
}

TEST(BxProcentDeathTest, InfinityStopsTheProcess) {
    EXPECT_DEATH(static_cast<void>(bxProcent(kOneindig)), "");
    EXPECT_DEATH(static_cast<void>(bxProcent(-kOneindig)), "");
}

TEST(BxProcentDeathTest, OutOfRangeStopsTheProcess) {
    EXPECT_DEATH(static_cast<void>(bxProcent(1e300)), "");
    EXPECT_DEATH(static_cast<void>(bxProcent(-1e300)), "");
    EXPECT_DEATH(static_cast<void>(bxProcent(0x1p63 / 100.0)), "");
}

TEST(BxProcent, TheLastNumbersInRangeAreShown) {
    EXPECT_EQ(bxProcent(9.2e16), QStringLiteral("9200000000000000000%"));
    EXPECT_EQ(bxProcent(-9.2e16), QStringLiteral("-9200000000000000000%"));
}

TEST(BxGetal, IsDutch) {
    EXPECT_EQ(bxGetal(1234.5, 1), QStringLiteral("1.234,5"));
}

TEST(BxGetal, HasExactlySoManyDecimals) {
    EXPECT_EQ(bxGetal(2.0, 3), QStringLiteral("2,000"));
    EXPECT_EQ(bxGetal(0.1, 20), QStringLiteral("0,10000000000000000555"));
}

TEST(BxGetal, IsRoundedToTheNearestAndHalvesAwayFromZero) {
    EXPECT_EQ(bxGetal(0.125, 2), QStringLiteral("0,13"));
    EXPECT_EQ(bxGetal(0.375, 2), QStringLiteral("0,38"));
    EXPECT_EQ(bxGetal(-0.125, 2), QStringLiteral("-0,13"));
    EXPECT_EQ(bxGetal(2.5, 0), QStringLiteral("3"));
    EXPECT_EQ(bxGetal(0.1249, 2), QStringLiteral("0,12"));
    EXPECT_EQ(bxGetal(999.95001, 1), QStringLiteral("1.000,0"));
}

TEST(BxGetal, WithoutDecimalsThereIsNoComma) {
    EXPECT_EQ(bxGetal(1234567.2, 0), QStringLiteral("1.234.567"));
}

TEST(BxGetal, FewerThanNoDecimalsAreNone) {
    EXPECT_EQ(bxGetal(12.3, -2), QStringLiteral("12"));
}

TEST(BxGetal, NegativeNumbersHaveAMinus) {
    EXPECT_EQ(bxGetal(-1234.5, 1), QStringLiteral("-1.234,5"));
}

TEST(BxGetal, HugeNumbersAreWrittenOut) {
    const QString groot = bxGetal(1e300, 0);
    EXPECT_EQ(groot.count(u'.'), 100);
    EXPECT_EQ(groot.size(), 401);
}

}  // namespace
