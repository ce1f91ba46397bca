// SPDX-License-Identifier: MIT
// The window system on a real compositor.
#include "tests/support/wayland/Sway.h"

#include "platform/time/RandomSource.h"
#include "tests/platform/window/wayland/WaylandFixture.h"
#include "tests/support/wayland/VirtualPointer.h"

namespace platform::wayland {
namespace {

constexpr Rgba kGreen{0.0F, 1.0F, 0.0F, 1.0F};
constexpr Rgba kGlass{0.0F, 0.5F, 0.0F, 0.5F};

class OnSway : public testing::Test {
  protected:
    void SetUp() override {
        if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
        clock = std::make_unique<SystemClock>();
        system = std::make_unique<WaylandSystem>(*clock, sway.address());
        ASSERT_TRUE(system->isConnected());
    }
    // Shows it, with one picture.
    void show(TestWindow& window, const Rgba& colour) {
        window.native->show();
        ASSERT_TRUE(until([&] { return window.native->isSeen(); }));
        window.paintAll(colour);
        QCoreApplication::processEvents();
        ASSERT_TRUE(system->connection().roundTrip());
    }
    // Whether the output comes to show that colour in its middle.
    bool shows(QRgb colour) {
        return until([&] {
            const QImage picture = sway.picture();
            return !picture.isNull() && picture.pixel(320, 240) == colour;
        });
    }

    wltest::Sway sway;
    std::unique_ptr<SystemClock> clock;
    std::unique_ptr<WaylandSystem> system;
};

TEST_F(OnSway, AThousandClicksOfAThousandGoThroughTheRain) {
    TestWindow below(*system, {.window = {.frame = {0, 0, 640, 480},
                                          .style = WindowStyle::Titled,
                                          .title = QStringLiteral("onder")}});
    show(below, kGreen);
    TestWindow over(*system, rain());
    show(over, kGlass);
    ASSERT_TRUE(shows(0xff00ff00));
    wltest::VirtualPointer mouse(sway.address());
    ASSERT_TRUE(mouse.isThere());
    // The first click is only sure once the window knows of the mouse.
    mouse.moveTo({20, 20}, {640, 480});
    ASSERT_TRUE(until([&] { return !below.moves.empty(); }));
    RandomSource random(5);
    for (int i = 0; i < 1000; ++i) {
        mouse.moveTo({static_cast<int>(random.below(640)), static_cast<int>(random.below(480))},
                     {640, 480});
        mouse.click();
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(until([&] { return below.clicks.size() == 1000; })) << below.clicks.size();
    EXPECT_TRUE(over.clicks.empty());
    EXPECT_TRUE(over.moves.empty());
}

TEST_F(OnSway, TheBlackScreenHasEveryKeyAndGivesTheKeyboardBack) {
    TestWindow below(*system,
                     {.window = {.frame = {0, 0, 640, 480}, .style = WindowStyle::Titled}});
    show(below, kGreen);
    TestWindow black(*system, saver());
    show(black, {0.0F, 0.0F, 0.0F, 1.0F});
    if (!sway.type(QStringLiteral("x"))) GTEST_SKIP() << "wtype is not installed";
    EXPECT_TRUE(until([&] { return black.keys.size() == 1; }));
    EXPECT_EQ(black.keys.front().key, Qt::Key_X);
    black.native->hide();
    EXPECT_TRUE(sway.type(QStringLiteral("y")));
    EXPECT_TRUE(until([&] { return below.keys.size() == 1; }));
}

struct OnSwayDrawnBy : OnSway, testing::WithParamInterface<DrawerChoice> {};

TEST_P(OnSwayDrawnBy, APictureIsOnTheScreenToThePixel) {
    TestWindow window(*system, saver(), GetParam());
    EXPECT_EQ(window.isDrawnByProcessor(), GetParam() == DrawerChoice::Cpu);
    show(window, {0.0F, 0.0F, 0.0F, 1.0F});
    ASSERT_TRUE(until([&] {
        QCoreApplication::processEvents();
        return window.ready;
    }));
    window.paint(kGreen, {QRect(3, 5, 1, 1), QRect(639, 479, 1, 1), QRect(100, 200, 50, 20)});
    QImage expected(640, 480, QImage::Format_RGB32);
    expected.fill(0xff000000);
    for (const QRect& rect : {QRect(3, 5, 1, 1), QRect(639, 479, 1, 1), QRect(100, 200, 50, 20)})
        for (int y = rect.top(); y <= rect.bottom(); ++y)
            for (int x = rect.left(); x <= rect.right(); ++x)
                expected.setPixel(x, y, 0xff00ff00);
    EXPECT_TRUE(until([&] { return sway.picture() == expected; }));
}

INSTANTIATE_TEST_SUITE_P(Each, OnSwayDrawnBy,
                         testing::Values(DrawerChoice::Cpu, DrawerChoice::OpenGl),
                         [](const auto& drawer) {
                             return drawer.param == DrawerChoice::Cpu ? "Processor" : "OpenGl";
                         });

TEST_F(OnSway, AnOverlayCoversAFullScreenWindow) {
    TestWindow below(*system,
                     {.window = {.frame = {0, 0, 640, 480}, .style = WindowStyle::Titled}});
    show(below, kGreen);
    ASSERT_TRUE(sway.command("fullscreen enable"));
    ASSERT_TRUE(shows(0xff00ff00));
    TestWindow over(*system, saver());
    show(over, {1.0F, 0.0F, 0.0F, 1.0F});
    EXPECT_TRUE(shows(0xffff0000));
}

}  // namespace
}  // namespace platform::wayland
