// SPDX-License-Identifier: MIT
#include "hosts/saver/Film.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>

#include "tests/hosts/saver/Programma.h"

using brixtel::filmLengte;
using brixtel::leesOpdracht;
using brixtel::Opdracht;
using brixtel::Programma;

namespace {

Opdracht gelezen(const QString& regel) {
    const auto opdracht = leesOpdracht(regel.split(QLatin1Char(' ')), {});
    EXPECT_TRUE(std::holds_alternative<Opdracht>(opdracht)) << qPrintable(regel);
    return std::get<Opdracht>(opdracht);
}

TEST(FilmLengteTest, IsAsManyPicturesAsItsSecondsHave) {
    const auto lengte =
        filmLengte(gelezen(QStringLiteral("--film=x.webm --keuze=bol --seconden=2.5 --fps=24")));
    EXPECT_EQ(lengte.beelden, 60);
    EXPECT_EQ(lengte.begin, 6.0);
}

TEST(FilmLengteTest, ALoopLastsAsLongAsTheScenesPeriodAndBeginsWithinIt) {
    const auto lengte =
        filmLengte(gelezen(QStringLiteral("--film=x.webm --keuze=logo --lus --na=1")));
    EXPECT_EQ(lengte.duur, 72.0);
    EXPECT_EQ(lengte.beelden, 72 * 30);
    EXPECT_GE(lengte.begin, 8.0);
    const auto bol = filmLengte(gelezen(QStringLiteral("--film=x.webm --keuze=bol --lus")));
    EXPECT_EQ(bol.duur, 420.0);
}

TEST(FfmpegWoordenTest, SayWhatComesInAndWhatIsToBeMade) {
    for (const char* einde : {"webm", "mp4", "gif", "webp"}) {
        const QString naam = QStringLiteral("Film.") + QString::fromLatin1(einde).toUpper();
        const QString regel =
            brixtel::ffmpegWoorden(naam, QStringLiteral("/map/-x"), {321, 200}, 25)
                .join(QLatin1Char(' '));
        EXPECT_TRUE(regel.contains(QStringLiteral("-pix_fmt bgr0 -s 321x200 -r 25 -i -")));
        EXPECT_TRUE(regel.endsWith(QStringLiteral("-f %1 file:/map/-x").arg(QLatin1String(einde))))
            << qPrintable(regel);
    }
}

// The program with a stand-in for ffmpeg alone in the PATH.
class FilmTest : public testing::Test {
  protected:
    QTemporaryDir map;
    Programma programma;

    void SetUp() override { programma.zet(QStringLiteral("PATH"), map.path()); }
    [[nodiscard]] QString in(const char* naam) const { return map.filePath(QLatin1String(naam)); }
    [[nodiscard]] QStringList bestanden() const {
        return QDir(map.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    void maakOud() const {
        QFile oud(in("f.webm"));
        ASSERT_TRUE(oud.open(QIODevice::WriteOnly));
        oud.write("oud");
    }
    [[nodiscard]] QByteArray inhoud(const char* naam) const {
        QFile bestand(in(naam));
        return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
    }
    void maakFfmpeg(const char* tekst) const {
        QFile bestand(in("ffmpeg"));
        ASSERT_TRUE(bestand.open(QIODevice::WriteOnly));
        bestand.write("#!/bin/sh\nfor w; do uit=${w#file:}; done\n");
        bestand.write(tekst);
        bestand.setPermissions(bestand.permissions() | QFile::ExeOwner);
    }
};

// A film that does not name its matrix has another green in players of large pictures.
TEST(FfmpegWoordenTest, NameTheColoursOfVideo) {
    for (const char* naam : {"x.webm", "x.mp4"}) {
        const QStringList woorden =
            brixtel::ffmpegWoorden(QLatin1String(naam), QStringLiteral("/k"), {1280, 720}, 25);
        for (const char* woord : {"-colorspace", "-color_primaries", "-color_trc"}) {
            const qsizetype plek = woorden.indexOf(QLatin1String(woord));
            ASSERT_GE(plek, 0) << naam << ' ' << woord;
            EXPECT_EQ(woorden.at(plek + 1), QStringLiteral("bt709"));
        }
        EXPECT_TRUE(
            woorden.join(QLatin1Char(' ')).contains(QStringLiteral("out_color_matrix=bt709")));
    }
}

// Without the word, ffmpeg ends well on a disk that fills up at the film's last bytes.
TEST(FfmpegWoordenTest, EndFfmpegAtItsFirstError) {
    for (const char* naam : {"x.webm", "x.mp4", "x.gif", "x.webp"})
        EXPECT_TRUE(
            brixtel::ffmpegWoorden(QLatin1String(naam), QStringLiteral("/k"), {320, 200}, 25)
                .contains(QStringLiteral("-xerror")))
            << naam;
}

TEST_F(FilmTest, EveryPictureGoesThroughThePipe) {
    maakFfmpeg("/bin/cat > \"$uit\"\n");
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--maat=64x48"), QStringLiteral("--seconden=0.5"),
                     QStringLiteral("--fps=10"), QStringLiteral("--zaad=1")});
    EXPECT_EQ(programma.uitgang(), 0);
    const QByteArray film = inhoud("f.webm");
    constexpr qsizetype kBeeld = 64 * 48 * 4;
    ASSERT_EQ(film.size(), 5 * kBeeld);
    EXPECT_NE(film.left(kBeeld), film.mid(kBeeld, kBeeld));
    EXPECT_TRUE(programma.fouten().contains("beeld 5 van 5"));
    EXPECT_EQ(bestanden(), (QStringList{QStringLiteral("f.webm"), QStringLiteral("ffmpeg")}));
}

TEST_F(FilmTest, AnFfmpegThatFailsLeavesTheOldFilmAndNothingElse) {
    maakFfmpeg("echo half > \"$uit\"\nexit 3\n");
    maakOud();
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--maat=640x480"), QStringLiteral("--seconden=2")});
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_EQ(programma.fouten(),
              "brixtel-saver: ffmpeg kan '" + QFile::encodeName(in("f.webm")) + "' niet maken\n");
    EXPECT_EQ(inhoud("f.webm"), "oud");
    EXPECT_EQ(bestanden(), (QStringList{QStringLiteral("f.webm"), QStringLiteral("ffmpeg")}));
}

// The tool's own words come after the line that names the film, and as a part of it.
TEST_F(FilmTest, WhatFfmpegSaysFirstIsInTheOneLine) {
    maakFfmpeg(
        "/bin/cat > /dev/null\n"
        "echo '[libvpx-vp9 @ 0x55d] Failed to initialize encoder' >&2\n"
        "echo 'Conversion failed!' >&2\nexit 1\n");
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--maat=64x48"), QStringLiteral("--seconden=1"),
                     QStringLiteral("--fps=1")});
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_EQ(programma.fouten(), "beeld 1 van 1\nbrixtel-saver: ffmpeg kan '" +
                                      QFile::encodeName(in("f.webm")) +
                                      "' niet maken: Failed to initialize encoder\n");
}

// More than a pipe holds.
TEST_F(FilmTest, AnFfmpegThatSaysMuchIsReadToItsEnd) {
    maakFfmpeg(
        "i=0; while [ $i -lt 3000 ]; do i=$((i+1));"
        " echo \"regel $i van het vele dat het zegt\" >&2; done\n"
        "/bin/cat > /dev/null\nexit 1\n");
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--maat=64x48"), QStringLiteral("--seconden=1"),
                     QStringLiteral("--fps=1")});
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_TRUE(programma.fouten().endsWith("niet maken: regel 1 van het vele dat het zegt\n"));
}

TEST_F(FilmTest, ProgressInAFileIsTwentyLines) {
    maakFfmpeg("/bin/cat > \"$uit\"\n");
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--maat=64x48"), QStringLiteral("--seconden=45"),
                     QStringLiteral("--fps=1")});
    EXPECT_EQ(programma.uitgang(), 0);
    const QByteArray gezegd = programma.fouten();
    EXPECT_FALSE(gezegd.contains('\r'));
    EXPECT_EQ(gezegd.count('\n'), 20);
    EXPECT_TRUE(gezegd.startsWith("beeld 3 van 45\nbeeld 5 van 45\n")) << gezegd.constData();
    EXPECT_TRUE(gezegd.endsWith("\nbeeld 45 van 45\n"));
}

TEST_F(FilmTest, AnInterruptLeavesTheOldFilmAndNothingElse) {
    maakFfmpeg("/bin/cat > \"$uit\"\n");
    maakOud();
    for (const int signaal : {SIGINT, SIGTERM, SIGKILL}) {
        Programma ander;
        ander.zet(QStringLiteral("PATH"), map.path());
        ander.zet(QStringLiteral("TMPDIR"), map.path());
        ander.start({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--maat=64x48"), QStringLiteral("--seconden=9000"),
                     QStringLiteral("--fps=1")});
        QByteArray gezegd;
        ASSERT_TRUE(until([&] { return (gezegd += ander.fouten()).contains("beeld 450 van"); }));
        kill(static_cast<pid_t>(ander.nummer()), signaal);
        EXPECT_TRUE(ander.wacht());
        EXPECT_EQ(inhoud("f.webm"), "oud");
        EXPECT_EQ(bestanden(), (QStringList{QStringLiteral("f.webm"), QStringLiteral("ffmpeg")}))
            << signaal;
    }
}

TEST_F(FilmTest, APlaceThatMayNotBeWrittenIsSaidBeforeAPictureIsDrawn) {
    maakFfmpeg("/bin/cat > \"$uit\"\n");
    programma.draai({QStringLiteral("--film"), in("weg/f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--maat=320x240"), QStringLiteral("--seconden=1")});
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_EQ(programma.fouten(), "brixtel-saver: '" + QFile::encodeName(in("weg/f.webm")) +
                                      "' kan niet geschreven worden: de map '" +
                                      QFile::encodeName(in("weg")) + "' is er niet\n");
}

// The film's own place is good.
TEST_F(FilmTest, ATemporaryFolderThatIsNotThereIsNamed) {
    maakFfmpeg("/bin/cat > \"$uit\"\n");
    maakOud();
    programma.zet(QStringLiteral("TMPDIR"), in("weg"));
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--maat=64x48"), QStringLiteral("--seconden=1")});
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_EQ(programma.fouten(), "brixtel-saver: in de tijdelijke map '" +
                                      QFile::encodeName(in("weg")) +
                                      "' is geen bestand te maken: dat is er niet\n");
    EXPECT_EQ(inhoud("f.webm"), "oud");
}

TEST_F(FilmTest, WithoutFfmpegItSaysSo) {
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=regen"),
                     QStringLiteral("--seconden=1")});
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_EQ(programma.fouten(),
              "brixtel-saver: --film heeft het programma ffmpeg nodig, en dat ontbreekt\n");
}

TEST_F(FilmTest, WhatNeverRepeatsIsNoLoop) {
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=kubus"),
                     QStringLiteral("--lus")});
    EXPECT_EQ(programma.uitgang(), 2);
    EXPECT_TRUE(programma.fouten().contains("alleen met bol of logo"));
    programma.draai({QStringLiteral("--film"), in("f.webm"), QStringLiteral("--keuze=bol"),
                     QStringLiteral("--lijnen=l.json"), QStringLiteral("--lus")});
    EXPECT_EQ(programma.uitgang(), 2);
    EXPECT_EQ(programma.fouten(),
              "brixtel-saver: --lus gaat met bol alleen zonder --lijnen (--help toont wat er "
              "kan)\n");
}

TEST(FilmOpdrachtTest, WhatDoesNotGoTogetherIsRefused) {
    for (const char* regel :
         {"--film=x.avi --keuze=bol --seconden=1", "--film=x.webm --seconden=1",
          "--film=x.webm --keuze=bol", "--film=x.webm --keuze=logo --lus --seconden=3",
          "--film=x.webm --keuze=bol --seconden=1 --fps",
          "--film=x.webm --keuze=bol --seconden=1 --fps=0",
          "--film=x.webm --keuze=bol --seconden=1 --fps=241",
          "--film=x.webm --keuze=bol --seconden=1 --maat=8193x8192",
          "--film=x.webm --keuze=bol --lus --maat=4097x4096 --schaal=2",
          "--film=x.webm --keuze=kubus --seconden=1 --lijnen=x.json",
          "--film=x.webm --plaatje=x.png --keuze=bol --seconden=1", "--lus", "--fps=24",
          "--film=x.webm --keuze=kubus --lus", "--film=x.webm --keuze=tunnel --lus",
          "--film=x.webm --keuze=regen --lus", "--film=x.webm --keuze=wisselend --lus"}) {
        const auto opdracht = leesOpdracht(QString::fromLatin1(regel).split(QLatin1Char(' ')), {});
        EXPECT_TRUE(std::holds_alternative<brixtel::Fout>(opdracht)) << regel;
    }
}

TEST(FilmOpdrachtTest, ThePicturesAreAtMostAsLargeAsAStill) {
    for (const char* rest : {"--maat=8192x8192", "--maat=4096x4096 --schaal=2"})
        (void)gelezen(QStringLiteral("--film=x.webm --keuze=bol --seconden=1 ") +
                      QLatin1String(rest));
    const auto opdracht = leesOpdracht(
        QStringLiteral("--film=x.webm --keuze=bol --seconden=1 --maat=16384x16384").split(u' '),
        {});
    ASSERT_TRUE(std::holds_alternative<brixtel::Fout>(opdracht));
    EXPECT_EQ(std::get<brixtel::Fout>(opdracht).regel,
              QStringLiteral("brixtel-saver: --film kan hoogstens 67108864 beeldpunten hebben "
                             "(8192x8192) (--help toont wat er kan)"));
}

}  // namespace
