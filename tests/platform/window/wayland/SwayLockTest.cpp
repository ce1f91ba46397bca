// SPDX-License-Identifier: MIT
// A real lock on a real compositor: swaylock, which on sway 1.7 is an overlay among overlays.
#include <csignal>

#include "tests/platform/window/wayland/WaylandFixture.h"
#include "tests/support/wayland/Sway.h"

namespace platform::wayland {
namespace {

constexpr QRgb kLock = 0xffff00ff;
constexpr Rgba kGreen{0.0F, 1.0F, 0.0F, 1.0F};
constexpr Rgba kRed{1.0F, 0.0F, 0.0F, 1.0F};
constexpr Rgba kRain{0.0F, 0.0F, 1.0F, 1.0F};
constexpr QRgb kGreenPixel = 0xff00ff00, kRedPixel = 0xffff0000, kRainPixel = 0xff0000ff;

class UnderSwaylock : public testing::Test {
  protected:
    void SetUp() override {
        if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
        if (QStandardPaths::findExecutable(QStringLiteral("swaylock")).isEmpty())
            GTEST_SKIP() << "swaylock is not installed";
        clock = std::make_unique<SystemClock>();
        system = std::make_unique<WaylandSystem>(*clock, sway.address());
        ASSERT_TRUE(system->isConnected());
    }
    void TearDown() override {
        for (QProcess* const process : {&locker, &keyboard}) {
            process->kill();
            process->waitForFinished();
        }
    }

    // A keyboard that stays; false where there is no wtype.
    bool plugIn() {
        keyboard.setProcessEnvironment(sway.environment());
        keyboard.start(QStringLiteral("wtype"), {QStringLiteral("-s"), QStringLiteral("600000"),
                                                 QStringLiteral("-k"), QStringLiteral("x")});
        return keyboard.waitForStarted() &&
               until([&] { return system->connection().seat().hasAnyKeyboard(); });
    }
    void show(TestWindow& window, const Rgba& colour) {
        window.native->show();
        ASSERT_TRUE(until([&] { return window.native->isSeen(); }));
        window.paintAll(colour);
    }
    void lock() {
        locker.setProcessEnvironment(sway.environment());
        locker.start(QStringLiteral("swaylock"),
                     {QStringLiteral("--color=ff00ff"), QStringLiteral("--no-unlock-indicator"),
                      QStringLiteral("--config=/dev/null")});
        ASSERT_TRUE(locker.waitForStarted());
    }
    void unlock() {
        ::kill(static_cast<pid_t>(locker.processId()), SIGUSR1);
        ASSERT_TRUE(until([&] { return locker.state() == QProcess::NotRunning; }));
    }
    // Whether the output comes to show that colour and no other.
    bool showsOnly(QRgb colour) {
        return until([&] { return isAll(sway.picture(), colour); });
    }
    static bool isAll(const QImage& picture, QRgb colour) {
        if (picture.isNull()) return false;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixel(x, y) != colour) return false;
        return true;
    }
    // Both sides are done with what came before.
    void settle() {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            ASSERT_TRUE(system->connection().roundTrip());
        }
    }
    [[nodiscard]] static NativeWindowOptions ordinary() {
        return {.window = {.frame = {0, 0, 640, 480}, .style = WindowStyle::Titled}};
    }

    wltest::Sway sway;
    QProcess keyboard, locker;
    std::unique_ptr<SystemClock> clock;
    std::unique_ptr<WaylandSystem> system;
};

// With the window below that the test is about: full screen or not.
class RainUnderSwaylock : public UnderSwaylock, public testing::WithParamInterface<bool> {};

TEST_P(RainUnderSwaylock, OverAWindowItLiesBelowTheLockAndComesBack) {
    TestWindow below(*system, ordinary());
    show(below, kGreen);
    ASSERT_TRUE(!GetParam() || sway.command("fullscreen enable"));
    ASSERT_TRUE(showsOnly(kGreenPixel));
    TestWindow over(*system, rain());
    show(over, kRain);
    ASSERT_TRUE(showsOnly(kRainPixel));
    lock();
    ASSERT_TRUE(showsOnly(kLock));
    over.paintAll(kRain);
    settle();
    EXPECT_TRUE(isAll(sway.picture(), kLock));
    unlock();
    EXPECT_TRUE(showsOnly(kRainPixel));
}

INSTANTIATE_TEST_SUITE_P(Windows, RainUnderSwaylock, testing::Bool(),
                         [](const auto& each) { return each.param ? "FullScreen" : "Ordinary"; });

TEST_F(UnderSwaylock, TheRainOverAnEmptyDesktopLiesBelowTheLock) {
    TestWindow over(*system, rain());
    show(over, kRain);
    ASSERT_TRUE(showsOnly(kRainPixel));
    lock();
    ASSERT_TRUE(showsOnly(kLock));
    over.paintAll(kRain);
    settle();
    EXPECT_TRUE(isAll(sway.picture(), kLock));
}

// On a seat with a keyboard, over a full-screen window, or without one.
class BlackUnderSwaylock : public UnderSwaylock, public testing::WithParamInterface<bool> {};

TEST_P(BlackUnderSwaylock, ItLiesBelowTheLockAndRests) {
    const bool hasKeyboard = GetParam();
    if (hasKeyboard && !plugIn()) GTEST_SKIP() << "wtype is not installed";
    TestWindow below(*system, ordinary());
    show(below, kGreen);
    ASSERT_TRUE(!hasKeyboard || sway.command("fullscreen enable"));
    ASSERT_TRUE(showsOnly(kGreenPixel));
    ASSERT_EQ(system->connection().seat().hasAnyKeyboard(), hasKeyboard);
    TestWindow black(*system, saver());
    show(black, kRed);
    ASSERT_TRUE(showsOnly(kRedPixel));
    ASSERT_TRUE(until([&] { return black.native->hasKeyboard() == hasKeyboard; }));
    lock();
    ASSERT_TRUE(showsOnly(kLock));
    EXPECT_TRUE(until([&] { return !black.native->isSeen(); }));
    black.paintAll(kRed);
    settle();
    EXPECT_TRUE(isAll(sway.picture(), kLock));
    unlock();
    EXPECT_TRUE(showsOnly(kRedPixel));
    EXPECT_TRUE(until(
        [&] { return black.native->isSeen() && black.native->hasKeyboard() == hasKeyboard; }));
}

INSTANTIATE_TEST_SUITE_P(Seats, BlackUnderSwaylock, testing::Bool(), [](const auto& each) {
    return each.param ? "WithAKeyboard" : "WithoutAKeyboard";
});

TEST_F(UnderSwaylock, WhatIsShownUnderALockStaysBelowIt) {
    if (!plugIn()) GTEST_SKIP() << "wtype is not installed";
    lock();
    ASSERT_TRUE(showsOnly(kLock));
    TestWindow black(*system, saver());
    TestWindow over(*system, rain());
    show(black, kRed);
    show(over, kRain);
    settle();
    EXPECT_TRUE(isAll(sway.picture(), kLock));
    EXPECT_FALSE(black.native->hasKeyboard());
}

// --- rest, as the real compositor tells it ---

TEST(SwayIdle, RestIsToldWithItsEnd) {
    wltest::Sway sway;
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    SystemClock clock;
    WaylandSystem system(clock, sway.address());
    ASSERT_TRUE(system.capabilities().knowsIdle);
    std::vector<bool> told;
    const auto idle = system.watchIdle(0.2, [&](bool is) { told.push_back(is); });
    ASSERT_TRUE(idle);
    ASSERT_TRUE(until([&] { return told == std::vector<bool>{true}; }));
    ASSERT_TRUE(sway.command("seat seat0 cursor move 30 30"));
    if (!sway.type(QStringLiteral("x"))) GTEST_SKIP() << "wtype is not installed";
    ASSERT_TRUE(until([&] { return told.size() >= 3; }));
    told.resize(3);
    EXPECT_EQ(told, (std::vector<bool>{true, false, true}));
}

}  // namespace
}  // namespace platform::wayland
