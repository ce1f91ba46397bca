// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/animation/TimingFunction.h"
#include "platform/view/AnimationGroup.h"
#include "platform/window/Window.h"
#include "tests/support/WindowSystems.h"

using platform::AnimationGroup;
using platform::ManualClock;
using platform::Window;
using platform::WindowServer;

namespace {

struct FadeTest : testing::Test {
    ManualClock clock;
    WindowServer server{clock, {.drawer = {}, .system = withoutSystem(clock)}};
    Window window{server, {.frame = {0, 0, 10, 10}}};
    Window other{server, {.frame = {0, 0, 10, 10}}};
};

TEST_F(FadeTest, TakesAQuarterOfASecondAlongTheStandardCurve) {
    const auto curve = platform::TimingFunction::standard();
    window.setAlpha(0.0);
    window.fadeTo(1.0);
    EXPECT_EQ(window.alpha(), 0.0);
    clock.advance(0.1);
    EXPECT_NEAR(window.alpha(), curve(0.4), 1e-9);
    clock.advance(0.1);
    EXPECT_NEAR(window.alpha(), curve(0.8), 1e-9);
    clock.advance(0.051);
    EXPECT_EQ(window.alpha(), 1.0);
}

TEST_F(FadeTest, AGroupSaysHowLongAndCompletesAfterTheLast) {
    int completed = 0;
    {
        AnimationGroup group({.duration = 0.4, .completion = [&] { ++completed; }});
        window.fadeTo(0.0, group);
        other.fadeTo(0.0, group);
    }
    clock.advance(0.3);
    EXPECT_GT(window.alpha(), 0.0);
    EXPECT_EQ(completed, 0);
    clock.advance(0.12);
    EXPECT_EQ(window.alpha(), 0.0);
    EXPECT_EQ(completed, 1);
    clock.advance(10.0);
    EXPECT_EQ(completed, 1);
}

TEST_F(FadeTest, AnEmptyGroupCompletesAtOnce) {
    int completed = 0;
    {
        const AnimationGroup group({.completion = [&] { ++completed; }});
    }
    EXPECT_EQ(completed, 1);
}

TEST_F(FadeTest, SettingTheValueEndsTheFade) {
    window.fadeTo(0.0);
    clock.advance(0.1);
    window.setAlpha(0.7);
    clock.advance(1.0);
    EXPECT_EQ(window.alpha(), 0.7);
    EXPECT_EQ(clock.timerCount(), 0U);
}

TEST_F(FadeTest, AFadeBackStartsFromTheValueInBetween) {
    window.fadeTo(0.0);
    clock.advance(0.1);
    const double between = window.alpha();
    window.fadeTo(1.0);
    EXPECT_NEAR(window.alpha(), between, 1e-9);
    clock.advance(0.3);
    EXPECT_EQ(window.alpha(), 1.0);
}

TEST_F(FadeTest, AWindowThatGoesAwayCompletesItsGroup) {
    int completed = 0;
    auto third = std::make_unique<Window>(server, platform::WindowOptions{});
    {
        AnimationGroup group({.completion = [&] { ++completed; }});
        third->fadeTo(0.0, group);
    }
    third.reset();
    EXPECT_EQ(completed, 1);
    EXPECT_EQ(clock.timerCount(), 0U);
}

TEST_F(FadeTest, TheCompletionMayDropTheWindow) {
    auto third = std::make_unique<Window>(server, platform::WindowOptions{});
    {
        AnimationGroup group({.completion = [&] { third.reset(); }});
        third->fadeTo(0.0, group);
    }
    clock.advance(1.0);
    EXPECT_EQ(third, nullptr);
}

}  // namespace
