// SPDX-License-Identifier: MIT
// Overlays where lockers are overlays too, and where the session says that it is locked.
#include "platform/session/DistributedNotificationCenter.h"
#include "platform/session/NotificationNames.h"
#include "platform/window/DesktopWorkspace.h"
#include "tests/platform/window/wayland/WaylandFixture.h"

namespace platform::wayland {
namespace {

constexpr std::uint32_t kTop = 2, kOverlay = 3;
constexpr Rgba kGreen{0.0F, 1.0F, 0.0F, 1.0F};

struct AmongLocks : WaylandFixture {
    static wltest::Options old() {
        wltest::Options options;
        options.globals.inputTaking = true;
        return options;
    }
    explicit AmongLocks(const wltest::Options& options = old()) : WaylandFixture(options) {
        settle();
    }
    void show(TestWindow& window) {
        window.native->show();
        settle();
        window.paintAll(kGreen);
        settle();
    }
    std::uint32_t layer() { return only().layer; }
    int moves() { return compositor.count("zwlr_layer_surface_v1", "set_layer"); }
    void setActive(const std::vector<bool>& active) {
        compositor.setToplevelActive(active);
        settle();
    }
    void setKeyboard(bool there) {
        compositor.setSeat(there, true);
        settle();
    }
    // Whether the window lies on that layer, is drawn, and the session seems unlocked.
    void expectDrawnOn(std::uint32_t wanted, const TestWindow& window) {
        EXPECT_EQ(layer(), wanted);
        EXPECT_TRUE(window.native->isSeen());
        EXPECT_FALSE(system.workspace().isSaverActive());
    }
};

TEST(OverlaysAmongLocks, TheRainIsAboveAllOnlyWhileAWindowHasTheFocus) {
    AmongLocks there;
    TestWindow over(there.system, rain());
    there.show(over);
    EXPECT_EQ(there.layer(), kTop);
    there.setActive({true});
    EXPECT_EQ(there.layer(), kOverlay);
    EXPECT_EQ(there.moves(), 1);
    const int commits = there.commits();
    there.setActive({false, true});  // from one window to another
    there.setActive({true});
    EXPECT_EQ(there.moves(), 1);
    EXPECT_EQ(there.commits(), commits);
    there.setActive({false});
    EXPECT_EQ(there.layer(), kTop);
    EXPECT_EQ(there.moves(), 2);
    EXPECT_EQ(there.commits(), commits + 1);
}

TEST(OverlaysAmongLocks, ABlackScreenThatLosesItsKeyboardStepsDownAndRests) {
    AmongLocks there;
    TestWindow black(there.system, saver());
    there.show(black);
    ASSERT_TRUE(black.native->hasKeyboard());
    EXPECT_EQ(there.layer(), kOverlay);
    EXPECT_TRUE(black.native->isSeen());
    NativeWorkspace& desktop = there.system.workspace();
    int told = 0;
    const Observation watch = desktop.observe(
        [&](Workspace::Change change) { told += change == Workspace::Change::Saver ? 1 : 0; });
    there.compositor.setGivesKeyboard(false);
    there.settle();
    EXPECT_EQ(there.layer(), kTop);
    EXPECT_FALSE(black.native->isSeen());
    EXPECT_TRUE(desktop.isSaverActive());
    EXPECT_EQ(told, 1);
    there.compositor.setGivesKeyboard(true);
    there.settle();
    EXPECT_EQ(there.layer(), kOverlay);
    EXPECT_TRUE(black.native->isSeen());
    EXPECT_FALSE(desktop.isSaverActive());
    EXPECT_EQ(told, 2);
}

TEST(OverlaysAmongLocks, ABlackScreenThatGetsNoKeyboardTellsOfALock) {
    AmongLocks there;
    there.compositor.setGivesKeyboard(false);
    TestWindow black(there.system, saver());
    there.show(black);
    EXPECT_EQ(there.layer(), kTop);
    EXPECT_FALSE(there.system.workspace().isSaverActive());
    there.compositor.frame();
    there.settle();
    EXPECT_EQ(there.layer(), kTop);
    EXPECT_FALSE(black.native->isSeen());
    EXPECT_TRUE(there.system.workspace().isSaverActive());
    black.native->hide();
    there.settle();
    EXPECT_FALSE(there.system.workspace().isSaverActive());
}

TEST(OverlaysAmongLocks, TheKeyboardOnOneDisplayCountsForAll) {
    wltest::Options options = AmongLocks::old();
    options.outputs.push_back({.name = "PROEF-2", .at = {640, 0}});
    AmongLocks there(options);
    TestWindow first(there.system, saver());
    TestWindow second(there.system, saver({640, 0, 640, 480}));
    there.show(first);
    there.show(second);
    for (const auto& surface : there.compositor.shown())
        EXPECT_EQ(surface.layer, kOverlay);
    there.compositor.setGivesKeyboard(false);
    there.settle();
    for (const auto& surface : there.compositor.shown())
        EXPECT_EQ(surface.layer, kTop);
    EXPECT_FALSE(first.native->isSeen());
    EXPECT_FALSE(second.native->isSeen());
}

TEST(OverlaysAmongLocks, WithoutAKeyboardOnTheSeatTheFocusTellsABlackScreenOfALock) {
    AmongLocks there;
    there.setKeyboard(false);
    there.setActive({true});
    TestWindow black(there.system, saver());
    there.show(black);
    EXPECT_EQ(there.only().keyboard, 0U);
    there.expectDrawnOn(kOverlay, black);
    there.setActive({false});
    EXPECT_EQ(there.layer(), kTop);
    EXPECT_FALSE(black.native->isSeen());
    EXPECT_TRUE(there.system.workspace().isSaverActive());
    there.setActive({true});
    there.expectDrawnOn(kOverlay, black);
}

// No window has the focus, so nothing tells of a lock.
struct BlackOnABareSeat : AmongLocks {
    explicit BlackOnABareSeat(bool hadKeyboard = false) {
        setKeyboard(hadKeyboard);
        show(black);
        compositor.frame();
        setKeyboard(false);
    }
    TestWindow black{system, saver()};
};

TEST(OverlaysAmongLocks, WithoutAKeyboardAndAnyWindowABlackScreenIsBelowALockAndDraws) {
    BlackOnABareSeat there;
    there.expectDrawnOn(kTop, there.black);
}

TEST(OverlaysAmongLocks, AKeyboardThatIsPulledOutIsNoLock) {
    BlackOnABareSeat there(true);
    EXPECT_TRUE(there.black.native->isSeen());
    EXPECT_FALSE(there.system.workspace().isSaverActive());
    there.setActive({true});
    there.expectDrawnOn(kOverlay, there.black);
}

TEST(OverlaysAmongLocks, AKeyboardThatComesIsTaken) {
    BlackOnABareSeat there;
    there.setKeyboard(true);
    EXPECT_EQ(there.only().keyboard, 1U);
    EXPECT_TRUE(there.black.native->hasKeyboard());
    there.expectDrawnOn(kOverlay, there.black);
}

TEST(OverlaysAmongLocks, WhereTheCompositorLocksEveryOverlayIsAboveAll) {
    for (const bool both : {false, true}) {
        wltest::Options options;
        options.globals.inputTaking = both;
        options.globals.sessionLock = both;
        AmongLocks there(options);
        TestWindow over(there.system, rain());
        there.show(over);
        EXPECT_EQ(there.layer(), kOverlay);
        there.setActive({true});
        there.setActive({false});
        EXPECT_EQ(there.layer(), kOverlay);
        EXPECT_EQ(there.moves(), 0);
    }
}

// --- where a lock hides every other surface ---

struct HiddenByLocks : AmongLocks {
    static wltest::Options later() {
        wltest::Options options;
        options.globals.sessionLock = true;
        return options;
    }
    HiddenByLocks() : AmongLocks(later()) {}
    void setLocked(bool locked) {
        compositor.setLocked(locked);
        settle();
    }
    bool seemsLocked() { return system.workspace().isSaverActive(); }
};

TEST(OverlaysHiddenByALock, ABlackScreenRestsAndLeavesTheLockItsKeyboard) {
    HiddenByLocks there;
    TestWindow black(there.system, saver());
    there.show(black);
    ASSERT_TRUE(black.native->hasKeyboard());
    for (int round = 0; round < 3; ++round) {
        there.setLocked(true);
        EXPECT_FALSE(black.native->isSeen());
        EXPECT_TRUE(there.seemsLocked());
        // A commit under the lock would get the keyboard, if it still asked for it.
        black.paintAll(kGreen);
        there.settle();
        EXPECT_EQ(there.only().keyboard, 0U);
        EXPECT_EQ(there.compositor.keyboardFocus(), 0U);
        EXPECT_EQ(there.layer(), kOverlay);
        there.setLocked(false);
        EXPECT_TRUE(black.native->isSeen());
        EXPECT_TRUE(black.native->hasKeyboard());
        EXPECT_FALSE(there.seemsLocked());
    }
}

TEST(OverlaysHiddenByALock, ABlackScreenShownUnderTheLockWaitsForTheKeyboard) {
    HiddenByLocks there;
    there.setLocked(true);
    TestWindow black(there.system, saver());
    there.show(black);
    EXPECT_EQ(there.only().keyboard, 0U);
    EXPECT_EQ(there.compositor.keyboardFocus(), 0U);
    there.setLocked(false);
    EXPECT_TRUE(black.native->hasKeyboard());
}

TEST(OverlaysHiddenByALock, ABlackScreenHasTheKeyboardAlsoWhereNoDisplayIsNamed) {
    wltest::Options options = HiddenByLocks::later();
    options.namesDisplays = false;
    AmongLocks there(options);
    TestWindow black(there.system, saver());
    there.show(black);
    there.compositor.frame();
    there.settle();
    EXPECT_TRUE(black.native->hasKeyboard());
}

TEST(OverlaysHiddenByALock, TheRainRestsAndTakesNothing) {
    HiddenByLocks there;
    TestWindow over(there.system, rain());
    there.show(over);
    there.setLocked(true);
    EXPECT_FALSE(over.native->isSeen());
    EXPECT_FALSE(there.seemsLocked());
    there.setLocked(false);
    EXPECT_TRUE(over.native->isSeen());
    EXPECT_EQ(there.only().keyboard, 0U);
}

TEST(OverlaysHiddenByALock, ASleepingDisplayIsNoLock) {
    HiddenByLocks there;
    TestWindow black(there.system, saver());
    there.show(black);
    there.compositor.setShowsSurfaces(false);
    there.settle();
    EXPECT_FALSE(black.native->isSeen());
    EXPECT_TRUE(black.native->hasKeyboard());
    EXPECT_EQ(there.only().keyboard, 1U);
    EXPECT_FALSE(there.seemsLocked());
    there.compositor.setShowsSurfaces(true);
    there.settle();
    EXPECT_TRUE(black.native->isSeen());
}

TEST(OverlaysUnderALockedSession, AreTakenDownAndStayDown) {
    WaylandFixture there;
    TestWindow over(there.system, rain());
    TestWindow black(there.system, saver());
    over.native->show();
    there.settle();
    over.paintAll(kGreen);
    there.settle();
    ASSERT_EQ(there.compositor.shown().size(), 1U);
    there.system.workspace().setSaverCovers(true);
    there.settle();
    EXPECT_TRUE(there.compositor.surfaces().empty());
    black.native->show();
    there.settle();
    EXPECT_TRUE(there.compositor.surfaces().empty());
    const int commits = there.commits();
    over.paintAll(kGreen);
    there.settle();
    EXPECT_EQ(there.commits(), commits);
    there.system.workspace().setSaverCovers(false);
    there.settle();
    EXPECT_FALSE(there.compositor.surfaces().empty());
}

TEST(OverlaysUnderALockedSession, ASaverThatStopsDoesNotEndTheLock) {
    WaylandFixture there;
    WindowServer server(there.clock, {.system = std::make_shared<WaylandSystem>(
                                          there.clock, there.compositor.address())});
    DistributedNotificationCenter notifications{QString()};
    DesktopWorkspace desktop(server, notifications);
    int told = 0;
    const Observation watch = desktop.observe(
        [&](Workspace::Change change) { told += change == Workspace::Change::Saver ? 1 : 0; });
    desktop.setLocked(true);
    EXPECT_TRUE(desktop.isSaverActive());
    EXPECT_EQ(told, 1);
    bool heard = false;
    notifications.addObserver(&heard, QLatin1String(kSaverWillStop), [&] { heard = true; });
    notifications.post(QLatin1String(kSaverDidStart));
    notifications.post(QLatin1String(kSaverWillStop));
    ASSERT_TRUE(until([&] { return heard; }));
    EXPECT_TRUE(desktop.isSaverActive());
    EXPECT_EQ(told, 1);
    notifications.removeObserver(&heard);
    desktop.setLocked(false);
    EXPECT_FALSE(desktop.isSaverActive());
    EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace platform::wayland
