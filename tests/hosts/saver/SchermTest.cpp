// SPDX-License-Identifier: MIT
// The program on its own: full screen on every display, under a real window
// manager, with a real keyboard and pointer, and on a session bus.
#include <gtest/gtest.h>

#include <QFileInfo>
#include <QRegularExpression>

#include "tests/hosts/saver/Scherm.h"
#include "tests/support/BusSaver.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/WholeRepaints.h"

using brixtel::isRegen;
using brixtel::Scherm;

namespace {

TEST_F(Scherm, FullScreenCoversTheScreenUntilAKey) {
    startRegen();
    ASSERT_TRUE(regent());
    for (const QPoint hoek : {QPoint(0, 0), QPoint(1160, 0), QPoint(0, 700), QPoint(1160, 700)})
        EXPECT_TRUE(until([&] {
            return brixtel::aandeelGroen(
                       server.picture(server.screen().root).copy(QRect(hoek, QSize(120, 100)))) >
                   0.005;
        }));
    xdotool("key a");
    EXPECT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
    EXPECT_FALSE(programma.doorSignaal());
}

// The bus library starts one for whoever asks, which remembers it in this folder.
TEST_F(Scherm, WithoutASessionBusNoneIsStarted) {
    startRegen();
    ASSERT_TRUE(regent());
    // Only a window with the focus is one that Qt tells the bus of.
    xdotool("key a");
    EXPECT_TRUE(programma.wacht());
    EXPECT_FALSE(QFileInfo::exists(programma.map() + QStringLiteral("/.dbus")));
}

TEST_F(Scherm, AClickOfAnyButtonEndsIt) {
    for (const char* klik : {"click 1", "click 2", "click 3"}) {
        startRegen();
        ASSERT_TRUE(regent());
        xdotool(klik);
        ASSERT_TRUE(programma.wacht()) << klik;
        EXPECT_EQ(programma.uitgang(), 0);
    }
}

TEST_F(Scherm, ARealMouseMovementEndsItAndASmallOneDoesNot) {
    xdotool("mousemove 400 400");
    startRegen();
    ASSERT_TRUE(regent());
    xdotool("mousemove 410 400");
    xdotool("mousemove 440 400");
    EXPECT_FALSE(programma.wacht(500));
    xdotool("mousemove 600 500");
    EXPECT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
}

TEST_F(Scherm, EndsByItselfAfterTheSecondsAskedFor) {
    startRegen({QStringLiteral("--seconden=0.5")});
    EXPECT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
}

TEST_F(Scherm, AnOrdinaryWindowStaysThroughInputAndClosesWhenTheUserClosesIt) {
    startRegen({QStringLiteral("--venster=640x400")});
    ASSERT_TRUE(
        until([&] { return brixtel::aandeelGroen(server.picture(server.screen().root)) > 0.005; }));
    xdotool("mousemove 640 400");
    xdotool("mousemove 700 460");
    xdotool("click 1");
    xdotool("key a");
    EXPECT_FALSE(programma.wacht(300));
    xdotool("key alt+F4");  // the window manager asks it to close
    EXPECT_TRUE(programma.wacht());
    EXPECT_FALSE(programma.doorSignaal());
}

// Monitors as RandR lists them: halves of the one screen there is.
TEST_F(Scherm, EveryMonitorHasAWindowAlsoOneThatComesAndGoes) {
    const auto xrandr = [&](const char* woorden) {
        hulp(QStringLiteral("xrandr %1").arg(QLatin1String(woorden)).split(u' '));
    };
    xrandr("--setmonitor links 640/200x800/250+0+0 screen");
    startRegen();
    ASSERT_TRUE(regent(QRect(0, 0, 640, 800)));
    xrandr("--setmonitor rechts 640/200x800/250+640+0 none");
    EXPECT_TRUE(regent(QRect(640, 0, 640, 800)));
    xrandr("--delmonitor rechts");
    EXPECT_TRUE(until(
        [&] { return !isRegen(server.picture(server.screen().root).copy(640, 0, 640, 800)); }));
    EXPECT_TRUE(regent(QRect(0, 0, 640, 800)));
    EXPECT_TRUE(programma.loopt());
}

TEST_F(Scherm, MonitorsThatMirrorOneAnotherHaveOneWindow) {
    for (const char* naam : {"een screen", "ander none"}) {
        const QStringList woorden = QString::fromLatin1(naam).split(u' ');
        hulp({QStringLiteral("xrandr"), QStringLiteral("--setmonitor"), woorden[0],
              QStringLiteral("1280/400x800/250+0+0"), woorden[1]});
    }
    ASSERT_EQ(hulp({QStringLiteral("xrandr"), QStringLiteral("--listmonitors")}).count("1280/"), 2);
    startRegen();
    ASSERT_TRUE(regent());
    EXPECT_EQ(vensters(), 1);
}

constexpr QSize kMaat(640, 400);
const QString kVenster = QStringLiteral("--venster=640x400");

// A session bus of the test's own.
class Bus : public Scherm {
  protected:
    const DBusDaemon bus;

    void SetUp() override {
        Scherm::SetUp();
        ASSERT_FALSE(bus.address().isEmpty());
        programma.zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    }
    // Waits until it rains and the program hears signals of this name.
    [[nodiscard]] bool toont(const char* signaal, const QStringList& meer = {kVenster}) {
        startRegen(meer);
        return regentWeer() && until([&] { return bus.isHeard(signaal); });
    }
    // As anyone may.
    [[nodiscard]] bool zendWillstop() const {
        return bus.send({QStringLiteral("/"), QStringLiteral("com.apple.screensaver.willstop")});
    }
    bool regentWeer() {
        return until(
            [&] { return brixtel::aandeelGroen(server.picture(server.screen().root)) > 0.005; });
    }
    bool isZwart() { return brixtel::aandeelGroen(server.picture(server.screen().root)) == 0.0; }
};

// In a window of its own nobody else would put the scene up again.
TEST_F(Bus, WillstopTearsTheSceneDownAndItStartsAgain) {
    ASSERT_TRUE(toont("willstop"));
    WholeRepaints geheel(server, kMaat);
    ASSERT_TRUE(zendWillstop());
    EXPECT_TRUE(until([&] { return geheel.count() > 0; }));
    EXPECT_TRUE(regentWeer());
    EXPECT_TRUE(programma.loopt());
}

TEST_F(Bus, WillstopInFullScreenStartsTheSceneAgainToo) {
    ASSERT_TRUE(toont("willstop", {}));
    WholeRepaints geheel(server, {1280, 800});
    ASSERT_TRUE(zendWillstop());
    EXPECT_TRUE(until([&] { return geheel.count() > 0; }));
    EXPECT_TRUE(regentWeer());
    EXPECT_TRUE(programma.loopt());
}

// Rain changes place by place.
TEST_F(Bus, WithoutASignalThePictureIsNotDrawnWholeAnew) {
    ASSERT_TRUE(toont("willstop"));
    WholeRepaints geheel(server, kMaat);
    EXPECT_FALSE(until([&] { return geheel.count() > 0; }, 1000));
}

// The host decides when a saver in its window ends.
TEST_F(Bus, WillstopInAHostsWindowLeavesItBlack) {
    const auto venster = server.makeWindow({.width = 640, .height = 400});
    ASSERT_TRUE(toont("willstop",
                      {QStringLiteral("--window-id"), QStringLiteral("0x%1").arg(venster, 0, 16)}));
    ASSERT_TRUE(zendWillstop());
    EXPECT_TRUE(until([&] { return isZwart(); }));
    EXPECT_FALSE(until([&] { return !isZwart(); }, 1000));
    EXPECT_TRUE(programma.loopt());
}

TEST_F(Bus, WhenTheDesktopsLockHasGoneTheSceneStartsAgain) {
    ASSERT_TRUE(toont("ActiveChanged"));
    const BusSaver saver(bus.address());
    WholeRepaints geheel(server, kMaat);
    ASSERT_TRUE(saver.say(false));
    EXPECT_TRUE(until([&] { return geheel.count() > 0; }));
    EXPECT_TRUE(regentWeer());
    EXPECT_TRUE(programma.loopt());
}

TEST_F(Bus, ActiveChangedTrueLeavesItAlone) {
    ASSERT_TRUE(toont("ActiveChanged"));
    const BusSaver saver(bus.address());
    WholeRepaints geheel(server, kMaat);
    ASSERT_TRUE(saver.say(true));
    EXPECT_FALSE(until([&] { return geheel.count() > 0 || isZwart(); }, 500));
}

}  // namespace
