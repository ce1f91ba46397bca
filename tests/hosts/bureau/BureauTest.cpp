// SPDX-License-Identifier: MIT
#include "hosts/bureau/Bureau.h"

#include <QFile>

#include "tests/hosts/bureau/BureauProef.h"

using brixtel::BureauKeuzes;
using brixtel::BureauProef;
using brixtel::BureauStand;
using brixtel::DrieSoort;
using brixtel::RegenStand;

namespace {

TEST_F(BureauProef, NothingIsShownAtFirstAndNothingWaits) {
    EXPECT_EQ(nu(), BureauStand{});
    EXPECT_EQ(klok.timerCount(), 0U);
    EXPECT_FALSE(bureau->muziek().luistert());
}

TEST_F(BureauProef, EveryChangeIsToldOnce) {
    bureau->toonRegen();
    ASSERT_EQ(gemeld.size(), 1U);
    EXPECT_TRUE(gemeld.back().regen);
    EXPECT_EQ(gemeld.back().regenStand, RegenStand::aan);
    bureau->toonRegen();
    EXPECT_EQ(gemeld.size(), 1U);
    bureau->toonZwart(DrieSoort::tunnel);
    ASSERT_EQ(gemeld.size(), 2U);
    EXPECT_TRUE(gemeld.back().zwart);
    EXPECT_EQ(gemeld.back().soort, DrieSoort::tunnel);
    bureau->toonZwart(DrieSoort::bol);
    EXPECT_EQ(nu().soort, DrieSoort::tunnel);
    bureau->sluitAlles();
    ASSERT_EQ(gemeld.size(), 3U);
    EXPECT_EQ(gemeld.back(), BureauStand{});
}

TEST_F(BureauProef, SwitchingTwiceIsBackToTheStart) {
    bureau->wisselRegen();
    bureau->wisselZwart(std::nullopt);
    EXPECT_TRUE(nu().zwart && nu().regen);
    bureau->wisselZwart(DrieSoort::logo);
    bureau->wisselRegen();
    EXPECT_EQ(nu(), BureauStand{});
}

TEST_F(BureauProef, AfterTheFadesNothingWaitsAnyMore) {
    bureau->toonRegen();
    bureau->toonZwart(std::nullopt);
    EXPECT_GT(klok.timerCount(), 0U);
    bureau->sluitAlles();
    klok.advance(1.0);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(BureauProef, WithoutACompositorTheRainSaysWhyAndComesOnceThereIsOne) {
    werkruimte.doorzichtig = false;
    bureau->toonRegen();
    EXPECT_TRUE(nu().regen);
    EXPECT_EQ(nu().regenStand, RegenStand::geenCompositor);
    EXPECT_NE(brixtel::uitleg(nu().regenStand), QString());
    werkruimte.zetDoorzichtig(true);
    EXPECT_EQ(gemeld.back().regenStand, RegenStand::aan);
    EXPECT_EQ(brixtel::uitleg(nu().regenStand), QString());
    werkruimte.zetBeveiligd(true);
    EXPECT_EQ(gemeld.back().regenStand, RegenStand::schermbeveiliging);
    EXPECT_NE(brixtel::uitleg(nu().regenStand), QString());
}

TEST_F(BureauProef, ABlackScreenIsRefusedWhileASaverOrLockIsActive) {
    werkruimte.zetBeveiligd(true);
    EXPECT_NE(bureau->zwartBeletsel(), QString());
    bureau->toonZwart(DrieSoort::bol);
    bureau->wisselZwart(std::nullopt);
    EXPECT_EQ(nu(), BureauStand{});
    EXPECT_TRUE(gemeld.empty());
    EXPECT_EQ(werkruimte.verborgen, 0);
    EXPECT_EQ(klok.timerCount(), 0U);
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(bureau->zwartBeletsel(), QString());
    bureau->wisselZwart(DrieSoort::bol);
    EXPECT_EQ(nu().soort, DrieSoort::bol);
}

TEST_F(BureauProef, ABlackScreenThatALockCameOverStaysAndCanBeClosed) {
    bureau->toonZwart(DrieSoort::bol);
    werkruimte.zetBeveiligd(true);
    // Shown already, so there is nothing to refuse.
    EXPECT_EQ(bureau->zwartBeletsel(), QString());
    bureau->toonZwart(std::nullopt);
    EXPECT_EQ(nu().soort, DrieSoort::bol);
    bureau->wisselZwart(std::nullopt);
    EXPECT_FALSE(nu().zwart);
}

TEST_F(BureauProef, ChoicesAreKeptBetweenRuns) {
    bureau->zetKeuzes({.dichtheid = 0.25, .snelheid = 3.5, .muziek = true});
    EXPECT_EQ(gemeld.back().keuzes.dichtheid, 0.25);
    bureau.reset();
    begin();
    EXPECT_EQ(nu().keuzes, (BureauKeuzes{.dichtheid = 0.25, .snelheid = 3.5, .muziek = true}));
    EXPECT_EQ(bureau->centrale().dichtheid, 0.25);
    EXPECT_EQ(bureau->centrale().snelheid, 3.5);
    EXPECT_TRUE(bureau->centrale().opMuziek);
}

TEST_F(BureauProef, StoredChoicesThatAreNoneAreAsByDefault) {
    QFile bestand(map.filePath(QStringLiteral("nl.groenlicht.brixtel.bureau.conf")));
    ASSERT_TRUE(bestand.open(QIODevice::WriteOnly));
    bestand.write("[General]\ndichtheid=7\nsnelheid=snel\nmuziek=misschien\n");
    bestand.close();
    bureau.reset();
    begin();
    EXPECT_EQ(nu().keuzes, BureauKeuzes{});
}

TEST_F(BureauProef, ADraggedDensityMakesTheDesktopRainAnewTwiceAndEndsWithTheLast) {
    bureau->toonRegen();
    const auto regen = [&]() -> const auto& {
        return bureau->centrale().regen().front();
    };
    const auto* eerste = regen().regen.get();
    for (int stap = 1; stap <= 10; ++stap) {
        bureau->zetKeuzes({.dichtheid = 0.05 * stap});
        klok.advance(0.01);
    }
    const auto* tweede = regen().regen.get();
    EXPECT_NE(tweede, eerste);
    EXPECT_EQ(regen().dichtheid, 0.05);
    const std::size_t verteld = gemeld.size();
    klok.advance(0.3);
    EXPECT_NE(regen().regen.get(), tweede);
    EXPECT_EQ(regen().dichtheid, 0.5);
    const auto* derde = regen().regen.get();
    klok.advance(1.0);
    EXPECT_EQ(regen().regen.get(), derde);
    EXPECT_TRUE(nu().regen);
    EXPECT_EQ(gemeld.size(), verteld);
    bureau->sluitRegen();
    klok.advance(1.0);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(BureauProef, AnotherSpeedDoesNotMakeTheRainAnew) {
    bureau->toonRegen();
    const auto* eerste = bureau->centrale().regen().front().regen.get();
    bureau->kies(&BureauKeuzes::snelheid, 2.0);
    klok.advance(1.0);
    EXPECT_EQ(bureau->centrale().regen().front().regen.get(), eerste);
    EXPECT_EQ(eerste->laag()->time().speed, 2.0);
}

TEST_F(BureauProef, ADensityOfZeroIsSaidToBeWhyNothingIsSeen) {
    bureau->kies(&BureauKeuzes::dichtheid, 0.0);
    bureau->toonRegen();
    EXPECT_TRUE(nu().regen);
    EXPECT_EQ(nu().regenStand, RegenStand::leeg);
    EXPECT_NE(brixtel::uitleg(nu().regenStand), QString());
    bureau->kies(&BureauKeuzes::dichtheid, 0.5);
    EXPECT_EQ(nu().regenStand, RegenStand::aan);
}

TEST_F(BureauProef, TheFlashOnABeatIsTheUsersToSoftenAndIsKept) {
    EXPECT_EQ(bureau->centrale().flitsDeel, 1.0);
    bureau->kies(&BureauKeuzes::flits, brixtel::Flits::zacht);
    EXPECT_GT(bureau->centrale().flitsDeel, 0.0);
    EXPECT_LT(bureau->centrale().flitsDeel, 0.5);
    bureau->kies(&BureauKeuzes::flits, brixtel::Flits::uit);
    bureau.reset();
    begin();
    EXPECT_EQ(nu().keuzes.flits, brixtel::Flits::uit);
    EXPECT_EQ(bureau->centrale().flitsDeel, 0.0);
}

TEST_F(BureauProef, MusicIsListenedToWhileABlackScreenFollowsIt) {
    bureau->toonZwart(std::nullopt);
    EXPECT_FALSE(bureau->muziek().luistert());
    bureau->sluitZwart();
    bureau->zetKeuzes({.muziek = true});
    EXPECT_FALSE(bureau->muziek().luistert());
    bureau->toonRegen();
    EXPECT_FALSE(bureau->muziek().luistert());
    bureau->toonZwart(std::nullopt);
    EXPECT_TRUE(bureau->muziek().luistert());
    bureau->zetKeuzes({.muziek = false});
    EXPECT_FALSE(bureau->muziek().luistert());
    bureau->zetKeuzes({.muziek = true});
    EXPECT_TRUE(bureau->muziek().luistert());
    bureau->sluitZwart();
    EXPECT_FALSE(bureau->muziek().luistert());
}

TEST_F(BureauProef, MusicIsNotListenedToUnderASaverOrLock) {
    bureau->zetKeuzes({.muziek = true});
    bureau->toonZwart(std::nullopt);
    ASSERT_TRUE(bureau->muziek().luistert());
    werkruimte.zetBeveiligd(true);
    EXPECT_FALSE(bureau->muziek().luistert());
    werkruimte.zetBeveiligd(false);
    EXPECT_TRUE(bureau->muziek().luistert());
    bureau->sluitZwart();
    bureau->luisterMee(true);
    werkruimte.zetBeveiligd(true);
    EXPECT_FALSE(bureau->muziek().luistert());
    werkruimte.zetBeveiligd(false);
    EXPECT_TRUE(bureau->muziek().luistert());
}

TEST_F(BureauProef, MusicStopsWhenTheUserClosesTheBlackScreen) {
    bureau->zetKeuzes({.muziek = true});
    bureau->toonZwart(std::nullopt);
    ASSERT_TRUE(bureau->muziek().luistert());
    bureau->centrale().zwart().front().venster->contentView()->keyDown({});
    EXPECT_FALSE(bureau->muziek().luistert());
    EXPECT_FALSE(nu().zwart);
}

TEST_F(BureauProef, WithoutASoundServerTheTempoStaysSteady) {
    bureau->zetKeuzes({.muziek = true});
    bureau->toonZwart(std::nullopt);
    klok.advance(1.0);
    EXPECT_EQ(bureau->centrale().muziekStand(), std::nullopt);
    EXPECT_EQ(bureau->centrale().zwart().front().regen->laag()->time().speed, 1.0);
}

}  // namespace
