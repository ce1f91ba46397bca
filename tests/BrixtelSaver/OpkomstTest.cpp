// SPDX-License-Identifier: MIT
// The new picture comes up out of black.
#include "BrixtelSaver/Opkomst.h"

#include "platform/view/FrameBuilder.h"
#include "tests/BrixtelSaver/SaverOpstelling.h"

using brixtel::BrixtelSaverView;
using brixtel::SaverKeuze;

namespace {

class OpkomstTest : public steun::SaverView {
  protected:
    // The opacity of the black over the picture, once a frame was built.
    static double zwart(BrixtelSaverView& view, double nu) {
        platform::Frame beeld;
        beeld.grid = {.scale = 1.0, .size = {300, 200}};
        platform::FrameBuilder(beeld, nu).add(view);
        return view.subviews().back()->layer()->shownOpacity(nu);
    }
    [[nodiscard]] double zwart(BrixtelSaverView& view) const { return zwart(view, klok.now()); }
};

TEST_F(OpkomstTest, TheFirstPictureIsThereAtOnce) {
    for (const auto keuze : {SaverKeuze::regen, SaverKeuze::logo}) {
        const auto view = gestart(keuze);
        EXPECT_EQ(view->subviews().size(), view->scn() ? 1U : 0U);
    }
}

TEST_F(OpkomstTest, EveryNextOneComesUpInAQuarterOfASecond) {
    const auto view = gestart(SaverKeuze::wisselend);
    for (int minuut = 0; minuut < 5; ++minuut) {
        // The clock moves to the next tick.
        klok.advance(100.0 + 60.0 * (minuut + 1) - klok.now());
        EXPECT_EQ(view->subviews().size(), view->scn() ? 2U : 1U);
        EXPECT_EQ(view->subviews().back()->frame(), view->bounds());
        EXPECT_EQ(view->subviews().back()->layer()->backgroundColor(), QColor(Qt::black));
        EXPECT_EQ(zwart(*view), 1.0);
        double vorige = 1.0;
        for (int beeld = 1; beeld <= 15; ++beeld) {
            klok.advance(1.0 / 60.0);
            EXPECT_NEAR(vorige - zwart(*view), 4.0 / 60.0, 1e-9);
            vorige = zwart(*view);
        }
        EXPECT_NEAR(vorige, 0.0, 1e-9);
        klok.advance(0.05);
        EXPECT_EQ(zwart(*view), 0.0);
    }
}

// The scene's first frame may have to wait for its pictures to be drawn.
TEST_F(OpkomstTest, BlackIsWholeUntilTheFirstFrame) {
    const auto view = gestart(SaverKeuze::kubus);
    view->configureSheet();
    view->klaar(SaverKeuze::logo);
    klok.advance(0.2);
    EXPECT_EQ(zwart(*view), 1.0);
    klok.advance(0.125);
    EXPECT_NEAR(zwart(*view), 0.5, 1e-9);
}

// A user who wishes for little movement sees a picture every ten seconds.
TEST_F(OpkomstTest, APictureFirstShownLaterIsSeenWhole) {
    const auto view = gestart(SaverKeuze::kubus);
    view->configureSheet();
    view->klaar(SaverKeuze::logo);
    klok.leap(6.0);
    EXPECT_EQ(zwart(*view), 0.0);
}

TEST_F(OpkomstTest, GoesWithItsScene) {
    const auto view = gestart(SaverKeuze::kubus);
    view->configureSheet();
    view->klaar(SaverKeuze::regen);
    view->stopAnimation();
    EXPECT_TRUE(leeg(*view));
}

}  // namespace
