// SPDX-License-Identifier: MIT
// A window that fills a place in another toolkit's scene.
#include "platform/window/PicturePlace.h"

#include "platform/window/Window.h"
#include "tests/platform/window/wayland/WaylandFixture.h"

namespace platform::wayland {
namespace {

struct PicturePlaceTest : testing::Test {
    wltest::Compositor compositor;
    ManualClock clock;
    WindowServer server{clock,
                        {.system = std::make_shared<WaylandSystem>(clock, compositor.address())}};
    PicturePlace place;
    std::unique_ptr<Window> window;
    int pictures = 0;

    void SetUp() override {
        place.onPicture([this] { ++pictures; });
        window = std::make_unique<Window>(server, place);
        auto view = std::make_shared<View>(QRectF());
        view->setWantsLayer(true);
        window->setContentView(view);
        colour(Qt::green);
    }
    void colour(const QColor& colour) {
        window->contentView()->layer()->setBackgroundColor(colour);
        window->setNeedsFrame();
    }
    // Lets time go by until the condition holds.
    template <typename Condition>
    bool soon(Condition condition) {
        return until([&] {
            clock.advance(0.02);
            return condition();
        });
    }
    // Waits long enough for every wanted frame.
    void wait() {
        for (int i = 0; i < 50; ++i) {
            clock.advance(0.02);
            QCoreApplication::processEvents();
        }
    }
    QImage picture() const {
        QImage copied;
        place.read([&](const QImage& newest) { copied = newest.copy(); });
        return copied;
    }
};

TEST_F(PicturePlaceTest, ShowsTheViewsInPixelsAndMakesNoSurface) {
    EXPECT_TRUE(picture().isNull());
    place.setMeasures({.size = {20, 10}, .scale = 1.5});
    ASSERT_TRUE(soon([&] { return pictures == 1; }));
    EXPECT_EQ(window->contentView()->frame(), QRectF(0, 0, 20, 10));
    QImage expected(30, 15, QImage::Format_RGB32);
    expected.fill(Qt::green);
    EXPECT_EQ(picture(), expected);
    EXPECT_TRUE(compositor.surfaces().empty());
}

TEST_F(PicturePlaceTest, ThereIsNoNextPictureBeforeTheLastWasShown) {
    place.setMeasures({.size = {20, 10}});
    ASSERT_TRUE(soon([&] { return pictures == 1; }));
    const auto drawn = window->statistics().frames;
    colour(Qt::red);
    wait();
    EXPECT_EQ(pictures, 1);
    EXPECT_EQ(window->statistics().frames, drawn);
    place.wasShown();
    ASSERT_TRUE(soon([&] { return pictures == 2; }));
    EXPECT_EQ(picture().pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(PicturePlaceTest, UnseenItIsNotDrawnAndSeenAgainItIs) {
    place.setMeasures({.size = {20, 10}});
    ASSERT_TRUE(soon([&] { return pictures == 1; }));
    place.setMeasures({.size = {20, 10}, .isSeen = false});
    colour(Qt::red);
    wait();
    EXPECT_EQ(pictures, 1);
    // The first picture was never shown.
    place.setMeasures({.size = {20, 10}});
    ASSERT_TRUE(soon([&] { return pictures == 2; }));
    EXPECT_EQ(picture().pixelColor(5, 5), QColor(Qt::red));
}

TEST_F(PicturePlaceTest, AnotherSizeIsAnotherPictureAndAnEmptyOneNone) {
    place.setMeasures({.size = {20, 10}});
    ASSERT_TRUE(soon([&] { return pictures == 1; }));
    place.setMeasures({.size = {0, 10}});
    wait();
    EXPECT_EQ(pictures, 1);
    place.setMeasures({.size = {7, 5}});
    ASSERT_TRUE(soon([&] { return picture().size() == QSize(7, 5); }));
    EXPECT_EQ(picture().pixelColor(6, 4), QColor(Qt::green));
}

TEST_F(PicturePlaceTest, ASecondWindowStartsWithoutThePictureOfTheFirst) {
    place.setMeasures({.size = {20, 10}});
    ASSERT_TRUE(soon([&] { return pictures == 1; }));
    window.reset();
    place.wasShown();
    window = std::make_unique<Window>(server, place);
    EXPECT_TRUE(picture().isNull());
    ASSERT_TRUE(soon([&] { return pictures == 2; }));
    EXPECT_EQ(picture().pixelColor(0, 0), QColor(Qt::black));
}

}  // namespace
}  // namespace platform::wayland
