// SPDX-License-Identifier: MIT
// The globe and the watcher together.
#include <filesystem>

#include "tests/connections/WachtOpstelling.h"
#include "tests/platform/scene/Near.h"
#include "worlds/DrieWereld.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;

namespace {

class BolWachtTest : public steun::WachtOpstelling {
  protected:
    [[nodiscard]] std::unique_ptr<DrieWereld> maakBol(bool eigenLijnen,
                                                      brixtel::LandenTabel* landen = nullptr) {
        platform::RandomSource toeval(1);
        return std::make_unique<DrieWereld>(
            DrieSoort::bol, brixtel::DrieWereldOpties{.groot = false, .eigenLijnen = eigenLijnen},
            brixtel::DrieWereldBronnen{.klok = klok_,
                                       .toeval = toeval,
                                       .wacht = wacht_.get(),
                                       .landen = landen ? landen : &*tabel_,
                                       .kaart = &kaart_});
    }
    brixtel::LandKaart kaart_;
};

TEST_F(BolWachtTest, TheGlobeShowsWhatTheWatcherMeasures) {
    maakWacht();
    const auto bol = maakBol(false);
    EXPECT_TRUE(bol->lijnenNode()->children().empty());
    ASSERT_TRUE(wachtOp(1));
    EXPECT_EQ(bol->lijnenNode()->children().size(), 4U);
}

TEST_F(BolWachtTest, AGlobeThatComesLaterGetsTheCurrentLinesAtOnce) {
    maakWacht().gebruik("ander", true);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_EQ(maakBol(false)->lijnenNode()->children().size(), 4U);
}

TEST_F(BolWachtTest, AGlobeWithLinesOfItsOwnDoesNotListen) {
    maakWacht().gebruik("ander", true);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_TRUE(maakBol(true)->lijnenNode()->children().empty());
}

TEST_F(BolWachtTest, AResultThatComesAfterTheGlobeIsGoneHurtsNobody) {
    maakWacht();
    auto bol = maakBol(false);
    bol.reset();
    EXPECT_EQ(wacht_->tussentijd(), 0.0);
    EXPECT_TRUE(wachtOp(1));
}

// --- what may be missing ---

TEST_F(BolWachtTest, WithoutLsofTheGlobeIsThereWithoutLines) {
    maakWacht("/no/such/lsof");
    const auto bol = maakBol(false);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_TRUE(bol->lijnenNode()->children().empty());
    EXPECT_TRUE(bol->bol()->find("thuis"));
}

TEST_F(BolWachtTest, WhenLsofGoesTheLinesGo) {
    const std::string pad = (map_ / "lsof").string();
    std::filesystem::create_symlink(steun::kStandin, pad);
    maakWacht(pad);
    const auto bol = maakBol(false);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_EQ(bol->lijnenNode()->children().size(), 4U);
    std::filesystem::remove(pad);
    klok_.advance(1.15 * 3.0);
    ASSERT_TRUE(wachtOp(2));
    EXPECT_TRUE(bol->lijnenNode()->children().empty());
}

TEST_F(BolWachtTest, WithoutATableThereAreNoLinesAndHomeIsTheNetherlands) {
    brixtel::LandenTabel geen("/nergens/landen.bin");
    wacht_ = std::make_unique<brixtel::VerbindingWacht>(
        klok_, brixtel::VerbindingWacht::Bron{.tabel = geen, .lsof = steun::kStandin});
    abonnement_ = wacht_->lijnen().volg([this](const auto&) { ++gepubliceerd_; });
    gepubliceerd_ = 0;
    const auto bol = maakBol(false, &geen);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_EQ(starts(), 1);
    EXPECT_TRUE(bol->lijnenNode()->children().empty());
    EXPECT_VEC_NEAR(bol->bol()->find("thuis")->position(),
                    DrieWereld::punt(52.13, 5.29, {.r = 1.01}), 1e-12);
}

// --- when nobody looks ---

// A measurement in between would show in the number of starts, since the next subscriber
// gets its measurement at once.
TEST_F(BolWachtTest, AHiddenGlobeStopsTheWatcher) {
    maakWacht();
    const auto bol = maakBol(false);
    ASSERT_TRUE(wachtOp(1));
    bol->actief(false);
    for (int i = 0; i < 10; ++i)
        klok_.advance(30.0);
    leeg();
    EXPECT_EQ(starts(), 1);
    bol->actief(true);
    ASSERT_TRUE(wachtOp(2));
    EXPECT_EQ(starts(), 2);
}

TEST_F(BolWachtTest, ADroppedGlobeStopsTheWatcher) {
    auto& wacht = maakWacht();
    auto bol = maakBol(false);
    ASSERT_TRUE(wachtOp(1));
    bol.reset();
    for (int i = 0; i < 10; ++i)
        klok_.advance(30.0);
    leeg();
    EXPECT_EQ(starts(), 1);
    wacht.gebruik("ander", true);
    ASSERT_TRUE(wachtOp(2));
    EXPECT_EQ(starts(), 2);
}

}  // namespace
