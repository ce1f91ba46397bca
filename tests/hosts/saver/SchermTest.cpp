// SPDX-License-Identifier: MIT
// The program on its own: full screen on every display, under a real window
// manager, with a real keyboard and pointer, and on a session bus.
#include <gtest/gtest.h>

#include <QFileInfo>
#include <QRegularExpression>

#include "tests/hosts/saver/Scherm.h"
#include "tests/support/BusSaver.h"

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

// A session bus of the test's own.
class Bus : public Scherm {
  protected:
    QProcess bus;
    QString adres;

    void SetUp() override {
        Scherm::SetUp();
        bus.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"),
                   QStringLiteral("--print-address")});
        ASSERT_TRUE(bus.waitForReadyRead(10'000));
        adres = QString::fromLatin1(bus.readLine()).trimmed();
        programma.zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), adres);
    }
    [[nodiscard]] bool toont(const QStringList& meer = {QStringLiteral("--venster=640x400")}) {
        startRegen(meer);
        return regentWeer();
    }
    void TearDown() override {
        bus.terminate();
        bus.waitForFinished(5000);
        Scherm::TearDown();
    }
    // Sends the signal as anyone may, until it has been heard: the program listens
    // to the bus from some moment after its first picture on. The black is short, so
    // that each signal is given time before the next.
    bool zwartNaWillstop() {
        return until([&] {
            QProcess proces;
            proces.start(QStringLiteral("dbus-send"),
                         {QStringLiteral("--bus=") + adres, QStringLiteral("--type=signal"),
                          QStringLiteral("/"), QStringLiteral("com.apple.screensaver.willstop")});
            proces.waitForFinished(5000);
            return until([&] { return isZwart(); }, 2000);
        });
    }
    bool regentWeer() {
        return until(
            [&] { return brixtel::aandeelGroen(server.picture(server.screen().root)) > 0.005; });
    }
    bool isZwart() { return brixtel::aandeelGroen(server.picture(server.screen().root)) == 0.0; }
};

// In a window of its own nobody else would put the scene up again.
TEST_F(Bus, WillstopTearsTheSceneDownAndItStartsAgain) {
    ASSERT_TRUE(toont());
    EXPECT_TRUE(zwartNaWillstop());
    EXPECT_TRUE(regentWeer());
    EXPECT_TRUE(programma.loopt());
}

TEST_F(Bus, WillstopInFullScreenStartsTheSceneAgainToo) {
    ASSERT_TRUE(toont({}));
    EXPECT_TRUE(zwartNaWillstop());
    EXPECT_TRUE(regentWeer());
    EXPECT_TRUE(programma.loopt());
}

// The host decides when a saver in its window ends.
TEST_F(Bus, WillstopInAHostsWindowLeavesItBlack) {
    const auto venster = server.makeWindow({.width = 640, .height = 400});
    ASSERT_TRUE(toont({QStringLiteral("--window-id"), QStringLiteral("0x%1").arg(venster, 0, 16)}));
    EXPECT_TRUE(zwartNaWillstop());
    EXPECT_FALSE(until([&] { return !isZwart(); }, 1000));
    EXPECT_TRUE(programma.loopt());
}

TEST_F(Bus, WhenTheDesktopsLockHasGoneTheSceneStartsAgain) {
    ASSERT_TRUE(toont());
    const BusSaver saver(adres);
    EXPECT_TRUE(until([&] { return saver.say(false) && isZwart(); }));
    EXPECT_TRUE(regentWeer());
    EXPECT_TRUE(programma.loopt());
}

TEST_F(Bus, ActiveChangedTrueLeavesItAlone) {
    ASSERT_TRUE(toont());
    const BusSaver saver(adres);
    ASSERT_TRUE(saver.say(true));
    EXPECT_FALSE(until([&] { return isZwart(); }, 500));
}

}  // namespace
