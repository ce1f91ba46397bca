// SPDX-License-Identifier: MIT
// The real xscreensaver: its daemon and its settings, run as an ordinary user.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include "tests/hosts/saver/Programma.h"

using brixtel::isRegen;

namespace {

const QString kGebruiker = QStringLiteral("65534");

// The processes of a program, by their command line.
QStringList lopende(const QString& thuis, const QString& programma = brixtel::programmaPad()) {
    QStringList regels;
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
        regels << alles;
    }
    return regels;
}

class Xscreensaver : public testing::Test {
  protected:
    Xvfb server{"1024x768x24"};
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
    // What its log says of a program that crashed or ended by itself.
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
