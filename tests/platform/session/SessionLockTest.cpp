// SPDX-License-Identifier: MIT
#include "platform/session/SessionLock.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <vector>

#include "tests/support/DBusDaemon.h"
#include "tests/support/Logind.h"
#include "tests/support/Until.h"

namespace platform {
namespace {

class Locked : public testing::Test {
  protected:
    void SetUp() override { qunsetenv("XDG_SESSION_ID"); }
    void TearDown() override { qunsetenv("XDG_SESSION_ID"); }

    [[nodiscard]] std::unique_ptr<SessionLock> watch() {
        return std::make_unique<SessionLock>(bus.address(),
                                             [this](bool is) { told.push_back(is); });
    }
    bool isTold(const std::vector<bool>& expected) {
        return until([&] { return told == expected; });
    }

    DBusDaemon bus;
    Logind logind{bus.address()};
    std::vector<bool> told;
};

TEST_F(Locked, ASessionThatIsLockedAtTheStart) {
    logind.put("7", true);
    ASSERT_TRUE(logind.appear());
    const auto lock = watch();
    EXPECT_TRUE(isTold({true}));
}

TEST_F(Locked, EachChangeIsToldOnce) {
    ASSERT_TRUE(logind.appear());
    const auto lock = watch();
    ASSERT_TRUE(until([&] { return logind.asked("LockedHint") == 1; }));
    for (const bool locked : {true, true, false, true})
        logind.change("7", locked);
    EXPECT_TRUE(isTold({true, false, true}));
}

TEST_F(Locked, AnotherUsersSessionDoesNotCount) {
    ASSERT_TRUE(logind.appear());
    const auto lock = watch();
    ASSERT_TRUE(until([&] { return logind.asked("LockedHint") == 1; }));
    logind.change("8", true);
    logind.change("7", true);
    logind.change("8", false);
    logind.change("7", false);
    EXPECT_TRUE(isTold({true, false}));
}

TEST_F(Locked, TheSessionThatTheEnvironmentNamesCounts) {
    qputenv("XDG_SESSION_ID", "8");
    logind.put("8", true);
    ASSERT_TRUE(logind.appear());
    const auto lock = watch();
    EXPECT_TRUE(isTold({true}));
    EXPECT_EQ(logind.asked("Id"), 0);
}

TEST_F(Locked, AnotherProgramThatSaysItIsNotBelieved) {
    ASSERT_TRUE(logind.appear());
    const auto lock = watch();
    ASSERT_TRUE(until([&] { return logind.asked("LockedHint") == 1; }));
    Logind liar(bus.address());
    liar.change("7", true);
    ASSERT_TRUE(liar.isPassedOn());
    logind.change("7", true);
    logind.change("7", false);
    EXPECT_TRUE(isTold({true, false}));
}

TEST(SessionLock, WithoutABusNothingIsLocked) {
    int told = 0;
    const SessionLock lock(QString(), [&](bool) { ++told; });
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 0);
}

}  // namespace
}  // namespace platform
