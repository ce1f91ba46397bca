// SPDX-License-Identifier: MIT
// The program whole, in a session of the test's own: an X server with a window
// manager and a compositor, a message bus, a home.
#include <signal.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QLibraryInfo>
#include <QProcessEnvironment>

#include "tests/desktop/Bureaublad.h"
#include "tests/support/BusMonitor.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/Paden.h"
#include "tests/support/SaverStandIn.h"

namespace {

using brixtel::Bureaublad;
using brixtel::scherm;

// The panels that can be seen.
QList<xcb_window_t> panelen() {
    QList<xcb_window_t> alle;
    const QByteArray uit =
        Bureaublad::hulp(QStringLiteral("xdotool search --onlyvisible --name Instellingen"));
    for (const QByteArray& regel : uit.split('\n'))
        if (!regel.isEmpty()) alle << regel.toUInt();
    return alle;
}

class Sessie : public testing::Test {
  protected:
    Xvfb server{"800x600x24"};
    DBusDaemon bus;
    QTemporaryDir thuis;
    std::optional<Bureaublad> bureaublad;
    QProcess eigenaar;
    xcb_window_t paneel = 0;

    void SetUp() override {
        ASSERT_TRUE(server.isRunning());
        ASSERT_FALSE(bus.address().isEmpty());
        scherm = &server;
        bureaublad.emplace();
        ASSERT_TRUE(bureaublad->isKlaar());
    }
    void TearDown() override {
        Bureaublad::eindig(eigenaar);
        bureaublad.reset();
        scherm = nullptr;
    }
    [[nodiscard]] QProcessEnvironment omgeving() const {
        QProcessEnvironment waarden;
        waarden.insert(QStringLiteral("PATH"), qEnvironmentVariable("PATH"));
        waarden.insert(QStringLiteral("HOME"), thuis.path());
        waarden.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        waarden.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
        waarden.insert(QStringLiteral("DISPLAY"), server.display());
        waarden.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        waarden.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:/nonexistent"));
        for (const char* naam : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"})
            if (qEnvironmentVariableIsSet(naam))
                waarden.insert(QLatin1String(naam), qEnvironmentVariable(naam));
        return waarden;
    }
    void start(QProcess& proces, const QStringList& woorden) const {
        proces.setProcessEnvironment(omgeving());
        proces.start(QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-bureau"), woorden);
        proces.waitForStarted();
    }
    struct Afloop {
        int uitgang;
        QString uit, fouten;
    };
    // Runs it to its end.
    Afloop draai(const QStringList& woorden) const {
        QProcess proces;
        start(proces, woorden);
        if (!until([&] { return proces.state() == QProcess::NotRunning; }, 30'000))
            return {-1, {}, {}};
        return {proces.exitCode(), QString::fromUtf8(proces.readAllStandardOutput()),
                QString::fromUtf8(proces.readAllStandardError())};
    }
    Afloop draai(const char* regel) const { return draai(QString::fromLatin1(regel).split(u' ')); }
    // Starts the owner, and waits until it answers.
    bool begin(const QStringList& woorden = {QStringLiteral("--dienst")}) {
        start(eigenaar, woorden);
        return until([this] { return draai("--stand").uitgang == 0; }, 30'000);
    }
    // Starts the owner with its panel, and waits for that.
    void openPaneel() {
        start(eigenaar, {});
        ASSERT_TRUE(until([] { return panelen().size() == 1; }));
        paneel = panelen().front();
    }
    [[nodiscard]] bool isPaneelActief() const {
        return until([this] { return Bureaublad::actief() == paneel; });
    }
    // Whether --stand says so, soon: it answers before it has done all it was
    // started for.
    bool meldt(const char* tekst) {
        return until([&] { return draai("--stand").uit.contains(QLatin1String(tekst)); }, 20'000);
    }
    bool eindigt() {
        return until([this] { return eigenaar.state() == QProcess::NotRunning; }, 20'000);
    }
    [[nodiscard]] QImage beeld() const { return server.picture(server.screen().root); }
    // The lit share of the screen.
    [[nodiscard]] double groen() const {
        const QImage nu = beeld();
        qint64 aantal = 0;
        for (int y = 0; y < nu.height(); ++y)
            for (int x = 0; x < nu.width(); ++x)
                aantal += qGreen(nu.pixel(x, y)) > 60 &&
                          qGreen(nu.pixel(x, y)) > qRed(nu.pixel(x, y)) + 20;
        return static_cast<double>(aantal) / (1.0 * nu.width() * nu.height());
    }
};

TEST_F(Sessie, TheDesktopRainComesAndGoes) {
    ASSERT_TRUE(bureaublad->startCompositor());
    ASSERT_TRUE(begin({QStringLiteral("--wissel-regen")}));
    EXPECT_TRUE(meldt("regen: aan\n"));
    EXPECT_TRUE(until([this] { return groen() > 0.005; }, 20'000));
    EXPECT_EQ(draai("--wissel-regen").uitgang, 0);
    EXPECT_TRUE(meldt("regen: uit\n"));
    EXPECT_TRUE(until([this] { return groen() == 0.0; }, 20'000));
}

TEST_F(Sessie, WithoutACompositorTheStateSaysWhyAndNothingIsShown) {
    ASSERT_TRUE(begin({QStringLiteral("--toon-regen")}));
    EXPECT_TRUE(meldt("regen: aan, maar niet te zien: er draait geen compositor"));
    EXPECT_EQ(groen(), 0.0);
    ASSERT_TRUE(bureaublad->startCompositor());
    EXPECT_TRUE(until([this] { return groen() > 0.005; }, 20'000));
    EXPECT_TRUE(meldt("regen: aan\n"));
}

TEST_F(Sessie, TheBlackScreenShowsTheRainOrASceneUntilAKey) {
    ASSERT_TRUE(begin({QStringLiteral("--toon-zwart")}));
    EXPECT_TRUE(until([this] { return groen() > 0.02; }, 20'000));
    EXPECT_TRUE(meldt("zwart scherm: aan (regen)"));
    EXPECT_EQ(draai("--sluit-zwart --toon-zwart=kubus").uitgang, 0);
    EXPECT_TRUE(meldt("zwart scherm: aan (kubus)"));
    ASSERT_TRUE(until([] { return Bureaublad::metToetsen() > 1; }));
    // A key goes to whoever has the keyboard, and that may take its time.
    EXPECT_TRUE(until(
        [this] {
            Bureaublad::hulp(QStringLiteral("xdotool key space"));
            return draai("--stand").uit.contains(QStringLiteral("zwart scherm: uit"));
        },
        30'000));
}

TEST_F(Sessie, ASecondStartAsksTheFirst) {
    ASSERT_TRUE(begin());
    const auto tweede = draai("--dichtheid=0.25 --snelheid 3 --muziek=aan --rust=1 --stand");
    EXPECT_EQ(tweede.uitgang, 0);
    EXPECT_EQ(tweede.uit, QStringLiteral("zwart scherm: uit\nregen: uit\ndichtheid: 25%\n"
                                         "snelheid: 3,0 ×\nmuziek: aan\nna rust: 1 minuut\n"
                                         "start bij het aanmelden: uit\n"));
    EXPECT_EQ(tweede.fouten, QString());
    EXPECT_TRUE(draai("--autostart=aan --stand")
                    .uit.endsWith(QStringLiteral("\nstart bij het aanmelden: aan\n")));
    EXPECT_EQ(draai("--dienst").uitgang, 0);
    EXPECT_EQ(eigenaar.state(), QProcess::Running);
    // Without a display too.
    QProcess blind;
    QProcessEnvironment waarden = omgeving();
    waarden.remove(QStringLiteral("DISPLAY"));
    blind.setProcessEnvironment(waarden);
    blind.start(QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-bureau"),
                {QStringLiteral("--sluit-alles")});
    ASSERT_TRUE(until([&] { return blind.state() == QProcess::NotRunning; }));
    EXPECT_EQ(blind.exitCode(), 0);
    EXPECT_EQ(draai("--stop").uitgang, 0);
    ASSERT_TRUE(eindigt());
    EXPECT_EQ(eigenaar.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(eigenaar.exitCode(), 0);
}

TEST_F(Sessie, StoppingTakesDownWhatShows) {
    ASSERT_TRUE(bureaublad->startCompositor());
    ASSERT_TRUE(begin({QStringLiteral("--toon-regen"), QStringLiteral("--toon-zwart")}));
    ASSERT_TRUE(until([this] { return groen() > 0.02; }, 20'000));
    EXPECT_EQ(draai("--stop").uitgang, 0);
    ASSERT_TRUE(eindigt());
    EXPECT_EQ(eigenaar.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(eigenaar.exitCode(), 0);
    EXPECT_TRUE(until([this] { return groen() == 0.0; }));
}

TEST_F(Sessie, OfManyStartsAtOnceOneStays) {
    std::array<QProcess, 4> starts;
    for (QProcess& een : starts)
        start(een, {});
    EXPECT_TRUE(until(
        [&] {
            return std::count_if(starts.begin(), starts.end(), [](const QProcess& een) {
                       return een.state() == QProcess::Running;
                   }) == 1;
        },
        30'000));
    EXPECT_EQ(draai("--stand").uitgang, 0);
    EXPECT_EQ(draai("--stop").uitgang, 0);
    for (QProcess& een : starts) {
        EXPECT_TRUE(until([&] { return een.state() == QProcess::NotRunning; }, 20'000));
        EXPECT_EQ(een.exitCode(), 0) << een.readAllStandardError().constData();
    }
}

TEST_F(Sessie, WhereNobodyRunsThereIsNothingToCloseAndNothingToTell) {
    EXPECT_EQ(draai("--sluit-alles").uitgang, 0);
    EXPECT_EQ(draai("--sluit-regen --stop").uitgang, 0);
    const auto stand = draai("--stand");
    EXPECT_EQ(stand.uitgang, 1);
    EXPECT_EQ(stand.fouten, QStringLiteral("brixtel-bureau: er draait geen brixtel-bureau\n"));
}

TEST_F(Sessie, ABlackScreenUnderASaverIsOneDutchLineAndStatusOne) {
    const SaverStandIn daemon(server);
    daemon.blank();
    const auto geweigerd = [](const Afloop& afloop) {
        EXPECT_EQ(afloop.uitgang, 1);
        EXPECT_EQ(afloop.uit, QString());
        EXPECT_EQ(afloop.fouten.toStdString(),
                  std::string("brixtel-bureau: de schermbeveiliging of "
                              "vergrendeling is aan; een zwart scherm kan pas "
                              "daarna\n"));
    };
    // Both a start that would be the owner and a start that asks the owner are refused.
    geweigerd(draai("--toon-zwart"));
    ASSERT_TRUE(begin());
    geweigerd(draai("--toon-zwart=kubus"));
    geweigerd(draai("--wissel-zwart"));
    EXPECT_TRUE(meldt("zwart scherm: uit"));
    EXPECT_EQ(groen(), 0.0);
}

// A folder in the place of the settings' file.
TEST_F(Sessie, AChoiceThatCannotBeKeptHoldsInTheOwnerThatItStarts) {
    ASSERT_TRUE(
        QDir(thuis.path()).mkpath(QStringLiteral(".config/nl.groenlicht.brixtel.bureau.conf")));
    ASSERT_TRUE(begin({QStringLiteral("--dichtheid=0.4"), QStringLiteral("--snelheid=2"),
                       QStringLiteral("--toon-zwart=kubus")}));
    EXPECT_TRUE(meldt("zwart scherm: aan (kubus)\nregen: uit\ndichtheid: 40%\nsnelheid: 2,0"));
    const QByteArray fouten = eigenaar.readAllStandardError();
    EXPECT_EQ(fouten.count("niet te bewaren"), 1) << fouten.constData();
    // A later call's choice holds too, and the rest of that call is done.
    const auto later = draai("--dichtheid=0.6 --sluit-zwart --stand");
    EXPECT_EQ(later.uitgang, 1);
    EXPECT_TRUE(later.fouten.contains(QStringLiteral("niet te bewaren")));
    EXPECT_TRUE(
        later.uit.startsWith(QStringLiteral("zwart scherm: uit\nregen: uit\ndichtheid: 60%\n")));
}

TEST_F(Sessie, BadUseIsOneDutchLineAndStatusTwo) {
    const auto fout = draai("--wissel-zwart=zebra");
    EXPECT_EQ(fout.uitgang, 2);
    EXPECT_EQ(fout.uit, QString());
    EXPECT_EQ(fout.fouten.count(u'\n'), 1);
    EXPECT_EQ(draai("--versie").uit, QStringLiteral("brixtel-bureau " BRIXTEL_VERSION "\n"));
    EXPECT_TRUE(draai("--help").uit.contains(QStringLiteral("--wissel-regen")));
}

TEST_F(Sessie, ItStartsWithTheSessionIfAsked) {
    const QString pad =
        thuis.filePath(QStringLiteral(".config/autostart/nl.groenlicht.brixtel.bureau.desktop"));
    EXPECT_EQ(draai("--autostart=aan").uitgang, 0);
    QFile ingang(pad);
    ASSERT_TRUE(ingang.open(QIODevice::ReadOnly));
    const QString tekst = QString::fromUtf8(ingang.readAll());
    const QString regel = tekst.section(QStringLiteral("\nExec="), 1).section(u'\n', 0, 0);
    EXPECT_EQ(regel, QStringLiteral("\"" BRIXTEL_BUILD_DIR "/bin/brixtel-bureau\" --dienst"));
    // The entry does nothing once the program is removed.
    EXPECT_TRUE(
        tekst.contains(QStringLiteral("\nTryExec=" BRIXTEL_BUILD_DIR "/bin/brixtel-bureau\n")));
    // Nothing was started for it.
    EXPECT_EQ(draai("--stand").uitgang, 1);
    EXPECT_EQ(draai("--autostart=uit").uitgang, 0);
    EXPECT_FALSE(QFile::exists(pad));
    EXPECT_EQ(draai("--autostart=uit").uitgang, 0);
    // An entry that cannot be written is one line.
    QFile versperring(thuis.filePath(QStringLiteral(".config/autostart")));
    QDir(thuis.path()).rmdir(QStringLiteral(".config/autostart"));
    ASSERT_TRUE(versperring.open(QIODevice::WriteOnly));
    const auto mis = draai("--autostart=aan");
    EXPECT_EQ(mis.uitgang, 1);
    EXPECT_TRUE(mis.fouten.contains(QStringLiteral("kan niet geschreven worden")));
}

TEST_F(Sessie, WithoutABusOrADisplayItSaysSo) {
    QProcess proces;
    QProcessEnvironment waarden = omgeving();
    waarden.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    waarden.insert(QStringLiteral("XDG_RUNTIME_DIR"), QStringLiteral("/nonexistent"));
    proces.setProcessEnvironment(waarden);
    proces.start(QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-bureau"), QStringList());
    ASSERT_TRUE(until([&] { return proces.state() == QProcess::NotRunning; }));
    EXPECT_EQ(proces.exitCode(), 1);
    EXPECT_TRUE(proces.readAllStandardError().contains("er is geen sessiebus"));
    waarden = omgeving();
    waarden.remove(QStringLiteral("DISPLAY"));
    proces.setProcessEnvironment(waarden);
    proces.start(QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-bureau"), QStringList());
    ASSERT_TRUE(until([&] { return proces.state() == QProcess::NotRunning; }));
    EXPECT_EQ(proces.exitCode(), 1);
    EXPECT_TRUE(proces.readAllStandardError().contains("er is geen scherm"));
}

// The server ends with its last client, as the server of a single session does.
TEST_F(Sessie, AnOwnerThatIsTheDisplaysOnlyClientStarts) {
    QProcess alleen;
    alleen.start(QStringLiteral("Xvfb"),
                 QStringLiteral("-displayfd 1 -nolisten tcp -terminate").split(u' '));
    ASSERT_TRUE(until([&] { return alleen.canReadLine(); }));
    QProcessEnvironment waarden = omgeving();
    waarden.insert(QStringLiteral("DISPLAY"),
                   u':' + QString::fromLatin1(alleen.readLine()).trimmed());
    eigenaar.setProcessEnvironment(waarden);
    eigenaar.start(QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-bureau"),
                   {QStringLiteral("--dienst")});
    EXPECT_TRUE(until([this] {
        return draai("--stand").uitgang == 0 || eigenaar.state() == QProcess::NotRunning;
    }));
    EXPECT_EQ(eigenaar.state(), QProcess::Running) << eigenaar.readAllStandardError().constData();
    EXPECT_EQ(draai("--stop").uitgang, 0);
    EXPECT_TRUE(eindigt());
    EXPECT_TRUE(until([&] { return alleen.state() == QProcess::NotRunning; }));
}

TEST_F(Sessie, AnOwnerThatIsKilledLeavesNothingAndANewOneStarts) {
    ASSERT_TRUE(begin({QStringLiteral("--dichtheid=0.5"), QStringLiteral("--toon-zwart")}));
    ASSERT_TRUE(until([this] { return groen() > 0.02; }, 20'000));
    eigenaar.kill();
    ASSERT_TRUE(eindigt());
    EXPECT_TRUE(until([this] { return groen() == 0.0; }));
    EXPECT_TRUE(until([this] { return draai("--stand").uitgang == 1; }));
    ASSERT_TRUE(begin());
    EXPECT_TRUE(meldt("dichtheid: 50%\n"));
}

TEST_F(Sessie, AStartWhileTheOwnerGoesTakesItsPlace) {
    ASSERT_TRUE(begin());
    // The stopped owner hears no calls.
    ::kill(static_cast<pid_t>(eigenaar.processId()), SIGSTOP);
    BusMonitor luisteraar(bus, QStringLiteral("type=method_call,member=ToonZwart"));
    ASSERT_TRUE(luisteraar.isReady());
    QProcess tweede;
    start(tweede, {QStringLiteral("--toon-zwart=kubus")});
    ASSERT_TRUE(luisteraar.hears("member=ToonZwart"));
    eigenaar.kill();
    ASSERT_TRUE(eindigt());
    EXPECT_TRUE(meldt("zwart scherm: aan (kubus)"));
    EXPECT_EQ(tweede.state(), QProcess::Running);
    EXPECT_EQ(draai("--stop").uitgang, 0);
    EXPECT_TRUE(until([&] { return tweede.state() == QProcess::NotRunning; }));
    EXPECT_EQ(tweede.exitCode(), 0);
    EXPECT_EQ(tweede.readAllStandardError(), QByteArray());
}

// Two questions at the same time, since each waits for its answer.
TEST_F(Sessie, AStoppedOwnerIsSaidNotToAnswerAndWhatWasAskedMayFollow) {
    ASSERT_TRUE(begin());
    ::kill(static_cast<pid_t>(eigenaar.processId()), SIGSTOP);
    QProcess wissel, vraag;
    start(wissel, {QStringLiteral("--wissel-regen")});
    start(vraag, {QStringLiteral("--stand")});
    for (QProcess* een : {&wissel, &vraag}) {
        ASSERT_TRUE(until([&] { return een->state() == QProcess::NotRunning; }));
        EXPECT_EQ(een->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(een->exitCode(), 1);
        EXPECT_EQ(een->readAllStandardOutput(), QByteArray());
    }
    EXPECT_EQ(wissel.readAllStandardError().toStdString(),
              "brixtel-bureau: de draaiende brixtel-bureau antwoordt niet; wat gevraagd is kan "
              "later nog gebeuren\n");
    EXPECT_EQ(vraag.readAllStandardError().toStdString(),
              "brixtel-bureau: de draaiende brixtel-bureau antwoordt niet\n");
    ::kill(static_cast<pid_t>(eigenaar.processId()), SIGCONT);
    EXPECT_TRUE(meldt("regen: aan"));
}

TEST_F(Sessie, ASignalEndsItAndTheEndOfTheBusToo) {
    ASSERT_TRUE(begin({QStringLiteral("--toon-zwart")}));
    // The signal of a connection that breaks while the program writes changes nothing.
    ::kill(static_cast<pid_t>(eigenaar.processId()), SIGPIPE);
    ::kill(static_cast<pid_t>(eigenaar.processId()), SIGTERM);
    ASSERT_TRUE(eindigt());
    EXPECT_EQ(eigenaar.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(eigenaar.exitCode(), SIGTERM);
    EXPECT_TRUE(until([this] { return groen() == 0.0; }));
    ASSERT_TRUE(begin());
    bus.stop();
    EXPECT_TRUE(eindigt());
    EXPECT_EQ(eigenaar.exitCode(), 0);
}

TEST_F(Sessie, WithoutArgumentsThePanelOpensAndASecondStartRaisesIt) {
    ASSERT_NO_FATAL_FAILURE(openPaneel());
    EXPECT_TRUE(isPaneelActief());
    const brixtel::VreemdProgramma ander;
    ASSERT_NE(Bureaublad::actief(), paneel);
    EXPECT_EQ(draai(QStringList()).uitgang, 0);
    EXPECT_TRUE(isPaneelActief());
    EXPECT_EQ(panelen(), QList{paneel});
}

// The owner sees an empty folder in the place of Qt's modules.
TEST_F(Sessie, APanelWithoutQtsModulesIsOneLineAndTheOwnerStays) {
    eigenaar.setProcessEnvironment(omgeving());
    eigenaar.start(
        QStringLiteral("unshare"),
        {geteuid() == 0 ? QStringLiteral("-m") : QStringLiteral("-rm"), QStringLiteral("sh"),
         QStringLiteral("-c"), QStringLiteral("mount -t tmpfs none \"$0\" || exit 77; exec \"$@\""),
         QLibraryInfo::path(QLibraryInfo::QmlImportsPath),
         QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-bureau"), QStringLiteral("--dienst")});
    ASSERT_TRUE(until([this] {
        return eigenaar.state() == QProcess::NotRunning || draai("--stand").uitgang == 0;
    }));
    if (eigenaar.state() == QProcess::NotRunning)
        GTEST_SKIP() << "this user may not mount: " << eigenaar.exitCode();
    const auto antwoord = draai("--paneel");
    EXPECT_EQ(antwoord.uitgang, 1);
    EXPECT_EQ(antwoord.fouten.toStdString(),
              "brixtel-bureau: het paneel is niet te tonen: modules van Qt Quick ontbreken\n");
    EXPECT_TRUE(panelen().isEmpty());
    EXPECT_EQ(draai("--stand").uitgang, 0);
}

TEST_F(Sessie, ThePanelFitsOnASmallScreen) {
    ASSERT_NO_FATAL_FAILURE(openPaneel());
    const QByteArray plaats =
        Bureaublad::hulp(QStringLiteral("xdotool getwindowgeometry --shell %1").arg(paneel));
    EXPECT_TRUE(plaats.contains("WIDTH=400\nHEIGHT=560\n")) << plaats.constData();
}

TEST_F(Sessie, APanelOnAnotherDesktopIsGoneTo) {
    const auto bureau = [] {
        return Bureaublad::hulp(QStringLiteral("xdotool get_desktop")).trimmed();
    };
    Bureaublad::hulp(QStringLiteral("xdotool set_num_desktops 2"));
    Bureaublad::hulp(QStringLiteral("xdotool set_desktop 1"));
    ASSERT_TRUE(until([&] { return bureau() == "1"; }));
    ASSERT_NO_FATAL_FAILURE(openPaneel());
    ASSERT_TRUE(isPaneelActief());
    Bureaublad::hulp(QStringLiteral("xdotool set_desktop 0"));
    ASSERT_TRUE(until([&] { return bureau() == "0"; }));
    EXPECT_EQ(draai(QStringList()).uitgang, 0);
    EXPECT_TRUE(until([&] { return bureau() == "1"; }));
    EXPECT_TRUE(isPaneelActief());
}

TEST_F(Sessie, APanelThatFillsTheScreenDoesSoAgainAfterItWasAnIcon) {
    ASSERT_NO_FATAL_FAILURE(openPaneel());
    ASSERT_TRUE(isPaneelActief());
    Bureaublad::vraagBeheer(paneel, "_NET_WM_STATE",
                            {1, Bureaublad::atoom("_NET_WM_STATE_MAXIMIZED_VERT"),
                             Bureaublad::atoom("_NET_WM_STATE_MAXIMIZED_HORZ")});
    const auto isVol = [this] {
        return Bureaublad::hulp(QStringLiteral("xdotool getwindowgeometry --shell %1").arg(paneel))
            .contains("WIDTH=800\n");
    };
    ASSERT_TRUE(until(isVol));
    Bureaublad::hulp(QStringLiteral("xdotool windowminimize %1").arg(paneel));
    ASSERT_TRUE(until([] { return panelen().isEmpty(); }));
    EXPECT_EQ(draai(QStringList()).uitgang, 0);
    ASSERT_TRUE(until([] { return panelen().size() == 1; }));
    ASSERT_TRUE(isPaneelActief());
    EXPECT_TRUE(until(isVol));
    EXPECT_TRUE(Bureaublad::hulp(QStringLiteral("xprop -id %1 _NET_WM_STATE").arg(paneel))
                    .contains("MAXIMIZED_VERT"));
}

TEST_F(Sessie, EscapeClosesThePanelAndTheOwnerStays) {
    ASSERT_NO_FATAL_FAILURE(openPaneel());
    ASSERT_TRUE(until([this] { return Bureaublad::metToetsen() == paneel; }));
    Bureaublad::hulp(QStringLiteral("xdotool key Escape"));
    EXPECT_TRUE(until([] { return panelen().isEmpty(); }));
    EXPECT_EQ(draai("--stand").uitgang, 0);
    EXPECT_EQ(eigenaar.state(), QProcess::Running);
    EXPECT_EQ(draai("--paneel").uitgang, 0);
    EXPECT_TRUE(until([] { return panelen().size() == 1; }, 30'000));
}

TEST_F(Sessie, WhatWaitsToBeWrittenIsKeptWhenTheDisplayGoes) {
    ASSERT_TRUE(begin());
    EXPECT_EQ(draai("--dichtheid=0.25 --snelheid=3").uitgang, 0);
    server.kill();
    ASSERT_TRUE(eindigt());
    EXPECT_EQ(eigenaar.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(eigenaar.exitCode(), 0);
    QFile keuzes(thuis.filePath(QStringLiteral(".config/nl.groenlicht.brixtel.bureau.conf")));
    ASSERT_TRUE(keuzes.open(QIODevice::ReadOnly));
    const QByteArray tekst = keuzes.readAll();
    EXPECT_TRUE(tekst.contains("dichtheid=0.25")) << tekst.constData();
    EXPECT_TRUE(tekst.contains("snelheid=3")) << tekst.constData();
}

TEST_F(Sessie, ThePanelHasARunningPictureOfTheSceneWhileItIsWanted) {
    ASSERT_NO_FATAL_FAILURE(openPaneel());
    // Nothing else in the panel moves.
    for (int keer = 0; keer < 20; ++keer) {
        const QImage voor = beeld();
        EXPECT_TRUE(until([&] { return beeld() != voor; }, 20'000)) << keer;
    }
}

QByteArray geladen(qint64 proces) {
    QFile kaart(QStringLiteral("/proc/%1/maps").arg(proces));
    return kaart.open(QIODevice::ReadOnly) ? kaart.readAll() : QByteArray();
}

TEST_F(Sessie, OnlyAnOwnerThatHasShownItsPanelLoadsQtQuick) {
    ASSERT_TRUE(begin({QStringLiteral("--toon-zwart")}));
    ASSERT_TRUE(until([this] { return groen() > 0.02; }, 20'000));
    const QByteArray voor = geladen(eigenaar.processId());
    ASSERT_TRUE(voor.contains("libQt6Gui"));
    EXPECT_FALSE(voor.contains("libQt6Quick"));
    EXPECT_FALSE(voor.contains("libQt6Qml"));
    EXPECT_FALSE(voor.contains("libQt6Widgets"));
    EXPECT_EQ(draai("--sluit-alles --paneel").uitgang, 0);
    EXPECT_TRUE(
        until([this] { return geladen(eigenaar.processId()).contains("libQt6Quick"); }, 20'000));
}

// The number of turns that the kernel has given each of the owner's threads.
QByteArray beurten(qint64 proces) {
    QByteArray alle;
    const QDir draden(QStringLiteral("/proc/%1/task").arg(proces));
    for (const QString& draad : draden.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile stand(draden.filePath(draad + QStringLiteral("/status")));
        if (!stand.open(QIODevice::ReadOnly)) continue;
        for (const QByteArray& regel : stand.readAll().split('\n'))
            if (regel.contains("ctxt_switches")) alle += draad.toLatin1() + ' ' + regel + '\n';
    }
    return alle;
}

TEST_F(Sessie, AnOwnerThatShowsNothingIsNotWokenOnce) {
    ASSERT_TRUE(bureaublad->startCompositor());
    ASSERT_TRUE(begin({QStringLiteral("--toon-regen"), QStringLiteral("--muziek=aan")}));
    ASSERT_TRUE(until([this] { return groen() > 0.005; }, 20'000));
    EXPECT_EQ(draai("--toon-zwart --sluit-alles").uitgang, 0);
    // A closing effect needs a moment; after it the program stays quiet while twenty other
    // programs come and go.
    EXPECT_TRUE(until(
        [this] {
            const QByteArray voor = beurten(eigenaar.processId());
            for (int keer = 0; keer < 20; ++keer)
                draai("--versie");
            return !voor.isEmpty() && beurten(eigenaar.processId()) == voor;
        },
        60'000));
}

TEST_F(Sessie, AnOpenPanelWithoutItsPictureIsNotWokenOnce) {
    QDir(thuis.path()).mkdir(QStringLiteral(".config"));
    QFile keuzes(thuis.filePath(QStringLiteral(".config/nl.groenlicht.brixtel.bureau.conf")));
    ASSERT_TRUE(keuzes.open(QIODevice::WriteOnly));
    keuzes.write("[General]\nvoorbeeld=uit\n");
    keuzes.close();
    ASSERT_NO_FATAL_FAILURE(openPaneel());
    EXPECT_TRUE(until(
        [this] {
            const QByteArray voor = beurten(eigenaar.processId());
            for (int keer = 0; keer < 20; ++keer)
                draai("--versie");
            return !voor.isEmpty() && beurten(eigenaar.processId()) == voor;
        },
        60'000));
    EXPECT_EQ(panelen().size(), 1);
}

TEST_F(Sessie, AFloodOfCallsDoesNotStopThePictures) {
    ASSERT_TRUE(begin({QStringLiteral("--toon-zwart")}));
    ASSERT_TRUE(until([this] { return groen() > 0.02; }, 20'000));
    QProcess vloed;
    vloed.start(QStringLiteral(BRIXTEL_BUILD_DIR "/tests/programmas/vloed"), {bus.address()});
    QByteArray gezegd;
    const auto duizenden = [&] {
        gezegd += vloed.readAll();
        return gezegd.count('\n');
    };
    ASSERT_TRUE(until([&] { return duizenden() >= 1; }, 30'000));
    for (int keer = 0; keer < 10; ++keer) {
        const QImage voor = beeld();
        EXPECT_TRUE(until([&] { return beeld() != voor; })) << keer;
    }
    const auto voor = duizenden();
    EXPECT_TRUE(until([&] { return duizenden() > voor; }, 30'000));
    // The user closes it all the same.
    EXPECT_EQ(draai("--sluit-alles").uitgang, 0);
    vloed.kill();
    vloed.waitForFinished();
    EXPECT_TRUE(until([this] { return groen() == 0.0; }, 20'000));
}

}  // namespace
