// SPDX-License-Identifier: MIT
// The configuration sheet as the program shows it, by itself and beside a saver
// at work, with a real keyboard and pointer.
#include <signal.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <algorithm>
#include <array>

#include "tests/hosts/saver/Scherm.h"

using brixtel::Programma;
using brixtel::Scherm;

namespace {

QByteArray inhoud(const QString& naam) {
    QFile bestand(naam);
    return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
}

// Processes whose parent is this one.
QList<qint64> kinderen(qint64 ouder) {
    QList<qint64> alle;
    for (const QString& nummer :
         QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs)) {
        const QByteArray stand = inhoud(QStringLiteral("/proc/%1/stat").arg(nummer));
        const auto velden = stand.mid(stand.lastIndexOf(')') + 2).split(' ');
        if (velden.value(1).toLongLong() == ouder) alle << nummer.toLongLong();
    }
    return alle;
}

bool heeftWidgets(qint64 nummer) {
    return inhoud(QStringLiteral("/proc/%1/maps").arg(nummer)).contains("libQt6Widgets");
}

class Instellingen : public Scherm {
  protected:
    [[nodiscard]] QString bestand() const {
        return programma.map() + QStringLiteral("/.config/nl.groenlicht.brixtel.saver.conf");
    }
    void bewaar(const char* keuze) const {
        QDir().mkpath(programma.map() + QStringLiteral("/.config"));
        QFile doel(bestand());
        ASSERT_TRUE(doel.open(QIODevice::WriteOnly));
        doel.write(QByteArray("[General]\nkeuze=") + keuze + '\n');
    }
    bool toont(int aantal) {
        return until([&] { return vensters() == aantal; }, 20'000);
    }
    // The sheet has the keyboard.
    bool bladIsActief() {
        return until(
            [&] {
                const QByteArray actief =
                    hulp({QStringLiteral("xdotool"), QStringLiteral("getactivewindow"),
                          QStringLiteral("getwindowgeometry")});
                return actief.contains("380x286");
            },
            20'000);
    }
    // The name of the program's only window.
    QByteArray titelVan() const {
        return hulp({QStringLiteral("xdotool"), QStringLiteral("search"),
                     QStringLiteral("--onlyvisible"), QStringLiteral("--class"),
                     QStringLiteral("^brixtel-saver$"), QStringLiteral("getwindowname")});
    }
    bool heet(const char* naam) {
        return until([&] { return titelVan().startsWith(naam); }, 20'000);
    }
    bool vultHetScherm() {
        return until(
            [this] {
                return hulp({QStringLiteral("xdotool"), QStringLiteral("search"),
                             QStringLiteral("--onlyvisible"), QStringLiteral("--class"),
                             QStringLiteral("^brixtel-saver$"),
                             QStringLiteral("getwindowgeometry")})
                    .contains("1280x800");
            },
            20'000);
    }
    bool kubus() {
        return until([this] { return groenInHoek() == 0.0 && groenAlles() > 0.0; }, 20'000);
    }
    // The share of green in a corner that the rain reaches and a scene in the middle does not.
    double groenInHoek() const {
        return brixtel::aandeelGroen(server.picture(server.screen().root).copy(0, 600, 200, 200));
    }
    double groenAlles() const {
        return brixtel::aandeelGroen(server.picture(server.screen().root));
    }
};

TEST_F(Instellingen, ByItselfItStoresWhatIsChosenAndEnds) {
    bewaar("kubus");
    programma.start({QStringLiteral("--instellingen")});
    ASSERT_TRUE(toont(1));
    ASSERT_TRUE(bladIsActief());
    xdotool("key Down");
    xdotool("key Return");
    ASSERT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
    EXPECT_FALSE(programma.doorSignaal());
    EXPECT_TRUE(inhoud(bestand()).contains("keuze=tunnel"));
    EXPECT_TRUE(programma.fouten().isEmpty());
}

TEST_F(Instellingen, EscapeAndTheWindowManagerDoNotCloseItAndSigtermEndsItBySigterm) {
    programma.start({QStringLiteral("--instellingen")});
    ASSERT_TRUE(toont(1));
    ASSERT_TRUE(bladIsActief());
    xdotool("key Escape");
    xdotool("key alt+F4");
    EXPECT_FALSE(programma.wacht(300));
    kill(static_cast<pid_t>(programma.nummer()), SIGTERM);
    ASSERT_TRUE(programma.wacht());
    EXPECT_TRUE(programma.doorSignaal());
    EXPECT_EQ(programma.uitgang(), SIGTERM);
    EXPECT_FALSE(QFile::exists(bestand()));
}

TEST_F(Instellingen, TheSaverLoadsNoWidgetsAndTheSheetDoes) {
    bewaar("regen");
    programma.start({});
    ASSERT_TRUE(regent());
    EXPECT_FALSE(heeftWidgets(programma.nummer()));
    xdotool("key i");
    ASSERT_TRUE(bladIsActief());
    ASSERT_EQ(kinderen(programma.nummer()).size(), 1);
    EXPECT_TRUE(heeftWidgets(kinderen(programma.nummer()).first()));
    EXPECT_FALSE(heeftWidgets(programma.nummer()));
}

TEST_F(Instellingen, InFullScreenTheKeyIBringsItAndTheSaverSwitchesAtOnce) {
    bewaar("bol");
    programma.start({QStringLiteral("--keuze=kubus")});
    ASSERT_TRUE(kubus());
    xdotool("key i");
    ASSERT_TRUE(bladIsActief());
    // The mouse is now for the sheet.
    xdotool("mousemove 100 100");
    xdotool("mousemove 700 500");
    xdotool("key Up");
    xdotool("key Return");
    EXPECT_TRUE(until([this] { return groenInHoek() > 0.005; }, 20'000));
    EXPECT_TRUE(inhoud(bestand()).contains("keuze=regen"));
    EXPECT_TRUE(until([this] { return kinderen(programma.nummer()).isEmpty(); }));
    EXPECT_TRUE(programma.loopt());
    xdotool("key a");
    EXPECT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
}

TEST_F(Instellingen, InAWindowTheKeyIBringsItTooAndTheTitleFollows) {
    bewaar("bol");
    programma.start({QStringLiteral("--venster=1200x760"), QStringLiteral("--keuze=kubus")});
    ASSERT_TRUE(toont(1));
    EXPECT_TRUE(heet("Kubus van bits"));
    xdotool("key i");
    ASSERT_TRUE(bladIsActief());
    // One sheet at a time: the saver's window below asks in vain.
    xdotool("key Up");
    xdotool("key Return");
    EXPECT_TRUE(until([this] { return groenInHoek() > 0.005; }, 20'000));
    EXPECT_TRUE(toont(1));
    EXPECT_TRUE(heet("Matrix-regen"));
    EXPECT_TRUE(programma.loopt());
}

TEST_F(Instellingen, AWindowThatChangesItsSceneIsNamedAfterTheScene) {
    bewaar("wisselend");
    programma.start({QStringLiteral("--venster=400x300")});
    ASSERT_TRUE(toont(1));
    constexpr std::array kScenes{"Matrix-regen", "Wereldbol met verbindingen", "Kubus van bits",
                                 "Matrix-tunnel", "Brixtel-logo"};
    EXPECT_TRUE(until([&] {
        const QByteArray titel = titelVan();
        return std::any_of(kScenes.begin(), kScenes.end(),
                           [&](const char* scene) { return titel.startsWith(scene); });
    })) << titelVan().toStdString();
}

TEST_F(Instellingen, AboveAWindowThatDoesNotExistThereIsNoSheet) {
    programma.start({QStringLiteral("--instellingen"), QStringLiteral("--boven=99999999")});
    ASSERT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_EQ(programma.fouten(), QByteArray("brixtel-saver: er is geen venster 99999999\n"));
}

TEST_F(Instellingen, APickHoldsForThisRunWhereItCannotBeStored) {
    bewaar("bol");
    const QString map = QFileInfo(bestand()).path();
    ASSERT_TRUE(QFile::setPermissions(map, QFile::ReadOwner | QFile::ExeOwner));
    // The superuser is held to permissions too.
    const QStringList door =
        geteuid() == 0
            ? QStringList{QStringLiteral("setpriv"), QStringLiteral("--bounding-set=-dac_override")}
            : QStringList();
    programma.startDoor(door,
                        {QStringLiteral("--venster=1200x760"), QStringLiteral("--keuze=kubus")});
    ASSERT_TRUE(kubus());
    xdotool("key i");
    ASSERT_TRUE(bladIsActief());
    xdotool("key Up");
    xdotool("key Return");
    EXPECT_TRUE(until([this] { return groenInHoek() > 0.005; }, 20'000));
    EXPECT_TRUE(heet("Matrix-regen"));
    EXPECT_TRUE(inhoud(bestand()).contains("keuze=bol"));
    // Another window of the program asks anew which choice holds.
    ASSERT_TRUE(until([this] { return kinderen(programma.nummer()).isEmpty(); }));
    xdotool("key F11");
    EXPECT_TRUE(vultHetScherm());
    EXPECT_TRUE(heet("Matrix-regen"));
    EXPECT_TRUE(until([this] { return groenInHoek() > 0.005; }, 20'000));
    QFile::setPermissions(map, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST_F(Instellingen, ItEndsWithTheSaverHoweverThatEnds) {
    for (const int signaal : {SIGTERM, SIGKILL}) {
        programma.start({QStringLiteral("--keuze=regen")});
        ASSERT_TRUE(regent());
        xdotool("key i");
        ASSERT_TRUE(bladIsActief());
        const auto blad = kinderen(programma.nummer());
        ASSERT_EQ(blad.size(), 1);
        kill(static_cast<pid_t>(programma.nummer()), signaal);
        ASSERT_TRUE(programma.wacht());
        EXPECT_TRUE(until([&] {
            const QByteArray stand = inhoud(QStringLiteral("/proc/%1/stat").arg(blad.first()));
            return stand.isEmpty() || stand.contains(") Z ");
        }));
    }
}

TEST(InstellingenPlaatje, NeedsNoDisplayAndIsSharpAtEveryScale) {
    Programma programma;
    const QString naam = programma.map() + QStringLiteral("/blad.png");
    programma.draai({QStringLiteral("--instellingen"), naam});
    EXPECT_EQ(programma.uitgang(), 0) << programma.fouten().constData();
    EXPECT_EQ(QImage(naam).size(), QSize(380, 286));
    programma.draai({QStringLiteral("--instellingen=") + naam, QStringLiteral("--schaal=2")});
    EXPECT_EQ(QImage(naam).size(), QSize(760, 572));
    EXPECT_GT(brixtel::aandeelGroen(QImage(naam)), 0.01);
}

}  // namespace
