// SPDX-License-Identifier: MIT
// The files that the desktop reads say what the program does.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

#include "BrixtelSaver/SaverKeuze.h"
#include "hosts/bureau/Opdracht.h"
#include "hosts/gedeeld/Opsomming.h"
#include "hosts/saver/KeuzeWoorden.h"
#include "hosts/saver/Opdracht.h"
#include "tests/support/Paden.h"

namespace {

// A file of the packaging folder, as the build has made it.
QString lees(const QString& bestand) {
    QFile bron(QStringLiteral(BRIXTEL_BUILD_DIR "/packaging/") + bestand);
    EXPECT_TRUE(bron.open(QIODevice::ReadOnly)) << qPrintable(bestand);
    return QString::fromUtf8(bron.readAll());
}

QSet<QString> opties(const QString& tekst,
                     const QString& patroon = QStringLiteral("--([a-z][a-z-]*[a-z])")) {
    QSet<QString> alle;
    auto treffers =
        QRegularExpression(patroon, QRegularExpression::MultilineOption).globalMatch(tekst);
    while (treffers.hasNext())
        alle << treffers.next().captured(1);
    return alle;
}

// In one line, sorted, so that a failure can be read.
std::string rij(const QSet<QString>& opties) {
    QStringList alle = opties.values();
    alle.sort();
    return alle.join(u' ').toStdString();
}

// Each program and the text of its help.
const std::pair<QString, QString> kProgrammas[] = {
    {QStringLiteral("brixtel-saver"), brixtel::hulpTekst()},
    {QStringLiteral("brixtel-bureau"), brixtel::bureauHulpTekst()},
};

TEST(Bureaublad, TheManPagesHaveEveryOptionOfTheHelpAndNoOther) {
    for (const auto& [programma, tekst] : kProgrammas) {
        const std::string hulp = rij(opties(tekst));
        ASSERT_GT(hulp.size(), 100U);
        for (const char* map : {"man/", "man/nl/"}) {
            const QString pagina = lees(QLatin1String(map) + programma + QStringLiteral(".1"))
                                       .remove(QRegularExpression(QStringLiteral("\\\\f[RI]")))
                                       .remove(u'\\');
            EXPECT_EQ(rij(opties(pagina, QStringLiteral("^\\.B --([a-z-]+)"))), hulp) << map;
        }
    }
}

// A file of the source.
QString leesBron(const QString& bestand) {
    QFile bron(QStringLiteral(BRIXTEL_PACKAGING "/../") + bestand);
    EXPECT_TRUE(bron.open(QIODevice::ReadOnly)) << qPrintable(bestand);
    return QString::fromUtf8(bron.readAll());
}

TEST(Bureaublad, ThePageOfTheCommandLineHasEveryOptionOfTheHelpAndNoOther) {
    const QString pagina = leesBron(QStringLiteral("docs/opdrachten.md"));
    const QString eigen = QStringLiteral("\n## brixtel-bureau\n");
    ASSERT_EQ(pagina.count(eigen), 1);
    // The first column of the tables of each program; an example of the other program's stands
    // in no table.
    const QString delen[] = {pagina.section(eigen, 0, 0), pagina.section(eigen, 1)};
    const QRegularExpression kolom(QStringLiteral("^\\| ([^|\n]*(?:\\\\\\|[^|\n]*)*) \\|"),
                                   QRegularExpression::MultilineOption);
    for (std::size_t i = 0; i < std::size(delen); ++i) {
        QString eerste;
        for (auto treffers = kolom.globalMatch(delen[i]); treffers.hasNext();)
            eerste += treffers.next().captured(1) + u'\n';
        EXPECT_EQ(rij(opties(eerste)), rij(opties(kProgrammas[i].second)));
    }
}

TEST(Bureaublad, TheReadmeAndThePageOfTheCommandLineExplainEveryChoice) {
    const QString readme = leesBron(QStringLiteral("README.md"));
    const QString pagina = leesBron(QStringLiteral("docs/opdrachten.md"))
                               .section(QStringLiteral("\n## brixtel-saver\n"), 0, 0);
    for (const QString& woord : brixtel::keuzeWoorden()) {
        EXPECT_TRUE(readme.contains(QStringLiteral("\n| `%1` ").arg(woord))) << qPrintable(woord);
        EXPECT_TRUE(pagina.contains(QStringLiteral("`%1`").arg(woord))) << qPrintable(woord);
    }
}

TEST(Bureaublad, TheManPagesExplainEveryChoiceAndNameTheScenesWithALoop) {
    const std::pair<QString, const char*> paginas[] = {{QStringLiteral("man/"), "or"},
                                                       {QStringLiteral("man/nl/"), "of"}};
    for (const auto& [map, of] : paginas) {
        const QString pagina = lees(map + QStringLiteral("brixtel-saver.1"));
        const QString keuze =
            pagina.section(QStringLiteral("-keuze\\fR="), 1).section(QStringLiteral("\n.TP"), 0, 0);
        for (const QString& woord : brixtel::keuzeWoorden())
            EXPECT_TRUE(keuze.contains(QStringLiteral(" %1 (").arg(woord))) << qPrintable(woord);
        const QString lus = pagina.section(QStringLiteral("\n.B \\-\\-lus\n"), 1)
                                .section(QStringLiteral("\n.TP"), 0, 0);
        EXPECT_TRUE(
            lus.contains(brixtel::opsomming(brixtel::keuzesMetLus(), QLatin1String(of)) + u','))
            << qPrintable(lus);
    }
}

TEST(Bureaublad, CompletionHasEveryOptionOfTheHelpAndNoOther) {
    for (const auto& [programma, tekst] : kProgrammas) {
        const std::string hulp = rij(opties(tekst));
        EXPECT_EQ(rij(opties(lees(QStringLiteral("completion/_") + programma))), hulp);
        EXPECT_EQ(rij(opties(lees(QStringLiteral("completion/%1.fish").arg(programma)),
                             QStringLiteral(" -l ([a-z-]+)"))),
                  hulp);
        QString bash = lees(QStringLiteral("completion/") + programma);
        bash.remove(0, bash.lastIndexOf(QStringLiteral("-W '")));
        EXPECT_EQ(rij(opties(bash)), hulp);
    }
}

// "option values" of each match, of which the pattern names both.
QSet<QString> waarden(const QString& tekst, const char* patroon) {
    QSet<QString> alle;
    auto treffers = QRegularExpression(QLatin1String(patroon), QRegularExpression::MultilineOption)
                        .globalMatch(tekst);
    while (treffers.hasNext()) {
        const auto treffer = treffers.next();
        for (const QString& optie : treffer.captured(QStringLiteral("opties"))
                                        .split(QStringLiteral(" | "), Qt::SkipEmptyParts))
            alle << optie + u'=' + treffer.captured(QStringLiteral("waarden")) + u'\n';
    }
    return alle;
}

TEST(Bureaublad, TheThreeShellsOfferTheSameValues) {
    for (const auto& [programma, tekst] : kProgrammas) {
        const std::string zsh =
            rij(waarden(lees(QStringLiteral("completion/_") + programma),
                        "^  '(?<opties>--[a-z-]+)=-?\\[.*\\]::?[a-z]+:\\((?<waarden>[^)]+)\\)'"));
        EXPECT_GT(zsh.size(), 80U);
        EXPECT_EQ(rij(waarden(lees(QStringLiteral("completion/") + programma),
                              "^ +(?<opties>--[a-z-]+( \\| --[a-z-]+)*)\\) COMPREPLY=\\(\\$"
                              "\\(compgen -W '(?<waarden>[^']+)'")),
                  zsh);
        QString fish = lees(QStringLiteral("completion/%1.fish").arg(programma));
        fish.replace(QStringLiteral(" -l "), QStringLiteral(" --"));
        EXPECT_EQ(rij(waarden(fish, " (?<opties>--[a-z-]+)( -x)? -a '(?<waarden>[^']+)'")), zsh);
    }
}

TEST(Bureaublad, TheHostsSettingsOfferTheSixModesByTheirNames) {
    QXmlStreamReader xml(lees(QStringLiteral("bureaublad/brixtel-saver.xml")));
    QStringList namen;
    QStringList argumenten;
    int zonder = 0;
    bool fps = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        const QString argument = xml.attributes().value(QLatin1String("arg-set")).toString();
        if (xml.name() == QLatin1String("boolean")) fps |= argument == QLatin1String("--fps");
        if (xml.name() != QLatin1String("option")) continue;
        // The host wants one choice that adds nothing to the command.
        if (argument.isEmpty()) {
            ++zonder;
            continue;
        }
        namen << xml.attributes().value(QLatin1String("_label")).toString();
        argumenten << argument;
    }
    EXPECT_FALSE(xml.hasError()) << qPrintable(xml.errorString());
    QStringList verwachteNamen;
    QStringList verwachteArgumenten;
    for (const brixtel::SaverKeuze keuze : brixtel::alleKeuzes) {
        verwachteNamen << naam(keuze);
        verwachteArgumenten << QStringLiteral("--keuze=") + ruweWaarde(keuze);
    }
    EXPECT_EQ(namen, verwachteNamen);
    EXPECT_EQ(argumenten, verwachteArgumenten);
    EXPECT_EQ(zonder, 1);
    EXPECT_TRUE(fps);
}

TEST(Bureaublad, EveryCommandOfAnEntryIsOneThatTheProgramTakes) {
    int gezien = 0;
    const auto kijk = [&gezien](const QString& regel) {
        QStringList woorden = regel.split(u' ', Qt::SkipEmptyParts);
        const bool bureau = woorden.takeFirst() == u"brixtel-bureau";
        const auto vanSaver = brixtel::leesOpdracht(woorden, {});
        const auto vanBureau = brixtel::leesBureauOpdracht(woorden);
        EXPECT_TRUE(bureau ? std::holds_alternative<brixtel::BureauOpdracht>(vanBureau)
                           : std::holds_alternative<brixtel::Opdracht>(vanSaver))
            << qPrintable(regel);
        ++gezien;
    };
    const QRegularExpression exec(QStringLiteral("^Exec=(.*)$"),
                                  QRegularExpression::MultilineOption);
    const QDir gemaakt(QStringLiteral(BRIXTEL_BUILD_DIR "/packaging/themas"));
    QStringList bestanden{
        QStringLiteral(BRIXTEL_PACKAGING "/bureaublad/nl.groenlicht.brixtel.bureau.desktop"),
        QStringLiteral(BRIXTEL_PACKAGING "/bureaublad/nl.groenlicht.brixtel.saver.desktop")};
    for (const QString& naam : gemaakt.entryList({QStringLiteral("*.desktop")}, QDir::Files))
        bestanden << gemaakt.filePath(naam);
    for (const QString& naam : bestanden) {
        QFile bestand(naam);
        ASSERT_TRUE(bestand.open(QIODevice::ReadOnly));
        auto treffers = exec.globalMatch(QString::fromUtf8(bestand.readAll()));
        while (treffers.hasNext())
            kijk(treffers.next().captured(1));
    }
    // The entries with their actions, a theme for each scene and one for all.
    EXPECT_EQ(gezien, 3 + 3 + static_cast<int>(brixtel::alleScenes.size()) + 1);
}

TEST(Bureaublad, TheCopyrightFileNamesEveryResource) {
    QFile bestand(QStringLiteral(BRIXTEL_PACKAGING "/debian/copyright"));
    ASSERT_TRUE(bestand.open(QIODevice::ReadOnly));
    const QString tekst = QString::fromUtf8(bestand.readAll());
    const QDir bronnen(QStringLiteral(BRIXTEL_RESOURCES));
    const QStringList namen =
        bronnen.entryList({QStringLiteral("*.bin"), QStringLiteral("*.png")}, QDir::Files);
    EXPECT_GE(namen.size(), 2);
    for (const QString& naam : namen)
        EXPECT_TRUE(tekst.contains(QStringLiteral("Files: resources/") + naam + u'\n'))
            << qPrintable(naam);
}

}  // namespace
