// SPDX-License-Identifier: MIT
// The program whole, without any display.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "tests/hosts/saver/Programma.h"

using brixtel::Programma;

namespace {

QStringList woorden(const QString& regel) {
    return regel.split(u' ', Qt::SkipEmptyParts);
}

TEST(Programma, ABadArgumentGivesOneLineAndExitTwo) {
    Programma programma;
    programma.draai(woorden(QStringLiteral("--keuze=hologram")));
    EXPECT_EQ(programma.uitgang(), 2);
    EXPECT_FALSE(programma.doorSignaal());
    EXPECT_EQ(programma.fouten().count('\n'), 1);
    EXPECT_TRUE(programma.uit().isEmpty());
}

TEST(Programma, ABadArgumentOfSeveralLinesGivesOneLine) {
    Programma programma;
    programma.draai({QStringLiteral("--keuze=a\nb\nc")});
    EXPECT_EQ(programma.uitgang(), 2);
    EXPECT_EQ(programma.fouten().count('\n'), 1);
}

TEST(Programma, WithoutADisplayItSaysSoInOneLine) {
    Programma programma;
    programma.draai({});
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_FALSE(programma.doorSignaal());
    const QByteArray regel = programma.fouten();
    EXPECT_EQ(regel.count('\n'), 1);
    EXPECT_TRUE(regel.startsWith("brixtel-saver: ")) << regel.constData();
}

TEST(Programma, HelpAndVersionNeedNothing) {
    Programma hulp, versie;
    hulp.draai(woorden(QStringLiteral("--help")));
    EXPECT_EQ(hulp.uitgang(), 0);
    EXPECT_TRUE(hulp.uit().contains("--plaatje"));
    versie.draai(woorden(QStringLiteral("-versie")));
    EXPECT_EQ(versie.uitgang(), 0);
    EXPECT_TRUE(versie.uit().startsWith("brixtel-saver 0."));
}

// The loader's account of a start: its `bindings`, which file's function it gives to which file,
// or its `libs`, where it looks for libraries.
QByteArray vanDeLader(const char* wat, const QString& pad = brixtel::programmaPad()) {
    Programma programma({}, pad);
    programma.zet(QStringLiteral("LD_DEBUG"), QLatin1String(wat));
    programma.zet(QStringLiteral("LD_DEBUG_OUTPUT"), programma.map() + QStringLiteral("/lader"));
    programma.draai(woorden(QStringLiteral("--versie")));
    QByteArray regels;
    for (const QFileInfo& bestand :
         QDir(programma.map()).entryInfoList({QStringLiteral("lader*")})) {
        QFile open(bestand.filePath());
        if (open.open(QIODevice::ReadOnly)) regels += open.readAll();
    }
    return regels;
}

TEST(Programma, NoStartWaitsForTheVectorLibraryToMeasureItsTimer) {
    const QByteArray regels = vanDeLader("bindings");
    ASSERT_TRUE(regels.contains("libhwy.so"));
    for (const QByteArray& regel : regels.split('\n')) {
        if (!regel.contains("TimerResolution")) continue;
        EXPECT_TRUE(regel.contains("libbrixtel-platform_render.so")) << regel.constData();
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// Left are the 60 variables of headers and templates, of which a process has one each. Names that
// the linker did not bind would be 1,200 more.
TEST(Programma, NoLibraryOfOursLooksUpWhatItHasItself) {
    int eigen = 0, alle = 0;
    for (const QByteArray& regel : vanDeLader("bindings").split('\n')) {
        static const QRegularExpression zoekt(
            QStringLiteral("binding file (\\S+/libbrixtel-\\S+) .* to (\\S+) "));
        const auto gevonden = zoekt.match(QString::fromUtf8(regel));
        if (!gevonden.hasMatch()) continue;
        ++alle;
        eigen += gevonden.captured(1) == gevonden.captured(2) ? 1 : 0;
    }
    EXPECT_GT(alle, 100);
    EXPECT_LT(eigen, 150);
}
#endif

// A relative name leads into the current folder.
TEST(Programma, NoStartLooksForLibrariesInTheCurrentFolder) {
    for (const QString& pad : {brixtel::programmaPad(), brixtel::bureauPad()}) {
        int gezocht = 0;
        for (const QByteArray& regel : vanDeLader("libs", pad).split('\n')) {
            const auto bestand = regel.indexOf("trying file=");
            if (bestand < 0) continue;
            ++gezocht;
            EXPECT_EQ(regel.at(bestand + 12), '/') << regel.constData();
        }
        EXPECT_GT(gezocht, 20) << qPrintable(pad);
    }
}

TEST(Programma, ConnectionsAsATableOrAsJsonAlsoWhereThereAreNone) {
    Programma tabel, json;
    tabel.zet(QStringLiteral("PATH"), QStringLiteral("/er/niet"));
    tabel.draai(woorden(QStringLiteral("--verbindingen")));
    EXPECT_EQ(tabel.uitgang(), 0);
    EXPECT_FALSE(tabel.uit().isEmpty());
    json.draai(woorden(QStringLiteral("--verbindingen=json")));
    EXPECT_EQ(json.uitgang(), 0);
    const QJsonObject gelezen = QJsonDocument::fromJson(json.uit()).object();
    EXPECT_TRUE(gelezen[QLatin1String("lijnen")].isArray());
    EXPECT_TRUE(gelezen[QLatin1String("totaal")].isDouble());
}

// Draws a still and returns it.
QImage plaatje(const QString& meer) {
    Programma programma;
    const QString bestand = programma.map() + QStringLiteral("/beeld.png");
    programma.draai(QStringList{QStringLiteral("--plaatje"), bestand} + woorden(meer));
    EXPECT_EQ(programma.uitgang(), 0) << programma.fouten().constData();
    return QImage(bestand);
}

TEST(Programma, AStillOfTheRainNeedsNoDisplay) {
    const QImage beeld = plaatje(QStringLiteral("--keuze=regen --maat=640x480 --zaad=1"));
    EXPECT_EQ(beeld.size(), QSize(640, 480));
    EXPECT_TRUE(brixtel::isRegen(beeld));
}

TEST(Programma, TheSameSeedAndTimeGiveTheSameStill) {
    const QString vraag = QStringLiteral("--keuze=regen --maat=400x300 --na=2.5 --zaad=");
    const QImage eerste = plaatje(vraag + u'1');
    EXPECT_EQ(eerste, plaatje(vraag + u'1'));
    EXPECT_NE(eerste, plaatje(vraag + u'2'));
    EXPECT_NE(eerste, plaatje(QStringLiteral("--keuze=regen --maat=400x300 --na=3.5 --zaad=1")));
}

TEST(Programma, AStillAtScaleTwoHasTwiceThePixelsAndIsSharp) {
    const QImage beeld =
        plaatje(QStringLiteral("--keuze=regen --maat=320x240 --schaal=2 --zaad=3"));
    EXPECT_EQ(beeld.size(), QSize(640, 480));
    EXPECT_TRUE(brixtel::isRegen(beeld));
    // Blocks of 2.5 points are five whole pixels: full colour stands beside the
    // soft glow without a half-covered pixel in between.
    int vol = 0;
    for (int y = 0; y < 480; ++y)
        for (int x = 0; x < 640; ++x)
            vol += beeld.pixel(x, y) == qRgb(107, 255, 107) ? 1 : 0;
    EXPECT_GT(vol, 500);
}

TEST(Programma, TheRotatingModeHasAStillToo) {
    EXPECT_FALSE(plaatje(QStringLiteral("--keuze=wisselend --maat=320x240 --zaad=1")).isNull());
}

TEST(Programma, AStillOnTheCpuAndOnOpenGlLookTheSame) {
    const QString vraag = QStringLiteral("--keuze=regen --maat=400x300 --zaad=1 --tekenaar=");
    const QImage cpu = plaatje(vraag + QStringLiteral("cpu"));
    const QImage gl = plaatje(vraag + QStringLiteral("gl"));
    ASSERT_EQ(cpu.size(), gl.size());
    int grootste = 0;
    for (int y = 0; y < cpu.height(); ++y)
        for (int x = 0; x < cpu.width(); ++x)
            grootste =
                std::max(grootste, std::abs(qGreen(cpu.pixel(x, y)) - qGreen(gl.pixel(x, y))));
    EXPECT_LE(grootste, 2);  // the drawers' own stated difference
}

// Lines as --verbindingen=json prints them, to so many places round the world.
QByteArray lijnen(int aantal) {
    QByteArray tekst = R"({"lijnen": [)";
    for (int i = 0; i < aantal; ++i)
        tekst += QByteArray(i > 0 ? "," : "") + R"({"aantal": 1, "code": "US", "breedte": )" +
                 QByteArray::number(40 - 3 * i) + R"(, "lengte": )" + QByteArray::number(-20 * i) +
                 R"(, "programmas": ["proef"]})";
    return tekst + "]}";
}

QImage bolMet(const QByteArray& tekst) {
    Programma programma;
    const QString bron = programma.map() + QStringLiteral("/lijnen.json");
    const QString bestand = programma.map() + QStringLiteral("/bol.png");
    QFile doel(bron);
    EXPECT_TRUE(doel.open(QIODevice::WriteOnly));
    doel.write(tekst);
    doel.close();
    programma.draai({QStringLiteral("--plaatje"), bestand, QStringLiteral("--keuze=bol"),
                     QStringLiteral("--maat=640x360"), QStringLiteral("--zaad=1"),
                     QStringLiteral("--lijnen"), bron});
    EXPECT_EQ(programma.uitgang(), 0) << programma.fouten().constData();
    return QImage(bestand);
}

TEST(Programma, TheGlobeDrawsTheLinesOfAFile) {
    const QImage zonder = bolMet(lijnen(0));
    const QImage met = bolMet(lijnen(6));
    EXPECT_EQ(met, bolMet(lijnen(6)));
    int anders = 0;
    for (int y = 0; y < 360; ++y)
        for (int x = 0; x < 640; ++x)
            anders += std::abs(qGreen(met.pixel(x, y)) - qGreen(zonder.pixel(x, y))) > 40 ? 1 : 0;
    EXPECT_GT(anders, 500);  // arcs and labels
}

TEST(Programma, AFileWithoutLinesIsOneClearLine) {
    // The file is missing, or a folder, or endless.
    const std::pair<const char*, const char*> gevallen[] = {
        {"/er/niet.json", "'/er/niet.json' is niet te lezen: dat is er niet"},
        {"/", "'/' is niet te lezen: dat is een map"},
        {"/dev/zero", "'/dev/zero' is niet te lezen: "}};
    for (const auto& [bestand, verwacht] : gevallen) {
        Programma programma;
        programma.draai({QStringLiteral("--plaatje=") + programma.map() + QStringLiteral("/b.png"),
                         QStringLiteral("--keuze=bol"),
                         QStringLiteral("--lijnen=") + QLatin1String(bestand)});
        EXPECT_EQ(programma.uitgang(), 1);
        const QByteArray regel = programma.fouten();
        EXPECT_EQ(regel.count('\n'), 1);
        EXPECT_TRUE(regel.contains(verwacht)) << regel.constData();
        EXPECT_FALSE(QFileInfo::exists(programma.map() + QStringLiteral("/b.png")));
    }
}

TEST(Programma, AStillThatCannotBeWrittenLeavesNothingBehind) {
    Programma programma;
    const QString map = programma.map() + QStringLiteral("/er/niet");
    programma.draai({QStringLiteral("--plaatje=") + map + QStringLiteral("/beeld.png"),
                     QStringLiteral("--keuze=regen"), QStringLiteral("--maat=64x64")});
    EXPECT_EQ(programma.uitgang(), 1);
    const QByteArray fouten = programma.fouten();
    EXPECT_TRUE(fouten.contains("kan niet geschreven worden"));
    EXPECT_EQ(fouten.count('\n'), 1) << fouten.constData();
    EXPECT_FALSE(QFileInfo::exists(map));
}

TEST(Programma, AStillThatCannotBeWrittenIsSaidBeforeAnythingIsReadOrDrawn) {
    Programma programma;
    programma.draai({QStringLiteral("--plaatje=/er/niet/beeld.png"), QStringLiteral("--keuze=bol"),
                     QStringLiteral("--lijnen=/er/ook/niet.json")});
    EXPECT_EQ(programma.uitgang(), 1);
    const QByteArray fouten = programma.fouten();
    EXPECT_EQ(fouten.count('\n'), 1) << fouten.constData();
    EXPECT_TRUE(fouten.contains("/er/niet/beeld.png")) << fouten.constData();
}

// The words before a program's, so that every write to a disk fails.
QStringList volleSchijf() {
    return {QStringLiteral("/bin/sh"), QStringLiteral("-c"),
            QStringLiteral("trap '' XFSZ; ulimit -f 0; exec \"$@\""), QStringLiteral("sh")};
}

TEST(Programma, OnAFullDiskAStillSaysSoAndTheOldFileStays) {
    Programma programma;
    const QString naam = programma.map() + QStringLiteral("/beeld.png");
    QFile oud(naam);
    ASSERT_TRUE(oud.open(QIODevice::WriteOnly));
    oud.write("oud");
    oud.close();
    for (const QString& vraag :
         {QStringLiteral("--plaatje=%1 --keuze=regen --maat=32x32 --zaad=1").arg(naam),
          QStringLiteral("--instellingen=%1").arg(naam)}) {
        programma.startDoor(volleSchijf(), woorden(vraag));
        ASSERT_TRUE(programma.wacht());
        EXPECT_EQ(programma.uitgang(), 1) << qPrintable(vraag);
        const QByteArray fouten = programma.fouten();
        EXPECT_EQ(fouten.count('\n'), 1) << fouten.constData();
        EXPECT_TRUE(fouten.contains("kan niet geschreven worden")) << fouten.constData();
        ASSERT_TRUE(oud.open(QIODevice::ReadOnly));
        EXPECT_EQ(oud.readAll(), "oud");
        oud.close();
        EXPECT_EQ(QDir(programma.map()).entryList(QDir::Files).size(), 1);
    }
}

// Runs the program with an output onto a full device.
void schrijftNiet(Programma& programma, const char* vraag) {
    programma.startDoor({QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                         QStringLiteral("exec \"$@\" > /dev/full"), QStringLiteral("sh")},
                        {QLatin1String(vraag)});
    ASSERT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 1) << vraag;
    const QByteArray fouten = programma.fouten();
    EXPECT_EQ(fouten.count('\n'), 1) << vraag << fouten.constData();
    EXPECT_TRUE(fouten.contains("de uitvoer is niet te schrijven")) << fouten.constData();
}

TEST(Programma, AnOutputThatCannotBeWrittenIsOneLineAndExitOne) {
    for (const char* vraag : {"--versie", "--help", "--verbindingen", "--verbindingen=json"}) {
        Programma programma;
        schrijftNiet(programma, vraag);
    }
}

TEST(Programma, AnOutputOfTheOwnersThatCannotBeWrittenIsOneLineAndExitOne) {
    for (const char* vraag : {"--versie", "--help"}) {
        Programma bureau({}, brixtel::bureauPad());
        schrijftNiet(bureau, vraag);
    }
}

TEST(Programma, OnAFullDiskTheStartAtLoginSaysSoAndTheOldEntryStays) {
    Programma bureau({}, brixtel::bureauPad());
    const QString map = bureau.map() + QStringLiteral("/.config/autostart");
    QFile oud(map + QStringLiteral("/nl.groenlicht.brixtel.bureau.desktop"));
    ASSERT_TRUE(QDir().mkpath(map));
    ASSERT_TRUE(oud.open(QIODevice::WriteOnly));
    oud.write("oud");
    oud.close();
    bureau.startDoor(volleSchijf(), {QStringLiteral("--autostart=aan")});
    ASSERT_TRUE(bureau.wacht());
    EXPECT_EQ(bureau.uitgang(), 1);
    const QByteArray fouten = bureau.fouten();
    EXPECT_EQ(fouten.count('\n'), 1) << fouten.constData();
    EXPECT_TRUE(fouten.contains("kan niet geschreven worden")) << fouten.constData();
    ASSERT_TRUE(oud.open(QIODevice::ReadOnly));
    EXPECT_EQ(oud.readAll(), "oud");
    EXPECT_EQ(QDir(map).entryList(QDir::Files).size(), 1);
}

TEST(Programma, AnOutputThatIsClosedIsOneDutchLineAndExitOne) {
    for (const char* vraag : {"--versie", "--help"}) {
        Programma programma;
        programma.startDoor({QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                             QStringLiteral("exec \"$@\" >&-"), QStringLiteral("sh")},
                            {QLatin1String(vraag)});
        ASSERT_TRUE(programma.wacht());
        EXPECT_EQ(programma.uitgang(), 1) << vraag;
        EXPECT_EQ(programma.fouten(),
                  "brixtel-saver: de uitvoer is niet te schrijven: dat staat niet open\n");
    }
}

TEST(Programma, SettingsThatCannotBeReadAreOneLineAndTheDefaultsHold) {
    Programma programma;
    ASSERT_TRUE(QDir(programma.map()).mkpath(QStringLiteral(".config")));
    const QString naam =
        programma.map() + QStringLiteral("/.config/nl.groenlicht.brixtel.saver.conf");
    ASSERT_EQ(mkfifo(naam.toLocal8Bit().constData(), 0600), 0);
    const QString beeld = programma.map() + QStringLiteral("/beeld.png");
    programma.draai({QStringLiteral("--instellingen"), beeld});
    EXPECT_EQ(programma.uitgang(), 0);
    const QByteArray fouten = programma.fouten();
    EXPECT_EQ(fouten.count('\n'), 1) << fouten.constData();
    EXPECT_TRUE(fouten.contains("geen gewoon bestand")) << fouten.constData();
    EXPECT_FALSE(QImage(beeld).isNull());
}

// The libraries below would hang or crash.
TEST(Programma, WhereTheKernelRefusesWhatItNeedsItSaysSoInOneLine) {
    for (const char* grens : {"-n 6", "-n 8", "-n 13", "-n 30", "-v 600000"}) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        if (grens[1] == 'v') continue;  // they take terabytes of address space
#endif
        Programma programma;
        programma.startDoor(
            {QStringLiteral("/bin/sh"), QStringLiteral("-c"),
             QStringLiteral("ulimit %1; exec \"$@\"").arg(QLatin1String(grens)),
             QStringLiteral("sh")},
            {QStringLiteral("--plaatje=") + programma.map() + QStringLiteral("/b.png"),
             QStringLiteral("--keuze=bol"), QStringLiteral("--maat=64x64")});
        ASSERT_TRUE(programma.wacht()) << grens;
        EXPECT_EQ(programma.uitgang(), 1) << grens;
        EXPECT_FALSE(programma.doorSignaal()) << grens;
        const QByteArray fouten = programma.fouten();
        EXPECT_EQ(fouten.count('\n'), 1) << grens << fouten.constData();
        EXPECT_TRUE(fouten.startsWith("brixtel-saver: ")) << fouten.constData();
    }
}

TEST(Programma, AChoiceForOneRunIsNotStored) {
    Programma programma;
    programma.draai({QStringLiteral("--plaatje=") + programma.map() + QStringLiteral("/b.png"),
                     QStringLiteral("--keuze=regen"), QStringLiteral("--maat=64x64")});
    EXPECT_EQ(programma.uitgang(), 0);
    EXPECT_TRUE(
        QDir(programma.map() + QStringLiteral("/.config")).entryList(QDir::Files).isEmpty());
}

}  // namespace
