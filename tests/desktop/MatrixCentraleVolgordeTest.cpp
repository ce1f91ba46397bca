// SPDX-License-Identifier: MIT
// In which order, and when, the black screen opens and closes.
#include "tests/desktop/CentraleProef.h"

using brixtel::CentraleProef;
using brixtel::DrieSoort;
using platform::RunningApplication;

namespace {

// The controller's state at one step.
struct Stap {
    std::string wat;
    bool zwartAan, muziekKlok, cursorWeg, vorigeApp;
    double regen;         // its alpha
    std::size_t klokken;  // how many timers run
};

class CentraleVolgorde : public CentraleProef {
  protected:
    std::vector<Stap> stappen;

    void SetUp() override {
        CentraleProef::SetUp();
        centrale->opMuziek = true;
        centrale->toonRegen();
        wachtFade();
        werkruimte.bij = [this](const std::string& wat) { noteer(wat); };
        centrale->onZwart = [this](bool aan) { noteer(aan ? "onZwart(true)" : "onZwart(false)"); };
    }
    void TearDown() override {
        werkruimte.bij = [](const std::string&) {};
    }
    void noteer(const std::string& wat) {
        stappen.push_back({.wat = wat,
                           .zwartAan = centrale->zwartAan(),
                           .muziekKlok = centrale->muziekKlok().isValid(),
                           .cursorWeg = centrale->cursorWeg(),
                           .vorigeApp = centrale->vorigeApp().has_value(),
                           .regen = centrale->regen()[0].venster->alpha(),
                           .klokken = klok.timerCount()});
    }
    [[nodiscard]] std::vector<std::string> namen() const {
        std::vector<std::string> alle;
        for (const Stap& stap : stappen)
            alle.push_back(stap.wat);
        return alle;
    }
};

TEST_F(CentraleVolgorde, ToShowIsTheWindowsTheMusicTheKeyboardTheCursorTheRainAndThenTheWord) {
    centrale->toonZwart(std::nullopt);
    ASSERT_EQ(namen(),
              (std::vector<std::string>{"activateIgnoringOthers", "hideCursor", "onZwart(true)"}));
    // The windows, the application that was in front and the clock came first.
    EXPECT_TRUE(stappen[0].zwartAan && stappen[0].muziekKlok && stappen[0].vorigeApp);
    EXPECT_FALSE(stappen[0].cursorWeg);
    EXPECT_EQ(stappen[0].regen, 1.0);
    EXPECT_EQ(stappen[1].regen, 1.0);
    EXPECT_TRUE(stappen[2].cursorWeg);
    EXPECT_EQ(stappen[2].regen, 0.0);
}

TEST_F(CentraleVolgorde, ToCloseIsTheMusicTheCursorTheFadeTheKeyboardTheRainAndThenTheWord) {
    centrale->toonZwart(std::nullopt);
    wachtFade();
    stappen.clear();
    const std::size_t voor = klok.timerCount();
    centrale->sluitZwart();
    ASSERT_EQ(namen(), (std::vector<std::string>{"unhideCursor", "activate", "onZwart(false)"}));
    EXPECT_FALSE(stappen[0].zwartAan || stappen[0].muziekKlok);
    EXPECT_TRUE(stappen[0].vorigeApp);
    // Without the music's.
    EXPECT_EQ(stappen[0].klokken, voor - 1);
    // The two black windows fade.
    EXPECT_EQ(stappen[1].klokken, voor - 1 + 2);
    EXPECT_FALSE(stappen[1].cursorWeg);
    // And those of the rain.
    EXPECT_EQ(stappen[2].klokken, voor - 1 + 2 + 2);
    EXPECT_FALSE(stappen[2].vorigeApp);
    EXPECT_EQ(stappen[2].regen, 0.0);
}

// An owner that is being ended may get no further than its first steps.
TEST_F(CentraleVolgorde, AtTheControllersEndTheKeyboardGoesBackBeforeTheWindowsAreGone) {
    centrale->toonZwart(std::nullopt);
    wachtFade();
    std::vector<std::string> gedaan;
    std::vector<std::size_t> klokken;
    werkruimte.bij = [&](const std::string& wat) {
        gedaan.push_back(wat);
        klokken.push_back(klok.timerCount());
    };
    const std::size_t voor = klok.timerCount();
    centrale.reset();
    EXPECT_EQ(gedaan, (std::vector<std::string>{"unhideCursor", "activate"}));
    EXPECT_EQ(klokken, (std::vector<std::size_t>{voor, voor}));
    EXPECT_EQ(werkruimte.verborgen, 0);
}

class CentraleTijden : public CentraleProef {};

TEST_F(CentraleTijden, ClosingRestoresKeyboardCursorAndRainWithinTheFadesTimes) {
    centrale->toonRegen();
    klok.advance(0.5);
    centrale->toonZwart(DrieSoort::kubus);
    klok.advance(0.5);
    const platform::Window& regen = *centrale->regen()[0].venster;
    const platform::Window& zwart = *centrale->zwart()[0].venster;
    const std::weak_ptr<platform::View> inhoud = zwart.contentView();
    const auto drie = centrale->zwart()[0].drie;
    EXPECT_EQ(werkruimte.verborgen, 1);
    EXPECT_TRUE(werkruimte.geactiveerd.empty());
    EXPECT_EQ(regen.alpha(), 0.0);
    centrale->sluitZwart();
    // The pointer and the keyboard are back at once.
    EXPECT_EQ(werkruimte.verborgen, 0);
    EXPECT_EQ(werkruimte.geactiveerd, std::vector{*werkruimte.voor});
    EXPECT_EQ(regen.alpha(), 0.0);
    // A quarter of a second, less what a double can tell of it.
    constexpr double kBijna = 0.25 - 1.0 / 1024.0;
    klok.advance(kBijna);
    EXPECT_TRUE(zwart.isVisible());
    EXPECT_GT(zwart.alpha(), 0.0);
    EXPECT_TRUE(drie->isPlaying());
    EXPECT_LT(regen.alpha(), 1.0);
    klok.advance(0.25 - kBijna);
    EXPECT_TRUE(inhoud.expired());
    EXPECT_FALSE(drie->isPlaying());
    EXPECT_EQ(regen.alpha(), 1.0);
    EXPECT_TRUE(regen.isVisible());
    // The later end of the fade does nothing again.
    klok.advance(1.0);
    EXPECT_EQ(werkruimte.verborgen, 0);
    EXPECT_EQ(werkruimte.geactiveerd.size(), 1U);
}

TEST_F(CentraleTijden, OneReopenedDuringTheFadeStillKnowsThePreviousApp) {
    const RunningApplication vorige = *werkruimte.voor;
    centrale->toonZwart(std::nullopt);
    wachtFade();
    // The black window had the keyboard, and the window manager has yet to move it.
    werkruimte.voor.reset();
    for (int keer = 0; keer < 2; ++keer) {
        centrale->sluitZwart();
        klok.advance(0.1);
        centrale->toonZwart(DrieSoort::kubus);
        EXPECT_EQ(centrale->vorigeApp(), vorige);
    }
    centrale->sluitZwart();
    EXPECT_EQ(werkruimte.geactiveerd, std::vector<RunningApplication>(3, vorige));
}

TEST_F(CentraleTijden, OneReopenedDuringTheFadeOverAnotherAppGoesBackToThatOne) {
    centrale->toonZwart(std::nullopt);
    centrale->sluitZwart();
    werkruimte.voor = RunningApplication{.window = {QStringLiteral("33")}, .process = 44};
    centrale->toonZwart(std::nullopt);
    EXPECT_EQ(centrale->vorigeApp(), werkruimte.voor);
}

TEST_F(CentraleTijden, OneReopenedAfterTheFadeKnowsNoPreviousAppWhereThereIsNone) {
    centrale->toonZwart(std::nullopt);
    centrale->sluitZwart();
    wachtFade();
    werkruimte.voor.reset();
    centrale->toonZwart(std::nullopt);
    EXPECT_FALSE(centrale->vorigeApp());
}

}  // namespace
