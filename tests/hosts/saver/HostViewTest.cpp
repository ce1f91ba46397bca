// SPDX-License-Identifier: MIT
#include "hosts/saver/HostView.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

using brixtel::HostView;

namespace {

class HostViewTest : public testing::Test {
  protected:
    platform::ManualClock klok;
    platform::RandomSource toeval{1};
    platform::DistributedNotificationCenter berichten{QString()};
    HostView::Indeling indeling{.schermen = {{.frame = {0, 0, 1000, 1000}}}};
    HostView view{std::make_shared<platform::ScreenSaverView>(
                      QRectF(0, 0, 400, 300), false,
                      platform::ScreenSaverContext{
                          .clock = klok, .random = toeval, .notifications = berichten}),
                  [this] { return indeling; }};
    int geroepen = 0;

    void SetUp() override {
        view.onInvoer([this] { ++geroepen; });
    }
    void muis(double x, double y) {
        view.mouseMoved({.location = {x, y}, .screenLocation = {x + 1000, y}});
    }
};

TEST_F(HostViewTest, TheSaverFillsItAndFollowsItsSize) {
    EXPECT_EQ(view.bounds().size(), QSizeF(400, 300));
    view.setFrame(QRectF(0, 0, 800, 500));
    EXPECT_EQ(view.saver()->frame(), QRectF(0, 0, 800, 500));
}

TEST_F(HostViewTest, EveryOtherSizeIsTold) {
    std::vector<QSizeF> maten;
    view.onMaat([&](QSizeF maat) {
        EXPECT_EQ(view.saver()->frame().size(), maat);
        maten.push_back(maat);
    });
    view.setFrame(QRectF(0, 0, 800, 500));
    view.setFrame(QRectF(10, 20, 800, 500));
    view.setFrame(QRectF(10, 20, 800, 501));
    EXPECT_EQ(maten, (std::vector{QSizeF(800, 500), QSizeF(800, 501)}));
}

TEST_F(HostViewTest, AKeyOrAClickEndsAtOnce) {
    view.keyDown({});
    view.mouseDown({});
    view.rightMouseDown({});
    view.otherMouseDown({});
    EXPECT_EQ(geroepen, 4);
    EXPECT_TRUE(view.acceptsFirstResponder());
}

TEST_F(HostViewTest, TheMouseEndsItBeyondFiftyPointsFromWhereItWasFirstSeen) {
    muis(100, 100);
    muis(130, 140);  // exactly fifty away
    EXPECT_EQ(geroepen, 0);
    muis(130.1, 140);
    EXPECT_EQ(geroepen, 1);
}

// The places of an upright coordinate space all move with the display's height.
TEST_F(HostViewTest, ADisplayThatChangesIsNoMovementOfTheMouse) {
    muis(100, 100);
    indeling.schermen[0].frame = {0, 0, 1000, 400};
    muis(100, 300);
    muis(140, 300);
    EXPECT_EQ(geroepen, 0);
    indeling.schermen.push_back({.frame = {1000, 0, 500, 500}});
    muis(400, 100);
    EXPECT_EQ(geroepen, 0);
    muis(451, 100);
    EXPECT_EQ(geroepen, 1);
}

// The window system may announce the change before anybody knows the new screens.
TEST_F(HostViewTest, ADisplayThatIsAboutToChangeIsNoMovementOfTheMouse) {
    muis(100, 100);
    ++indeling.aangekondigd;
    muis(300, 300);
    muis(340, 300);
    EXPECT_EQ(geroepen, 0);
    muis(351, 300);
    EXPECT_EQ(geroepen, 1);
}

// A system without windows that announces changes of the screens.
class Aankondiger final : public platform::WindowSystem {
  public:
    [[nodiscard]] platform::Capabilities capabilities() const override { return {}; }
    [[nodiscard]] bool isConnected() const override { return true; }
    void onLost(std::function<void()>) override {}
    void reportLoss() override {}
    [[nodiscard]] std::unique_ptr<platform::NativeWindow> makeWindow(
        const platform::NativeWindowOptions&, platform::NativeWindowDelegate&) override {
        return nullptr;
    }
    [[nodiscard]] std::unique_ptr<platform::NativeWindow> adopt(
        const platform::HostRef&, platform::NativeWindowDelegate&) override {
        return nullptr;
    }
    [[nodiscard]] std::uint64_t announcedScreenChanges() const override { return aangekondigd; }
    [[nodiscard]] platform::NativeWorkspace& workspace() override { std::abort(); }
    [[nodiscard]] platform::OverlaySpaces* overlaySpaces() override { return nullptr; }
    void watch(std::function<void(bool)>) override {}
    void stopWatching() override {}

    std::uint64_t aangekondigd = 3;
};

TEST_F(HostViewTest, TheArrangementIsThatOfTheScreensAndOfTheWindowSystem) {
    Aankondiger systeem;
    const HostView::Indeling eerst = HostView::Indeling::van(systeem);
    EXPECT_FALSE(eerst.schermen.empty());
    EXPECT_EQ(eerst.schermen, platform::Screen::all());
    EXPECT_EQ(HostView::Indeling::van(systeem), eerst);
    ++systeem.aangekondigd;
    EXPECT_NE(HostView::Indeling::van(systeem), eerst);
}

TEST_F(HostViewTest, SmallDriftsAddUp) {
    for (int i = 0; i <= 6; ++i)
        muis(100 + 10 * i, 100);
    EXPECT_EQ(geroepen, 1);
}

TEST_F(HostViewTest, TheKeyIBringsTheSettingsWhereThereAreAnyAndIsInputElsewhere) {
    view.keyDown({.text = QStringLiteral("i")});
    EXPECT_EQ(geroepen, 1);
    int instellingen = 0;
    view.onInstellingen([&] { ++instellingen; });
    view.keyDown({.text = QStringLiteral("i")});
    view.keyDown({.text = QStringLiteral("I")});
    EXPECT_EQ(instellingen, 2);
    EXPECT_EQ(geroepen, 1);
    view.keyDown({.text = QStringLiteral("j")});
    EXPECT_EQ(geroepen, 2);
}

TEST_F(HostViewTest, InAWindowOfItsOwnKeysAndADoubleClickSayWhatTheyMean) {
    int volledig = 0, terug = 0, sluit = 0;
    view.onInvoer(nullptr);
    view.inEigenVenster(
        klok,
        {.volledig = [&] { ++volledig; }, .terug = [&] { ++terug; }, .sluit = [&] { ++sluit; }});
    view.keyDown({.key = Qt::Key_F11});
    view.keyDown({.key = Qt::Key_F11, .isRepeat = true});
    EXPECT_EQ(volledig, 1);
    view.keyDown({.key = Qt::Key_Escape});
    EXPECT_EQ(terug, 1);
    view.keyDown({.key = Qt::Key_Q, .text = QStringLiteral("q")});
    EXPECT_EQ(sluit, 0);
    view.keyDown({.key = Qt::Key_Q, .modifiers = Qt::ControlModifier});
    EXPECT_EQ(sluit, 1);

    view.mouseDown({});
    klok.advance(0.41);
    view.mouseDown({});
    EXPECT_EQ(volledig, 1);
    klok.advance(0.3);
    view.mouseDown({});
    EXPECT_EQ(volledig, 2);
    // The third of three is no second double click.
    view.mouseDown({});
    EXPECT_EQ(volledig, 2);
    view.keyDown({.key = Qt::Key_A});
    EXPECT_EQ(volledig + terug + sluit, 4);
}

TEST_F(HostViewTest, InFullScreenF11AndEscapeAreInputLikeAnyOther) {
    view.keyDown({.key = Qt::Key_F11});
    view.keyDown({.key = Qt::Key_Escape});
    view.mouseDown({});
    view.mouseDown({});
    EXPECT_EQ(geroepen, 4);
}

TEST_F(HostViewTest, TheMouseDoesNotCountWhileTheSheetIsOpenAndAnewAfterwards) {
    muis(100, 100);
    view.setMuisTelt(false);
    muis(300, 300);
    view.setMuisTelt(true);
    muis(350, 300);
    muis(380, 300);
    EXPECT_EQ(geroepen, 0);
    muis(401, 300);
    EXPECT_EQ(geroepen, 1);
}

TEST_F(HostViewTest, WithoutAnActionInputIsSwallowed) {
    view.onInvoer({});
    view.keyDown({});
    EXPECT_EQ(geroepen, 0);
}

}  // namespace
