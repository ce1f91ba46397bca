// SPDX-License-Identifier: MIT
// A scene that is added to the table is found everywhere.
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "BrixtelSaver/SaverKeuze.h"
#include "hosts/bureau/Opdracht.h"
#include "hosts/bureau/ZwartSoort.h"
#include "hosts/saver/Opdracht.h"
#include "tests/worlds/Opstelling.h"

using brixtel::DrieSoort;
using brixtel::SaverKeuze;

namespace {

const QString kRuw = QStringLiteral("proef");

QString tekst(const char* utf8) {
    return QString::fromUtf8(utf8);
}

class Erbij : public steun::WereldOpstelling {};

TEST_F(Erbij, IsAKindWithItsTexts) {
    EXPECT_EQ(brixtel::alleSoorten.back(), DrieSoort::proef);
    EXPECT_EQ(ruweWaarde(DrieSoort::proef), kRuw);
    EXPECT_EQ(brixtel::soortUitRuw(kRuw), DrieSoort::proef);
    EXPECT_EQ(naam(DrieSoort::proef), tekst("PROEF"));
    EXPECT_EQ(uitleg(DrieSoort::proef), tekst("een ster; hij draait"));
}

TEST_F(Erbij, IsBuiltByItsBuilderBehindItsCameraAndFog) {
    const auto wereld = maak(DrieSoort::proef);
    const auto camera = steun::cameraVan(*wereld);
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->position(), glm::dvec3(0.0, 1.0, 5.0));
    EXPECT_EQ(camera->camera()->fieldOfView, 33.0);
    EXPECT_EQ(camera->camera()->bloomIntensity, 0.5);
    EXPECT_EQ(wereld->scene()->fog().start, 2.0);
    EXPECT_EQ(wereld->scene()->fog().end, 9.0);
    EXPECT_EQ(wereld->scene()->root().children().back()->name(), "ster");
}

TEST_F(Erbij, IsAChoiceOfTheSaverAndOneOfItsScenes) {
    EXPECT_EQ(brixtel::alleKeuzes.back(), SaverKeuze::proef);
    EXPECT_EQ(brixtel::alleScenes.back(), SaverKeuze::proef);
    EXPECT_EQ(ruweWaarde(SaverKeuze::proef), kRuw);
    EXPECT_EQ(naam(SaverKeuze::proef), tekst("Proef met een ster"));
}

// The list that the tray's menu, the panel and the bus offer.
TEST_F(Erbij, IsOfferedForTheBlackScreen) {
    EXPECT_EQ(brixtel::alleZwartSoorten().back(), DrieSoort::proef);
    brixtel::ZwartSoort soort;
    EXPECT_TRUE(leesSoort(kRuw, soort));
    EXPECT_EQ(soort, DrieSoort::proef);
}

TEST_F(Erbij, BothCommandLinesTakeItAndTheirHelpAndComplaintsNameIt) {
    EXPECT_TRUE(std::holds_alternative<brixtel::Opdracht>(
        brixtel::leesOpdracht({tekst("--keuze=proef")}, {})));
    EXPECT_TRUE(std::holds_alternative<brixtel::BureauOpdracht>(
        brixtel::leesBureauOpdracht({tekst("--toon-zwart"), kRuw})));
    EXPECT_TRUE(brixtel::hulpTekst().simplified().contains(tekst("logo of proef; alleen")));
    EXPECT_TRUE(brixtel::bureauHulpTekst().simplified().contains(tekst("logo of proef")));
    const auto mis = brixtel::leesOpdracht({tekst("--keuze=ster")}, {});
    ASSERT_TRUE(std::holds_alternative<brixtel::Fout>(mis));
    EXPECT_TRUE(std::get<brixtel::Fout>(mis).regel.contains(tekst("logo en proef, niet 'ster'")));
    const auto bureauMis = brixtel::leesBureauOpdracht({tekst("--toon-zwart=ster")});
    ASSERT_TRUE(std::holds_alternative<brixtel::Fout>(bureauMis));
    EXPECT_TRUE(
        std::get<brixtel::Fout>(bureauMis).regel.contains(tekst("logo en proef, niet 'ster'")));
}

QByteArray draai(const QString& programma, const QStringList& argumenten, const QString& map) {
    QProcess proces;
    proces.setWorkingDirectory(map);
    proces.start(programma, argumenten);
    EXPECT_TRUE(proces.waitForFinished(60'000)) << qPrintable(programma);
    EXPECT_EQ(proces.exitCode(), 0) << proces.readAllStandardError().constData();
    return proces.readAllStandardOutput();
}

QString lees(const QString& naam) {
    QFile bestand(naam);
    EXPECT_TRUE(bestand.open(QIODevice::ReadOnly)) << qPrintable(naam);
    return QString::fromUtf8(bestand.readAll());
}

// The number of times that a word stands in the made files, by file.
std::map<QString, qsizetype> keren(const QString& map, const QString& woord) {
    const QRegularExpression vorm(QStringLiteral("\\b%1\\b").arg(woord));
    std::map<QString, qsizetype> geteld;
    QDirIterator bestanden(map, QDir::Files, QDirIterator::Subdirectories);
    while (bestanden.hasNext()) {
        const QString naam = bestanden.next();
        // The entry of one scene alone.
        if (naam.contains(QStringLiteral("/themas/"))) continue;
        if (const auto aantal = lees(naam).count(vorm)) geteld[naam] = aantal;
    }
    return geteld;
}

TEST_F(Erbij, CompletionManPagesEntriesAndXmlNameItAsOftenAsAnyOther) {
    const QTemporaryDir map;
    draai(QStringLiteral(BRIXTEL_CMAKE),
          {QStringLiteral("-DTABEL=" BRIXTEL_TABEL "/worlds/Scenes.def"),
           QStringLiteral("-DNAAR=") + map.path(), QStringLiteral("-P"),
           QStringLiteral(BRIXTEL_SOURCE_DIR "/cmake/Scenes.cmake")},
          map.path());
    // Six completions, four man pages, and the XML of the hosts, of the bus and of the
    // software centres. The last scene of the table is the man pages' example too.
    const auto ander = keren(map.path(), QStringLiteral("kubus"));
    const auto proef = keren(map.path(), kRuw);
    EXPECT_EQ(ander.size(), 6U + 4U + 3U);
    for (const auto& [naam, aantal] : ander) {
        ASSERT_TRUE(proef.contains(naam)) << qPrintable(naam);
        EXPECT_GE(proef.at(naam), aantal) << qPrintable(naam);
    }
    const QString thema = lees(map.filePath(QStringLiteral("themas/brixtel-proef.desktop")));
    EXPECT_TRUE(thema.contains(tekst("Name=Brixtel: Proef met een ster\n")));
    EXPECT_TRUE(thema.contains(tekst("Comment=Een proef met een ster\n")));
    EXPECT_TRUE(thema.contains(tekst(" --keuze=proef\n")));
    const QString over =
        lees(map.filePath(tekst("bureaublad/nl.groenlicht.brixtel.saver.metainfo.xml")));
    EXPECT_TRUE(over.contains(tekst(" and a star to try.")));
    EXPECT_TRUE(over.contains(tekst(" en een proef met een ster.")));
}

TEST_F(Erbij, RunDrawsAStillOfIt) {
    const QByteArray scenes =
        draai(QStringLiteral("bash"),
              {QStringLiteral("-c"),
               QStringLiteral(". " BRIXTEL_SOURCE_DIR "/packaging/zorg-voor.sh; scenes")},
              QStringLiteral(BRIXTEL_TABEL));
    EXPECT_EQ(scenes, "regen\nbol\nkubus\ntunnel\nlogo\nproef\n");
    EXPECT_TRUE(lees(QStringLiteral(BRIXTEL_SOURCE_DIR "/run"))
                    .contains(tekst("for scene in $(scenes); do")));
}

}  // namespace
