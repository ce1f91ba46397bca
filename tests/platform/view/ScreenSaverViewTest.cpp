// SPDX-License-Identifier: MIT
#include "platform/view/ScreenSaverView.h"

#include <gtest/gtest.h>

using platform::ManualClock;
using platform::ScreenSaverView;

namespace {

struct Stepping final : ScreenSaverView {
    using ScreenSaverView::ScreenSaverView;
    int steps = 0;
    void animateOneFrame() override { ++steps; }
    bool wantsAnimateOneFrame() const override { return true; }
};

struct ScreenSaverViewTest : testing::Test {
    ManualClock clock;
    platform::RandomSource random{1};
    platform::DistributedNotificationCenter notifications{QString()};
    const platform::ScreenSaverContext context{clock, random, notifications};
};

TEST_F(ScreenSaverViewTest, StartsAndStops) {
    ScreenSaverView view(QRectF(0, 0, 10, 10), true, context);
    EXPECT_TRUE(view.isPreview());
    EXPECT_FALSE(view.isAnimating());
    view.startAnimation();
    EXPECT_TRUE(view.isAnimating());
    view.stopAnimation();
    view.stopAnimation();
    EXPECT_FALSE(view.isAnimating());
    EXPECT_FALSE(view.hasConfigureSheet());
    EXPECT_EQ(view.configureSheet(), nullptr);
}

TEST_F(ScreenSaverViewTest, NoTimerRunsForASaverThatMovesItself) {
    ScreenSaverView view(QRectF(0, 0, 10, 10), false, context);
    view.setAnimationTimeInterval(1.0);
    view.startAnimation();
    EXPECT_EQ(view.animationTimeInterval(), 1.0);
    EXPECT_EQ(clock.timerCount(), 0U);
}

TEST_F(ScreenSaverViewTest, StepsAtItsIntervalWhileAnimating) {
    Stepping view(QRectF(0, 0, 10, 10), false, context);
    view.setAnimationTimeInterval(0.5);
    clock.advance(2.0);
    EXPECT_EQ(view.steps, 0);
    view.startAnimation();
    clock.advance(2.0);
    EXPECT_EQ(view.steps, 4);
    view.setAnimationTimeInterval(0.25);
    clock.advance(1.0);
    EXPECT_EQ(view.steps, 8);
    view.stopAnimation();
    clock.advance(2.0);
    EXPECT_EQ(view.steps, 8);
    EXPECT_EQ(clock.timerCount(), 0U);
}

}  // namespace
