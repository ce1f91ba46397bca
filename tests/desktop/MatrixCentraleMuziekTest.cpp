// SPDX-License-Identifier: MIT
#include "tests/desktop/CentraleProef.h"

using brixtel::CentraleProef;
using brixtel::DrieSoort;
using brixtel::MuziekStand;

namespace {

class CentraleMuziek : public CentraleProef {
  protected:
    std::optional<MuziekStand> stand;
    int gevraagd = 0;

    void SetUp() override {
        CentraleProef::SetUp();
        centrale->opMuziek = true;
        centrale->muziekStand = [this] {
            ++gevraagd;
            return stand;
        };
    }
    [[nodiscard]] double tempo(std::size_t n = 0) const {
        return centrale->zwart()[n].regen->laag()->time().speed;
    }
    [[nodiscard]] bool flitst(std::size_t n = 0) const {
        return centrale->zwart()[n].flits->animation("beat") != nullptr;
    }
    void tik(int aantal = 1) { klok.advance(aantal / 30.0 + 1e-6); }
};

TEST_F(CentraleMuziek, WithOpMuziekFalseNoTimerRunsAndTheRainKeepsSpeedOne) {
    centrale->opMuziek = false;
    stand = MuziekStand{.level = 1.0};
    centrale->toonZwart(std::nullopt);
    EXPECT_FALSE(centrale->muziekKlok().isValid());
    klok.advance(5.0);
    EXPECT_EQ(gevraagd, 0);
    EXPECT_EQ(tempo(), 1.0);
}

TEST_F(CentraleMuziek, TheMusicIsAskedForThirtyTimesASecondWhileTheBlackScreenShows) {
    centrale->toonZwart(std::nullopt);
    EXPECT_NEAR(centrale->muziekKlok().interval(), 1.0 / 30.0, 1e-12);
    klok.advance(1.0 + 1e-6);
    EXPECT_EQ(gevraagd, 30);
    centrale->sluitZwart();
    EXPECT_FALSE(centrale->muziekKlok().isValid());
    klok.advance(1.0);
    EXPECT_EQ(gevraagd, 30);
}

TEST_F(CentraleMuziek, WithoutAStateTheTempoStaysSteady) {
    centrale->toonZwart(std::nullopt);
    tik(30);
    EXPECT_EQ(tempo(), 1.0);
    centrale->muziekStand = nullptr;
    tik(30);
    EXPECT_EQ(tempo(), 1.0);
}

TEST_F(CentraleMuziek, ALevelOfZeroSettlesAtFourFifths) {
    stand = MuziekStand{.level = 0.0};
    centrale->toonZwart(std::nullopt);
    tik();
    // One step of the smoothing, from 1.
    EXPECT_NEAR(tempo(), 1.0 + (0.8 - 1.0) * 0.12, 1e-6);
    tik(300);
    EXPECT_NEAR(tempo(), 0.8, 1e-6);
    EXPECT_NEAR(tempo(1), 0.8, 1e-6);
}

TEST_F(CentraleMuziek, AnyLevelOfSixteenThirtyFifthsOrMoreSettlesAtTwoPointFour) {
    centrale->toonZwart(std::nullopt);
    for (const double level : {0.458, 0.7, 1.0}) {
        stand = MuziekStand{.level = level};
        tik(300);
        EXPECT_NEAR(tempo(), 2.4, 1e-6) << level;
    }
    stand = MuziekStand{.level = 0.4};
    tik(300);
    EXPECT_NEAR(tempo(), 0.8 + 1.4, 1e-6);
}

TEST_F(CentraleMuziek, TheSpeedChangesWithoutAJump) {
    stand = MuziekStand{.level = 1.0};
    centrale->toonZwart(std::nullopt);
    const auto& laag = *centrale->zwart()[0].regen->laag();
    double vorige = laag.localTime(klok.now());
    for (int i = 0; i < 60; ++i) {
        klok.advance(1.0 / 60.0);
        const double nu = laag.localTime(klok.now());
        EXPECT_GT(nu, vorige);
        EXPECT_LT(nu - vorige, 2.5 / 60.0);
        vorige = nu;
    }
}

TEST_F(CentraleMuziek, EachBlackScreenBeginsAtTempoOne) {
    stand = MuziekStand{.level = 1.0};
    centrale->toonZwart(std::nullopt);
    tik(300);
    centrale->sluitZwart();
    centrale->toonZwart(std::nullopt);
    tik();
    EXPECT_NEAR(tempo(), 1.0 + (2.4 - 1.0) * 0.12, 1e-6);
}

TEST_F(CentraleMuziek, TheFirstReadingOnlyRecordsTheBeat) {
    stand = MuziekStand{.beat = 5, .sterkte = 1.0};
    centrale->toonZwart(std::nullopt);
    tik(3);
    EXPECT_FALSE(flitst());
    stand->beat = 6;
    tik();
    EXPECT_TRUE(flitst());
}

TEST_F(CentraleMuziek, ABeatChangeWithStrengthFifteenHundredthsOrLessGivesNoFlash) {
    stand = MuziekStand{.beat = 0, .sterkte = 0.15};
    centrale->toonZwart(std::nullopt);
    tik();
    stand->beat = 1;
    tik();
    EXPECT_FALSE(flitst());
    // The controller remembers the beat: the same beat, grown stronger, is not a new one.
    stand->sterkte = 1.0;
    tik();
    EXPECT_FALSE(flitst());
    stand = MuziekStand{.beat = 2, .sterkte = 0.16};
    tik();
    EXPECT_TRUE(flitst());
}

TEST_F(CentraleMuziek, AStrengthOfFourFifthsFlashesFromFullOpacityOnEveryDisplay) {
    stand = MuziekStand{.beat = 0, .sterkte = 0.8};
    centrale->toonZwart(std::nullopt);
    tik();
    stand->beat = 1;
    tik();
    for (const auto& zwart : centrale->zwart()) {
        const auto* const flits = zwart.flits->animation("beat");
        ASSERT_TRUE(flits);
        EXPECT_EQ(flits->data().values, (std::vector<double>{1.0, 0.0}));
        EXPECT_EQ(flits->data().timing.duration, 0.35);
        const double nu = klok.now();
        EXPECT_NEAR(getoond(*zwart.flits, nu + 0.175), 0.5, 1e-3);
        EXPECT_EQ(getoond(*zwart.flits, nu + 0.36), 0.0);
    }
}

TEST_F(CentraleMuziek, AWeakerBeatFlashesFromItsStrengthAndALittleMore) {
    stand = MuziekStand{.beat = 0, .sterkte = 0.3};
    centrale->toonZwart(std::nullopt);
    tik();
    stand->beat = 9;
    tik();
    EXPECT_NEAR(centrale->zwart()[0].flits->animation("beat")->data().values[0], 0.65, 1e-12);
}

TEST_F(CentraleMuziek, TheFlashShowsAsMuchAsTheOwnerWants) {
    stand = MuziekStand{.beat = 0, .sterkte = 0.8};
    centrale->toonZwart(std::nullopt);
    tik();
    centrale->flitsDeel = 0.25;
    stand->beat = 1;
    tik();
    EXPECT_EQ(centrale->zwart()[0].flits->animation("beat")->data().values[0], 0.25);
    klok.advance(1.0);
    centrale->flitsDeel = 0.0;
    centrale->zwart()[0].flits->removeAnimation("beat");
    stand->beat = 2;
    tik();
    EXPECT_FALSE(flitst());
}

TEST_F(CentraleMuziek, OverASceneTheFlashIsThereTooOnEveryDisplay) {
    stand = MuziekStand{.beat = 0, .sterkte = 0.8, .level = 1.0};
    centrale->toonZwart(DrieSoort::kubus);
    tik();
    stand->beat = 1;
    tik();
    for (std::size_t n = 0; n < 2; ++n) {
        EXPECT_FALSE(centrale->zwart()[n].regen);
        EXPECT_TRUE(flitst(n)) << n;
    }
}

}  // namespace
