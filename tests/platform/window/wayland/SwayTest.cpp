// SPDX-License-Identifier: MIT
// The window system on a real compositor.
#include "tests/support/wayland/Sway.h"

#include "tests/platform/window/wayland/WaylandFixture.h"

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
    RandomSource random(5);
    for (int i = 0; i < 1000; ++i) {
        const auto x = QByteArray::number(10 + static_cast<int>(random.below(620)));
        const auto y = QByteArray::number(10 + static_cast<int>(random.below(460)));
        ASSERT_TRUE(sway.command("seat seat0 cursor set " + x + ' ' + y));
        ASSERT_TRUE(sway.command("seat seat0 cursor press button1"));
        ASSERT_TRUE(sway.command("seat seat0 cursor release button1"));
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(until([&] { return below.clicks.size() == 1000; })) << below.clicks.size();
    EXPECT_TRUE(over.clicks.empty());
    EXPECT_TRUE(over.moves.empty());
    EXPECT_TRUE(below.native->hasKeyboard());
}

TEST_F(OnSway, TheBlackScreenHasEveryKeyAndGivesTheKeyboardBack) {
    TestWindow below(*system,
                     {.window = {.frame = {0, 0, 640, 480}, .style = WindowStyle::Titled}});
    show(below, kGreen);
    TestWindow black(*system, saver());
    show(black, {0.0F, 0.0F, 0.0F, 1.0F});
    ASSERT_TRUE(until([&] { return black.native->hasKeyboard(); }));
    if (!sway.type(QStringLiteral("x"))) GTEST_SKIP() << "wtype is not installed";
    EXPECT_TRUE(until([&] { return black.keys.size() == 1; }));
    EXPECT_EQ(black.keys.front().key, Qt::Key_X);
    black.native->hide();
    EXPECT_TRUE(until([&] { return below.native->hasKeyboard(); }));
    EXPECT_TRUE(sway.type(QStringLiteral("y")));
    EXPECT_TRUE(until([&] { return below.keys.size() == 1; }));
}

TEST_F(OnSway, APictureIsOnTheScreenToThePixel) {
    TestWindow window(*system, saver());
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
