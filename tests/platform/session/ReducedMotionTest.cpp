// SPDX-License-Identifier: MIT
#include "platform/session/ReducedMotion.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/DBusDaemon.h"
#include "tests/support/Portal.h"
#include "tests/support/Until.h"

using platform::ReducedMotion;

namespace {

const QString kGnome = QStringLiteral("org.gnome.desktop.interface");
const QString kAnimations = QStringLiteral("enable-animations");

struct Desktop : testing::Test {
    DBusDaemon bus;
    Portal portal{bus.address()};
    std::vector<bool> told;

    [[nodiscard]] std::unique_ptr<ReducedMotion> watch() {
        return std::make_unique<ReducedMotion>(bus.address(),
                                               [this](bool wished) { told.push_back(wished); });
    }
    bool toldOnce(bool wished) {
        return until([&] { return !told.empty(); }) && told == std::vector<bool>{wished};
    }
};

TEST_F(Desktop, GnomesAnimationsSwitchedOff) {
    portal.put(kGnome, kAnimations, false);
    ASSERT_TRUE(portal.appear());
    const auto motion = watch();
    EXPECT_TRUE(toldOnce(true));
}

TEST_F(Desktop, ThePortalsOwnSetting) {
    portal.put(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("reduced-motion"), 1U);
    ASSERT_TRUE(portal.appear());
    const auto motion = watch();
    EXPECT_TRUE(toldOnce(true));
}

TEST_F(Desktop, KdesAnimationsOfNoLength) {
    portal.put(QStringLiteral("org.kde.kdeglobals.KDE"), QStringLiteral("AnimationDurationFactor"),
               QStringLiteral("0"));
    ASSERT_TRUE(portal.appear());
    const auto motion = watch();
    EXPECT_TRUE(toldOnce(true));
}

TEST_F(Desktop, ChangesAreToldAsTheUserMakesThem) {
    portal.put(kGnome, kAnimations, true);
    ASSERT_TRUE(portal.appear());
    const auto motion = watch();
    ASSERT_TRUE(until([&] { return portal.asked() == 1; }));
    EXPECT_TRUE(told.empty());
    portal.change(kGnome, kAnimations, false);
    ASSERT_TRUE(until([&] { return told.size() == 1; }));
    portal.change(kGnome, QStringLiteral("clock-format"), QStringLiteral("24h"));
    portal.change(kGnome, kAnimations, true);
    ASSERT_TRUE(until([&] { return told.size() == 2; }));
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

// A sanitizer sees the first answer's other settings read into a dropped object.
TEST_F(Desktop, AnActionMayEndTheWatch) {
    portal.put(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("reduced-motion"), 1U);
    portal.put(QStringLiteral("org.kde.kdeglobals.KDE"), QStringLiteral("AnimationDurationFactor"),
               QStringLiteral("1"));
    portal.put(kGnome, kAnimations, false);
    ASSERT_TRUE(portal.appear());
    std::unique_ptr<ReducedMotion> motion;
    motion = std::make_unique<ReducedMotion>(bus.address(), [&](bool wished) {
        told.push_back(wished);
        motion.reset();
    });
    EXPECT_TRUE(toldOnce(true));
    EXPECT_EQ(motion, nullptr);
}

TEST_F(Desktop, WithoutAPortalThereIsNoWish) {
    const auto motion = watch();
    // A portal that comes up later is heard too.
    ASSERT_TRUE(portal.appear());
    ASSERT_TRUE(until([&] {
        portal.change(kGnome, kAnimations, false);
        return !told.empty();
    }));
    EXPECT_EQ(told, std::vector<bool>{true});
}

TEST(ReducedMotion, WithoutABusThereIsNoWishAndNoWaiting) {
    const ReducedMotion motion({}, [](bool) { FAIL(); });
    const ReducedMotion other(QStringLiteral("unix:path=/nowhere"), [](bool) { FAIL(); });
}

}  // namespace
