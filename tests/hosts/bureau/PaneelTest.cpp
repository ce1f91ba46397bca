// SPDX-License-Identifier: MIT
// The panel, worked as assistive technology and a keyboard do.
#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFile>
#include <QTest>

#include "BrixtelSaver/SaverInstellingen.h"
#include "controls/SchuifFocus.h"
#include "tests/hosts/bureau/PaneelProef.h"
#include "tests/support/GeluidServer.h"
#include "tests/support/KlikSpoor.h"
#include "tests/support/WindowSystems.h"

using namespace brixtel;

namespace {

class OpHetPaneel : public PaneelProef {
  protected:
    void SetUp() override {
        PaneelProef::SetUp();
        toon();
    }
};

TEST_F(OpHetPaneel, EveryControlHasItsNameAndItsState) {
    for (const char* naam : {"Voorbeeld van het zwarte scherm", "Regen over het bureaublad",
                             "Zwart scherm", "Muziek volgen"})
        EXPECT_TRUE(vind(QAccessible::CheckBox, naam)) << naam;
    EXPECT_TRUE(vind(QAccessible::Slider, "Dichtheid"));
    EXPECT_TRUE(vind(QAccessible::Slider, "Snelheid"));
    EXPECT_TRUE(vind(QAccessible::Button, "Toon nu"));
    EXPECT_TRUE(vind(QAccessible::RadioButton, "BOL", kScenes));
    EXPECT_TRUE(vind(QAccessible::RadioButton, "WISSELEND", kSaver));
    int naamloos = 0;
    elke(QAccessible::queryAccessibleInterface(view()), [&](QAccessibleInterface& een) {
        if (een.state().focusable && een.text(QAccessible::Name).isEmpty()) ++naamloos;
    });
    EXPECT_EQ(naamloos, 0);
}

// A number is a value too, with the text that is seen.
TEST_F(OpHetPaneel, WhatHasANumberIsReadAsItsText) {
    const struct {
        QAccessible::Role rol;
        const char* naam;
        double nu, boven;
        const char* tekst;
    } getallen[] = {{QAccessible::Slider, "Dichtheid", 0.7, 1.0, "70%"},
                    {QAccessible::ProgressBar, "Niveau", 0.0, 1.0, "0%"},
                    {QAccessible::Graphic, "Maat", 0.0, 1.0, "uit"}};
    for (const auto& een : getallen) {
        auto* const wat = vind(een.rol, een.naam);
        ASSERT_TRUE(wat && wat->valueInterface()) << een.naam;
        EXPECT_EQ(wat->text(QAccessible::Value), QString::fromUtf8(een.tekst));
        EXPECT_EQ(wat->valueInterface()->currentValue().toDouble(), een.nu) << een.naam;
        EXPECT_EQ(wat->valueInterface()->maximumValue().toDouble(), een.boven) << een.naam;
    }
    for (const char* naam : {"Niveau", "Maat"}) {
        auto* const meter =
            vind(*naam == 'N' ? QAccessible::ProgressBar : QAccessible::Graphic, naam);
        ASSERT_TRUE(meter) << naam;
        meter->valueInterface()->setCurrentValue(1.0);
        EXPECT_EQ(meter->valueInterface()->currentValue().toDouble(), 0.0) << "it is only read";
        EXPECT_FALSE(meter->state().focusable || meter->actionInterface()) << naam;
    }
}

TEST_F(OpHetPaneel, TheRainsSwitchShowsAndClosesIt) {
    schakel("Regen over het bureaublad");
    EXPECT_TRUE(nu().regen);
    schakel("Regen over het bureaublad");
    EXPECT_FALSE(nu().regen);
}

TEST_F(OpHetPaneel, WhatIsChangedElsewhereShowsAtOnce) {
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
    druk(QAccessible::RadioButton, "KUBUS", kScenes);
    EXPECT_EQ(nu().keuzes.soort, DrieSoort::kubus);
    EXPECT_EQ(BureauInstellingen::lees().soort, DrieSoort::kubus);
    EXPECT_TRUE(isGekozen("KUBUS", kScenes));
    EXPECT_EQ(item("soortUitleg")->property("tekst").toString(),
              QStringLiteral("Een kubus van 343 nullen en enen die omspringen en golven."));
    druk(QAccessible::Button, "Toon nu");
    EXPECT_TRUE(nu().zwart);
    EXPECT_EQ(nu().soort, DrieSoort::kubus);
    schakel("Zwart scherm");
    EXPECT_FALSE(nu().zwart);
    druk(QAccessible::RadioButton, "REGEN", kScenes);
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
    EXPECT_TRUE(isGekozen("WISSELEND", kSaver));
    for (const auto& [naam, keuze] :
         {std::pair{"TUNNEL", SaverKeuze::tunnel}, std::pair{"WISSELEND", SaverKeuze::wisselend}}) {
        druk(QAccessible::RadioButton, naam, kSaver);
        EXPECT_EQ(SaverInstellingen::keuze(), keuze);
        EXPECT_TRUE(isGekozen(naam, kSaver));
    }
    // Stored by another program, it shows when the panel gets the keyboard again.
    SaverInstellingen::zetKeuze(SaverKeuze::logo);
    EXPECT_TRUE(isGekozen("WISSELEND", kSaver));
    QFocusEvent terug(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(view(), &terug);
    EXPECT_TRUE(isGekozen("LOGO", kSaver));
    EXPECT_EQ(paneel->staat()->saver(), QStringLiteral("logo"));
}

TEST_F(OpHetPaneel, PageKeysTurnWhatIsOutOfSight) {
    view()->resize(400, 400);
    QQuickItem* const rol = item("rol");
    ASSERT_TRUE(until([&] {
        return view()->rootObject()->height() == 400 &&
               rol->property("contentHeight").toReal() > rol->height() * 1.5;
    }));
    const double einde = rol->property("contentHeight").toReal() - rol->height();
    QTest::keyClick(view(), Qt::Key_PageDown);
    EXPECT_DOUBLE_EQ(rol->property("contentY").toReal(), std::min(einde, 0.9 * rol->height()));
    for (int keer = 0; keer < 5; ++keer)
        QTest::keyClick(view(), Qt::Key_PageDown);
    EXPECT_DOUBLE_EQ(rol->property("contentY").toReal(), einde);
    for (int keer = 0; keer < 6; ++keer)
        QTest::keyClick(view(), Qt::Key_PageUp);
    EXPECT_DOUBLE_EQ(rol->property("contentY").toReal(), 0.0);
}

TEST_F(OpHetPaneel, AModeOfTheSaverThatCannotBeStoredIsNotShownAsChosen) {
    ASSERT_TRUE(QDir(map.path()).mkdir(QStringLiteral("nl.groenlicht.brixtel.saver.conf")));
    druk(QAccessible::RadioButton, "TUNNEL", kSaver);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    EXPECT_FALSE(isGekozen("TUNNEL", kSaver));
    EXPECT_TRUE(isGekozen("WISSELEND", kSaver));
}

TEST_F(OpHetPaneel, AClickOnWhatIsHalfInSightIsNotLost) {
    view()->resize(320, 260);
    kalmeer();
    auto* const rol = item("rol");
    auto* const knop = qobject_cast<QQuickItem*>(vind(QAccessible::Button, "Toon nu")->object());
    // Four points of it at the upper edge.
    const double y = knop->mapToItem(rol, QPointF()).y() + rol->property("contentY").toDouble();
    const double boven = std::round(y + knop->height() - 4.0);
    rol->setProperty("contentY", boven);
    // With the keyboard it comes into sight.
    knop->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_LT(rol->property("contentY").toDouble(), y);
    blad()->forceActiveFocus();
    rol->setProperty("contentY", boven);
    kalmeer();
    const QPoint plek = knop->mapToScene({knop->width() / 2, knop->height() - 2.0}).toPoint();
    QTest::mouseClick(view(), Qt::LeftButton, Qt::NoModifier, plek);
    EXPECT_TRUE(nu().zwart);
    EXPECT_EQ(rol->property("contentY").toDouble(), boven);
}

TEST_F(OpHetPaneel, TabVisitsEveryControlAndBringsItIntoSight) {
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
    // The tick; six arrows (the last two rows are closed), three switches, two sliders, three
    // choices (the scene, the flash, the saver's mode), one button.
    EXPECT_EQ(bezocht, 16);
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

// Six steps of 0.1 are not 0.6 in binary.
TEST_F(OpHetPaneel, ASlidersValueHasNoDigitsThatNobodyChose) {
    bureau->zetKeuzes({.dichtheid = 0.65, .snelheid = 0.5});
    for (const auto& [naam, keuze, waarde] :
         {std::tuple("Dichtheid", &BureauKeuzes::dichtheid, 0.7),
          {"Snelheid", &BureauKeuzes::snelheid, 0.6}}) {
        for (int keer = 0; keer < 40 && SchuifFocus::gedeeld().actiefNaam() != QLatin1String(naam);
             ++keer)
            QTest::keyClick(view(), Qt::Key_Tab);
        QTest::keyClick(view(), Qt::Key_Right);
        EXPECT_EQ(nu().keuzes.*keuze, waarde) << naam;
    }
    vind(QAccessible::Slider, "Snelheid")->valueInterface()->setCurrentValue(2.1090047393364926);
    EXPECT_EQ(nu().keuzes.snelheid, 2.11);
}

TEST_F(OpHetPaneel, EscapeClosesItAndItOpensAnew) {
    QTest::keyClick(view(), Qt::Key_Escape);
    ASSERT_TRUE(until([this] { return !paneel->isOpen(); }));
    bureau->toonRegen();
    toon();
    EXPECT_TRUE(paneel->isOpen());
    EXPECT_TRUE(isAan("Regen over het bureaublad"));
}

// No two controls of the panel sound alike.
TEST_F(OpHetPaneel, EveryControlHasANameOfItsOwn) {
    QStringList namen;
    elke(QAccessible::queryAccessibleInterface(view()), [&](QAccessibleInterface& een) {
        switch (een.role()) {
            case QAccessible::Button:
            case QAccessible::CheckBox:
            case QAccessible::Slider:
                namen << een.text(QAccessible::Name);
                break;
            default:
                break;
        }
    });
    EXPECT_GT(namen.size(), 10);
    QStringList eenmalig = namen;
    eenmalig.removeDuplicates();
    EXPECT_EQ(namen, eenmalig);
    EXPECT_FALSE(namen.contains(QString()));
}

TEST_F(OpHetPaneel, TheFlashOnABeatCanBeSoftenedAndDefaultsBringItBack) {
    EXPECT_EQ(paneel->staat()->flits(), QStringLiteral("gewoon"));
    paneel->staat()->zetFlits(QStringLiteral("zacht"));
    EXPECT_EQ(bureau->stand().waarde().keuzes.flits, Flits::zacht);
    paneel->staat()->zetFlits(QStringLiteral("zebra"));
    EXPECT_EQ(paneel->staat()->flits(), QStringLiteral("zacht"));
    paneel->staat()->zetDichtheid(0.2);
    paneel->staat()->zetStandaard();
    EXPECT_EQ(bureau->stand().waarde().keuzes, BureauKeuzes{});
}

TEST_F(OpHetPaneel, ShowingItTwiceIsOneWindow) {
    QQuickView* const eerste = view();
    paneel->toon();
    EXPECT_EQ(view(), eerste);
}

TEST_F(OpHetPaneel, WhileNothingChangesThereAreNoPicturesAndNoTimers) {
    schakel("Voorbeeld van het zwarte scherm");
    kalmeer();
    klok.advance(0.15);
    const int voor = beelden;
    ASSERT_GT(voor, 0);
    EXPECT_EQ(klok.timerCount(), 0U);
    // A signal without a change makes no picture either.
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
    platform::WindowServer server{klok, {.drawer = {}, .system = withoutSystem(klok)}};
    Bureau bureau({.server = server, .werkruimte = werkruimte, .toeval = toeval},
                  {.server = geluid.adres()});
    bureau.zetKeuzes({.muziek = true});
    PaneelVenster paneel({.bureau = bureau, .server = server, .toeval = toeval});
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

}  // namespace
