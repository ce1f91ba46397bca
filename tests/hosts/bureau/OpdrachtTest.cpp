// SPDX-License-Identifier: MIT
#include "hosts/bureau/Opdracht.h"

#include <gtest/gtest.h>

#include "hosts/bureau/BureauDienst.h"
#include "hosts/bureau/BureauXml.h"

using brixtel::BureauOpdracht;
using brixtel::Fout;
using brixtel::leesBureauOpdracht;
using brixtel::Verzoek;

namespace {

using Taak = BureauOpdracht::Taak;

BureauOpdracht goed(const char* regel) {
    const auto gelezen =
        leesBureauOpdracht(QString::fromUtf8(regel).split(u' ', Qt::SkipEmptyParts));
    if (const auto* fout = std::get_if<Fout>(&gelezen)) {
        ADD_FAILURE() << qPrintable(fout->regel);
        return {};
    }
    return std::get<BureauOpdracht>(gelezen);
}

QString mis(const QStringList& woorden) {
    const auto gelezen = leesBureauOpdracht(woorden);
    const auto* fout = std::get_if<Fout>(&gelezen);
    return fout ? fout->regel : QString();
}

Verzoek verzoek(const char* methode, const QVariantList& waarden = {}) {
    return {QString::fromLatin1(methode), waarden};
}

TEST(BureauOpdracht, NothingMeansTheServiceAndThePanel) {
    EXPECT_EQ(goed("").taak, Taak::Dienst);
    EXPECT_EQ(goed("").verzoeken, std::vector{verzoek("ToonPaneel")});
}

TEST(BureauOpdracht, TheServiceAloneShowsNothing) {
    EXPECT_EQ(goed("--dienst").taak, Taak::Dienst);
    EXPECT_TRUE(goed("--dienst").verzoeken.empty());
}

TEST(BureauOpdracht, EveryOptionIsOneCall) {
    const std::pair<const char*, Verzoek> paren[] = {
        {"--paneel", verzoek("ToonPaneel")},
        {"--toon-regen", verzoek("ToonRegen")},
        {"--sluit-regen", verzoek("SluitRegen")},
        {"--wissel-regen", verzoek("WisselRegen")},
        {"--toon-zwart", verzoek("ToonZwart", {QString()})},
        {"--toon-zwart=bol", verzoek("ToonZwart", {QStringLiteral("bol")})},
        {"--sluit-zwart", verzoek("SluitZwart")},
        {"--wissel-zwart", verzoek("WisselZwart", {QString()})},
        {"--wissel-zwart=tunnel", verzoek("WisselZwart", {QStringLiteral("tunnel")})},
        {"--wissel-zwart regen", verzoek("WisselZwart", {QStringLiteral("regen")})},
        {"--sluit-alles", verzoek("SluitAlles")},
        {"--stop", verzoek("Stop")},
        {"--dichtheid=0.5", verzoek("ZetDichtheid", {0.5})},
        {"--snelheid 2", verzoek("ZetSnelheid", {2.0})},
        {"--muziek=aan", verzoek("ZetMuziek", {true})},
        {"-muziek uit", verzoek("ZetMuziek", {false})},
        {"--rust=5", verzoek("ZetRust", {5})},
        {"-rust 0", verzoek("ZetRust", {0})},
    };
    for (const auto& [regel, verwacht] : paren) {
        const BureauOpdracht opdracht = goed(regel);
        ASSERT_EQ(opdracht.verzoeken.size(), 1U) << regel;
        EXPECT_EQ(opdracht.verzoeken.front(), verwacht) << regel;
        EXPECT_EQ(opdracht.taak, Taak::Dienst) << regel;
    }
}

TEST(BureauOpdracht, WhatIsAskedHappensInThatOrder) {
    const BureauOpdracht opdracht = goed("--dichtheid=1 --wissel-zwart --toon-regen --stand");
    ASSERT_EQ(opdracht.verzoeken.size(), 3U);
    EXPECT_EQ(opdracht.verzoeken[0].methode, QStringLiteral("ZetDichtheid"));
    EXPECT_EQ(opdracht.verzoeken[1].methode, QStringLiteral("WisselZwart"));
    EXPECT_EQ(opdracht.verzoeken[2].methode, QStringLiteral("ToonRegen"));
    EXPECT_EQ(opdracht.taak, Taak::Stand);
    EXPECT_EQ(goed("--versie").taak, Taak::Versie);
    EXPECT_EQ(goed("-help").taak, Taak::Hulp);
}

TEST(BureauOpdracht, StartingWithTheSessionIsNoCall) {
    EXPECT_EQ(goed("--muziek=uit").autostart, std::nullopt);
    EXPECT_EQ(goed("--autostart=aan").autostart, true);
    EXPECT_EQ(goed("--autostart uit").autostart, false);
    EXPECT_TRUE(goed("--autostart=aan").verzoeken.empty());
}

TEST(BureauOpdracht, ABadArgumentGetsOneClearDutchLine) {
    for (const char* regel : {"--onzin",
                              "regen",
                              "-",
                              "--",
                              "--wissel-zwart=Bol",
                              "--wissel-zwart=",
                              "--toon-zwart=wisselend",
                              "--toon-zwart zebra",
                              "--wissel-regen=ja",
                              "--dichtheid",
                              "--dichtheid=1.1",
                              "--dichtheid=-0.1",
                              "--dichtheid=nan",
                              "--snelheid=0",
                              "--snelheid=4.1",
                              "--snelheid=inf",
                              "--muziek",
                              "--muziek=hard",
                              "--rust",
                              "--rust=121",
                              "--rust=-1",
                              "--rust=2.5",
                              "--rust=vijf",
                              "--autostart",
                              "--autostart=ja",
                              "--stand --versie",
                              "--versie --toon-zwart",
                              "--help --stop",
                              "--help --autostart=aan",
                              "--versie --dienst",
                              "--stand --dienst",
                              "--stand --venstersysteem=auto",
                              "--paneel --dienst",
                              "--autostart=uit --dienst",
                              "--stop=nu"}) {
        const QString fout = mis(QString::fromUtf8(regel).split(u' ', Qt::SkipEmptyParts));
        EXPECT_TRUE(fout.startsWith(QLatin1String("brixtel-bureau: "))) << regel;
        EXPECT_FALSE(fout.contains(u'\n')) << regel;
        EXPECT_GT(fout.size(), 30) << regel;
    }
    EXPECT_FALSE(mis({QStringLiteral("--muziek=a\nb")}).contains(u'\n'));
}

TEST(BureauOpdracht, HelpVersionNumbersAndTypingErrorsAreTakenAsPeopleWriteThem) {
    EXPECT_EQ(goed("--version").taak, Taak::Versie);
    EXPECT_EQ(goed("-V").taak, Taak::Versie);
    EXPECT_EQ(goed("-h").taak, Taak::Hulp);
    EXPECT_EQ(goed("--snelheid=2,6").verzoeken, std::vector{verzoek("ZetSnelheid", {2.6})});
    EXPECT_TRUE(
        mis({QStringLiteral("--snelhied=2")}).contains(QStringLiteral("; bedoelt u --snelheid?")));
    EXPECT_TRUE(
        mis({QStringLiteral("--snelheid=5")}).contains(QStringLiteral("van 0,2 tot en met 4,")));
}

TEST(BureauOpdracht, AnOptionOfAnotherCallIsRefused) {
    const std::pair<QStringList, const char*> paren[] = {
        {{QStringLiteral("--versie"), QStringLiteral("--toon-zwart")},
         "--toon-zwart gaat niet samen met --versie "},
        {{QStringLiteral("--muziek=aan"), QStringLiteral("-h")},
         "--muziek gaat niet samen met --help "},
        {{QStringLiteral("--dienst"), QStringLiteral("--stand")},
         "--dienst gaat niet samen met --stand "},
        {{QStringLiteral("--paneel"), QStringLiteral("--dienst")},
         "--dienst gaat niet samen met --paneel "},
        {{QStringLiteral("--dienst"), QStringLiteral("--autostart=aan")},
         "--dienst gaat niet samen met --autostart "},
        {{QStringLiteral("--stand"), QStringLiteral("-V")},
         "--versie gaat niet samen met --stand "},
        {{QStringLiteral("-h"), QStringLiteral("--versie")},
         "--versie gaat niet samen met --help "}};
    for (const auto& [woorden, verwacht] : paren)
        EXPECT_TRUE(mis(woorden).contains(QLatin1String(verwacht))) << qPrintable(mis(woorden));
    EXPECT_EQ(goed("--venstersysteem=auto --help").taak, Taak::Hulp);
    EXPECT_EQ(goed("--dienst --toon-regen").verzoeken, std::vector{verzoek("ToonRegen")});
    EXPECT_EQ(goed("--paneel --stand").verzoeken, std::vector{verzoek("ToonPaneel")});
    EXPECT_EQ(goed("--autostart=aan --stand").taak, Taak::Stand);
}

TEST(BureauOpdracht, ABeginningAndAMistypedKindAreAnsweredWithTheNearest) {
    EXPECT_TRUE(mis({QStringLiteral("--sluit")})
                    .contains(QStringLiteral(
                        "; bedoelt u --sluit-regen, --sluit-zwart of --sluit-alles? (")));
    EXPECT_TRUE(mis({QStringLiteral("--toon-zwart=tunel")})
                    .contains(QStringLiteral("; bedoelt u tunnel? (")));
    EXPECT_TRUE(mis({QStringLiteral("--muziek=ann")})
                    .contains(QStringLiteral("kent aan en uit, niet 'ann'; bedoelt u aan? (")));
    EXPECT_TRUE(
        mis({QStringLiteral("--autostart=uti")}).contains(QStringLiteral("; bedoelt u uit? (")));
    EXPECT_TRUE(mis({QStringLiteral("--venstersysteem=x1")})
                    .contains(QStringLiteral("; bedoelt u x11? (")));
    EXPECT_FALSE(mis({QStringLiteral("--muziek=hard")}).contains(QStringLiteral("bedoelt")));
}

TEST(BureauOpdracht, TheHelpNamesEveryOption) {
    const QString hulp = brixtel::bureauHulpTekst();
    for (const char* naam :
         {"toon-regen", "sluit-regen", "wissel-regen", "toon-zwart", "sluit-zwart", "wissel-zwart",
          "sluit-alles", "stop", "dichtheid", "snelheid", "muziek", "rust", "autostart", "stand",
          "versie", "help", "paneel", "dienst"})
        EXPECT_TRUE(hulp.contains(QStringLiteral("--") + QLatin1String(naam))) << naam;
}

TEST(BureauOpdracht, EveryMethodOfTheBusHasAnOption) {
    QStringList vanDeBus, vanDeRegel;
    for (const auto& methode : brixtel::methodenIn(QString::fromUtf8(brixtel::kBureauXml)))
        vanDeBus << methode.naam;
    for (const char* regel :
         {"--toon-regen", "--sluit-regen", "--wissel-regen", "--toon-zwart", "--sluit-zwart",
          "--wissel-zwart", "--sluit-alles", "--stop", "--dichtheid=1", "--snelheid=1",
          "--muziek=aan", "--rust=1", "--paneel"})
        vanDeRegel << goed(regel).verzoeken.front().methode;
    vanDeBus.sort();
    vanDeRegel.sort();
    EXPECT_EQ(vanDeBus, vanDeRegel);
}

}  // namespace
