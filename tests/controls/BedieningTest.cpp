// SPDX-License-Identifier: MIT
// The controls under a pointer and keys, without a window.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QFontMetricsF>
#include <QSignalSpy>
#include <cmath>
#include <limits>
#include <memory>

#include "controls/BX.h"
#include "controls/BXKeuzeBasis.h"
#include "controls/BXRijBasis.h"
#include "controls/BXSchuifBasis.h"
#include "controls/BXTweestand.h"
#include "controls/SchuifFocus.h"
#include "drawing/Thema.h"

using namespace brixtel;

namespace {

TEST(BXKleur, AreTheThemes) {
    EXPECT_EQ(BXKleur::bx(), Thema::groen());
    EXPECT_EQ(BXKleur::bxMiddel(), Thema::middel());
    EXPECT_EQ(BXKleur::bxDonker(), Thema::donker());
    EXPECT_EQ(BXKleur::bxWit(), Thema::wit());
    EXPECT_EQ(BXKleur::bxZwart(), Thema::zwart());
    EXPECT_EQ(BXKleur::bxOranje(), Thema::oranje());
    EXPECT_EQ(BXKleur::bxCijfer(), Thema::cijfer());
}

TEST(BXKleur, OpacityMultiplies) {
    const BX bx;
    EXPECT_NEAR(bx.dek(BXKleur::bx(), 0.22).alphaF(), 0.22, 0.001);
    EXPECT_NEAR(bx.dek(bx.dek(BXKleur::bx(), 0.5), 0.5).alphaF(), 0.25, 0.001);
    EXPECT_EQ(bx.dek(BXKleur::bx(), 7.0), BXKleur::bx());
}

TEST(BXFont, IsMonospacedInBothWeights) {
    for (const bool vet : {false, true}) {
        const QFontMetricsF maten(bxFont(11.0, {.vet = vet}));
        EXPECT_EQ(maten.horizontalAdvance(u'i'), maten.horizontalAdvance(u'W'));
        EXPECT_EQ(bxFont(11.0, {.vet = vet}).bold(), vet);
    }
}

TEST(BXFont, IsTheThemesToTheNearestWholeSize) {
    EXPECT_EQ(bxFont(10.0), Thema::font(10.0));
    EXPECT_EQ(bxFont(10.5, {.vet = true}), Thema::font(11.0, {.vet = true}));
}

void focus(QObject& item, QEvent::Type soort, Qt::FocusReason reden) {
    QFocusEvent event(soort, reden);
    QCoreApplication::sendEvent(&item, &event);
}

TEST(BXDruk, ShowsTheFocusAgainAfterAnotherWindow) {
    BXDruk druk;
    focus(druk, QEvent::FocusIn, Qt::TabFocusReason);
    focus(druk, QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    EXPECT_FALSE(druk.toonFocus());
    focus(druk, QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    EXPECT_TRUE(druk.toonFocus());
}

TEST(BXDruk, WhatWasClickedShowsNoFocusAfterAnotherWindowEither) {
    BXDruk druk;
    focus(druk, QEvent::FocusIn, Qt::MouseFocusReason);
    focus(druk, QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    focus(druk, QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    EXPECT_FALSE(druk.toonFocus());
}

TEST(BXDruk, AHeldKeyPressesOnce) {
    BXDruk druk;
    QSignalSpy gedrukt(&druk, &BXDruk::gedrukt);
    for (const bool herhaald : {false, true, true}) {
        QKeyEvent toets(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QString(), herhaald);
        QCoreApplication::sendEvent(&druk, &toets);
        EXPECT_TRUE(toets.isAccepted());
    }
    EXPECT_EQ(gedrukt.count(), 1);
}

TEST(BXDruk, OtherKeysAreForOthers) {
    BXDruk druk;
    QSignalSpy gedrukt(&druk, &BXDruk::gedrukt);
    for (const auto& [knop, bij] :
         {std::pair(Qt::Key_A, Qt::KeyboardModifiers()),
          std::pair(Qt::Key_Return, Qt::KeyboardModifiers(Qt::AltModifier))}) {
        QKeyEvent toets(QEvent::KeyPress, knop, bij);
        QCoreApplication::sendEvent(&druk, &toets);
        EXPECT_FALSE(toets.isAccepted());
    }
    EXPECT_EQ(gedrukt.count(), 0);
}

TEST(BXTweestand, APressFlipsIt) {
    BXTweestand stand;
    QSignalSpy gewisseld(&stand, &BXTweestand::gewisseld);
    stand.druk();
    EXPECT_TRUE(stand.aan());
    stand.druk();
    EXPECT_FALSE(stand.aan());
    EXPECT_EQ(gewisseld.count(), 2);
}

TEST(BXTweestand, SwitchedOffAsAControlItIsDeaf) {
    BXTweestand stand;
    stand.setEnabled(false);
    stand.druk();
    EXPECT_FALSE(stand.aan());
}

TEST(BXTweestand, ItsOwnerFlipsItWithoutTheUsersSignal) {
    BXTweestand stand;
    QSignalSpy gewisseld(&stand, &BXTweestand::gewisseld);
    stand.zetAan(true);
    EXPECT_EQ(gewisseld.count(), 0);
}

TEST(BXRijBasis, OnlyARealChangeIsReported) {
    BXRijBasis rij;
    QSignalSpy gewisseld(&rij, &BXRijBasis::gewisseld);
    rij.schakel(false);
    EXPECT_EQ(gewisseld.count(), 0);
    rij.schakel(true);
    EXPECT_TRUE(rij.aan());
    EXPECT_EQ(gewisseld.count(), 1);
}

class KeuzeTest : public testing::Test {
  protected:
    KeuzeTest() {
        QVariantList opties;
        for (const QVariant& waarde :
             {QVariant(1), QVariant(QStringLiteral("twee")), QVariant(3.5)})
            opties << QVariantMap{{QStringLiteral("waarde"), waarde},
                                  {QStringLiteral("label"), QStringLiteral("x")}};
        keuze.zetOpties(opties);
    }
    BXKeuzeBasis keuze;
};

TEST_F(KeuzeTest, BeginsWithNone) {
    EXPECT_EQ(keuze.gekozen(), -1);
}

TEST_F(KeuzeTest, ValuesOfAnyKindCanBeChosen) {
    keuze.kies(1);
    EXPECT_EQ(keuze.keuze(), QVariant(QStringLiteral("twee")));
    keuze.zetKeuze(3.5);
    EXPECT_EQ(keuze.gekozen(), 2);
    keuze.zetKeuze(1.0);
    EXPECT_EQ(keuze.gekozen(), 0) << "numbers are equal whatever their type";
}

TEST_F(KeuzeTest, AValueThatIsNoOptionChoosesNone) {
    keuze.zetKeuze(QStringLiteral("vier"));
    EXPECT_EQ(keuze.gekozen(), -1);
}

TEST_F(KeuzeTest, AnOptionThatIsNotThereIsNothing) {
    QSignalSpy gewisseld(&keuze, &BXKeuzeBasis::gewisseld);
    keuze.kies(-1);
    keuze.kies(3);
    EXPECT_EQ(gewisseld.count(), 0);
}

TEST_F(KeuzeTest, ChoosingItAgainIsNoChange) {
    keuze.kies(1);
    QSignalSpy gewisseld(&keuze, &BXKeuzeBasis::gewisseld);
    keuze.kies(1);
    EXPECT_EQ(gewisseld.count(), 0);
}

class SchuifTest : public testing::Test {
  protected:
    SchuifTest() { schuif->zetNaam(QStringLiteral("dichtheid")); }
    ~SchuifTest() override { SchuifFocus::gedeeld().laatLos(); }

    std::unique_ptr<BXSchuifBasis> schuif = std::make_unique<BXSchuifBasis>();
};

TEST_F(SchuifTest, ItsNameIsGivenNinetyTwoPoints) {
    EXPECT_EQ(schuif->naamBreedte(), 92.0);
}

TEST_F(SchuifTest, DraggingSetsTheValueFromThePlace) {
    schuif->zetBereik({10.0, 20.0});
    QSignalSpy bewogen(schuif.get(), &BXSchuifBasis::bewogen);
    schuif->sleep(0.25);
    EXPECT_DOUBLE_EQ(schuif->waarde(), 12.5);
    schuif->sleep(7.0);
    EXPECT_EQ(schuif->waarde(), 20.0);
    schuif->sleep(-7.0);
    EXPECT_EQ(schuif->waarde(), 10.0);
    EXPECT_EQ(bewogen.count(), 3);
}

TEST_F(SchuifTest, APlaceThatIsNoNumberMovesNothing) {
    schuif->zetWaarde(0.4);
    QSignalSpy bewogen(schuif.get(), &BXSchuifBasis::bewogen);
    schuif->sleep(std::nan(""));
    EXPECT_EQ(schuif->waarde(), 0.4);
    EXPECT_EQ(bewogen.count(), 0);
}

TEST_F(SchuifTest, AnEndlessPlaceIsAnEnd) {
    schuif->sleep(std::numeric_limits<double>::infinity());
    EXPECT_EQ(schuif->waarde(), 1.0);
    schuif->sleep(-std::numeric_limits<double>::infinity());
    EXPECT_EQ(schuif->waarde(), 0.0);
}

TEST_F(SchuifTest, WithoutBarsNoneIsLit) {
    schuif->zetWaarde(1.0);
    EXPECT_EQ(schuif->gevuld(1.0, 0), 0);
}

TEST_F(SchuifTest, AValueIsWrittenOnlyWhenItDiffers) {
    schuif->zetWaarde(1.0);
    QSignalSpy bewogen(schuif.get(), &BXSchuifBasis::bewogen);
    QSignalSpy gewijzigd(schuif.get(), &BXSchuifBasis::waardeChanged);
    schuif->verzet(1);
    schuif->verhoog();
    EXPECT_EQ(bewogen.count(), 0);
    EXPECT_EQ(gewijzigd.count(), 0);
}

TEST_F(SchuifTest, AStepOfNoneIsAHundredthOfTheRange) {
    schuif->zetBereik({0.0, 50.0});
    schuif->zetWaarde(10.0);
    schuif->verhoog();
    EXPECT_DOUBLE_EQ(schuif->waarde(), 12.5);
    schuif->verlaag();
    EXPECT_DOUBLE_EQ(schuif->waarde(), 10.0);
}

TEST_F(SchuifTest, AnIncrementAtTheUpperBoundLeavesItThere) {
    schuif->zetWaarde(1.0);
    schuif->verhoog();
    EXPECT_EQ(schuif->waarde(), 1.0);
}

TEST_F(SchuifTest, ItsOwnersValueOutsideTheRangeStaysUntilItIsMoved) {
    schuif->zetWaarde(7.0);
    EXPECT_EQ(schuif->waarde(), 7.0);
    EXPECT_EQ(schuif->gevuld(schuif->waarde(), 50), 50);
    schuif->verzet(-1);
    EXPECT_DOUBLE_EQ(schuif->waarde(), 1.0);
    schuif->verzet(-1);
    EXPECT_DOUBLE_EQ(schuif->waarde(), 0.99);
}

TEST_F(SchuifTest, ARangeThatIsNoPairIsEmpty) {
    for (const QList<double>& bereik : {QList<double>{}, {1.0}, {1.0, 2.0, 3.0}}) {
        schuif->zetBereik(bereik);
        schuif->zetWaarde(2.0);
        schuif->verhoog();
        EXPECT_EQ(schuif->waarde(), 0.0);
        EXPECT_EQ(schuif->gevuld(0.0, 50), 0);
    }
}

TEST_F(SchuifTest, AValueThatIsNoNumberIsMovedOffAgain) {
    schuif->zetWaarde(std::nan(""));
    QSignalSpy gewijzigd(schuif.get(), &BXSchuifBasis::waardeChanged);
    schuif->zetWaarde(std::nan(""));
    EXPECT_EQ(gewijzigd.count(), 0);
    schuif->verzet(1);
    EXPECT_DOUBLE_EQ(schuif->waarde(), 0.01);
}

TEST_F(SchuifTest, AssistiveTechnologyFindsItsValueAndCanSetIt) {
    schuif->zetBereik({1.0, 3.0});
    schuif->zetWaarde(2.0);
    schuif->zetNaam(QStringLiteral("Dichtheid"));
    schuif->zetTekst(QStringLiteral("100%"));
    auto* const gevonden = QAccessible::queryAccessibleInterface(schuif.get());
    ASSERT_TRUE(gevonden && gevonden->valueInterface() && gevonden->actionInterface());
    EXPECT_EQ(gevonden->role(), QAccessible::Slider);
    EXPECT_EQ(gevonden->text(QAccessible::Name), QStringLiteral("Dichtheid"));
    EXPECT_EQ(gevonden->text(QAccessible::Value), QStringLiteral("100%"));
    auto& waarde = *gevonden->valueInterface();
    EXPECT_EQ(waarde.currentValue(), 2.0);
    EXPECT_EQ(waarde.minimumValue(), 1.0);
    EXPECT_EQ(waarde.maximumValue(), 3.0);
    EXPECT_EQ(waarde.minimumStepSize(), 0.02);
    QSignalSpy bewogen(schuif.get(), &BXSchuifBasis::bewogen);
    waarde.setCurrentValue(9.0);
    EXPECT_EQ(schuif->waarde(), 3.0);
    EXPECT_EQ(bewogen.count(), 1);
    gevonden->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_DOUBLE_EQ(schuif->waarde(), 2.9);
}

TEST_F(SchuifTest, DisabledItIsNotMovedByAssistiveTechnology) {
    schuif->setEnabled(false);
    schuif->zetWaarde(0.5);
    auto* const gevonden = QAccessible::queryAccessibleInterface(schuif.get());
    ASSERT_TRUE(gevonden && gevonden->valueInterface() && gevonden->actionInterface());
    EXPECT_TRUE(gevonden->state().disabled);
    gevonden->valueInterface()->setCurrentValue(0.9);
    gevonden->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(schuif->waarde(), 0.5);
}

TEST_F(SchuifTest, IsActiveWhenTheFocusNamesIt) {
    EXPECT_FALSE(schuif->actief());
    SchuifFocus::gedeeld().neem(QStringLiteral("dichtheid"), nullptr);
    EXPECT_TRUE(schuif->actief());
    schuif->zetNaam(QStringLiteral("snelheid"));
    EXPECT_FALSE(schuif->actief());
}

TEST_F(SchuifTest, TheFocusOutlivesTheSlider) {
    focus(*schuif, QEvent::FocusIn, Qt::TabFocusReason);
    const SchuifFocus::Verzet verzet = SchuifFocus::gedeeld().verzet();
    ASSERT_TRUE(verzet);
    verzet(1);
    EXPECT_DOUBLE_EQ(schuif->waarde(), 0.01);
    schuif.reset();
    EXPECT_FALSE(SchuifFocus::gedeeld().actief());
    verzet(1);
}

}  // namespace
