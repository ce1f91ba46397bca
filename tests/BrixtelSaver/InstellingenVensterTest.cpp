// SPDX-License-Identifier: MIT
#include "BrixtelSaver/InstellingenVenster.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <cmath>
#include <type_traits>

#include "drawing/Thema.h"
#include "platform/window/SheetOnWindow.h"
#include "tests/BrixtelSaver/Instellingen.h"
#include "tests/support/Contrast.h"
#include "tests/support/Until.h"

using brixtel::alleKeuzes;
using brixtel::EigenInstellingen;
using brixtel::InstellingenVenster;
using brixtel::SaverInstellingen;
using brixtel::SaverKeuze;
using brixtel::Thema;

namespace {

class Venster : public testing::Test {
  protected:
    EigenInstellingen eigen;
    std::vector<SaverKeuze> gemeld;

    std::shared_ptr<InstellingenVenster> maak() {
        return std::make_shared<InstellingenVenster>(
            [this](SaverKeuze keuze) { gemeld.push_back(keuze); });
    }
    std::shared_ptr<InstellingenVenster> maakMet(SaverKeuze bewaard) {
        SaverInstellingen::zetKeuze(bewaard);
        return maak();
    }
    // The indices of the marked buttons.
    static std::vector<int> aan(const InstellingenVenster& venster) {
        std::vector<int> welke;
        for (std::size_t i = 0; i < venster.knoppen().size(); ++i)
            if (venster.knoppen()[i]->isChecked()) welke.push_back(static_cast<int>(i));
        return welke;
    }
    // A child's frame in the panel's own points, y up.
    static QRect vak(const InstellingenVenster& venster, const QWidget& kind) {
        const QPoint boven = kind.mapTo(&venster, QPoint(0, 0));
        return {boven.x(), venster.height() - boven.y() - kind.height(), kind.width(),
                kind.height()};
    }
    static QPushButton* klaarKnop(const InstellingenVenster& venster) {
        return venster.findChild<QPushButton*>();
    }
    static void losGroep(const InstellingenVenster& venster) {
        for (QRadioButton* knop : venster.knoppen())
            knop->setAutoExclusive(false);
    }
    static void druk(QWidget& op, int toets, const QString& tekst = {}) {
        QKeyEvent neer(QEvent::KeyPress, toets, Qt::NoModifier, tekst);
        QApplication::sendEvent(&op, &neer);
        QKeyEvent op_(QEvent::KeyRelease, toets, Qt::NoModifier, tekst);
        QApplication::sendEvent(&op, &op_);
    }
};

TEST_F(Venster, WithNoStoredChoiceTheFirstButtonIsMarked) {
    const auto venster = maak();
    EXPECT_EQ(aan(*venster), std::vector{0});
    EXPECT_EQ(venster->knoppen()[0]->text(), QStringLiteral("Steeds iets anders (elke minuut)"));
}

TEST_F(Venster, WithTunnelStoredTheFifthButtonIsMarkedAndTheOthersAreOff) {
    const auto venster = maakMet(SaverKeuze::tunnel);
    EXPECT_EQ(aan(*venster), std::vector{4});
    EXPECT_EQ(vak(*venster, *venster->knoppen()[4]).y(), 86);
}

TEST_F(Venster, WithADamagedChoiceStoredTheFirstButtonIsMarked) {
    eigen.schrijf("[General]\nkeuze=hologram\n");
    EXPECT_EQ(aan(*maak()), std::vector{0});
}

TEST_F(Venster, EveryChoiceHasItsNameAndPlaceInOrder) {
    const auto venster = maak();
    const int hoogtes[] = {190, 164, 138, 112, 86, 60};
    for (std::size_t i = 0; i < alleKeuzes.size(); ++i) {
        const QRadioButton& knop = *venster->knoppen()[i];
        EXPECT_EQ(knop.text(), naam(alleKeuzes[i]));
        EXPECT_EQ(vak(*venster, knop), QRect(24, hoogtes[i], 330, 22));
        EXPECT_EQ(knop.font(), Thema::font(12));
        EXPECT_EQ(knop.palette().color(QPalette::WindowText), Thema::wit());
        EXPECT_EQ(knop.palette().color(QPalette::Text), Thema::groen());
    }
}

TEST_F(Venster, ThePanelIsDarkFixedAndHasTwoLabels) {
    const auto venster = maak();
    EXPECT_EQ(venster->size(), QSize(380, 286));
    EXPECT_EQ(venster->minimumSize(), venster->maximumSize());
    EXPECT_EQ(venster->palette().color(QPalette::Window), Thema::zwart());
    const auto opschriften = venster->findChildren<QLabel*>();
    ASSERT_EQ(opschriften.size(), 2);
    EXPECT_EQ(opschriften[0]->text(), QStringLiteral("BRIXTEL SCHERMBEVEILIGING"));
    EXPECT_EQ(vak(*venster, *opschriften[0]), QRect(20, 244, 340, 22));
    EXPECT_EQ(opschriften[0]->font(), Thema::font(15, {.vet = true}));
    EXPECT_EQ(opschriften[0]->palette().color(QPalette::WindowText), Thema::groen());
    EXPECT_EQ(opschriften[1]->text(), QStringLiteral("// wat laat hij zien?"));
    EXPECT_EQ(vak(*venster, *opschriften[1]), QRect(20, 222, 340, 16));
    EXPECT_EQ(opschriften[1]->font(), Thema::font(11));
    EXPECT_EQ(opschriften[1]->palette().color(QPalette::WindowText), Thema::middel());
}

TEST_F(Venster, KlaarIsTheDefaultButtonInItsPlace) {
    const auto venster = maak();
    const QPushButton* const knop = klaarKnop(*venster);
    ASSERT_TRUE(knop);
    EXPECT_EQ(knop->text(), QStringLiteral("Klaar"));
    EXPECT_EQ(vak(*venster, *knop), QRect(270, 16, 90, 30));
    EXPECT_TRUE(knop->isDefault());
}

TEST_F(Venster, WhatHasTheFocusIsSeenToHaveItAtThreeToOne) {
    const auto venster = maakMet(SaverKeuze::regen);
    venster->show();
    venster->activateWindow();
    std::vector<QWidget*> alles{klaarKnop(*venster)};
    for (QRadioButton* knop : venster->knoppen())
        alles.push_back(knop);
    for (QWidget* kind : alles) {
        QWidget* const ander = kind == alles[0] ? alles[1] : alles[0];
        ander->setFocus();
        ASSERT_TRUE(until([&] { return ander->hasFocus(); }));
        const QImage zonder = kind->grab().toImage();
        kind->setFocus();
        ASSERT_TRUE(until([&] { return kind->hasFocus(); }));
        const QImage met = kind->grab().toImage();
        int duidelijk = 0;
        for (int y = 0; y < met.height(); ++y)
            for (int x = 0; x < met.width(); ++x)
                duidelijk += contrast(met.pixel(x, y), zonder.pixel(x, y)) >= 3.0 ? 1 : 0;
        // A line all around it, more or less.
        EXPECT_GT(duidelijk, kind->height() * 2 + 40) << qPrintable(kind->objectName());
    }
}

TEST_F(Venster, OnlyATitleBarAndNothingToCloseShrinkOrGrowItWith) {
    const Qt::WindowFlags soort = maak()->windowFlags();
    EXPECT_TRUE(soort.testFlag(Qt::CustomizeWindowHint));
    EXPECT_TRUE(soort.testFlag(Qt::WindowTitleHint));
    EXPECT_FALSE(soort & (Qt::WindowCloseButtonHint | Qt::WindowMinMaxButtonsHint |
                          Qt::WindowSystemMenuHint));
}

// The panel of the desktop effects is called "Instellingen — Brixtel".
TEST_F(Venster, ItsTitleSaysWhatItSetsAndWhose) {
    EXPECT_EQ(maak()->windowTitle(), QStringLiteral("Schermbeveiliging instellen — Brixtel"));
}

TEST_F(Venster, NoTextIsCutOff) {
    const auto venster = maak();
    for (const QRadioButton* knop : venster->knoppen())
        EXPECT_LE(knop->sizeHint().width(), knop->width()) << qPrintable(knop->text());
    for (const QLabel* opschrift : venster->findChildren<QLabel*>()) {
        EXPECT_LE(opschrift->sizeHint().width(), opschrift->width());
        EXPECT_LE(opschrift->sizeHint().height(), opschrift->height());
    }
}

TEST_F(Venster, ClickingAButtonUnmarksAllOthers) {
    const auto venster = maak();
    for (int i : {3, 1, 5, 0}) {
        venster->knoppen()[static_cast<std::size_t>(i)]->click();
        EXPECT_EQ(aan(*venster), std::vector{i});
    }
}

TEST_F(Venster, ClickingAButtonUnmarksAllOthersAlsoIfThePlatformsGroupingDidNot) {
    const auto venster = maak();
    losGroep(*venster);
    for (QRadioButton* knop : venster->knoppen())
        knop->setChecked(true);
    ASSERT_EQ(aan(*venster).size(), 6U);
    venster->gekozenKnop(venster->knoppen()[2]);
    EXPECT_EQ(aan(*venster), std::vector{2});
    venster->knoppen()[4]->click();
    EXPECT_EQ(aan(*venster), std::vector{4});
    // A click on the marked button leaves the button marked: one is always marked.
    venster->knoppen()[4]->click();
    EXPECT_EQ(aan(*venster), std::vector{4});
}

TEST_F(Venster, TheVeryButtonCountsNotOneThatLooksTheSame) {
    const auto venster = maak();
    QRadioButton evenbeeld(venster->knoppen()[1]->text());
    venster->gekozenKnop(&evenbeeld);
    EXPECT_TRUE(aan(*venster).empty());
}

TEST_F(Venster, KlaarReportsTheMarkedModeAlsoIfItWasNotChanged) {
    const auto venster = maakMet(SaverKeuze::bol);
    venster->showAbove({});
    klaarKnop(*venster)->click();
    EXPECT_EQ(gemeld, std::vector{SaverKeuze::bol});
    EXPECT_FALSE(venster->isShown());
}

TEST_F(Venster, WithSeveralMarkedTheFirstCounts) {
    const auto venster = maak();
    losGroep(*venster);
    venster->knoppen()[0]->setChecked(false);
    venster->knoppen()[2]->setChecked(true);
    venster->knoppen()[4]->setChecked(true);
    venster->sluit();
    EXPECT_EQ(gemeld, std::vector{SaverKeuze::bol});
}

TEST_F(Venster, WithNoneMarkedItClosesWithoutReporting) {
    const auto venster = maak();
    losGroep(*venster);
    venster->knoppen()[0]->setChecked(false);
    venster->showAbove({});
    venster->sluit();
    EXPECT_TRUE(gemeld.empty());
    EXPECT_FALSE(venster->isShown());
}

// A parent that notes what it was asked.
struct Ouder final : platform::SheetParent {
    std::vector<platform::Sheet*> geeindigd;
    void endSheet(platform::Sheet& blad) override { geeindigd.push_back(&blad); }
};

TEST_F(Venster, AttachedAsASheetItsParentIsAskedToEndIt) {
    const auto venster = maak();
    Ouder ouder;
    venster->setSheetParent(&ouder);
    venster->showAbove({});
    venster->sluit();
    EXPECT_EQ(ouder.geeindigd, std::vector<platform::Sheet*>{venster.get()});
    // The parent hides the sheet.
    EXPECT_TRUE(venster->isShown());
    EXPECT_EQ(gemeld.size(), 1U);
}

TEST_F(Venster, TheParentTakesItAwayAndLetsItGo) {
    const auto venster = maak();
    int weg = 0;
    venster->onDismissed([&] { ++weg; });
    platform::SheetOnWindow ouder(venster, {});
    EXPECT_EQ(venster->sheetParent(), &ouder);
    EXPECT_TRUE(venster->isShown());
    venster->sluit();
    EXPECT_FALSE(venster->isShown());
    EXPECT_EQ(venster->sheetParent(), nullptr);
    EXPECT_EQ(weg, 1);
}

TEST_F(Venster, ShownWithoutASheetParentItClosesByOrderingOut) {
    const auto venster = maak();
    int weg = 0;
    venster->onDismissed([&] { ++weg; });
    venster->showAbove({});
    EXPECT_TRUE(venster->isShown());
    venster->sluit();
    EXPECT_FALSE(venster->isShown());
    EXPECT_EQ(weg, 1);
}

TEST_F(Venster, PressingReturnReportsTheMarkedModeOnceThenEnds) {
    for (const int toets : {Qt::Key_Return, Qt::Key_Enter}) {
        gemeld.clear();
        const auto venster = maakMet(SaverKeuze::logo);
        venster->showAbove({});
        druk(*venster, toets, QStringLiteral("\r"));
        EXPECT_EQ(gemeld, std::vector{SaverKeuze::logo});
        EXPECT_FALSE(venster->isShown());
    }
}

TEST_F(Venster, NothingButKlaarClosesIt) {
    const auto venster = maak();
    venster->showAbove({});
    druk(*venster, Qt::Key_Escape);
    EXPECT_TRUE(venster->isShown());
    venster->close();  // as the window manager asks for it
    EXPECT_TRUE(venster->isShown());
    venster->reject();
    EXPECT_TRUE(venster->isShown());
    EXPECT_TRUE(gemeld.empty());
}

TEST_F(Venster, TheMarkedButtonHasTheKeyboardAndArrowsChoose) {
    const auto venster = maakMet(SaverKeuze::bol);
    venster->showAbove({});
    ASSERT_TRUE(until([&] { return venster->knoppen()[2]->hasFocus(); }));
    druk(*venster->knoppen()[2], Qt::Key_Down);
    EXPECT_EQ(aan(*venster), std::vector{3});
    druk(*venster->knoppen()[3], Qt::Key_Up);
    druk(*venster->knoppen()[2], Qt::Key_Up);
    EXPECT_EQ(aan(*venster), std::vector{1});
    venster->knoppen()[5]->setFocus();
    druk(*venster->knoppen()[5], Qt::Key_Space, QStringLiteral(" "));
    EXPECT_EQ(aan(*venster), std::vector{5});
}

TEST_F(Venster, OtherInitialisersAreNotThere) {
    EXPECT_FALSE((std::is_constructible_v<InstellingenVenster, QWidget*>));
    EXPECT_FALSE((std::is_constructible_v<InstellingenVenster, QWidget*, Qt::WindowFlags>));
    EXPECT_FALSE(std::is_default_constructible_v<InstellingenVenster>);
    EXPECT_FALSE(std::is_copy_constructible_v<InstellingenVenster>);
}

TEST_F(Venster, AScreenReaderHearsEachChoiceAndItsState) {
    const auto venster = maakMet(SaverKeuze::kubus);
    const auto* const paneel = QAccessible::queryAccessibleInterface(venster.get());
    EXPECT_EQ(paneel->role(), QAccessible::Dialog);
    EXPECT_EQ(paneel->text(QAccessible::Name), QStringLiteral("BRIXTEL SCHERMBEVEILIGING"));
    for (std::size_t i = 0; i < alleKeuzes.size(); ++i) {
        const auto* const knop = QAccessible::queryAccessibleInterface(venster->knoppen()[i]);
        EXPECT_EQ(knop->role(), QAccessible::RadioButton);
        EXPECT_EQ(knop->text(QAccessible::Name), naam(alleKeuzes[i]));
        EXPECT_TRUE(knop->state().checkable);
        EXPECT_EQ(knop->state().checked, i == 3);
    }
    const auto* const klaar = QAccessible::queryAccessibleInterface(klaarKnop(*venster));
    EXPECT_EQ(klaar->role(), QAccessible::Button);
    EXPECT_EQ(klaar->text(QAccessible::Name), QStringLiteral("Klaar"));
    EXPECT_TRUE(klaar->state().defaultButton);
}

TEST_F(Venster, AScreenReaderCanChooseToo) {
    const auto venster = maak();
    auto* const knop = QAccessible::queryAccessibleInterface(venster->knoppen()[4]);
    knop->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(aan(*venster), std::vector{4});
    EXPECT_TRUE(knop->state().checked);
}

// The number of bright green pixels in a part of the picture.
int groenIn(const QImage& beeld, const QRect& deel) {
    int aantal = 0;
    for (int y = deel.top(); y <= deel.bottom(); ++y)
        for (int x = deel.left(); x <= deel.right(); ++x)
            aantal += beeld.pixel(x, y) == Thema::groen().rgb();
    return aantal;
}

TEST_F(Venster, TheMarkIsAGreenDotAndTheGroundIsDark) {
    const auto venster = maakMet(SaverKeuze::regen);
    const QImage beeld = venster->picture();
    ASSERT_EQ(beeld.size(), QSize(380, 286));
    EXPECT_EQ(beeld.pixel(2, 2), Thema::zwart().rgb());
    for (std::size_t i = 0; i < alleKeuzes.size(); ++i) {
        // The middle of the mark, in Qt's own direction.
        const QPoint midden = venster->knoppen()[i]->mapTo(venster.get(), QPoint(7, 11));
        const int groen = groenIn(beeld, QRect(midden - QPoint(3, 3), QSize(6, 6)));
        EXPECT_EQ(groen > 8, i == 1) << i << ": " << groen;
    }
}

}  // namespace
