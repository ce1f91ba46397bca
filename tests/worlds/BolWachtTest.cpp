// SPDX-License-Identifier: MIT
// The globe and the watcher together.
#include "tests/connections/WachtOpstelling.h"
#include "worlds/DrieWereld.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;

namespace {

class BolWachtTest : public steun::WachtOpstelling {
  protected:
    [[nodiscard]] std::unique_ptr<DrieWereld> maakBol(bool eigenLijnen) {
        platform::RandomSource toeval(1);
        return std::make_unique<DrieWereld>(
            DrieSoort::bol, brixtel::DrieWereldOpties{.groot = false, .eigenLijnen = eigenLijnen},
            brixtel::DrieWereldBronnen{.klok = klok_,
                                       .toeval = toeval,
                                       .wacht = wacht_.get(),
                                       .landen = &*tabel_,
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

}  // namespace
