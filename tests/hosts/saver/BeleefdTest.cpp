// SPDX-License-Identifier: MIT
// The program's consideration for the desktop and the host.
#include <signal.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "tests/hosts/saver/Scherm.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/Portal.h"

using brixtel::isRegen;
using brixtel::Programma;
using brixtel::Scherm;

namespace {

// In a host's window, on a bus.
class Signaal : public testing::Test {
  protected:
    Xvfb server{"800x600x24"};
    DBusDaemon bus;
    Programma programma{server.display()};
    xcb_window_t venster = server.makeWindow({.width = 400, .height = 300});

    void start(const QStringList& door = {}) {
        programma.zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        programma.startDoor(door, {QStringLiteral("--root"), QStringLiteral("--window-id"),
                                   QString::number(venster), QStringLiteral("--keuze=regen")});
        ASSERT_TRUE(regent());
    }
    bool regent() {
        return until([&] { return isRegen(server.picture(venster)); });
    }
    // Takes the scene down, by word from the desktop.
    bool wordtZwart() {
        EXPECT_TRUE(until([&] { return bus.isHeard("willstop"); }));
        // Once: one that arrived later would undo what comes after.
        EXPECT_TRUE(
            bus.send({QStringLiteral("/"), QStringLiteral("com.apple.screensaver.willstop")}));
        return until([&] { return brixtel::aandeelGroen(server.picture(venster)) == 0.0; });
    }
    void zend(int nummer) const { kill(static_cast<pid_t>(programma.nummer()), nummer); }
    void begintOpnieuw() {
        ASSERT_TRUE(wordtZwart());
        zend(SIGUSR1);
        EXPECT_TRUE(regent());
        EXPECT_TRUE(programma.loopt());
    }
};

TEST_F(Signaal, Sigusr1StartsTheSceneAnew) {
    start();
    begintOpnieuw();
    begintOpnieuw();
}

TEST_F(Signaal, Sigusr1CountsAlsoWhereTheHostLeftItIgnoredOrBlocked) {
    start({QStringLiteral("env"), QStringLiteral("--ignore-signal=USR1"),
           QStringLiteral("--block-signal=USR1")});
    begintOpnieuw();
}

TEST_F(Signaal, SigtermEndsItBySigtermAlsoWhereTheHostLeftItBlocked) {
    start({QStringLiteral("env"), QStringLiteral("--block-signal=TERM"),
           QStringLiteral("--block-signal=ALRM")});
    zend(SIGTERM);
    ASSERT_TRUE(programma.wacht());
    EXPECT_TRUE(programma.doorSignaal());
    EXPECT_EQ(programma.uitgang(), SIGTERM);
}

TEST_F(Signaal, AStormOfSigusr1DoesNotEndIt) {
    start();
    for (int i = 0; i < 1000; ++i)
        zend(SIGUSR1);
    ASSERT_TRUE(wordtZwart());
    zend(SIGUSR1);
    EXPECT_TRUE(regent());
    EXPECT_TRUE(programma.loopt());
}

// The signal of a connection that breaks while the program writes.
TEST_F(Signaal, SigpipeDoesNotEndIt) {
    start();
    zend(SIGPIPE);
    begintOpnieuw();
}

TEST(Omgeving, StrippedToDisplayHomePathAndLangItWorks) {
    const Xvfb server("640x480x24");
    const QTemporaryDir thuis;
    const auto venster = server.makeWindow({.width = 500, .height = 400});
    QProcessEnvironment omgeving;
    omgeving.insert(QStringLiteral("DISPLAY"), server.display());
    omgeving.insert(QStringLiteral("HOME"), thuis.path());
    omgeving.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
    omgeving.insert(QStringLiteral("LANG"), QStringLiteral("nl_NL.UTF-8"));
    QProcess proces;
    proces.setProcessEnvironment(omgeving);
    proces.start(brixtel::programmaPad(),
                 {QStringLiteral("-root"), QStringLiteral("-window-id"), QString::number(venster),
                  QStringLiteral("-keuze"), QStringLiteral("regen")});
    ASSERT_TRUE(proces.waitForStarted());
    EXPECT_TRUE(until([&] { return isRegen(server.picture(venster)); }, 20'000));
    proces.terminate();
    EXPECT_TRUE(until([&] { return proces.state() == QProcess::NotRunning; }, 20'000));
    EXPECT_EQ(proces.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(proces.exitCode(), SIGTERM);
    EXPECT_TRUE(proces.readAllStandardError().isEmpty());
}

// On a desktop whose user has switched animations off.
class WeinigBeweging : public Scherm {
  protected:
    DBusDaemon bus;
    Portal portaal{bus.address()};

    void SetUp() override {
        Scherm::SetUp();
        portaal.put(QStringLiteral("org.gnome.desktop.interface"),
                    QStringLiteral("enable-animations"), false);
        ASSERT_TRUE(portaal.appear());
        programma.zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    }
    QJsonObject meet(const QStringList& meer) {
        programma.draai(QStringList{QStringLiteral("--keuze=regen"), QStringLiteral("--meet"),
                                    QStringLiteral("--seconden=4")} +
                        meer);
        EXPECT_EQ(programma.uitgang(), 0);
        return QJsonDocument::fromJson(programma.uit()).object();
    }
};

TEST_F(WeinigBeweging, InAWindowItStandsStill) {
    const auto meting = meet({QStringLiteral("--venster=640x400")});
    EXPECT_EQ(portaal.asked(), 1);
    EXPECT_GT(meting.value(QLatin1String("beelden")).toInt(), 0);
    // The rate is that of the last two seconds.
    EXPECT_EQ(meting.value(QLatin1String("beelden_per_seconde")).toDouble(), 0.0);
}

TEST_F(WeinigBeweging, InAWindowItGoesOnOnceTheUserAllowsIt) {
    programma.start({QStringLiteral("--keuze=regen"), QStringLiteral("--venster=640x400")});
    ASSERT_TRUE(until([this] { return portaal.asked() == 1; }));
    portaal.change(QStringLiteral("org.gnome.desktop.interface"),
                   QStringLiteral("enable-animations"), true);
    ASSERT_TRUE(until(
        [this] { return brixtel::aandeelGroen(server.picture(server.screen().root)) > 0.005; }));
    const QImage eerst = server.picture(server.screen().root);
    EXPECT_TRUE(until([&] { return server.picture(server.screen().root) != eerst; }));
}

TEST_F(WeinigBeweging, FullScreenIsASaverAndMoves) {
    const auto meting = meet({});
    EXPECT_EQ(portaal.asked(), 0);
    EXPECT_GT(meting.value(QLatin1String("beelden_per_seconde")).toDouble(), 1.0);
}

}  // namespace
