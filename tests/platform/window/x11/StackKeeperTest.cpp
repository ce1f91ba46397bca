// SPDX-License-Identifier: MIT
// Windows kept above all others, on an X server without a window manager.
#include "platform/window/x11/StackKeeper.h"

#include <gtest/gtest.h>

#include "tests/support/SaverStandIn.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

using platform::RootWatch;
using platform::StackKeeper;

namespace {

struct StackKeeperTest : testing::Test {
    Xvfb x;
    platform::SystemClock clock;
    std::optional<RootWatch> root;
    std::optional<StackKeeper> keeper;

    void SetUp() override {
        ASSERT_TRUE(x.isRunning());
        root.emplace(x.display());
        keeper.emplace(clock, *root);
    }
    [[nodiscard]] xcb_window_t window() const { return x.makeWindow({}); }
    void raise(xcb_window_t id) const {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(x.connection(), id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_flush(x.connection());
    }
    [[nodiscard]] xcb_window_t top() const { return x.mappedWindows().back(); }
    [[nodiscard]] bool isOnTop(xcb_window_t id) const {
        return until([&] { return top() == id; });
    }
    // Lets the keeper see all that has happened, and act twice if it would.
    void settle() {
        const double since = clock.now();
        ASSERT_TRUE(until([&] { return clock.now() - since > 0.3; }));
    }
};

TEST_F(StackKeeperTest, WhatComesLaterGoesUnder) {
    const xcb_window_t kept = window();
    keeper->keep(kept, {.window = 1});
    for (int i = 0; i < 3; ++i) {
        (void)window();
        EXPECT_TRUE(isOnTop(kept));
    }
}

TEST_F(StackKeeperTest, TheHigherRankLiesHigherWhicheverCameFirst) {
    const xcb_window_t high = window(), low = window();
    keeper->keep(high, {.window = 1001});
    keeper->keep(low, {.window = 1000, .space = 1});
    EXPECT_TRUE(isOnTop(high));
    raise(low);
    EXPECT_TRUE(isOnTop(high));
    const xcb_window_t other = window();
    EXPECT_TRUE(isOnTop(high));
    EXPECT_EQ(x.mappedWindows(), (std::vector<xcb_window_t>{other, low, high}));
}

TEST_F(StackKeeperTest, ReleasedItIsCoveredLikeAnyOther) {
    const xcb_window_t kept = window();
    keeper->keep(kept, {.window = 1});
    keeper->release(kept);
    const xcb_window_t other = window();
    settle();
    EXPECT_EQ(top(), other);
}

TEST_F(StackKeeperTest, NothingIsRaisedOverAScreenSaver) {
    const xcb_window_t kept = window();
    keeper->keep(kept, {.window = 1});
    const SaverStandIn daemon(x);
    daemon.blank();
    const xcb_window_t saver = window();
    settle();
    EXPECT_EQ(top(), saver);
    daemon.unblank();
    EXPECT_TRUE(isOnTop(kept));
}

TEST_F(StackKeeperTest, AfterASaverThatWasKilledTheWindowsAreRaisedAgain) {
    const xcb_window_t kept = window();
    keeper->keep(kept, {.window = 1});
    {
        const SaverStandIn daemon(x);
        daemon.blank();
        const xcb_window_t saver = window();
        settle();
        EXPECT_EQ(top(), saver);
    }
    EXPECT_TRUE(isOnTop(kept));
}

TEST_F(StackKeeperTest, NothingIsRaisedWhileHeldBack) {
    const xcb_window_t kept = window();
    keeper->keep(kept, {.window = 1});
    keeper->setHeldBack(true);
    const xcb_window_t lock = window();
    settle();
    EXPECT_EQ(top(), lock);
    keeper->setHeldBack(false);
    EXPECT_TRUE(isOnTop(kept));
}

TEST_F(StackKeeperTest, ALockThatKeepsComingBackIsGivenWayTo) {
    const xcb_window_t kept = window();
    keeper->keep(kept, {.window = 1});
    const xcb_window_t lock = window();
    // The lock comes back on top, as lockers do that report to nobody.
    int covered = 0;
    const platform::Timer watch(clock, {.interval = 0.02, .repeats = true}, [&] {
        if (top() == lock) return;
        ++covered;
        raise(lock);
    });
    settle();
    const double since = clock.now();
    ASSERT_TRUE(until([&] { return clock.now() - since > 0.7; }));
    EXPECT_EQ(top(), lock);
    EXPECT_GE(covered, 1);
    EXPECT_LE(covered, 3);
    // The lock is down: the next window goes under again.
    x.destroy(lock);
    (void)window();
    EXPECT_TRUE(isOnTop(kept));
}

TEST_F(StackKeeperTest, AHiddenWindowCoversNothingAndADestroyedOneIsForgotten) {
    const xcb_window_t kept = window(), gone = window();
    keeper->keep(kept, {.window = 1});
    keeper->keep(gone, {.window = 2});
    x.destroy(gone);
    const xcb_window_t hidden = x.makeWindow({.mapped = false});
    (void)hidden;
    const xcb_window_t other = window();
    EXPECT_TRUE(isOnTop(kept));
    EXPECT_EQ(x.mappedWindows(), (std::vector<xcb_window_t>{other, kept}));
}

TEST(RootWatchTest, WithoutAServerEverythingIsAbsent) {
    const RootWatch root(QStringLiteral(":none"));
    EXPECT_FALSE(root.isAlive());
    EXPECT_FALSE(root.isComposited());
    EXPECT_FALSE(root.isSaverOn());
    EXPECT_FALSE(root.hasWindowManager());
    EXPECT_EQ(root.activeWindow(), 0U);
}

TEST(RootWatchTest, AServerThatDiesIsNoLongerAlive) {
    Xvfb x;
    ASSERT_TRUE(x.isRunning());
    const RootWatch root(x.display());
    EXPECT_TRUE(root.isAlive());
    x.kill();
    EXPECT_TRUE(until([&] { return !root.isAlive(); }));
    EXPECT_FALSE(root.isSaverOn());
}

}  // namespace
