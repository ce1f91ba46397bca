// SPDX-License-Identifier: MIT
// A window follows the times at which its pictures were shown, and costs nothing while they
// are not.
#include "tests/platform/window/wayland/MovingWindow.h"

namespace platform::wayland {
namespace {

struct Presentation : testing::Test {
    using Shown = MovingWindow;
};

TEST_F(Presentation, APictureCountsOnceItWasShown) {
    Shown shown;
    ASSERT_TRUE(shown.paintsOnce());
    for (int i = 0; i < 5; ++i) {
        const auto time = 12.5 + i;
        // Before the first report nobody knows whether there will be any.
        if (i > 0) {
            EXPECT_EQ(shown.frames(), static_cast<std::uint64_t>(i));
        }
        shown.compositor.frame(time);
        EXPECT_TRUE(until([&] { return shown.frames() == static_cast<std::uint64_t>(i) + 1; }));
        ASSERT_TRUE(shown.paintsOnce());
    }
    EXPECT_EQ(shown.window.statistics().firstFrameTime, 12.5);
    // The last one was committed, and nobody saw it.
    shown.settle();
    EXPECT_EQ(shown.frames(), 5U);
}

TEST_F(Presentation, ACompositorThatOffersReportsAndSendsNoneIsNotAskedForever) {
    Shown shown({.reportsPresentation = false});
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(shown.paintsOnce());
        shown.compositor.frame(12.5);
        shown.settle();
    }
    // The render thread counts the last picture after its commit.
    EXPECT_TRUE(until([&] { return shown.frames() >= 20U; }));
    EXPECT_EQ(shown.compositor.count("wp_presentation", "feedback"), 8);
}

TEST_F(Presentation, WithoutReportsAPictureCountsOnceItWasDrawn) {
    Shown shown({.globals = {.presentation = false}});
    ASSERT_TRUE(shown.paintsOnce());
    EXPECT_TRUE(until([&] { return shown.frames() >= 1; }));
    EXPECT_TRUE(until([&] { return shown.window.statistics().firstFrameTime >= 100.0; }));
}

TEST_F(Presentation, TimesOfAnotherClockAreNotAskedFor) {
    Shown shown({.presentationClock = CLOCK_REALTIME});
    ASSERT_TRUE(shown.paintsOnce());
    EXPECT_EQ(shown.compositor.count("wp_presentation", "feedback"), 0);
    EXPECT_TRUE(until([&] { return shown.frames() >= 1; }));
}

// The output says 60 pictures a second, and shows 90.
TEST_F(Presentation, ThePaceIsThatOfTheDisplayAsItWasSeen) {
    constexpr std::uint32_t kNanoseconds = 11'111'111;
    constexpr double kInterval = kNanoseconds * 1.0e-9;
    Shown shown;
    ASSERT_TRUE(shown.paintsOnce());
    for (std::uint64_t i = 1; i <= 2; ++i) {
        shown.compositor.frame(100.0, kNanoseconds);
        ASSERT_TRUE(until([&] { return shown.frames() == i; }));
        ASSERT_TRUE(shown.paintsOnce());
    }
    // At the pace that was told, only two beats of three would have a picture.
    const int first = shown.pictures();
    for (int i = 0; i < 20; ++i) {
        const int before = shown.pictures();
        shown.compositor.frame(100.0, kNanoseconds);
        shown.settle();
        shown.clock.advance(1.01 * kInterval);
        ASSERT_TRUE(until([&] { return shown.pictures() > before; })) << i;
    }
    shown.settle();
    EXPECT_LE(shown.pictures(), first + 21);
}

// On the processor, and with OpenGL in software.
struct AMinute : testing::TestWithParam<DrawerChoice> {
    using Shown = MovingWindow;
    // A minute at 60 a second goes by: nothing is committed, and the render thread sleeps.
    static void nothingHappensIn(Shown& shown) {
        shown.settle();
        const int commits = shown.compositor.count("wl_surface", "commit");
        // The thread ends its work on the last picture.
        const std::int64_t runs = runsAtRest("render");
        ASSERT_GE(runs, 0);
        for (int i = 0; i < 3600; ++i) {
            shown.clock.advance(1.0 / 60.0);
            QCoreApplication::processEvents();
        }
        shown.settle();
        EXPECT_EQ(shown.compositor.count("wl_surface", "commit"), commits);
        EXPECT_EQ(runsAtRest("render"), runs);
    }
    // Some pictures came before.
    static void begin(Shown& shown) {
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(shown.paintsOnce());
            shown.compositor.frame(100.0);
            ASSERT_TRUE(until([&] { return shown.frames() == static_cast<unsigned>(i) + 1; }));
        }
    }
    static void goesOn(Shown& shown) {
        const auto before = shown.pictures();
        EXPECT_TRUE(until([&] {
            shown.clock.advance(0.001);
            shown.compositor.frame(100.0);
            return shown.pictures() > before + 3;
        }));
    }
};

TEST_P(AMinute, CoveredCostsNothing) {
    Shown shown({}, GetParam());
    begin(shown);
    // One more picture, which the compositor does not show.
    ASSERT_TRUE(shown.paintsOnce());
    nothingHappensIn(shown);
    goesOn(shown);
}

TEST_P(AMinute, HiddenCostsNothing) {
    Shown shown({}, GetParam());
    begin(shown);
    shown.window.hide();
    nothingHappensIn(shown);
    shown.window.show();
    goesOn(shown);
}

TEST_P(AMinute, LockedCostsNothing) {
    Shown shown({}, GetParam());
    begin(shown);
    shown.system->workspace().setSaverCovers(true);
    EXPECT_TRUE(shown.compositor.shown().empty());
    nothingHappensIn(shown);
    shown.system->workspace().setSaverCovers(false);
    goesOn(shown);
}

INSTANTIATE_TEST_SUITE_P(Drawn, AMinute, testing::Values(DrawerChoice::Cpu, DrawerChoice::OpenGl),
                         [](const auto& drawer) {
                             return drawer.param == DrawerChoice::Cpu ? "ByTheProcessor"
                                                                      : "WithOpenGl";
                         });

}  // namespace
}  // namespace platform::wayland
