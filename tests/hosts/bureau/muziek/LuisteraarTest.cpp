// SPDX-License-Identifier: MIT
// The listener where there is no sound server.
#include <gtest/gtest.h>

#include "hosts/bureau/muziek/MuziekLuisteraar.h"
#include "tests/support/Until.h"

namespace {

struct ZonderServer : testing::Test {
    platform::ManualClock klok;
    brixtel::MuziekLuisteraar luisteraar{klok,
                                         {.server = QStringLiteral("unix:/nonexistent/native")}};
};

TEST_F(ZonderServer, ThereIsNothingToTell) {
    EXPECT_EQ(luisteraar.stand(), std::nullopt);
    luisteraar.luister(true);
    EXPECT_EQ(luisteraar.stand(), std::nullopt);
    ASSERT_TRUE(until([&] { return klok.timerCount() == 1; }));
    EXPECT_EQ(luisteraar.stand(), std::nullopt);
}

TEST_F(ZonderServer, ItIsLookedForAgainSoonAndThenEveryTenSeconds) {
    luisteraar.luister(true);
    for (const double wacht : {1.0, 2.0, 4.0, 8.0, 10.0, 10.0}) {
        ASSERT_TRUE(until([&] { return klok.timerCount() == 1; }));
        klok.advance(wacht - 0.01);
        EXPECT_EQ(klok.timerCount(), 1U) << wacht;
        klok.advance(0.01);
        EXPECT_EQ(klok.timerCount(), 0U) << wacht;
    }
}

TEST_F(ZonderServer, NobodyLooksAnyMoreOnceNobodyListens) {
    luisteraar.luister(true);
    ASSERT_TRUE(until([&] { return klok.timerCount() == 1; }));
    luisteraar.luister(false);
    EXPECT_EQ(klok.timerCount(), 0U);
    // From the start again.
    luisteraar.luister(true);
    ASSERT_TRUE(until([&] { return klok.timerCount() == 1; }));
    klok.advance(1.0);
    EXPECT_EQ(klok.timerCount(), 0U);
}

}  // namespace
