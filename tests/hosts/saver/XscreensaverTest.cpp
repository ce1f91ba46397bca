// SPDX-License-Identifier: MIT
// The real xscreensaver: its daemon and its settings, run as an ordinary user.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QSet>
#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>

#include "platform/time/MediaClock.h"
#include "platform/window/x11/RootWatch.h"
#include "tests/hosts/saver/Programma.h"

using brixtel::isRegen;

namespace {

const QString kGebruiker = QStringLiteral("65534");

// A process of a program that has this home.
struct Proces {
    pid_t nummer;
    QString regel;  // its command line; with "[omgeving]" where it was told a host's window
};

QList<Proces> processen(const QString& thuis, const QString& programma) {
    QList<Proces> gevonden;
    const QDir proc(QStringLiteral("/proc"));
    for (const QString& nummer : proc.entryList({QStringLiteral("[0-9]*")}, QDir::Dirs)) {
        QFile regel(proc.filePath(nummer + QStringLiteral("/cmdline")));
        QFile omgeving(proc.filePath(nummer + QStringLiteral("/environ")));
        if (!regel.open(QIODevice::ReadOnly) || !omgeving.open(QIODevice::ReadOnly)) continue;
        const QByteArray tekst = regel.readAll().replace('\0', ' ');
        const QByteArray waarden = omgeving.readAll();
        if (!tekst.startsWith(QFile::encodeName(programma))) continue;
        if (!waarden.contains("HOME=" + QFile::encodeName(thuis))) continue;
        QString alles = QString::fromUtf8(tekst);
        if (waarden.contains("XSCREENSAVER_WINDOW=")) alles += QStringLiteral("[omgeving]");
        gevonden.push_back({nummer.toInt(), alles});
    }
    return gevonden;
}

QStringList lopende(const QString& thuis, const QString& programma = brixtel::programmaPad()) {
    QStringList regels;
    for (const Proces& proces : processen(thuis, programma))
        regels << proces.regel;
    return regels;
}

// Entries of a folder of proc(5); the open files of a process, say.
qsizetype aantalIn(const QString& map) {
    return QDir(map).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

QByteArray inhoud(const QString& naam) {
    QFile bestand(naam);
    return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
}

class Xscreensaver : public testing::Test {
  protected:
    explicit Xscreensaver(const char* scherm = "1024x768x24") : server(scherm) {}
    Xvfb server;
    QTemporaryDir thuis;
    QProcess daemon;
    QByteArray logboek;

    void SetUp() override {
        if (QFile::exists(QStringLiteral("/usr/bin/xscreensaver")) == false)
            FAIL() << "xscreensaver is not installed";
        QFile instellingen(thuis.path() + QStringLiteral("/.xscreensaver"));
        ASSERT_TRUE(instellingen.open(QIODevice::WriteOnly));
        instellingen.write(
            "timeout:\t0:10:00\ncycle:\t0\nlock:\tFalse\nsplash:\tFalse\nfade:\tFalse\n"
            "unfade:\tFalse\nmode:\tone\nselected:\t0\ndpmsEnabled:\tFalse\nprograms:\t\\\n"
            "  \"Brixtel\"  " +
            QFile::encodeName(brixtel::programmaPad()) + " --root --keuze=regen \\n\\\n");
        instellingen.close();
        if (geteuid() == 0) {
            const auto nummer = kGebruiker.toUInt();
            ASSERT_EQ(chown(QFile::encodeName(thuis.path()), nummer, nummer), 0);
            ASSERT_EQ(chown(QFile::encodeName(instellingen.fileName()), nummer, nummer), 0);
        }
    }
    void TearDown() override {
        opdracht({QStringLiteral("xscreensaver-command"), QStringLiteral("-exit")});
        daemon.terminate();
        daemon.waitForFinished(5000);
        until([this] { return lopende(thuis.path()).isEmpty(); });
    }

    // Starts it as an ordinary user, with nothing in its environment but this.
    void start(QProcess& proces, const QStringList& woorden) const {
        QStringList alles;
        if (geteuid() == 0)
            alles << QStringLiteral("setpriv") << QStringLiteral("--reuid=") + kGebruiker
                  << QStringLiteral("--regid=") + kGebruiker << QStringLiteral("--clear-groups");
        alles << QStringLiteral("env") << QStringLiteral("-i")
              << QStringLiteral("HOME=") + thuis.path()
              << QStringLiteral("DISPLAY=") + server.display()
              << QStringLiteral("PATH=/usr/local/bin:/usr/bin:/bin")
              << QStringLiteral("LANG=C.UTF-8") << QStringLiteral("LIBGL_ALWAYS_SOFTWARE=1");
        alles << woorden;
        proces.start(alles.takeFirst(), alles);
        proces.waitForStarted();
    }
    void opdracht(const QStringList& woorden) const {
        QProcess proces;
        start(proces, woorden);
        proces.waitForFinished(10'000);
    }
    void startDaemon() {
        daemon.setProcessChannelMode(QProcess::MergedChannels);
        QObject::connect(&daemon, &QProcess::readyRead, [this] { logboek += daemon.readAll(); });
        start(daemon, {QStringLiteral("xscreensaver"), QStringLiteral("--no-splash"),
                       QStringLiteral("--verbose")});
        ASSERT_TRUE(until([this] { return logboek.contains("launched xscreensaver-systemd"); }))
            << logboek.constData();
    }
    bool regent() {
        return until([this] { return isRegen(server.picture(server.screen().root)); });
    }
    bool leeg() {
        return until([this] { return lopende(thuis.path()).isEmpty(); });
    }
};

TEST_F(Xscreensaver, TheDaemonShowsTheRainAndNothingIsLeftWhenItStops) {
    startDaemon();
    for (int keer = 0; keer < 5; ++keer) {
        opdracht({QStringLiteral("xscreensaver-command"), QStringLiteral("-activate")});
        ASSERT_TRUE(regent()) << "round " << keer << '\n' << logboek.constData();
        EXPECT_EQ(lopende(thuis.path()).size(), 1);
        opdracht({QStringLiteral("xscreensaver-command"), QStringLiteral("-deactivate")});
        ASSERT_TRUE(leeg()) << "round " << keer;
    }
    // The host's log lines about programs that crashed or ended by themselves.
    for (const char* woord : {"crash", "abnormal", "unexpectedly", "exited with"}) {
        for (const QByteArray& regel : logboek.split('\n'))
            EXPECT_FALSE(regel.contains(woord) && regel.contains("brixtel")) << regel.constData();
    }
}

// The number, from 1, of a program in the host's own list of programs.
int nummerInStandaard(const QByteArray& programma) {
    QFile standaard(QStringLiteral("/etc/X11/app-defaults/XScreenSaver"));
    EXPECT_TRUE(standaard.open(QIODevice::ReadOnly));
    const QByteArray alles = standaard.readAll();
    const qsizetype begin = alles.indexOf("\n*programs:");
    const qsizetype daar = alles.indexOf(programma, begin);
    EXPECT_TRUE(begin >= 0 && daar > begin);
    return static_cast<int>(alles.mid(begin, daar - begin).count("\\n\\\n")) + 1;
}

TEST_F(Xscreensaver, TheDaemonFindsUsOnceRegisteredAndNothingOfItsOwnIsLost) {
    const QString bestand = thuis.path() + QStringLiteral("/.xscreensaver");
    ASSERT_TRUE(QFile::remove(bestand));
    const auto meld = [this](const char* hoe) {
        QProcess proces;
        start(proces, {brixtel::programmaPad(), QLatin1String(hoe)});
        EXPECT_TRUE(proces.waitForFinished(20'000));
        EXPECT_EQ(proces.exitCode(), 0) << proces.readAllStandardError().constData();
    };
    const auto kies = [this](int nummer) {
        opdracht({QStringLiteral("xscreensaver-command"), QStringLiteral("-select"),
                  QString::number(nummer)});
    };
    meld("--aanmelden");
    startDaemon();
    // Alone in the file we are the first; the host's own come after us.
    kies(1);
    EXPECT_TRUE(until([this] { return lopende(thuis.path()).size() == 1; }, 20'000));
    kies(nummerInStandaard("swirl --root") + 1);
    EXPECT_TRUE(leeg());
    EXPECT_TRUE(
        until([this] { return !lopende(thuis.path(), QStringLiteral("swirl --root")).isEmpty(); },
              20'000))
        << logboek.constData();
    EXPECT_FALSE(logboek.contains("unparsable")) << logboek.constData();
    meld("--afmelden");
    EXPECT_FALSE(QFile::exists(bestand));
}

// A daemon that is killed leaves its word that it blanks. Its graphics process goes on and
// covers the display; without both nothing does.
TEST_F(Xscreensaver, KilledItNoLongerCountsAsASaverOnceNothingOfItCoversTheDisplay) {
    platform::RootWatch desktop(server.display());
    startDaemon();
    EXPECT_FALSE(desktop.isSaverOn());
    opdracht({QStringLiteral("xscreensaver-command"), QStringLiteral("-activate")});
    ASSERT_TRUE(until([&] { return desktop.isSaverOn(); })) << logboek.constData();
    ASSERT_TRUE(regent());
    int gemeld = 0;
    const auto volgt = desktop.observe([&](platform::RootWatch::Change wat) {
        gemeld += wat == platform::RootWatch::Change::Saver && !desktop.isSaverOn();
    });
    daemon.kill();
    ASSERT_TRUE(daemon.waitForFinished(5000));
    const QList<Proces> beelden = processen(thuis.path(), QStringLiteral("xscreensaver-gfx"));
    ASSERT_EQ(beelden.size(), 1);
    EXPECT_TRUE(desktop.isSaverOn()) << "its window covers the display";
    ::kill(beelden.front().nummer, SIGKILL);
    EXPECT_TRUE(until([&] { return gemeld > 0; }));
    EXPECT_FALSE(desktop.isSaverOn());
    EXPECT_NE(desktop.property(desktop.root(), "_SCREENSAVER_STATUS"), 0U) << "the word stays";
}

// The remains of rounds of showing and stopping, and the duration of a stop.
class Rondes : public Xscreensaver {
  protected:
    Rondes() : Xscreensaver("640x480x24") {}
    platform::SystemClock klok;
    // Seconds: from the command to the first frame, from the command to the end,
    // and from the daemon's signal to the end. The daemon takes its own time too.
    std::vector<double> starts, stops, eindes;

    [[nodiscard]] QString proc(qint64 nummer, const char* wat) const {
        return QStringLiteral("/proc/%1/%2").arg(nummer).arg(QLatin1String(wat));
    }
    // Files open in the daemon and in the X server, which has one for each client.
    [[nodiscard]] std::pair<qsizetype, qsizetype> open() const {
        return {aantalIn(proc(daemon.processId(), "fd")), aantalIn(proc(server.process(), "fd"))};
    }
    void ronde() {
        const double begin = klok.now();
        opdracht({QStringLiteral("xscreensaver-command"), QStringLiteral("-activate")});
        ASSERT_TRUE(regent()) << logboek.constData();
        starts.push_back(klok.now() - begin);
        ASSERT_EQ(lopende(thuis.path()).size(), 1);
        const double eind = klok.now();
        const qsizetype gelezen = logboek.size();
        opdracht({QStringLiteral("xscreensaver-command"), QStringLiteral("-deactivate")});
        ASSERT_TRUE(until([&] { return logboek.indexOf("killing pid", gelezen) >= 0; }))
            << logboek.mid(gelezen).constData();
        const double signaal = klok.now();
        ASSERT_TRUE(leeg());
        eindes.push_back(klok.now() - signaal);
        stops.push_back(klok.now() - eind);
        if (stops.back() > kTraag)
            std::printf("a stop of %.3f s, of it %.3f s the end, of which the daemon says:\n%s",
                        stops.back(), eindes.back(), logboek.mid(gelezen).constData());
        // The saver's picture goes with the daemon's window, a moment later.
        ASSERT_TRUE(until([this] { return !isRegen(server.picture(server.screen().root)); }));
    }
    static constexpr double kTraag = 0.2;  // seconds
    void meld(const char* wat, std::vector<double>& tijden) {
        std::sort(tijden.begin(), tijden.end());
        const auto ms = [](double s) { return static_cast<int>(std::lround(s * 1000)); };
        const auto traag =
            std::count_if(tijden.begin(), tijden.end(), [](double tijd) { return tijd > kTraag; });
        std::printf(
            "%s: %zu times, median %d ms, 99 of 100 within %d ms, worst %d ms, "
            "%td above 200 ms\n",
            wat, tijden.size(), ms(tijden[tijden.size() / 2]), ms(tijden[tijden.size() * 99 / 100]),
            ms(tijden.back()), traag);
        RecordProperty(wat, ms(tijden.back()));
    }
};

TEST_F(Rondes, LeaveNoProcessNoFileNoMemoryAndNoCrashBehind) {
    startDaemon();
    // The first rounds load what the daemon and the server then keep.
    for (int i = 0; i < 2; ++i)
        ASSERT_NO_FATAL_FAILURE(ronde());
    starts.clear();
    stops.clear();
    eindes.clear();
    const auto voor = open();
    const int rondes = std::max(1, qEnvironmentVariableIntValue("BRIXTEL_RONDES"));
    const int aantal = qEnvironmentVariableIsSet("BRIXTEL_RONDES") ? rondes : 20;
    for (int i = 0; i < aantal; ++i)
        ASSERT_NO_FATAL_FAILURE(ronde()) << "round " << i;
    // The daemon ends its own helpers shortly after.
    EXPECT_TRUE(until([&] {
        const auto nu = open();
        return nu.first <= voor.first && nu.second <= voor.second;
    })) << open().first
        << '/' << voor.first << ' ' << open().second << '/' << voor.second;
    // The server lets go of a client's memory when it finds the client gone.
    EXPECT_TRUE(
        until([&] { return !inhoud(proc(server.process(), "maps")).contains("memfd:window"); }));
    EXPECT_TRUE(lopende(thuis.path()).isEmpty());
    for (const char* woord : {"crash", "abnormal", "unexpectedly", "exited with"})
        for (const QByteArray& regel : logboek.split('\n'))
            EXPECT_FALSE(regel.contains(woord) && regel.contains("brixtel")) << regel.constData();
    meld("start", starts);
    meld("stop", stops);
    meld("end", eindes);
}

TEST_F(Xscreensaver, ItsSettingsPreviewGetsBothSwitchesAndTheRain) {
    startDaemon();
    QProcess instellingen;
    start(instellingen, {QStringLiteral("xscreensaver-settings")});
    ASSERT_TRUE(until([this] { return !lopende(thuis.path()).isEmpty(); }, 20'000))
        << instellingen.readAllStandardError().constData();
    const QString regel = lopende(thuis.path()).first();
    EXPECT_TRUE(regel.contains(QStringLiteral("--root"))) << qPrintable(regel);
    EXPECT_TRUE(regel.contains(QStringLiteral("-window-id")) ||
                regel.contains(QStringLiteral("[omgeving]")))
        << qPrintable(regel);
    // The preview is a small part of the screen, the rain a small part of that.
    EXPECT_TRUE(until(
        [this] { return brixtel::aandeelGroen(server.picture(server.screen().root)) > 0.002; }));
    instellingen.terminate();
    instellingen.waitForFinished(5000);
    EXPECT_TRUE(leeg());
}

}  // namespace
