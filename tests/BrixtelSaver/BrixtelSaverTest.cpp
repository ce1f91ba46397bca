// SPDX-License-Identifier: MIT
#include "BrixtelSaver/BrixtelSaver.h"

#include <QPainter>

#include "BrixtelSaver/InstellingenModule.h"
#include "tests/BrixtelSaver/SaverOpstelling.h"
#include "tests/rain/RegenProef.h"

using brixtel::BrixtelSaverView;
using brixtel::SaverInstellingen;
using brixtel::SaverKeuze;
using steun::ProefView;
using steun::SaverView;

namespace {

TEST_F(SaverView, ANewViewIsBlackOpaqueAndShowsNothing) {
    const auto view = maak();
    EXPECT_TRUE(view->isOpaque());
    ASSERT_TRUE(view->layer());
    EXPECT_EQ(view->layer()->backgroundColor(), QColor(Qt::black));
    EXPECT_EQ(view->animationTimeInterval(), 1.0);
    EXPECT_TRUE(leeg(*view));
    EXPECT_FALSE(view->nu());
    EXPECT_FALSE(view->huidige());
    EXPECT_FALSE(view->wisselKlok().isValid());
    EXPECT_TRUE(view->hasConfigureSheet());
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(SaverView, DrawFillsTheDirtyRectangleWithBlackAndNothingElse) {
    QImage beeld(10, 10, QImage::Format_ARGB32_Premultiplied);
    beeld.fill(Qt::white);
    QPainter painter(&beeld);
    maak()->draw(painter, QRectF(2, 3, 4, 5));
    painter.end();
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x) {
            const bool binnen = x >= 2 && x < 6 && y >= 3 && y < 8;
            EXPECT_EQ(beeld.pixel(x, y), binnen ? 0xFF000000U : 0xFFFFFFFFU);
        }
}

TEST_F(SaverView, DrawUsesThePaintersCompositing) {
    QImage beeld(2, 2, QImage::Format_ARGB32_Premultiplied);
    beeld.fill(Qt::white);
    QPainter painter(&beeld);
    painter.setCompositionMode(QPainter::CompositionMode_Destination);
    maak()->draw(painter, QRectF(0, 0, 2, 2));
    painter.end();
    EXPECT_EQ(beeld.pixel(0, 0), 0xFFFFFFFFU);
}

TEST_F(SaverView, RainIsBuiltForTheViewsSizeAndHungInItsLayer) {
    const auto view = gestart(SaverKeuze::regen);
    ASSERT_TRUE(view->regen());
    EXPECT_EQ(view->regen()->laag()->superlayer(), view->layer().get());
    EXPECT_EQ(view->regen()->laag()->frame(), QRectF(0, 0, 300, 200));
    EXPECT_EQ(view->nu(), SaverKeuze::regen);
    EXPECT_EQ(view->huidige(), SaverKeuze::regen);
    EXPECT_FALSE(view->wisselKlok().isValid());
    EXPECT_TRUE(view->regen()->flikker().isValid());
}

// Drop for drop what a rain of that density and speed is with the same lots.
TEST_F(SaverView, TheRainHasItsDensityAndSpeedAlsoInThePreview) {
    for (const bool voorvertoning : {false, true}) {
        SaverInstellingen::zetKeuze(SaverKeuze::regen);
        const auto view = maak(voorvertoning);
        const auto lot =
            brixtel::lotVan({.maat = {300, 200}, .dichtheid = 0.7, .snelheid = 1.0}, klok, toeval);
        view->startAnimation();
        const auto* const regen = view->regen();
        ASSERT_TRUE(regen);
        EXPECT_EQ(brixtel::lotVan(*regen), lot);
        const auto laag = regen->laag();
        ASSERT_TRUE(laag);
        EXPECT_FALSE(laag->sublayers().empty());
    }
}

TEST_F(SaverView, AThreeDChoiceShowsTheWorldOfThatKindInASubview) {
    for (const auto keuze :
         {SaverKeuze::bol, SaverKeuze::kubus, SaverKeuze::tunnel, SaverKeuze::logo}) {
        const auto view = gestart(keuze);
        const auto* const wereld = view->wereld();
        ASSERT_TRUE(wereld);
        EXPECT_EQ(brixtel::ruweWaarde(wereld->soort()), brixtel::ruweWaarde(keuze));
        EXPECT_TRUE(wereld->groot());
        EXPECT_FALSE(wereld->rustig());
        EXPECT_FALSE(wereld->eigenLijnen());
        const auto scn = view->scn();
        ASSERT_TRUE(scn);
        EXPECT_EQ(scn->superview(), view.get());
        EXPECT_EQ(scn->frame(), view->bounds());
        EXPECT_EQ(scn->autoresizingMask(), 18U);
        EXPECT_TRUE(scn->isPlaying());
        EXPECT_EQ(scn->preferredFramesPerSecond(), 60);
        EXPECT_FALSE(view->regen());
        view->setFrame(QRectF(0, 0, 500, 400));
        EXPECT_EQ(view->scn()->frame(), QRectF(0, 0, 500, 400));
        view->stopAnimation();
        EXPECT_TRUE(leeg(*view));
    }
}

TEST_F(SaverView, ThePreviewHasASmallWorldAtThirtyFrames) {
    SaverInstellingen::zetKeuze(SaverKeuze::kubus);
    const auto view = maak(true);
    view->startAnimation();
    const auto* const wereld = view->wereld();
    const auto scn = view->scn();
    ASSERT_TRUE(wereld && scn);
    EXPECT_FALSE(wereld->groot());
    EXPECT_EQ(scn->preferredFramesPerSecond(), 30);
}

TEST_F(SaverView, TearDownStopsTheSceneViewAndLetsItsSceneGo) {
    const auto view = gestart(SaverKeuze::tunnel);
    const auto scn = view->scn();
    view->stopAnimation();
    EXPECT_FALSE(scn->isPlaying());
    EXPECT_FALSE(scn->scene());
    EXPECT_EQ(scn->superview(), nullptr);
}

TEST_F(SaverView, ConnectionsAreWatchedOnlyWhileTheGlobeIsShown) {
    const auto& wacht = brixtel::VerbindingWacht::gedeeld();
    EXPECT_EQ(wacht.tussentijd(), 0.0);
    {
        const auto view = gestart(SaverKeuze::bol);
        EXPECT_EQ(wacht.tussentijd(), 3.0);
        view->stopAnimation();
        EXPECT_EQ(wacht.tussentijd(), 0.0);
        view->startAnimation();
        EXPECT_EQ(wacht.tussentijd(), 3.0);
        ASSERT_TRUE(view->configureSheet());
        view->klaar(SaverKeuze::kubus);
        EXPECT_EQ(wacht.tussentijd(), 0.0);
        view->klaar(SaverKeuze::bol);
        EXPECT_EQ(wacht.tussentijd(), 3.0);
    }
    // A view that is dropped while it shows the globe.
    EXPECT_EQ(wacht.tussentijd(), 0.0);
}

TEST_F(SaverView, WithoutMeansToDrawAWorldItRainsInItsPlace) {
    const auto view = gestart(SaverKeuze::kubus);
    view->scn()->fail();
    EXPECT_TRUE(view->regen());
    EXPECT_FALSE(view->wereld());
    EXPECT_EQ(view->huidige(), SaverKeuze::kubus);
    view->startAnimation();
    EXPECT_TRUE(view->regen());
}

TEST_F(SaverView, WithNoStoredChoiceASceneAtOnceThenAnotherEverySixtySeconds) {
    const auto view = maak();
    view->startAnimation();
    EXPECT_EQ(view->nu(), SaverKeuze::wisselend);
    ASSERT_TRUE(view->huidige());
    EXPECT_EQ(view->wisselKlok().interval(), 60.0);
    auto vorige = *view->huidige();
    for (int minuut = 0; minuut < 60; ++minuut) {
        klok.advance(59.9);
        EXPECT_EQ(view->huidige(), vorige);
        klok.advance(0.1);
        // A tick never shows the scene that is already on screen.
        EXPECT_NE(view->huidige(), vorige);
        EXPECT_NE(view->huidige(), SaverKeuze::wisselend);
        vorige = *view->huidige();
        EXPECT_EQ(view->nu(), SaverKeuze::wisselend);
        EXPECT_EQ(view->regen() != nullptr, vorige == SaverKeuze::regen);
        EXPECT_EQ(view->wereld() != nullptr, vorige != SaverKeuze::regen);
        EXPECT_EQ(view->scn() != nullptr, view->wereld() != nullptr);
    }
}

TEST_F(SaverView, PickingInTheSheetWhileRunningSwitchesAtOnceAndStores) {
    const auto view = gestart(SaverKeuze::kubus);
    EXPECT_FALSE(view->regen());
    ASSERT_TRUE(view->configureSheet());
    view->klaar(SaverKeuze::regen);
    EXPECT_TRUE(view->regen());
    EXPECT_EQ(view->nu(), SaverKeuze::regen);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::regen);
}

TEST_F(SaverView, PickingInTheSheetOfANeverStartedViewOnlyStores) {
    const auto view = maak();
    view->configureSheet();
    view->klaar(SaverKeuze::regen);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::regen);
    EXPECT_FALSE(view->nu());
    EXPECT_TRUE(leeg(*view));
}

TEST_F(SaverView, TheSheetIsNewEachTimeAndKeptUntilTheNext) {
    const auto view = maak();
    std::weak_ptr<platform::Sheet> eerste = view->configureSheet();
    EXPECT_FALSE(eerste.expired());
    const auto tweede = view->configureSheet();
    EXPECT_TRUE(eerste.expired());
    EXPECT_TRUE(tweede);
}

// The program of these tests has an application of another kind.
TEST_F(SaverView, WithoutAnApplicationForWidgetsThereIsNoSheet) {
    ASSERT_NE(brixtel::InstellingenModule::laad(), nullptr);
    BrixtelSaverView view(QRectF(0, 0, 300, 200), false,
                          {.clock = klok, .random = toeval, .notifications = berichten});
    EXPECT_TRUE(view.hasConfigureSheet());
    EXPECT_EQ(view.configureSheet(), nullptr);
    EXPECT_TRUE(view.pickedInSheet().isEmpty());
}

TEST_F(SaverView, ASheetThatOutlivesItsViewOnlyStores) {
    auto view = gestart(SaverKeuze::regen);
    view->configureSheet();
    const auto klaar = view->klaar;
    view.reset();
    klaar(SaverKeuze::tunnel);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::tunnel);
}

TEST_F(SaverView, TheRotationReadsTheGlobesFilesBeforeAGlobeIsShown) {
    const auto view = gestart(SaverKeuze::wisselend);
    ASSERT_NE(view->huidige(), SaverKeuze::bol) << "another seed is needed";
    EXPECT_TRUE(until([] { return !brixtel::LandenTabel::gedeeld().landen().empty(); }));
    EXPECT_NE(view->huidige(), SaverKeuze::bol);
}

TEST_F(SaverView, AFixedSceneWhileRotatingStopsTheTimer) {
    const auto view = gestart(SaverKeuze::wisselend);
    EXPECT_TRUE(view->wisselKlok().isValid());
    view->configureSheet();
    view->klaar(SaverKeuze::regen);
    EXPECT_FALSE(view->wisselKlok().isValid());
    klok.advance(600.0);
    EXPECT_EQ(view->huidige(), SaverKeuze::regen);
}

// A clock that notes whether it was asked the time while no timer waited, which
// is what a rain does as it is built.
class MeekijkendeKlok final : public platform::MediaClock {
  public:
    double now() const override {
        zonderTimers = zonderTimers || timerCount() == 0;
        return 100.0;
    }
    mutable bool zonderTimers = false;
};

TEST_F(SaverView, AFixedSceneWhileRotatingStopsTheTimerBeforeTheNewSceneIsBuilt) {
    SaverInstellingen::zetKeuze(SaverKeuze::wisselend);
    MeekijkendeKlok eigenKlok;
    ProefView view(QRectF(0, 0, 300, 200), false,
                   {.clock = eigenKlok, .random = toeval, .notifications = berichten});
    view.startAnimation();
    view.configureSheet();
    eigenKlok.zonderTimers = false;
    view.klaar(SaverKeuze::regen);
    ASSERT_TRUE(view.regen());
    EXPECT_TRUE(eigenKlok.zonderTimers);
}

TEST_F(SaverView, AfterWillstopNoTimerAndNoSceneButALaterPickRestarts) {
    const auto view = gestart(SaverKeuze::wisselend);
    meldStop();
    EXPECT_TRUE(leeg(*view));
    EXPECT_FALSE(view->wisselKlok().isValid());
    EXPECT_EQ(klok.timerCount(), 0U);
    EXPECT_EQ(view->nu(), SaverKeuze::wisselend);
    EXPECT_TRUE(view->huidige());
    EXPECT_TRUE(view->isAnimating());  // the host has not stopped it
    view->configureSheet();
    view->klaar(SaverKeuze::regen);
    EXPECT_TRUE(view->regen());
}

TEST_F(SaverView, AStoppedViewPutsTheNewlyChosenSceneUpAgain) {
    const auto view = gestart(SaverKeuze::regen);
    view->stopAnimation();
    EXPECT_TRUE(leeg(*view));
    view->configureSheet();
    view->klaar(SaverKeuze::regen);
    EXPECT_TRUE(view->regen());
}

TEST_F(SaverView, StopAnimationTwiceIsHarmless) {
    const auto view = gestart(SaverKeuze::wisselend);
    view->stopAnimation();
    view->stopAnimation();
    EXPECT_TRUE(leeg(*view));
    EXPECT_FALSE(view->wisselKlok().isValid());
    EXPECT_EQ(klok.timerCount(), 0U);
    EXPECT_FALSE(view->isAnimating());
}

TEST_F(SaverView, AVanishedViewHearsNoMoreNotifications) {
    auto view = gestart(SaverKeuze::regen);
    view.reset();
    meldStop();
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(SaverView, ANewSizeBuildsTheRainAnewOnceItRests) {
    const auto view = gestart(SaverKeuze::regen);
    const auto* oud = view->regen();
    for (int stap = 1; stap <= 10; ++stap) {
        view->setFrame(QRectF(0, 0, 300 + 20 * stap, 200));
        klok.advance(0.05);
    }
    EXPECT_EQ(view->regen(), oud);
    klok.advance(0.2);
    EXPECT_EQ(view->regen()->laag()->frame(), QRectF(0, 0, 500, 200));
    EXPECT_EQ(view->layer()->frame().size(), QSizeF(500, 200));
}

TEST_F(SaverView, ANewSizeAfterTheSceneHasGoneBringsNothingBack) {
    const auto view = gestart(SaverKeuze::regen);
    view->setFrame(QRectF(0, 0, 640, 480));
    view->stopAnimation();
    klok.advance(1.0);
    EXPECT_TRUE(leeg(*view));
}

// A display's scale of one and a half makes 1706.67 points of 2560 pixels, which the system
// rounds until the window is there.
TEST_F(SaverView, ASizeThatWasRoundedBuildsNoSecondRain) {
    const auto view = gestart(SaverKeuze::regen);
    const auto* eerste = view->regen();
    view->setFrame(QRectF(0, 0, 299.67, 200.33));
    klok.advance(1.0);
    EXPECT_EQ(view->regen(), eerste);
    // Many small steps are a new size all the same.
    for (int stap = 1; stap <= 5; ++stap)
        view->setFrame(QRectF(0, 0, 300 + 0.9 * stap, 200));
    klok.advance(1.0);
    EXPECT_EQ(view->regen()->laag()->frame().size(), QSizeF(304.5, 200));
}

TEST_F(SaverView, WhereNoWorldCanBeDrawnTheRotationLeavesTheRainAlone) {
    const auto view = gestart(SaverKeuze::wisselend);
    while (!view->scn())
        klok.advance(60.0);
    view->scn()->fail();
    const auto* regen = view->regen();
    ASSERT_TRUE(regen);
    for (int minuut = 0; minuut < 20; ++minuut) {
        const auto vorige = view->huidige();
        klok.advance(60.0);
        EXPECT_EQ(view->regen(), regen);
        EXPECT_NE(view->huidige(), vorige);
        EXPECT_TRUE(view->subviews().empty());
    }
}

// --- a sheet of another process ---

TEST_F(SaverView, APickOfAnotherProcessIsTakenAsOneOfTheOwnSheet) {
    const auto view = gestart(SaverKeuze::kubus);
    view->takePick(QStringLiteral("regen"));
    EXPECT_TRUE(view->regen());
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::regen);
    view->takePick(QStringLiteral("Kubus"));
    EXPECT_EQ(view->nu(), SaverKeuze::regen);
}

TEST_F(SaverView, TheSheetTellsWhatWasPicked) {
    const auto view = maak();
    EXPECT_TRUE(view->pickedInSheet().isEmpty());
    view->configureSheet();
    view->klaar(SaverKeuze::tunnel);
    EXPECT_EQ(view->pickedInSheet(), QStringLiteral("tunnel"));
}

}  // namespace
