// SPDX-License-Identifier: MIT
#include "tafereel/Tafereel.h"

#include "tests/worlds/Opstelling.h"

using brixtel::DrieSoort;
using brixtel::MatrixRegenOpties;
using brixtel::Tafereel;
using brixtel::TafereelOpties;

namespace {

class TafereelTest : public steun::WereldOpstelling {
  protected:
    TafereelTest() {
        view.setWantsLayer(true);
        begin = view.layer()->sublayers().size();
    }

    std::unique_ptr<Tafereel> toon(std::optional<DrieSoort> soort) {
        return std::make_unique<Tafereel>(view,
                                          TafereelOpties{.soort = soort,
                                                         .wereld = {.groot = false},
                                                         .regen =
                                                             [this] {
                                                                 ++gevraagd;
                                                                 return MatrixRegenOpties{
                                                                     .maat = view.bounds().size(),
                                                                     .schaal = 1.0};
                                                             },
                                                         .bijGeenDrie = [this] { ++gemeld; }},
                                          brixtel::DrieWereldBronnen{.klok = klok_,
                                                                     .toeval = toeval,
                                                                     .wacht = &wacht_,
                                                                     .landen = &tabel_,
                                                                     .kaart = &kaart_});
    }
    // Layers that were added to the view's own.
    [[nodiscard]] std::size_t lagen() { return view.layer()->sublayers().size() - begin; }

    platform::View view{QRectF(0.0, 0.0, 320.0, 200.0)};
    platform::RandomSource toeval{1};
    std::size_t begin = 0;
    int gevraagd = 0;
    int gemeld = 0;
};

TEST_F(TafereelTest, WithoutASceneItRainsInTheViewsLayer) {
    const auto tafereel = toon(std::nullopt);
    ASSERT_TRUE(tafereel->regen());
    EXPECT_EQ(view.layer()->sublayers().back(), tafereel->regen()->laag());
    EXPECT_TRUE(view.subviews().empty());
    EXPECT_FALSE(tafereel->scn());
    EXPECT_FALSE(tafereel->wereld());
}

TEST_F(TafereelTest, ASceneFillsTheViewAndFollowsItsSize) {
    const auto tafereel = toon(DrieSoort::tunnel);
    ASSERT_TRUE(tafereel->scn());
    ASSERT_EQ(view.subviews().size(), 1U);
    EXPECT_EQ(view.subviews().front(), tafereel->scn());
    EXPECT_EQ(tafereel->scn()->scene(), tafereel->wereld()->scene());
    EXPECT_TRUE(tafereel->scn()->isPlaying());
    EXPECT_FALSE(tafereel->wereld()->groot());
    view.setFrame({0.0, 0.0, 640.0, 480.0});
    EXPECT_EQ(tafereel->scn()->frame(), QRectF(0.0, 0.0, 640.0, 480.0));
    EXPECT_FALSE(tafereel->regen());
    EXPECT_EQ(gevraagd, 0);
}

TEST_F(TafereelTest, WhatCannotBeDrawnIsTheRainFromThenOn) {
    const auto tafereel = toon(DrieSoort::tunnel);
    const auto scn = tafereel->scn();
    scn->fail();
    EXPECT_EQ(gemeld, 1);
    EXPECT_FALSE(tafereel->scn());
    EXPECT_FALSE(tafereel->wereld());
    EXPECT_FALSE(scn->isPlaying());
    EXPECT_TRUE(view.subviews().empty());
    ASSERT_TRUE(tafereel->regen());
    EXPECT_EQ(view.layer()->sublayers().back(), tafereel->regen()->laag());
    EXPECT_EQ(lagen(), 1U);
}

TEST_F(TafereelTest, NewRainIsMadeAtTheSizeThatIsAskedForThen) {
    const auto tafereel = toon(std::nullopt);
    view.setFrame({0.0, 0.0, 640.0, 480.0});
    tafereel->vernieuwRegen();
    EXPECT_EQ(gevraagd, 2);
    EXPECT_EQ(tafereel->regen()->laag()->frame().size(), QSizeF(640.0, 480.0));
    EXPECT_EQ(lagen(), 1U);
}

TEST_F(TafereelTest, ASceneHasNoRainToRenew) {
    const auto tafereel = toon(DrieSoort::tunnel);
    tafereel->vernieuwRegen();
    EXPECT_EQ(gevraagd, 0);
    EXPECT_TRUE(tafereel->scn());
}

TEST_F(TafereelTest, StoppedItStaysOnTheScreenAndMovesNoMore) {
    const auto drie = toon(DrieSoort::tunnel);
    drie->stop();
    EXPECT_FALSE(drie->scn()->isPlaying());
    EXPECT_FALSE(drie->scn()->scene());
    EXPECT_EQ(view.subviews().size(), 1U);
    const auto regen = toon(std::nullopt);
    EXPECT_TRUE(regen->regen()->flikker().isValid());
    regen->stop();
    EXPECT_FALSE(regen->regen()->flikker().isValid());
    EXPECT_EQ(lagen(), 1U);
}

TEST_F(TafereelTest, DroppedItLeavesTheViewAsItWas) {
    toon(std::nullopt);
    toon(DrieSoort::tunnel);
    EXPECT_TRUE(view.subviews().empty());
    EXPECT_EQ(lagen(), 0U);
}

TEST_F(TafereelTest, ADroppedGlobeLeavesTheWatcherAlone) {
    auto bol = toon(DrieSoort::bol);
    EXPECT_EQ(wacht_.tussentijd(), 3.0);
    bol.reset();
    EXPECT_EQ(wacht_.tussentijd(), 0.0);
}

}  // namespace
