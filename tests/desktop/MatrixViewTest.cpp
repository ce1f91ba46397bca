// SPDX-License-Identifier: MIT
#include "desktop/MatrixView.h"

#include <gtest/gtest.h>

#include "desktop/MatrixVenster.h"
#include "tests/desktop/Werkruimte.h"
#include "tests/support/WindowSystems.h"

using brixtel::MatrixVenster;
using brixtel::MatrixView;
using brixtel::Werkruimte;

namespace {

class MatrixViewTest : public testing::Test {
  protected:
    platform::ManualClock klok{100.0};
    Werkruimte werkruimte;
    MatrixView view{QRectF(0, 0, 300, 200), klok, werkruimte};
    int gesloten = 0;

    void SetUp() override {
        view.onSluit = [this] { ++gesloten; };
    }
    void beweeg(QPointF naar) {
        werkruimte.muis = naar;
        // Where the event says it was does not count.
        view.mouseMoved({.location = {1, 1}, .screenLocation = {2, 2}});
    }
    void druk(int toets) { view.keyDown({.key = toets, .text = {}}); }
};

TEST_F(MatrixViewTest, BeginsWithoutAReferenceAtTheTimeOfConstruction) {
    EXPECT_EQ(view.begin(), 100.0);
    EXPECT_FALSE(view.beginPunt());
    EXPECT_FALSE(view.volgGebied());
    EXPECT_TRUE(view.acceptsFirstResponder());
}

TEST_F(MatrixViewTest, AKeyPressATenthOfASecondAfterShowingClosesAtOnce) {
    klok.advance(0.1);
    druk(Qt::Key_A);
    EXPECT_EQ(gesloten, 1);
}

TEST_F(MatrixViewTest, AMovementAtHalfASecondDoesNothingAndSetsNoReference) {
    klok.advance(0.5);
    beweeg({500, 500});
    beweeg({0, 0});
    EXPECT_EQ(gesloten, 0);
    EXPECT_FALSE(view.beginPunt());
}

TEST_F(MatrixViewTest, ExactlyAtTheEndOfTheGraceTimeAMovementIsStillIgnored) {
    // Times that a double holds exactly.
    platform::ManualClock nul{0.0};
    MatrixView exact(QRectF(0, 0, 10, 10), nul, werkruimte);
    nul.advance(0.9);
    exact.mouseMoved({});
    EXPECT_FALSE(exact.beginPunt());
    nul.advance(0.001);
    exact.mouseMoved({});
    EXPECT_TRUE(exact.beginPunt());
}

TEST_F(MatrixViewTest, TheFirstMovementAfterTheGraceTimeSetsTheReferenceAndALaterOneCloses) {
    klok.advance(0.91);
    beweeg({500, 500});
    EXPECT_EQ(view.beginPunt(), QPointF(500, 500));
    EXPECT_EQ(gesloten, 0);
    beweeg({530, 540.5});
    EXPECT_EQ(gesloten, 1);
}

TEST_F(MatrixViewTest, ExactlyFiftyPointsAwayDoesNotClose) {
    klok.advance(1.0);
    beweeg({0, 0});
    beweeg({30, 40});
    EXPECT_EQ(gesloten, 0);
    beweeg({30.01, 40});
    EXPECT_EQ(gesloten, 1);
}

TEST_F(MatrixViewTest, SmallDriftsAddUp) {
    klok.advance(1.0);
    beweeg({0, 0});
    for (int x = 1; x <= 50; ++x)
        beweeg({double(x), 0});
    EXPECT_EQ(gesloten, 0);
    EXPECT_EQ(view.beginPunt(), QPointF(0, 0));
    beweeg({51, 0});
    EXPECT_EQ(gesloten, 1);
}

TEST_F(MatrixViewTest, BothMouseButtonsCloseWithinTheGraceTimeToo) {
    view.mouseDown({});
    EXPECT_EQ(gesloten, 1);
    view.rightMouseDown({});
    EXPECT_EQ(gesloten, 2);
}

TEST_F(MatrixViewTest, OtherButtonsDoNotClose) {
    view.otherMouseDown({});
    EXPECT_EQ(gesloten, 0);
}

TEST_F(MatrixViewTest, ShiftAndItsLikeAloneAreNoKeyPresses) {
    for (const int toets :
         {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Meta, Qt::Key_Alt, Qt::Key_AltGr,
          Qt::Key_CapsLock, Qt::Key_NumLock, Qt::Key_ScrollLock, Qt::Key_Super_L, Qt::Key_Super_R,
          Qt::Key_Hyper_L, Qt::Key_Hyper_R, Qt::Key_Mode_switch}) {
        druk(toets);
        EXPECT_EQ(gesloten, 0) << std::hex << toets;
    }
    druk(Qt::Key_Escape);
    EXPECT_EQ(gesloten, 1);
}

TEST_F(MatrixViewTest, KeysForMusicAndBrightnessDoNotClose) {
    for (const int toets :
         {Qt::Key_VolumeUp, Qt::Key_VolumeDown, Qt::Key_VolumeMute, Qt::Key_MicMute,
          Qt::Key_MediaPlay, Qt::Key_MediaPause, Qt::Key_MediaTogglePlayPause, Qt::Key_MediaStop,
          Qt::Key_MediaNext, Qt::Key_MediaPrevious, Qt::Key_MonBrightnessUp,
          Qt::Key_MonBrightnessDown, Qt::Key_KeyboardBrightnessUp}) {
        druk(toets);
        EXPECT_EQ(gesloten, 0) << std::hex << toets;
    }
    // A program's key is an ordinary one.
    druk(Qt::Key_LaunchMail);
    EXPECT_EQ(gesloten, 1);
}

TEST_F(MatrixViewTest, InputIsNotPassedOn) {
    struct Ouder : platform::View {
        using View::View;
        int gehoord = 0;
        void keyDown(const platform::KeyEvent&) override { ++gehoord; }
        void mouseDown(const platform::MouseEvent&) override { ++gehoord; }
        void rightMouseDown(const platform::MouseEvent&) override { ++gehoord; }
        void otherMouseDown(const platform::MouseEvent&) override { ++gehoord; }
        void mouseMoved(const platform::MouseEvent&) override { ++gehoord; }
    };
    Ouder ouder{QRectF(0, 0, 300, 200)};
    const auto kind = std::make_shared<MatrixView>(QRectF(0, 0, 300, 200), klok, werkruimte);
    ouder.addSubview(kind);
    kind->keyDown({.key = Qt::Key_A, .text = {}});
    kind->mouseDown({});
    kind->rightMouseDown({});
    kind->otherMouseDown({});
    kind->mouseMoved({});
    EXPECT_EQ(ouder.gehoord, 0);
}

TEST_F(MatrixViewTest, WithoutAnActionInputIsSwallowed) {
    view.onSluit = nullptr;
    druk(Qt::Key_A);
    view.mouseDown({});
    klok.advance(1.0);
    beweeg({0, 0});
    beweeg({100, 0});
    EXPECT_EQ(view.beginPunt(), QPointF(0, 0));
}

TEST_F(MatrixViewTest, OneTrackingAreaOverTheBoundsFollowsTheView) {
    platform::WindowServer server{klok, {.drawer = {}, .system = withoutSystem(klok)}};
    MatrixVenster venster(server, {.frame = {0, 0, 300, 200}});
    const auto inhoud = std::make_shared<MatrixView>(QRectF(0, 0, 300, 200), klok, werkruimte);
    venster.setContentView(inhoud);
    ASSERT_EQ(inhoud->trackingAreas().size(), 1U);
    const auto eerste = inhoud->volgGebied();
    EXPECT_EQ(inhoud->trackingAreas().front(), eerste);
    EXPECT_EQ(eerste->rect, QRectF(0, 0, 300, 200));
    EXPECT_EQ(eerste->options, 0x282U);
    inhoud->setFrame({0, 0, 400, 300});
    ASSERT_EQ(inhoud->trackingAreas().size(), 1U);
    EXPECT_NE(inhoud->volgGebied(), eerste);
    EXPECT_EQ(inhoud->volgGebied()->rect, QRectF(0, 0, 400, 300));
}

TEST_F(MatrixViewTest, ItsWindowCanAlwaysBecomeKeyAndMain) {
    platform::WindowServer server{klok, {.drawer = {}, .system = withoutSystem(klok)}};
    const MatrixVenster venster(server, {.frame = {0, 0, 300, 200}});
    EXPECT_TRUE(venster.canBecomeKey());
    EXPECT_TRUE(venster.canBecomeMain());
    const platform::Window gewoon(server, {.frame = {0, 0, 300, 200}});
    EXPECT_FALSE(gewoon.canBecomeKey());
}

}  // namespace
