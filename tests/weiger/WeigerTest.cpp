// SPDX-License-Identifier: MIT
// Both programs from their start to their first picture, with one call refused: a line and
// exit status 1, or a picture, and neither a crash nor a hang.
//
// A few places are tried for each kind of call. With BRIXTEL_WEIGER_MEEST=N in the
// environment N are: all of them, or a seeded choice where there are more.
#include <gtest/gtest.h>
#include <signal.h>

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <numeric>
#include <optional>
#include <random>

#include "tests/support/DBusDaemon.h"
#include "tests/support/Paden.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace {

constexpr int kGeduld = 30'000;  // milliseconds until a program counts as hanging
constexpr int kMeest = 4;

const QString kBeeld = QStringLiteral("x.png");

// In the order of the library's counts.
constexpr std::array kSoorten{"geheugen", "open", "socket", "mmap", "shm", "draad", "groot"};
constexpr std::size_t kGroot = 6;  // memory of a MiB or more
using Tellingen = std::array<std::uint64_t, kSoorten.size()>;

int meest() {
    bool is = false;
    const int gevraagd = qEnvironmentVariableIntValue("BRIXTEL_WEIGER_MEEST", &is);
    return is ? gevraagd : kMeest;
}

// The places 1 to `aantal`, or a choice of them that is the same in every run.
std::vector<std::uint64_t> plaatsen(std::uint64_t aantal, int hoogstens) {
    std::vector<std::uint64_t> alle(aantal);
    std::iota(alle.begin(), alle.end(), 1U);
    std::vector<std::uint64_t> keus;
    std::mt19937_64 toeval(1);
    std::sample(alle.begin(), alle.end(), std::back_inserter(keus), hoogstens, toeval);
    return keus;
}

struct Afloop {
    bool hangt = false, doorSignaal = false;
    bool isBestand = false, isBeeld = false;  // of the picture that was asked for
    int uitgang = 0;
    QByteArray fouten;
    Tellingen tellingen{};
};

class Weiger : public testing::Test {
  protected:
    Xvfb server_{"320x240x24"};
    DBusDaemon bus_;

    void SetUp() override {
        ASSERT_TRUE(server_.isRunning());
        ASSERT_FALSE(bus_.address().isEmpty());
    }

    // `blijft`: shows a window until it is ended.
    struct Geval {
        QString programma;
        QStringList woorden;
        bool blijft = false;
        // Qt's QML engine crashes where it is refused a mapping.
        bool metQml = false;
    };

    Afloop draai(const Geval& geval, const QString& weigering) const {
        const QTemporaryDir thuis;
        const QString teller = thuis.filePath(QStringLiteral("teller"));
        QFile(teller).open(QIODevice::WriteOnly);
        QFile::resize(teller, sizeof(Tellingen));
        QProcess proces;
        proces.setProcessEnvironment(omgeving(thuis.path(), teller, weigering));
        QStringList woorden = geval.woorden;
        woorden.replaceInStrings(QStringLiteral("@"), thuis.path());
        proces.start(QStringLiteral(BRIXTEL_BUILD_DIR "/bin/") + geval.programma, woorden);
        const auto klaar = [&] { return proces.state() == QProcess::NotRunning; };
        Afloop uit;
        if (geval.blijft) {
            uit.hangt =
                !until([&] { return klaar() || !server_.mappedWindows().empty(); }, kGeduld);
            if (!klaar()) ::kill(static_cast<pid_t>(proces.processId()), SIGTERM);
        }
        uit.hangt = !until(klaar, kGeduld) || uit.hangt;
        if (!klaar()) {
            proces.kill();
            proces.waitForFinished();
        }
        uit.doorSignaal = proces.exitStatus() == QProcess::CrashExit;
        uit.uitgang = proces.exitCode();
        uit.fouten = proces.readAllStandardError();
        const QString beeld = thuis.filePath(kBeeld);
        uit.isBestand = QFile::exists(beeld);
        uit.isBeeld = !QImage(beeld).isNull();
        QFile tellingen(teller);
        if (tellingen.open(QIODevice::ReadOnly)) {
            const QByteArray bytes = tellingen.readAll();
            std::memcpy(&uit.tellingen, bytes.constData(), sizeof uit.tellingen);
        }
        return uit;
    }

    // Places of every kind: that one call refused, and all from there on.
    void weigerOveral(const Geval& geval) const {
        const Tellingen aantal = tel(geval);
        EXPECT_GT(aantal[0], 50U);
        for (std::size_t soort = 0; soort < kGroot; ++soort) {
            if (geval.metQml && qstrcmp(kSoorten[soort], "mmap") == 0) continue;
            weiger(geval, soort, plaatsen(aantal[soort], meest()), aantal[soort]);
        }
    }

    // All large memory that a scene asks for.
    void weigerGroot(const Geval& geval) const {
        const std::uint64_t aantal = tel(geval)[kGroot];
        EXPECT_GT(aantal, 2U);
        weiger(geval, kGroot, plaatsen(aantal, static_cast<int>(aantal)), aantal);
    }

  private:
    [[nodiscard]] Tellingen tel(const Geval& geval) const {
        const Afloop gewoon = draai(geval, {});
        EXPECT_FALSE(gewoon.hangt) << gewoon.fouten.constData();
        EXPECT_TRUE(isGoed(geval, gewoon)) << gewoon.fouten.constData();
        return gewoon.tellingen;
    }

    void weiger(const Geval& geval, std::size_t soort, const std::vector<std::uint64_t>& waar,
                std::uint64_t van) const {
        std::map<QByteArray, int> uitkomsten;
        for (const std::uint64_t n : waar)
            for (const char* verder : {"", "+"}) {
                if (*verder && !isVerder(soort)) continue;
                const QString weigering = QStringLiteral("%1:%2%3")
                                              .arg(QLatin1String(kSoorten[soort]))
                                              .arg(n)
                                              .arg(QLatin1String(verder));
                const Afloop afloop = draai(geval, weigering);
                EXPECT_FALSE(afloop.hangt) << qPrintable(weigering);
                EXPECT_TRUE(isGoed(geval, afloop) || isGezegd(geval, afloop))
                    << qPrintable(weigering) << ": " << afloop.uitgang << afloop.fouten.constData();
                ++uitkomsten[isGoed(geval, afloop) ? QByteArray("een beeld") : afloop.fouten];
            }
        std::printf("%s: %zu van %llu plaatsen\n", kSoorten[soort], waar.size(),
                    static_cast<unsigned long long>(van));
        for (const auto& [uitkomst, aantal] : uitkomsten)
            std::printf("  %4d %s\n", aantal, uitkomst.trimmed().constData());
    }

    // Without any descriptor GLib ends the process by a trap: a single call that is refused
    // is tried there, and for mappings.
    static bool isVerder(std::size_t soort) {
        return qstrcmp(kSoorten[soort], "open") != 0 && qstrcmp(kSoorten[soort], "mmap") != 0;
    }
    static bool isGoed(const Geval& geval, const Afloop& afloop) {
        if (afloop.doorSignaal) return geval.blijft && afloop.uitgang == SIGTERM;
        return afloop.uitgang == 0 && afloop.isBeeld == wilBeeld(geval);
    }
    static bool wilBeeld(const Geval& geval) { return !geval.woorden.filter(kBeeld).isEmpty(); }
    // One line, of the program itself, and no part of a picture. A call that is refused after
    // the picture was written leaves all of the picture.
    static bool isGezegd(const Geval& geval, const Afloop& afloop) {
        return !afloop.doorSignaal && afloop.uitgang == 1 && afloop.fouten.count('\n') == 1 &&
               afloop.fouten.startsWith(geval.programma.toUtf8() + ": ") &&
               afloop.isBestand == afloop.isBeeld;
    }

    [[nodiscard]] QProcessEnvironment omgeving(const QString& thuis, const QString& teller,
                                               const QString& weigering) const {
        QProcessEnvironment waarden;
        for (const auto& [naam, waarde] : std::initializer_list<std::pair<const char*, QString>>{
                 {"PATH", qEnvironmentVariable("PATH")},
                 {"HOME", thuis},
                 {"XDG_RUNTIME_DIR", thuis},
                 {"LANG", QStringLiteral("C.UTF-8")},
                 {"LIBGL_ALWAYS_SOFTWARE", QStringLiteral("1")},
                 {"DISPLAY", server_.display()},
                 {"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
                 {"PULSE_SERVER", QStringLiteral("unix:/nonexistent")},
                 {"LD_PRELOAD", QStringLiteral(BRIXTEL_BUILD_DIR "/tests/weiger.so")},
                 {"BRIXTEL_WEIGER_TEL", teller},
                 {"BRIXTEL_WEIGER", weigering}})
            waarden.insert(QLatin1String(naam), waarde);
        return waarden;
    }
};

const QString kSaver = QStringLiteral("brixtel-saver");
const QString kBureau = QStringLiteral("brixtel-bureau");

QStringList woorden(const char* regel) {
    return QString::fromLatin1(regel).split(u' ');
}

TEST_F(Weiger, AStillOfTheRain) {
    weigerOveral({kSaver, woorden("--plaatje=@/x.png --keuze=regen --maat=96x64 --na=0.5")});
}

TEST_F(Weiger, AStillOfAScene) {
    weigerOveral({kSaver, woorden("--plaatje=@/x.png --keuze=bol --maat=96x64 --na=0.5")});
}

TEST_F(Weiger, TheRainInAWindow) {
    weigerOveral({kSaver, woorden("--venster=96x64 --keuze=regen --seconden=0.1")});
}

TEST_F(Weiger, ASceneInAWindow) {
    weigerOveral({kSaver, woorden("--venster=96x64 --keuze=kubus --seconden=0.1")});
}

TEST_F(Weiger, TheMemoryOfAGlobe) {
    weigerGroot({kSaver, woorden("--venster=1024x640 --keuze=bol --seconden=0.1")});
}

TEST_F(Weiger, TheMemoryOfACube) {
    weigerGroot({kSaver, woorden("--venster=1024x640 --keuze=kubus --seconden=0.1")});
}

TEST_F(Weiger, TheMemoryOfATunnel) {
    weigerGroot({kSaver, woorden("--venster=1024x640 --keuze=tunnel --seconden=0.1")});
}

TEST_F(Weiger, TheMemoryOfALogo) {
    weigerGroot({kSaver, woorden("--venster=1024x640 --keuze=logo --seconden=0.1")});
}

TEST_F(Weiger, TheMemoryOfAStill) {
    weigerGroot({kSaver, woorden("--plaatje=@/x.png --keuze=tunnel --maat=1024x640 --na=0.5")});
}

TEST_F(Weiger, TheWholeScreen) {
    weigerOveral({kSaver, woorden("--keuze=tunnel"), true});
}

TEST_F(Weiger, APictureOfTheSheet) {
    weigerOveral({kSaver, woorden("--instellingen=@/x.png")});
}

TEST_F(Weiger, TheConnections) {
    weigerOveral({kSaver, woorden("--verbindingen")});
}

TEST_F(Weiger, TheOwnersBlackScreen) {
    weigerOveral({kBureau, woorden("--toon-zwart"), true});
}

TEST_F(Weiger, TheOwnersPanel) {
    weigerOveral({kBureau, woorden("--paneel"), true, true});
}

}  // namespace
