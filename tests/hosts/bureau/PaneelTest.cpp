// SPDX-License-Identifier: MIT
// The panel, worked as assistive technology and a keyboard do.
#include <QAbstractEventDispatcher>
#include <QAccessible>
#include <QFile>
#include <QQuickItem>
#include <QTest>

#include "BrixtelSaver/SaverInstellingen.h"
#include "controls/SchuifFocus.h"
#include "hosts/bureau/paneel/PaneelVenster.h"
#include "tests/hosts/bureau/BureauProef.h"
#include "tests/support/GeluidServer.h"
#include "tests/support/KlikSpoor.h"

using namespace brixtel;

namespace {

class OpHetPaneel : public BureauProef {
  protected:
    std::optional<PaneelVenster> paneel;
    int beelden = 0;

    void SetUp() override {
        BureauProef::SetUp();
        toon();
    }
    void TearDown() override { paneel.reset(); }
    void toon() {
        if (!paneel)
            paneel.emplace(
                PaneelBronnen{.bureau = *bureau, .server = server, .toeval = toeval, .bus = {}});
        paneel->toon();
        QObject::connect(view(), &QQuickWindow::frameSwapped, view(), [this] { ++beelden; });
        ASSERT_TRUE(until([this] { return view()->isExposed(); }));
        ASSERT_NE(view()->rootObject(), nullptr);
    }
    [[nodiscard]] QQuickView* view() { return paneel->view(); }
    [[nodiscard]] QQuickItem* blad() { return view()->rootObject(); }

    using Elke = std::function<void(QAccessibleInterface&)>;
    static void elke(QAccessibleInterface* top, const Elke& doe) {
        if (!top || top->state().invisible) return;
        doe(*top);
        for (int i = 0; i < top->childCount(); ++i)
            elke(top->child(i), doe);
    }
    // That role and name; none or several are a failure.
    QAccessibleInterface* vind(QAccessible::Role rol, const char* naam) {
        QAccessibleInterface* gevonden = nullptr;
        int aantal = 0;
        elke(QAccessible::queryAccessibleInterface(view()), [&](QAccessibleInterface& een) {
            if (een.role() != rol || een.text(QAccessible::Name) != QString::fromUtf8(naam)) return;
            gevonden = &een;
            ++aantal;
        });
        EXPECT_EQ(aantal, 1) << naam;
        return gevonden;
    }
    void druk(QAccessible::Role rol, const char* naam) {
        if (auto* const wat = vind(rol, naam))
            wat->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    void schakel(const char* naam) { druk(QAccessible::CheckBox, naam); }
    bool isAan(const char* naam) {
        auto* const wat = vind(QAccessible::CheckBox, naam);
        return wat && wat->state().checked;
    }
    bool isGekozen(const char* naam) {
        auto* const wat = vind(QAccessible::RadioButton, naam);
        return wat && wat->state().checked;
    }
    double waarde(const char* naam) {
        auto* const wat = vind(QAccessible::Slider, naam);
        return wat ? wat->valueInterface()->currentValue().toDouble() : -1.0;
    }
    // Opens the row of that title, whose arrow it is.
    void open(const char* titel) {
        elke(QAccessible::queryAccessibleInterface(view()), [&](QAccessibleInterface& een) {
            if (een.role() == QAccessible::Button &&
                een.text(QAccessible::Name) == u"Toon de opties" &&
                een.text(QAccessible::Description) == QString::fromUtf8(titel))
                een.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        });
    }
    void openAlles() {
        open("Muziek volgen");
        open("Schermbeveiliging");
    }
    QQuickItem* item(const char* naam) {
        return blad()->findChild<QQuickItem*>(QLatin1String(naam));
    }

    // All there is to do now is done: no picture for so many turns.
    void kalmeer() {
        int laatste = -1, stil = 0;
        ASSERT_TRUE(until([&] {
            stil = beelden == laatste ? stil + 1 : 0;
            laatste = beelden;
            return stil > 100;
        }));
    }
};

TEST_F(OpHetPaneel, EveryControlHasItsNameAndItsState) {
    openAlles();
    for (const char* naam : {"Voorbeeld van het zwarte scherm", "Regen over het bureaublad",
                             "Zwart scherm", "Muziek volgen"})
        EXPECT_TRUE(vind(QAccessible::CheckBox, naam)) << naam;
    EXPECT_TRUE(vind(QAccessible::Slider, "Dichtheid"));
    EXPECT_TRUE(vind(QAccessible::Slider, "Snelheid"));
    EXPECT_TRUE(vind(QAccessible::Button, "Toon nu"));
    EXPECT_TRUE(vind(QAccessible::Button, "Open de instellingen"));
    EXPECT_TRUE(vind(QAccessible::RadioButton, "Wisselend"));
    EXPECT_TRUE(vind(QAccessible::ProgressBar, "Niveau"));
    EXPECT_TRUE(vind(QAccessible::Indicator, "Maat"));
    int naamloos = 0;
    elke(QAccessible::queryAccessibleInterface(view()), [&](QAccessibleInterface& een) {
        if (een.state().focusable && een.text(QAccessible::Name).isEmpty()) ++naamloos;
    });
    EXPECT_EQ(naamloos, 0);
}

TEST_F(OpHetPaneel, TheRainsSwitchShowsAndClosesIt) {
    schakel("Regen over het bureaublad");
    EXPECT_TRUE(nu().regen);
    schakel("Regen over het bureaublad");
    EXPECT_FALSE(nu().regen);
}

TEST_F(OpHetPaneel, WhatIsChangedElsewhereShowsAtOnce) {
    openAlles();
    bureau->toonRegen();
    EXPECT_TRUE(isAan("Regen over het bureaublad"));
    bureau->sluitRegen();
    EXPECT_FALSE(isAan("Regen over het bureaublad"));
    bureau->toonZwart(DrieSoort::tunnel);
    EXPECT_TRUE(isAan("Zwart scherm"));
    bureau->sluitZwart();
    EXPECT_FALSE(isAan("Zwart scherm"));
    bureau->zetKeuzes(
        {.dichtheid = 0.3, .snelheid = 2.5, .muziek = true, .soort = DrieSoort::logo});
    EXPECT_EQ(waarde("Dichtheid"), 0.3);
    EXPECT_EQ(waarde("Snelheid"), 2.5);
    EXPECT_TRUE(isAan("Muziek volgen"));
    EXPECT_EQ(paneel->staat()->soort(), QStringLiteral("logo"));
}

TEST_F(OpHetPaneel, ASwitchThatTheUserMovedStillFollowsTheOwner) {
    for (int keer = 0; keer < 3; ++keer) {
        schakel("Regen over het bureaublad");
        ASSERT_TRUE(nu().regen);
        bureau->sluitRegen();
        EXPECT_FALSE(isAan("Regen over het bureaublad"));
    }
}

TEST_F(OpHetPaneel, AWishThatComesToNothingIsNotShownAsFulfilled) {
    schermen.clear();
    schakel("Zwart scherm");
    EXPECT_FALSE(nu().zwart);
    EXPECT_FALSE(isAan("Zwart scherm"));
}

TEST_F(OpHetPaneel, TheSlidersAreTheOwnersAndAreKept) {
    vind(QAccessible::Slider, "Dichtheid")->valueInterface()->setCurrentValue(0.4);
    vind(QAccessible::Slider, "Snelheid")->valueInterface()->setCurrentValue(3.0);
    EXPECT_NEAR(nu().keuzes.dichtheid, 0.4, 1e-9);
    EXPECT_NEAR(nu().keuzes.snelheid, 3.0, 1e-9);
    klok.advance(0.15);
    EXPECT_NEAR(BureauInstellingen::lees().dichtheid, 0.4, 1e-9);
    EXPECT_NEAR(BureauInstellingen::lees().snelheid, 3.0, 1e-9);
}

TEST_F(OpHetPaneel, WhatASliderWasDraggedToIsKeptWhenThePanelCloses) {
    for (const double nu : {0.3, 0.5, 0.9})
        vind(QAccessible::Slider, "Dichtheid")->valueInterface()->setCurrentValue(nu);
    EXPECT_NEAR(BureauInstellingen::lees().dichtheid, 0.3, 1e-9);
    view()->close();
    ASSERT_TRUE(until([this] { return !paneel->isOpen(); }));
    EXPECT_NEAR(BureauInstellingen::lees().dichtheid, 0.9, 1e-9);
}

TEST_F(OpHetPaneel, TheSceneIsChosenKeptAndShown) {
    druk(QAccessible::RadioButton, "Kubus");
    EXPECT_EQ(nu().keuzes.soort, DrieSoort::kubus);
    EXPECT_EQ(BureauInstellingen::lees().soort, DrieSoort::kubus);
    EXPECT_TRUE(isGekozen("Kubus"));
    druk(QAccessible::Button, "Toon nu");
    EXPECT_TRUE(nu().zwart);
    EXPECT_EQ(nu().soort, DrieSoort::kubus);
    schakel("Zwart scherm");
    EXPECT_FALSE(nu().zwart);
    druk(QAccessible::RadioButton, "Regen");
    klok.advance(0.15);
    EXPECT_EQ(BureauInstellingen::lees().soort, std::nullopt);
    schakel("Zwart scherm");
    EXPECT_TRUE(nu().zwart);
    EXPECT_EQ(nu().soort, std::nullopt);
}

TEST_F(OpHetPaneel, ThePictureIsTheUsersToHide) {
    EXPECT_FALSE(blad()->property("plek").toRectF().isEmpty());
    schakel("Voorbeeld van het zwarte scherm");
    EXPECT_FALSE(BureauInstellingen::lees().voorbeeld);
    EXPECT_TRUE(blad()->property("plek").toRectF().isEmpty());
}

TEST_F(OpHetPaneel, TheMusicIsHeardWhileThePanelIsSeenAndFollowsIt) {
    EXPECT_FALSE(bureau->muziek().luistert());
    schakel("Muziek volgen");
    EXPECT_TRUE(nu().keuzes.muziek);
    EXPECT_TRUE(bureau->muziek().luistert());
    schakel("Muziek volgen");
    EXPECT_FALSE(bureau->muziek().luistert());
    schakel("Muziek volgen");
    view()->close();
    EXPECT_FALSE(bureau->muziek().luistert());
    ASSERT_TRUE(until([this] { return !paneel->isOpen(); }));
    EXPECT_FALSE(bureau->muziek().luistert());
    toon();
    EXPECT_TRUE(bureau->muziek().luistert());
}

TEST_F(OpHetPaneel, WithoutASoundServerItSaysSoWhileItFollowsTheMusic) {
    EXPECT_FALSE(item("geluidMelding")->isVisible());
    schakel("Muziek volgen");
    EXPECT_TRUE(until([this] {
        klok.advance(0.05);
        return item("geluidMelding")->isVisible();
    }));
    schakel("Muziek volgen");
    EXPECT_FALSE(item("geluidMelding")->isVisible());
}

TEST_F(OpHetPaneel, WithoutACompositorItSaysSoUntilThereIsOne) {
    EXPECT_FALSE(item("regenMelding")->isVisible());
    werkruimte.doorzichtig = false;
    schakel("Regen over het bureaublad");
    EXPECT_TRUE(item("regenMelding")->isVisible());
    EXPECT_TRUE(
        item("regenMelding")->property("tekst").toString().contains(QStringLiteral("compositor")));
    EXPECT_TRUE(isAan("Regen over het bureaublad"));
    werkruimte.zetDoorzichtig(true);
    EXPECT_FALSE(item("regenMelding")->isVisible());
}

TEST_F(OpHetPaneel, TheSaversModeIsStoredWhereTheSaverReadsIt) {
    openAlles();
    EXPECT_TRUE(isGekozen("Wisselend"));
    for (const auto& [ruw, keuze] :
         {std::pair{"tunnel", SaverKeuze::tunnel}, std::pair{"wisselend", SaverKeuze::wisselend}}) {
        paneel->staat()->zetSaver(QLatin1String(ruw));
        EXPECT_EQ(SaverInstellingen::keuze(), keuze);
    }
    paneel->staat()->zetSaver(QStringLiteral("zebra"));
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    // Stored by another program, it shows when the panel gets the keyboard again.
    SaverInstellingen::zetKeuze(SaverKeuze::logo);
    QFocusEvent terug(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(view(), &terug);
    EXPECT_EQ(paneel->staat()->saver(), QStringLiteral("logo"));
}

TEST_F(OpHetPaneel, ASaverThatIsNotThereIsToldOf) {
    const QByteArray pad = qgetenv("PATH");
    qputenv("PATH", "/nonexistent");
    openAlles();
    druk(QAccessible::Button, "Open de instellingen");
    EXPECT_TRUE(until([this] { return item("saverMelding")->isVisible(); }));
    qputenv("PATH", pad);
}

TEST_F(OpHetPaneel, TabVisitsEveryControlAndBringsItIntoSight) {
    openAlles();
    view()->resize(320, 260);
    kalmeer();
    auto* const rol = item("rol");
    const QQuickItem* eerste = nullptr;
    int bezocht = 0;
    for (int keer = 0; keer < 40; ++keer) {
        QTest::keyClick(view(), Qt::Key_Tab);
        const QQuickItem* const nuHier = view()->activeFocusItem();
        ASSERT_NE(nuHier, nullptr);
        if (nuHier == eerste) break;
        if (!eerste) eerste = nuHier;
        ++bezocht;
        if (!rol->isAncestorOf(nuHier)) continue;
        const double y = nuHier->mapToItem(rol, QPointF()).y();
        EXPECT_GE(y, -0.5) << bezocht;
        EXPECT_LE(y + nuHier->height(), rol->height() + 0.5) << bezocht;
    }
    // The tick; four arrows, three switches, two sliders, two choices, two buttons.
    EXPECT_EQ(bezocht, 14);
}

TEST_F(OpHetPaneel, ArrowsMoveASliderByOneStepAndWithShiftByTen) {
    bureau->zetKeuzes({.dichtheid = 0.2, .snelheid = 1.0});
    for (int keer = 0; keer < 40 && SchuifFocus::gedeeld().actiefNaam() != u"Dichtheid"; ++keer)
        QTest::keyClick(view(), Qt::Key_Tab);
    ASSERT_EQ(SchuifFocus::gedeeld().actiefNaam(), QStringLiteral("Dichtheid"));
    QTest::keyClick(view(), Qt::Key_Right);
    EXPECT_NEAR(nu().keuzes.dichtheid, 0.25, 1e-9);
    QTest::keyClick(view(), Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(nu().keuzes.dichtheid, 0.75, 1e-9);
    QTest::keyClick(view(), Qt::Key_Left);
    EXPECT_NEAR(nu().keuzes.dichtheid, 0.7, 1e-9);
}

TEST_F(OpHetPaneel, EscapeClosesItAndItOpensAnew) {
    QTest::keyClick(view(), Qt::Key_Escape);
    ASSERT_TRUE(until([this] { return !paneel->isOpen(); }));
    bureau->toonRegen();
    toon();
    EXPECT_TRUE(paneel->isOpen());
    EXPECT_TRUE(isAan("Regen over het bureaublad"));
}

TEST_F(OpHetPaneel, ShowingItTwiceIsOneWindow) {
    QQuickView* const eerste = view();
    paneel->toon();
    EXPECT_EQ(view(), eerste);
}

TEST_F(OpHetPaneel, WhileNothingChangesThereAreNoPicturesAndNoTimers) {
    openAlles();
    schakel("Voorbeeld van het zwarte scherm");
    kalmeer();
    klok.advance(0.15);
    const int voor = beelden;
    ASSERT_GT(voor, 0);
    EXPECT_EQ(klok.timerCount(), 0U);
    // What is told but changes nothing is no picture either.
    for (int keer = 0; keer < 100; ++keer) {
        klok.advance(0.1);
        Q_EMIT paneel->staat()->standChanged();
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(beelden, voor);
    int klokken = 0;
    const auto* const beurt = QAbstractEventDispatcher::instance();
    for (QObject* een : view()->findChildren<QObject*>())
        klokken += int(beurt->registeredTimers(een).size());
    for (QObject* een : blad()->findChildren<QObject*>())
        klokken += int(beurt->registeredTimers(een).size());
    EXPECT_EQ(klokken, 0);
}

TEST(PaneelGeluid, TheLevelAndTheBeatAreThoseOfWhatIsPlayed) {
    const QTemporaryDir map;
    qputenv("XDG_CONFIG_HOME", map.path().toLocal8Bit());
    steun::GeluidServer geluid;
    ASSERT_TRUE(geluid.loopt());
    platform::SystemClock klok;
    platform::RandomSource toeval{3};
    Werkruimte werkruimte;
    platform::WindowServer server{klok, {.drawer = {}, .display = QStringLiteral(":none")}};
    Bureau bureau({.server = server, .werkruimte = werkruimte, .toeval = toeval},
                  {.server = geluid.adres()});
    bureau.zetKeuzes({.muziek = true});
    PaneelVenster paneel({.bureau = bureau, .server = server, .toeval = toeval, .bus = {}});
    paneel.toon();
    ASSERT_TRUE(until([&] { return bureau.muziek().luistert(); }));
    ASSERT_TRUE(until([&] { return bureau.muziek().stand().has_value(); }));
    double hoogste = 0;
    int slagen = 0;
    QObject::connect(paneel.staat(), &PaneelStaat::geluidChanged, paneel.staat(), [&] {
        hoogste = std::max(hoogste, paneel.staat()->niveau());
        slagen += paneel.staat()->slag();
    });
    ASSERT_TRUE(geluid.speel(steun::KlikSpoor{.seconden = 6}.maak(), 44'100));
    EXPECT_TRUE(until([&] { return hoogste > 0.05 && slagen > 2; }));
    EXPECT_FALSE(paneel.staat()->zonderGeluid());
    // And dark again in silence.
    EXPECT_TRUE(until([&] { return !paneel.staat()->slag() && paneel.staat()->niveau() == 0.0; }));
    geluid.stop();
    EXPECT_TRUE(until([&] { return paneel.staat()->zonderGeluid(); }));
}

// The texts of the panel, and whether any two lie over each other or one is cut.
void bekijkTeksten(QQuickItem& blad) {
    std::vector<std::pair<QRectF, QString>> teksten;
    for (QQuickItem* een : blad.findChildren<QQuickItem*>()) {
        if (!een->inherits("QQuickText") || !een->isVisible()) continue;
        const QString tekst = een->property("text").toString();
        if (tekst.isEmpty()) continue;
        teksten.emplace_back(QRectF(een->mapToScene({}), een->size()), tekst);
        EXPECT_FALSE(een->property("truncated").toBool()) << qPrintable(tekst);
        EXPECT_LE(een->property("contentWidth").toDouble(), een->width() + 0.5)
            << qPrintable(tekst);
        EXPECT_LE(teksten.back().first.right(), blad.width()) << qPrintable(tekst);
        EXPECT_GE(teksten.back().first.left(), 0.0) << qPrintable(tekst);
    }
    EXPECT_GT(teksten.size(), 20U);
    for (std::size_t i = 0; i < teksten.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(
                teksten[i].first.adjusted(0.5, 0.5, -0.5, -0.5).intersects(teksten[j].first))
                << qPrintable(teksten[i].second) << " / " << qPrintable(teksten[j].second);
}

TEST_F(OpHetPaneel, NoTextIsCutOrLiesOverAnother) {
    openAlles();
    werkruimte.doorzichtig = false;
    bureau->toonRegen();
    schakel("Muziek volgen");
    ASSERT_TRUE(until([this] {
        klok.advance(0.05);
        return item("geluidMelding")->isVisible();
    }));
    for (const int breedte : {400, 340, 900}) {
        view()->resize(breedte, 640);
        ASSERT_TRUE(until([&] { return int(blad()->width()) == breedte; }));
        kalmeer();
        // The part above scrolls under nothing.
        bekijkTeksten(*item("rol"));
    }
}

}  // namespace
