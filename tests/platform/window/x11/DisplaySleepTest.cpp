// SPDX-License-Identifier: MIT
#include "platform/window/x11/DisplaySleep.h"

#include <gtest/gtest.h>

#include <vector>

using platform::DisplaySleep;
using platform::DisplaySleepQuestion;
using platform::ManualClock;

namespace {

struct Server {
    bool known = true;
    bool answers = true;
    bool asleep = false;
    int asked = 0;
};

class Question final : public DisplaySleepQuestion {
  public:
    explicit Question(Server& server) : server_(server) {}
    bool canAsk() override { return server_.known; }
    void ask() override { ++server_.asked; }
    std::optional<bool> answer() override {
        return server_.answers ? std::optional(server_.asleep) : std::nullopt;
    }

  private:
    Server& server_;
};

struct DisplaySleepTest : testing::Test {
    ManualClock clock;
    Server server;
    std::vector<bool> told;
    DisplaySleep sleep{clock, std::make_unique<Question>(server),
                       [this](bool asleep) { told.push_back(asleep); }};

    void SetUp() override { sleep.wake(); }
};

TEST_F(DisplaySleepTest, ADisplayThatStaysAwakeIsNotSpokenOf) {
    clock.advance(60.0);
    EXPECT_TRUE(told.empty());
    EXPECT_GT(server.asked, 20);
    EXPECT_LT(server.asked, 31);
}

TEST_F(DisplaySleepTest, FallingAsleepAndWakingUpAreToldOnceEach) {
    clock.advance(5.0);
    server.asleep = true;
    clock.advance(2.5);
    EXPECT_EQ(told, std::vector<bool>{true});
    clock.advance(3600.0);
    EXPECT_EQ(told, std::vector<bool>{true});
    server.asleep = false;
    // A user who wakes the display looks at it.
    clock.advance(1.0);
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

TEST_F(DisplaySleepTest, AServerThatDoesNotAnswerChangesNothing) {
    server.asleep = true;
    clock.advance(5.0);
    server.answers = false;
    clock.advance(60.0);
    EXPECT_EQ(told, std::vector<bool>{true});
}

TEST_F(DisplaySleepTest, WhileItRestsNothingIsAskedAndAfterwardsTheDisplayIsTakenToBeAwake) {
    server.asleep = true;
    clock.advance(5.0);
    sleep.rest();
    EXPECT_EQ(clock.timerCount(), 0U);
    const int asked = server.asked;
    clock.advance(60.0);
    EXPECT_EQ(server.asked, asked);
    EXPECT_EQ(told, std::vector<bool>{true});
    sleep.wake();
    clock.advance(5.0);
    EXPECT_EQ(told, (std::vector<bool>{true, true}));
}

TEST_F(DisplaySleepTest, AServerThatKnowsNoSleepIsNotAskedAgain) {
    server.known = false;
    clock.advance(600.0);
    EXPECT_EQ(server.asked, 0);
    EXPECT_EQ(clock.timerCount(), 0U);
}

}  // namespace
