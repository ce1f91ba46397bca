// SPDX-License-Identifier: MIT
// The desktop rain.
#include <cmath>

#include "drawing/Thema.h"
#include "platform/window/WindowSystem.h"
#include "tests/desktop/CentraleProef.h"
#include "tests/support/Contrast.h"

using brixtel::CentraleProef;
using brixtel::DrieSoort;
using brixtel::RegenStand;

namespace {

class CentraleRegen : public CentraleProef {};

constexpr std::uint32_t kGedrag = 0x151;

TEST_F(CentraleRegen, TheDesktopRainIsSeeThroughAndClicksGoThroughIt) {
    centrale->toonRegen();
    ASSERT_EQ(centrale->regen().size(), 2U);
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::aan);
    for (std::size_t n = 0; n < 2; ++n) {
        const auto& regen = centrale->regen()[n];
        EXPECT_EQ(regen.venster->frame(), schermen[n].frame);
        EXPECT_EQ(regen.venster->level(), 1000);
        EXPECT_FALSE(regen.venster->isOpaque());
        EXPECT_FALSE(regen.venster->hasShadow());
        EXPECT_TRUE(regen.venster->ignoresMouseEvents());
        EXPECT_FALSE(regen.venster->canBecomeKey());
        EXPECT_EQ(regen.venster->collectionBehavior(), kGedrag);
        EXPECT_TRUE(regen.venster->isVisible());
        const auto& laag = *regen.venster->contentView()->layer();
        EXPECT_FALSE(laag.backgroundColor().isValid());
        ASSERT_EQ(laag.sublayers().size(), 1U);
        EXPECT_EQ(laag.sublayers()[0], regen.regen->laag());
        // See-through: columns of 29 × 1.3 points or so, wider than the opaque ones.
        EXPECT_EQ(regen.regen->kolommen().size(),
                  std::size_t(schermen[n].frame.width() /
                              regen.regen->kolommen()[0].staart->bounds().width()));
    }
    EXPECT_EQ(werkruimte.zelfGeactiveerd, 0);
    EXPECT_EQ(werkruimte.verborgen, 0);
    EXPECT_TRUE(gemeld.empty());
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 0.0);
    wachtFade();
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 1.0);
}

TEST_F(CentraleRegen, ClosingTheDesktopRainTakesFourTenths) {
    centrale->toonRegen();
    wachtFade();
    auto* const venster = centrale->regen()[0].venster.get();
    auto* const regen = centrale->regen()[0].regen.get();
    centrale->wisselRegen();
    EXPECT_FALSE(centrale->regenAan());
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::uit);
    klok.advance(0.35);
    EXPECT_TRUE(venster->isVisible());
    EXPECT_GT(venster->alpha(), 0.0);
    EXPECT_TRUE(regen->flikker().isValid());
    klok.advance(0.1);
    EXPECT_EQ(klok.timerCount(), 0U);
    centrale->wisselRegen();
    EXPECT_TRUE(centrale->regenAan());
}

TEST_F(CentraleRegen, OpeningTheBlackScreenHidesTheRainInstantlyAndClosingFadesItBackIn) {
    centrale->toonRegen();
    wachtFade();
    centrale->toonZwart(std::nullopt);
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 0.0);
    EXPECT_EQ(centrale->regen()[1].venster->alpha(), 0.0);
    wachtFade();
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 0.0);
    centrale->sluitZwart();
    klok.advance(0.1);
    EXPECT_GT(centrale->regen()[0].venster->alpha(), 0.0);
    EXPECT_LT(centrale->regen()[0].venster->alpha(), 1.0);
    klok.advance(0.2);
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 1.0);
}

TEST_F(CentraleRegen, TheRainOpenedWhileTheBlackScreenShowsStaysInvisibleUntilThatCloses) {
    centrale->toonZwart(std::nullopt);
    wachtFade();
    centrale->toonRegen();
    klok.advance(10.0);
    EXPECT_TRUE(centrale->regenAan());
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 0.0);
    centrale->sluitZwart();
    wachtFade();
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 1.0);
}

TEST_F(CentraleRegen, SluitAllesClosesBoth) {
    centrale->toonZwart(std::nullopt);
    centrale->toonRegen();
    centrale->sluitAlles();
    EXPECT_FALSE(centrale->zwartAan());
    EXPECT_FALSE(centrale->regenAan());
    klok.advance(1.0);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(CentraleRegen, TheRainsWindowsGoIntoOneSpaceThatIsLeftInPlace) {
    static int gemaakt, gevoegd, gesloopt;
    gemaakt = gevoegd = gesloopt = 0;
    brixtel::Bovenlaag::begin([](const char* naam) -> void* {
        const std::string n = naam;
        if (n == "_CGSDefaultConnection")
            return reinterpret_cast<void*>(+[] { return std::int32_t{1}; });
        if (n == "CGSSpaceCreate")
            return reinterpret_cast<void*>(+[](std::int32_t, std::int32_t, const CGSOptions*) {
                ++gemaakt;
                return std::uint64_t{9};
            });
        if (n == "CGSSpaceSetAbsoluteLevel")
            return reinterpret_cast<void*>(+[](std::int32_t, std::uint64_t, std::int32_t) {});
        if (n == "CGSAddWindowsToSpaces")
            return reinterpret_cast<void*>(
                +[](std::int32_t, const CGSNumbers*, const CGSNumbers*) { ++gevoegd; });
        if (n == "CGSSpaceDestroy")
            return reinterpret_cast<void*>(+[](std::int32_t, std::uint64_t) { ++gesloopt; });
        return reinterpret_cast<void*>(+[](std::int32_t, const CGSNumbers*) {});
    });
    for (int keer = 0; keer < 2; ++keer) {
        centrale->toonRegen();
        centrale->toonZwart(std::nullopt);
        centrale->sluitAlles();
        wachtFade(0.4);
    }
    EXPECT_EQ(gemaakt, 1);
    EXPECT_EQ(gevoegd, 4);
    EXPECT_EQ(gesloopt, 0);
    brixtel::Bovenlaag::begin(nullptr);
}

TEST_F(CentraleRegen, WithoutACompositorTheRainShowsNothingSaysSoAndComesUpWithOne) {
    werkruimte.doorzichtig = false;
    std::vector<RegenStand> standen;
    const auto volgt = centrale->regenStand().volg([&](RegenStand s) { standen.push_back(s); });
    centrale->toonRegen();
    EXPECT_TRUE(centrale->regenAan());
    EXPECT_FALSE(centrale->regen()[0].venster->isVisible());
    werkruimte.zetDoorzichtig(true);
    EXPECT_TRUE(centrale->regen()[0].venster->isVisible());
    wachtFade();
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 1.0);
    werkruimte.zetDoorzichtig(false);
    EXPECT_FALSE(centrale->regen()[0].venster->isVisible());
    werkruimte.zetDoorzichtig(true);
    centrale->sluitRegen();
    EXPECT_EQ(standen, (std::vector<RegenStand>{RegenStand::uit, RegenStand::geenCompositor,
                                                RegenStand::aan, RegenStand::geenCompositor,
                                                RegenStand::aan, RegenStand::uit}));
}

TEST_F(CentraleRegen, ASaverOrLockHidesTheRainAndItReturns) {
    centrale->toonRegen();
    wachtFade();
    werkruimte.zetBeveiligd(true);
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::schermbeveiliging);
    EXPECT_FALSE(centrale->regen()[0].venster->isVisible());
    EXPECT_FALSE(centrale->regen()[1].venster->isVisible());
    werkruimte.zetBeveiligd(false);
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::aan);
    EXPECT_TRUE(centrale->regen()[0].venster->isVisible());
    wachtFade();
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 1.0);
}

TEST_F(CentraleRegen, AnotherDensityFadesFromTheOldRainIntoTheNewInAThirdOfASecond) {
    centrale->toonRegen();
    wachtFade();
    centrale->snelheid = 2.0;
    centrale->pasRegenAan();
    const auto oud = centrale->regen()[0].regen->laag();
    centrale->dichtheid = 1.0;
    centrale->pasRegenAan();
    const auto nieuw = centrale->regen()[0].regen->laag();
    const auto& boom = *centrale->regen()[0].venster->contentView()->layer();
    ASSERT_EQ(boom.sublayers().size(), 2U);
    EXPECT_NE(nieuw, oud);
    const double nu = klok.now();
    // Whatever its speed.
    for (const double deel : {0.0, 0.25, 0.5, 0.75}) {
        EXPECT_NEAR(getoond(*oud, nu + deel / 3.0), 1.0 - deel, 1e-6);
        EXPECT_NEAR(getoond(*nieuw, nu + deel / 3.0), deel, 1e-6);
    }
    // The new rain's drops do not wait to begin.
    EXPECT_GT(nieuw->localTime(nu), nu + 2.2);
    klok.advance(0.34);
    ASSERT_EQ(boom.sublayers().size(), 1U);
    EXPECT_EQ(boom.sublayers()[0], nieuw);
    EXPECT_EQ(getoond(*nieuw, klok.now()), 1.0);
    EXPECT_FALSE(centrale->regen()[0].oud);
    centrale->sluitRegen();
    klok.advance(1.0);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(CentraleRegen, WhatChangesDuringTheFadeIsTakenUpAfterIt) {
    centrale->toonRegen();
    centrale->dichtheid = 0.2;
    centrale->pasRegenAan();
    const auto* tweede = centrale->regen()[0].regen.get();
    for (const double dichtheid : {0.3, 0.4, 0.5}) {
        centrale->dichtheid = dichtheid;
        centrale->pasRegenAan();
    }
    EXPECT_EQ(centrale->regen()[0].regen.get(), tweede);
    klok.advance(0.34);
    EXPECT_NE(centrale->regen()[0].regen.get(), tweede);
    EXPECT_EQ(centrale->regen()[0].dichtheid, 0.5);
    // Closing in the midst of a fade leaves nothing running.
    centrale->sluitRegen();
    klok.advance(1.0);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(CentraleRegen, AnotherSpeedDoesNotMakeTheRainAnew) {
    centrale->toonRegen();
    const auto* regen = centrale->regen()[1].regen.get();
    const std::pair<double, double> tempos[] = {{2.0, 2.0}, {0.5, 0.5}, {0.1, 0.2}, {1.0, 1.0}};
    for (const auto& [snelheid, tempo] : tempos) {
        centrale->snelheid = snelheid;
        centrale->pasRegenAan();
        EXPECT_EQ(centrale->regen()[1].regen.get(), regen);
        EXPECT_NEAR(regen->laag()->time().speed, tempo, 1e-6) << snelheid;
    }
    EXPECT_EQ(centrale->regen()[1].venster->contentView()->layer()->sublayers().size(), 1U);
}

TEST_F(CentraleRegen, WithDensityZeroItIsOnAndSaysThatNothingFalls) {
    centrale->dichtheid = 0.0;
    centrale->toonRegen();
    EXPECT_TRUE(centrale->regenAan());
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::leeg);
    EXPECT_FALSE(centrale->regen()[0].venster->isVisible());
    centrale->dichtheid = 0.7;
    centrale->pasRegenAan();
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::aan);
    EXPECT_TRUE(centrale->regen()[0].venster->isVisible());
    wachtFade(0.35);
    centrale->dichtheid = 0.0;
    centrale->pasRegenAan();
    // The old rain is seen until it has faded.
    EXPECT_TRUE(centrale->regen()[0].venster->isVisible());
    wachtFade(0.35);
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::leeg);
    EXPECT_FALSE(centrale->regen()[0].venster->isVisible());
}

// The share of a rectangle of the nth display's mask that lets the rain through.
double openDeel(const brixtel::MatrixCentrale& centrale, std::size_t n, const QRectF& vlak) {
    const auto& masker = centrale.regen()[n].venster->contentView()->layer()->mask();
    if (!masker) return 1.0;
    double open = 0.0;
    for (const auto& stuk : masker->sublayers()) {
        EXPECT_EQ(stuk->backgroundColor(), QColor(Qt::white));
        const QRectF deel = stuk->frame() & vlak;
        open += deel.width() * deel.height();
    }
    return open / (vlak.width() * vlak.height());
}

TEST_F(CentraleRegen, ARectangleThatIsToBeReadIsLeftFreeOnEveryDisplayThatItLiesOn) {
    centrale->toonRegen();
    // Across both displays.
    centrale->laatLezen({350, 50, 100, 80});
    EXPECT_EQ(openDeel(*centrale, 0, {350, 50, 50, 80}), 0.0);
    EXPECT_EQ(openDeel(*centrale, 1, {0, 50, 50, 80}), 0.0);
    EXPECT_NEAR(openDeel(*centrale, 0, {0, 0, 400, 300}), 1.0 - 50.0 * 80 / (400 * 300), 1e-9);
    EXPECT_NEAR(openDeel(*centrale, 1, {0, 0, 320, 240}), 1.0 - 50.0 * 80 / (320 * 240), 1e-9);
    centrale->laatLezen({10, 10, 50, 50});
    EXPECT_EQ(openDeel(*centrale, 0, {10, 10, 50, 50}), 0.0);
    EXPECT_FALSE(centrale->regen()[1].venster->contentView()->layer()->mask());
    centrale->laatLezen({});
    EXPECT_FALSE(centrale->regen()[0].venster->contentView()->layer()->mask());
    // A rain that comes later has it too.
    centrale->sluitRegen();
    centrale->laatLezen({10, 10, 50, 50});
    centrale->toonRegen();
    EXPECT_EQ(openDeel(*centrale, 0, {10, 10, 50, 50}), 0.0);
}

// No display, and no word of a window's place.
class Plaatsloos final : public platform::WindowSystem {
  public:
    explicit Plaatsloos(platform::MediaClock& klok) : echt_(withoutSystem(klok)) {}
    [[nodiscard]] platform::Capabilities capabilities() const override {
        platform::Capabilities kan = echt_->capabilities();
        kan.placesWindows = false;
        return kan;
    }
    [[nodiscard]] bool isConnected() const override { return echt_->isConnected(); }
    void onLost(std::function<void()> actie) override { echt_->onLost(std::move(actie)); }
    void reportLoss() override { echt_->reportLoss(); }
    [[nodiscard]] std::unique_ptr<platform::NativeWindow> makeWindow(
        const platform::NativeWindowOptions& opties,
        platform::NativeWindowDelegate& gedelegeerde) override {
        return echt_->makeWindow(opties, gedelegeerde);
    }
    [[nodiscard]] std::unique_ptr<platform::NativeWindow> adopt(
        const platform::HostRef& gastheer, platform::NativeWindowDelegate& gedelegeerde) override {
        return echt_->adopt(gastheer, gedelegeerde);
    }
    [[nodiscard]] platform::NativeWorkspace& workspace() override { return echt_->workspace(); }
    [[nodiscard]] platform::OverlaySpaces* overlaySpaces() override { return nullptr; }
    void watch(std::function<void(bool)> slaapt) override { echt_->watch(std::move(slaapt)); }
    void stopWatching() override { echt_->stopWatching(); }

  private:
    const std::shared_ptr<platform::WindowSystem> echt_;
};

class RegenZonderPlaatsen : public CentraleProef {
  protected:
    static constexpr double kGedimd = brixtel::MatrixCentrale::kGedimd;
    platform::WindowServer plaatsloos{klok,
                                      {.drawer = {}, .system = std::make_shared<Plaatsloos>(klok)}};

    void SetUp() override {
        centrale.emplace(brixtel::MatrixCentraleBronnen{
            .server = plaatsloos, .werkruimte = werkruimte, .toeval = toeval, .schermen = [this] {
                return schermen;
            }});
    }
    // The windows end before the server that they tell of it.
    void TearDown() override { centrale.reset(); }
    [[nodiscard]] double dekking(std::size_t n = 0) const {
        return centrale->regen()[n].venster->alpha();
    }
};

TEST_F(RegenZonderPlaatsen, TheWholeRainDimsWhileAWindowIsToBeReadAndFadesBack) {
    centrale->toonRegen();
    wachtFade();
    centrale->laatLezen({10, 10, 50, 50});
    klok.advance(0.1);
    EXPECT_LT(dekking(), 1.0);
    EXPECT_GT(dekking(), kGedimd);
    wachtFade();
    for (std::size_t n = 0; n < 2; ++n) {
        EXPECT_EQ(dekking(n), kGedimd);
        EXPECT_FALSE(centrale->regen()[n].venster->contentView()->layer()->mask());
    }
    // Another place changes nothing, and begins no fade.
    const std::size_t klokken = klok.timerCount();
    centrale->laatLezen({20, 20, 50, 50});
    EXPECT_EQ(klok.timerCount(), klokken);
    EXPECT_EQ(dekking(), kGedimd);
    centrale->laatLezen({});
    klok.advance(0.1);
    EXPECT_GT(dekking(), kGedimd);
    EXPECT_LT(dekking(), 1.0);
    wachtFade();
    EXPECT_EQ(dekking(), 1.0);
}

TEST_F(RegenZonderPlaatsen, ARainThatComesWhileAWindowIsToBeReadIsDimFromTheStart) {
    centrale->laatLezen({10, 10, 50, 50});
    centrale->toonRegen();
    wachtFade();
    EXPECT_EQ(dekking(), kGedimd);
    // A rain that comes back from below the black screen is dim too.
    centrale->toonZwart(std::nullopt);
    centrale->laatLezen({});
    wachtFade();
    EXPECT_EQ(dekking(), 0.0);
    centrale->laatLezen({10, 10, 50, 50});
    centrale->sluitZwart();
    wachtFade();
    EXPECT_EQ(dekking(), kGedimd);
}

TEST_F(RegenZonderPlaatsen, TextUnderTheDimRainIsReadable) {
    const auto over = [](const QColor& kleur, double dekking, const QColor& achter) {
        const auto meng = [&](float voor, float grond) {
            return static_cast<int>(std::lround(255.0 * (voor * dekking + grond * (1 - dekking))));
        };
        return QColor(meng(kleur.redF(), achter.redF()), meng(kleur.greenF(), achter.greenF()),
                      meng(kleur.blueF(), achter.blueF()));
    };
    using brixtel::Thema;
    const QColor& zwart = Thema::zwart();
    const QRgb felst = over(Thema::cijferFel(), kGedimd, zwart).rgb();
    // The last two are the panel's faintest, but for the labels of music that is off.
    for (const QColor& tekst : {Thema::groen(), Thema::middel(), Thema::wit(), Thema::oranje(),
                                over(Thema::groen(), 0.7, zwart), over(Thema::wit(), 0.6, zwart)}) {
        EXPECT_GE(contrast(tekst.rgb(), felst), 4.5) << qPrintable(tekst.name());
        // A digit's shadow lies over the text.
        EXPECT_GE(contrast(over(Qt::black, kGedimd, tekst).rgb(), zwart.rgb()), 4.5)
            << qPrintable(tekst.name());
    }
}

TEST_F(CentraleRegen, TheRainThatComesUpUnderTheBlackScreenStaysInvisible) {
    werkruimte.doorzichtig = false;
    centrale->toonRegen();
    centrale->toonZwart(std::nullopt);
    werkruimte.zetDoorzichtig(true);
    wachtFade();
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 0.0);
    centrale->sluitZwart();
    wachtFade();
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 1.0);
}

}  // namespace
