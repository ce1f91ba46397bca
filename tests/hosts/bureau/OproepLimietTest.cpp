// SPDX-License-Identifier: MIT
#include "hosts/bureau/OproepLimiet.h"

#include <gtest/gtest.h>

using brixtel::OproepLimiet;

namespace {

const QString kIemand = QStringLiteral(":1.1");

TEST(OproepLimiet, EightAtOnceAndThenFourASecond) {
    OproepLimiet toegang;
    for (int keer = 0; keer < 8; ++keer)
        EXPECT_TRUE(toegang.mag(kIemand, 100.0));
    EXPECT_FALSE(toegang.mag(kIemand, 100.0));
    EXPECT_FALSE(toegang.mag(kIemand, 100.2));
    EXPECT_TRUE(toegang.mag(kIemand, 100.25));
    EXPECT_FALSE(toegang.mag(kIemand, 100.25));
}

TEST(OproepLimiet, WhatCountsForLessMayBeAskedMoreOften) {
    OproepLimiet toegang;
    for (int keer = 0; keer < 32; ++keer)
        EXPECT_TRUE(toegang.mag(kIemand, 100.0, 0.25));
    EXPECT_FALSE(toegang.mag(kIemand, 100.0, 0.25));
}

TEST(OproepLimiet, WhoKeepsAskingTooOftenStillGetsHisShare) {
    OproepLimiet toegang;
    int toegelaten = 0;
    for (int keer = 0; keer < 10'000; ++keer)
        toegelaten += toegang.mag(kIemand, 100.0 + keer * 0.001);
    EXPECT_NEAR(toegelaten, 8 + 40, 1);
}

TEST(OproepLimiet, OneCallerDoesNotCountForAnother) {
    OproepLimiet toegang;
    for (int keer = 0; keer < 100; ++keer)
        (void)toegang.mag(kIemand, 1.0);
    EXPECT_TRUE(toegang.mag(QStringLiteral(":1.2"), 1.0));
    EXPECT_FALSE(toegang.mag(kIemand, 1.0));
}

TEST(OproepLimiet, OfManyCallersTheLastAreRemembered) {
    OproepLimiet toegang;
    for (int keer = 0; keer < 8; ++keer)
        (void)toegang.mag(kIemand, 1.0);
    for (std::size_t ander = 0; ander < OproepLimiet::kBellers - 1; ++ander)
        EXPECT_TRUE(toegang.mag(QString::number(ander), 1.0));
    EXPECT_FALSE(toegang.mag(kIemand, 1.0));
    for (std::size_t ander = 0; ander < OproepLimiet::kBellers; ++ander)
        EXPECT_TRUE(toegang.mag(QString::number(ander), 1.0));
    EXPECT_TRUE(toegang.mag(kIemand, 1.0));
}

}  // namespace
