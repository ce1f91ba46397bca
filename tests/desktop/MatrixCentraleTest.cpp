// SPDX-License-Identifier: MIT
#include "desktop/MatrixCentrale.h"

#include "drawing/Thema.h"
#include "tests/desktop/CentraleProef.h"
#include "tests/rain/RegenProef.h"

using brixtel::CentraleProef;
using brixtel::DrieSoort;
using brixtel::RegenStand;
using brixtel::Thema;
using platform::RunningApplication;

namespace {

constexpr std::uint32_t kGedrag = 0x151;

class Centrale : public CentraleProef {};

TEST_F(Centrale, BeginsWithTheInitialValues) {
    EXPECT_EQ(centrale->snelheid, 1.0);
    EXPECT_EQ(centrale->dichtheid, 0.7);
    EXPECT_FALSE(centrale->opMuziek);
    EXPECT_FALSE(centrale->muziekStand);
    EXPECT_TRUE(centrale->zwart().empty());
    EXPECT_TRUE(centrale->regen().empty());
    EXPECT_TRUE(centrale->drieWerelden().empty());
    EXPECT_FALSE(centrale->muziekKlok().isValid());
    EXPECT_FALSE(centrale->vorigeApp());
    EXPECT_FALSE(centrale->cursorWeg());
    EXPECT_FALSE(centrale->zwartAan());
    EXPECT_FALSE(centrale->regenAan());
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::uit);
}

TEST_F(Centrale, TheBlackScreenCoversEachDisplayWithARainOfItsSize) {
    centrale->toonZwart(std::nullopt);
    ASSERT_EQ(centrale->zwart().size(), 2U);
    for (std::size_t n = 0; n < 2; ++n) {
        const auto& zwart = centrale->zwart()[n];
        EXPECT_EQ(zwart.venster->frame(), schermen[n].frame);
        EXPECT_EQ(zwart.venster->level(), 1001);
        EXPECT_TRUE(zwart.venster->isOpaque());
        EXPECT_FALSE(zwart.venster->hasShadow());
        EXPECT_EQ(zwart.venster->collectionBehavior(), kGedrag);
        EXPECT_TRUE(zwart.venster->isVisible());
        EXPECT_EQ(zwart.venster->firstResponder(), &view(n));
        ASSERT_TRUE(zwart.regen);
        EXPECT_FALSE(zwart.drie);
        EXPECT_EQ(zwart.regen->laag()->bounds().size(), schermen[n].frame.size());
        EXPECT_TRUE(zwart.regen->flikker().isValid());
        EXPECT_EQ(view(n).layer()->backgroundColor(), QColor(Qt::black));
    }
    EXPECT_EQ(werkruimte.zelfGeactiveerd, 1);
    EXPECT_EQ(gemeld, std::vector<bool>{true});
}

TEST_F(Centrale, OverTheRainLieTheFlashAndTheBanner) {
    centrale->toonZwart(std::nullopt);
    const auto& zwart = centrale->zwart()[0];
    const auto& lagen = view().layer()->sublayers();
    ASSERT_EQ(lagen.size(), 3U);
    EXPECT_EQ(lagen[0], zwart.regen->laag());
    EXPECT_EQ(lagen[1], zwart.flits);
    EXPECT_EQ(zwart.flits->frame(), QRectF(0, 0, 400, 300));
    EXPECT_EQ(zwart.flits->opacity(), 0.0);
    EXPECT_NEAR(zwart.flits->backgroundColor().alphaF(), 0.13, 1e-3);
    EXPECT_EQ(zwart.flits->backgroundColor().rgb(), Thema::groen().rgb());
    EXPECT_TRUE(view().subviews().empty());
}

TEST_F(Centrale, TheBannerShowsForFiveSecondsAndNeverAgain) {
    centrale->toonZwart(std::nullopt);
    const auto& tip = *view(1).layer()->sublayers()[2];
    const double w =
        Thema::breedte(QStringLiteral("[ beweeg de muis of druk op een toets om terug te gaan ]"),
                       {.font = Thema::font(13, {.vet = true})}) +
        28;
    EXPECT_EQ(tip.frame(), QRectF((320 - w) / 2, 46, w, 30));
    EXPECT_EQ(tip.contentsScale(), 2.0);
    EXPECT_EQ(tip.contents().size(), QSize(int(std::ceil(w * 2)), 60));
    EXPECT_EQ(tip.opacity(), 0.0);
    ASSERT_TRUE(tip.animation("tip"));
    const double nu = klok.now();
    EXPECT_NEAR(getoond(tip, nu + 0.25), 0.5, 1e-9);
    EXPECT_NEAR(getoond(tip, nu + 0.5), 1.0, 1e-9);
    EXPECT_NEAR(getoond(tip, nu + 4.0), 1.0, 1e-9);
    EXPECT_NEAR(getoond(tip, nu + 4.5), 0.5, 1e-9);
    EXPECT_NEAR(getoond(tip, nu + 5.01), 0.0, 1e-9);
    EXPECT_NEAR(getoond(tip, nu + 500.0), 0.0, 1e-9);
}

TEST_F(Centrale, TheBannerIsAGreenTextInAFrameOnNearlyBlack) {
    centrale->toonZwart(std::nullopt);
    const QImage beeld = view(0).layer()->sublayers()[2]->contents();
    // The fill, beside the frame and the text.
    EXPECT_EQ(beeld.pixelColor(4, 4).alpha(), 217);
    EXPECT_EQ(beeld.pixelColor(4, 4).rgb() & 0xffffff, 0U);
    // The frame fills the outermost pixels. At the right edge it may share one.
    const QColor rand = beeld.pixelColor(beeld.width() / 2, 0);
    EXPECT_NEAR(rand.greenF(), Thema::middel().greenF(), 0.02);
    EXPECT_EQ(beeld.pixelColor(0, 15).rgb(), beeld.pixelColor(0, 20).rgb());
    EXPECT_NEAR(beeld.pixelColor(0, 15).greenF(), Thema::middel().greenF(), 0.02);
    int fel = 0;
    for (int x = 0; x < beeld.width(); ++x)
        for (int y = 0; y < beeld.height(); ++y)
            fel += beeld.pixelColor(x, y).greenF() > 0.95;
    EXPECT_GT(fel, 100);
}

// The same words drawn at the same place: any other has other letters.
TEST_F(Centrale, TheBannerSaysHowToGoBack) {
    centrale->toonZwart(std::nullopt);
    const platform::Layer& tip = *view(0).layer()->sublayers()[2];
    const QFont font = Thema::font(13.0, {.vet = true});
    const auto beeldVan = [&](const QString& tekst) {
        const double breed = Thema::breedte(tekst, {.font = font}) + 28.0;
        return *Thema::beeld(
            {breed, 30.0}, {.schaal = tip.contentsScale(), .teken = [&](brixtel::Tekenvlak& vlak) {
                                Thema::tekst(tekst,
                                             {.font = font,
                                              .kleur = Thema::groen(),
                                              .op = {breed / 2.0, 10.0},
                                              .midden = true},
                                             vlak);
                            }});
    };
    const auto letters = [](const QImage& beeld) {
        std::vector<QPoint> punten;
        for (int y = 0; y < beeld.height(); ++y)
            for (int x = 0; x < beeld.width(); ++x)
                if (qAlpha(beeld.pixel(x, y)) > 200 && qGreen(beeld.pixel(x, y)) > 240)
                    punten.emplace_back(x, y);
        return punten;
    };
    const auto getoond = letters(tip.contents());
    ASSERT_GT(getoond.size(), 100U);
    EXPECT_EQ(getoond, letters(beeldVan(QStringLiteral(
                           "[ beweeg de muis of druk op een toets om terug te gaan ]"))));
}

TEST_F(Centrale, BothRainsHaveTheChosenDensityAndSpeed) {
    centrale->dichtheid = 0.35;
    centrale->snelheid = 1.7;
    const auto eersteVan = [&](bool doorzichtig) {
        return brixtel::lotVan({.maat = schermen[0].frame.size(),
                                .schaal = schermen[0].scale,
                                .dichtheid = 0.35,
                                .snelheid = 1.7,
                                .doorzichtig = doorzichtig},
                               klok, toeval);
    };
    const auto regen = eersteVan(true);
    centrale->toonRegen();
    EXPECT_EQ(brixtel::lotVan(*centrale->regen()[0].regen), regen);
    const auto zwart = eersteVan(false);
    centrale->toonZwart(std::nullopt);
    EXPECT_EQ(brixtel::lotVan(*centrale->zwart()[0].regen), zwart);
    EXPECT_NE(regen, zwart);
}

TEST_F(Centrale, EachRainIsAsSharpAsItsDisplay) {
    ASSERT_NE(schermen[0].scale, schermen[1].scale);
    const auto schaal = [](const brixtel::MatrixRegen& regen) {
        return regen.kolommen().front().staart->contentsScale();
    };
    centrale->toonRegen();
    centrale->toonZwart(std::nullopt);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(schaal(*centrale->regen()[i].regen), schermen[i].scale);
        EXPECT_EQ(schaal(*centrale->zwart()[i].regen), schermen[i].scale);
    }
}

TEST_F(Centrale, ItFadesInInAQuarterOfASecond) {
    centrale->toonZwart(std::nullopt);
    EXPECT_EQ(centrale->zwart()[0].venster->alpha(), 0.0);
    klok.advance(0.1);
    EXPECT_GT(centrale->zwart()[0].venster->alpha(), 0.0);
    EXPECT_LT(centrale->zwart()[0].venster->alpha(), 1.0);
    klok.advance(0.2);
    EXPECT_EQ(centrale->zwart()[0].venster->alpha(), 1.0);
    EXPECT_EQ(centrale->zwart()[1].venster->alpha(), 1.0);
}

TEST_F(Centrale, ASceneFillsTheViewUnderASecondBanner) {
    centrale->toonZwart(DrieSoort::kubus);
    ASSERT_EQ(centrale->zwart().size(), 2U);
    ASSERT_EQ(centrale->drieWerelden().size(), 2U);
    const auto& zwart = centrale->zwart()[0];
    EXPECT_FALSE(zwart.regen);
    ASSERT_TRUE(zwart.drie);
    EXPECT_EQ(zwart.drie->scene(), centrale->drieWerelden()[0]->scene());
    EXPECT_EQ(centrale->drieWerelden()[0]->soort(), DrieSoort::kubus);
    EXPECT_TRUE(centrale->drieWerelden()[0]->groot());
    EXPECT_FALSE(centrale->drieWerelden()[0]->rustig());
    EXPECT_FALSE(centrale->drieWerelden()[0]->eigenLijnen());
    EXPECT_EQ(zwart.drie->frame(), QRectF(0, 0, 400, 300));
    EXPECT_EQ(zwart.drie->autoresizingMask(), 18U);
    EXPECT_TRUE(zwart.drie->isPlaying());
    ASSERT_EQ(view().subviews().size(), 2U);
    EXPECT_EQ(view().subviews()[0], zwart.drie);
    const auto& over = view().subviews()[1];
    EXPECT_EQ(over->frame(), QRectF(0, 0, 400, 300));
    ASSERT_EQ(over->layer()->sublayers().size(), 1U);
    EXPECT_TRUE(over->layer()->sublayers()[0]->animation("tip"));
    // Below the scene lie the flash and the first banner.
    ASSERT_EQ(view().layer()->sublayers().size(), 2U);
    EXPECT_EQ(view().layer()->sublayers()[0], zwart.flits);
    EXPECT_TRUE(view().layer()->sublayers()[1]->animation("tip"));
}

TEST_F(Centrale, ClosingASceneStopsItAndForgetsItsWorldOnceItHasFaded) {
    centrale->toonZwart(DrieSoort::tunnel);
    wachtFade();
    const auto drie = centrale->zwart()[0].drie;
    centrale->sluitZwart();
    EXPECT_TRUE(centrale->zwart().empty());
    EXPECT_EQ(centrale->drieWerelden().size(), 2U);
    EXPECT_TRUE(drie->isPlaying());
    wachtFade();
    EXPECT_FALSE(drie->isPlaying());
    EXPECT_FALSE(drie->scene());
    EXPECT_TRUE(centrale->drieWerelden().empty());
}

TEST_F(Centrale, ABlackScreenOpenedWhileThePreviousFadesKeepsItsWorlds) {
    centrale->toonZwart(DrieSoort::tunnel);
    wachtFade();
    centrale->sluitZwart();
    klok.advance(0.1);
    centrale->toonZwart(DrieSoort::logo);
    wachtFade();
    ASSERT_EQ(centrale->drieWerelden().size(), 2U);
    EXPECT_EQ(centrale->drieWerelden()[0]->soort(), DrieSoort::logo);
    EXPECT_TRUE(centrale->zwart()[0].drie->scene());
}

TEST_F(Centrale, ShowingWhatIsOnAndClosingWhatIsOffDoesNothing) {
    centrale->sluitZwart();
    centrale->sluitRegen();
    EXPECT_TRUE(gemeld.empty());
    centrale->toonZwart(std::nullopt);
    const auto* const venster = centrale->zwart()[0].venster.get();
    centrale->toonZwart(DrieSoort::kubus);
    EXPECT_EQ(centrale->zwart()[0].venster.get(), venster);
    EXPECT_FALSE(centrale->zwart()[0].drie);
    EXPECT_EQ(werkruimte.verborgen, 1);
    centrale->toonRegen();
    const auto* const regen = centrale->regen()[0].venster.get();
    centrale->toonRegen();
    EXPECT_EQ(centrale->regen()[0].venster.get(), regen);
    EXPECT_EQ(gemeld.size(), 1U);
}

TEST_F(Centrale, WisselZwartTwiceReturnsToTheStartWithTheCursorBackAndThePreviousAppActive) {
    centrale->wisselZwart(std::nullopt);
    EXPECT_TRUE(centrale->zwartAan());
    EXPECT_EQ(werkruimte.verborgen, 1);
    EXPECT_TRUE(centrale->cursorWeg());
    EXPECT_EQ(centrale->vorigeApp(),
              (RunningApplication{.window = {QStringLiteral("11")}, .process = 22}));
    wachtFade();
    centrale->wisselZwart(std::nullopt);
    // All of this without waiting for the fade.
    EXPECT_FALSE(centrale->zwartAan());
    EXPECT_EQ(werkruimte.verborgen, 0);
    EXPECT_FALSE(centrale->cursorWeg());
    EXPECT_FALSE(centrale->vorigeApp());
    EXPECT_EQ(werkruimte.geactiveerd,
              (std::vector<RunningApplication>{{.window = {QStringLiteral("11")}, .process = 22}}));
    EXPECT_EQ(gemeld, (std::vector<bool>{true, false}));
}

TEST_F(Centrale, ClosingFadesAndThenTakesTheWindowsDown) {
    centrale->toonZwart(std::nullopt);
    wachtFade();
    const std::size_t voor = klok.timerCount();
    auto* const venster = centrale->zwart()[0].venster.get();
    auto* const regen = centrale->zwart()[0].regen;
    centrale->sluitZwart();
    klok.advance(0.2);
    EXPECT_TRUE(venster->isVisible());
    EXPECT_GT(venster->alpha(), 0.0);
    EXPECT_LT(venster->alpha(), 0.5);
    EXPECT_TRUE(regen->flikker().isValid());
    klok.advance(0.1);
    // Flickers and fades included.
    EXPECT_EQ(klok.timerCount(), voor - 2);
}

TEST_F(Centrale, WithoutAFrontmostAppNoneIsActivatedAfterwards) {
    werkruimte.voor.reset();
    centrale->toonZwart(std::nullopt);
    centrale->sluitZwart();
    EXPECT_TRUE(werkruimte.geactiveerd.empty());
    EXPECT_EQ(werkruimte.verborgen, 0);
}

TEST_F(Centrale, InputClosesItAndMoreInputDuringTheFadeIsIgnored) {
    centrale->toonZwart(DrieSoort::kubus);
    auto& inhoud = view(1);
    inhoud.keyDown({.key = Qt::Key_A, .text = {}});
    EXPECT_FALSE(centrale->zwartAan());
    inhoud.mouseDown({});
    inhoud.keyDown({.key = Qt::Key_A, .text = {}});
    EXPECT_EQ(gemeld, (std::vector<bool>{true, false}));
    EXPECT_EQ(werkruimte.verborgen, 0);
}

TEST_F(Centrale, AMouseOverTheSceneReachesTheView) {
    centrale->toonZwart(DrieSoort::kubus);
    // The topmost view under the mouse, which passes on what it does not want.
    view(0).hitTest({10, 10})->mouseDown({});
    EXPECT_FALSE(centrale->zwartAan());
}

TEST_F(Centrale, SnelheidAndDichtheidGoToTheRain) {
    centrale->dichtheid = 0.0;
    centrale->toonRegen();
    for (const auto& kolom : centrale->regen()[0].regen->kolommen())
        EXPECT_TRUE(kolom.staart->mask()->sublayers().empty());
    centrale->snelheid = 2.0;
    centrale->toonZwart(std::nullopt);
    for (const auto& kolom : centrale->zwart()[0].regen->kolommen()) {
        const auto& druppels = kolom.staart->mask()->sublayers();
        ASSERT_EQ(druppels.size(), 1U);
        const auto& val = druppels[0]->animation("val")->data();
        const double stap = val.timing.duration * 2.0 / static_cast<double>(val.values.size() - 1);
        EXPECT_GE(stap, 0.05 - 1e-9);
        EXPECT_LE(stap, 0.12 + 1e-9);
    }
}

TEST_F(Centrale, WithoutScreensNothingIsShownAndItRunsAgainNextTime) {
    schermen.clear();
    centrale->opMuziek = true;
    centrale->toonZwart(std::nullopt);
    EXPECT_FALSE(centrale->zwartAan());
    EXPECT_TRUE(centrale->muziekKlok().isValid());
    EXPECT_EQ(werkruimte.zelfGeactiveerd, 1);
    EXPECT_EQ(werkruimte.verborgen, 1);
    centrale->toonZwart(std::nullopt);
    EXPECT_EQ(werkruimte.zelfGeactiveerd, 2);
    // Hidden once, for one showing to undo.
    EXPECT_EQ(werkruimte.verborgen, 1);
    EXPECT_EQ(gemeld, (std::vector<bool>{true, true}));
    centrale->toonRegen();
    EXPECT_FALSE(centrale->regenAan());
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::uit);
}

TEST_F(Centrale, DroppedWhileItShowsItGivesEverythingBack) {
    centrale->toonRegen();
    centrale->toonZwart(DrieSoort::logo);
    klok.advance(0.1);
    centrale.reset();
    EXPECT_EQ(werkruimte.verborgen, 0);
    EXPECT_EQ(werkruimte.geactiveerd.size(), 1U);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(Centrale, DroppedWhileItFadesNothingIsLeft) {
    centrale->toonRegen();
    centrale->toonZwart(std::nullopt);
    wachtFade();
    centrale->sluitAlles();
    klok.advance(0.1);
    centrale.reset();
    EXPECT_EQ(klok.timerCount(), 0U);
    klok.advance(5.0);
}

TEST_F(Centrale, InputAfterTheControllerHasGoneReachesNobody) {
    centrale->toonZwart(std::nullopt);
    const auto inhoud = centrale->zwart()[0].venster->contentView();
    centrale.reset();
    const auto geactiveerd = werkruimte.geactiveerd;
    inhoud->keyDown({.key = Qt::Key_A, .text = {}});
    inhoud->mouseDown({});
    EXPECT_EQ(gemeld, std::vector<bool>{true});
    EXPECT_EQ(werkruimte.geactiveerd, geactiveerd);
    EXPECT_EQ(werkruimte.verborgen, 0);
}

TEST_F(Centrale, AKeyboardThatAnotherTookIsTakenBack) {
    centrale->toonZwart(std::nullopt);
    // No window here ever has the keyboard.
    werkruimte.meldVoorgrond();
    werkruimte.meldVoorgrond();
    EXPECT_EQ(werkruimte.zelfGeactiveerd, 1);
    klok.advance(0.3);
    // Once for both.
    EXPECT_EQ(werkruimte.zelfGeactiveerd, 2);
    centrale->sluitZwart();
    werkruimte.meldVoorgrond();
    klok.advance(1.0);
    EXPECT_EQ(werkruimte.zelfGeactiveerd, 2);
}

TEST_F(Centrale, WhoInsistsOnTheKeyboardHasIt) {
    centrale->toonZwart(std::nullopt);
    const auto strijd = [this](int keren) {
        const int voor = werkruimte.zelfGeactiveerd;
        for (int keer = 0; keer < keren; ++keer) {
            werkruimte.meldVoorgrond();
            klok.advance(0.7);
        }
        return werkruimte.zelfGeactiveerd - voor;
    };
    EXPECT_EQ(strijd(20), 5);
    // Another that comes later does not suffer for it.
    klok.advance(5.0);
    EXPECT_EQ(strijd(1), 1);
}

TEST_F(Centrale, OneOpenedWhileSeveralStillFadeKeepsItsWorlds) {
    for (int keer = 0; keer < 3; ++keer) {
        centrale->toonZwart(DrieSoort::kubus);
        klok.advance(0.1);
        centrale->sluitZwart();
    }
    centrale->toonZwart(DrieSoort::logo);
    klok.advance(0.2);
    klok.advance(5.0);
    ASSERT_EQ(centrale->drieWerelden().size(), 2U);
    for (const auto& wereld : centrale->drieWerelden())
        EXPECT_EQ(wereld->soort(), DrieSoort::logo);
}

TEST_F(Centrale, WithoutOpenGlItRainsInTheScenesPlace) {
    centrale->toonZwart(DrieSoort::kubus);
    const auto drie = centrale->zwart()[0].drie;
    drie->fail();
    EXPECT_FALSE(centrale->zwart()[0].drie);
    ASSERT_TRUE(centrale->zwart()[0].regen);
    EXPECT_EQ(centrale->drieWerelden().size(), 1U);
    EXPECT_EQ(view(0).layer()->sublayers().back(), centrale->zwart()[0].flits);
    EXPECT_TRUE(centrale->zwart()[1].drie);
}

// A user who unlocks the screen must see the pointer.
TEST_F(Centrale, ASaverOrLockOverTheBlackScreenHasThePointer) {
    centrale->toonZwart(std::nullopt);
    ASSERT_EQ(werkruimte.verborgen, 1);
    werkruimte.zetBeveiligd(true);
    EXPECT_EQ(werkruimte.verborgen, 0);
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(werkruimte.verborgen, 1);
    werkruimte.zetBeveiligd(true);
    centrale->sluitZwart();
    EXPECT_EQ(werkruimte.verborgen, 0);
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(werkruimte.verborgen, 0);
}

}  // namespace
