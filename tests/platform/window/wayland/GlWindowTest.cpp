// SPDX-License-Identifier: MIT
// OpenGL on windows of a compositor, in software.
#include <algorithm>

#include "platform/time/RandomSource.h"
#include "tests/platform/window/wayland/MovingWindow.h"
#include "tests/support/KeepDriver.h"

namespace platform::wayland {
namespace {

wltest::Surface only(MovingWindow& shown) {
    auto all = shown.compositor.shown();
    EXPECT_EQ(all.size(), 1U);
    return all.empty() ? wltest::Surface() : std::move(all.front());
}

// Answers for the present picture, and lets time go by until the next one.
bool nextPicture(MovingWindow& shown) {
    shown.compositor.frame(100.0);
    return shown.paintsOnce();
}

MovingWindow onGl(const wltest::Options& options = {}) {
    return MovingWindow(options, DrawerChoice::OpenGl);
}

std::shared_ptr<View> quarters() {
    auto view = std::make_shared<View>(QRectF(0, 0, 640, 480));
    view->setWantsLayer(true);
    view->layer()->setBackgroundColor(Qt::black);
    auto low = std::make_shared<View>(QRectF(0, 0, 320, 240));
    low->setWantsLayer(true);
    low->layer()->setBackgroundColor(QColor(0, 200, 0));
    view->addSubview(low);
    return view;
}

TEST(GlOnWayland, APictureIsOneCommitWithEverythingThatOneNeeds) {
    MovingWindow shown = onGl();
    ASSERT_TRUE(shown.paintsOnce());
    const wltest::Surface surface = only(shown);
    EXPECT_EQ(surface.picture.size(), QSize(640, 480));
    EXPECT_EQ(surface.logical, QSize(640, 480));
    EXPECT_EQ(surface.opaque, QRegion(0, 0, 640, 480));
    // The first commit asked for a size.
    ASSERT_EQ(surface.commits.size(), 2U);
    EXPECT_TRUE(surface.commits.back().attached);
    EXPECT_TRUE(surface.commits.back().frameCallback);
    EXPECT_TRUE(surface.commits.back().feedback);
    EXPECT_EQ(surface.commits.back().destination, QSize(640, 480));
    EXPECT_TRUE(shown.window.statistics().drawer.contains(QStringLiteral("llvmpipe")));
}

TEST(GlOnWayland, ThePictureIsTheProcessorsPicture) {
    const auto picture = [](DrawerChoice drawer) {
        MovingWindow shown({}, drawer);
        shown.window.setContentView(quarters());
        QImage seen;
        EXPECT_TRUE(until([&] {
            shown.clock.advance(0.01);
            shown.compositor.frame(100.0);
            const auto all = shown.compositor.shown();
            if (!all.empty()) seen = all.front().picture;
            return !seen.isNull() && seen.pixelColor(10, 470).green() == 200;
        }));
        return seen.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    EXPECT_EQ(picture(DrawerChoice::OpenGl), picture(DrawerChoice::Cpu));
}

TEST(GlOnWayland, EachPictureWaitsForTheAnswerToTheOneBefore) {
    MovingWindow shown = onGl();
    ASSERT_TRUE(shown.paintsOnce());
    for (int i = 1; i <= 20; ++i) {
        // A second goes by without an answer.
        for (int beat = 0; beat < 60; ++beat) {
            shown.clock.advance(1.0 / 60.0);
            QCoreApplication::processEvents();
        }
        ASSERT_GE(runsAtRest("render"), 0);
        shown.settle();
        EXPECT_EQ(shown.pictures(), i);
        ASSERT_TRUE(nextPicture(shown));
    }
}

TEST(GlOnWayland, APictureHasExactlyTheDisplaysPixels) {
    wltest::Options options;
    options.outputs = {{.name = "A", .mode = {1000, 700}, .scale = 1.25}};
    MovingWindow shown = onGl(options);
    ASSERT_TRUE(shown.paintsOnce());
    const wltest::Surface surface = only(shown);
    EXPECT_EQ(surface.picture.size(), QSize(1000, 700));
    EXPECT_EQ(surface.logical, QSize(800, 560));
    EXPECT_EQ(surface.commits.back().bufferScale, 1);
}

TEST(GlOnWayland, WithoutAViewportAPictureHasAWholeScale) {
    wltest::Options options;
    options.globals.viewporter = false;
    options.outputs = {{.name = "A", .mode = {1000, 700}, .scale = 2.0}};
    MovingWindow shown = onGl(options);
    ASSERT_TRUE(shown.paintsOnce());
    EXPECT_EQ(only(shown).picture.size(), QSize(1000, 700));
    EXPECT_EQ(only(shown).commits.back().bufferScale, 2);
}

TEST(GlOnWayland, APictureFollowsTheSizeOfItsSurface) {
    MovingWindow shown = onGl();
    ASSERT_TRUE(shown.paintsOnce());
    for (const QSize size : {QSize(320, 240), QSize(1, 1), QSize(801, 599), QSize(640, 480)}) {
        shown.compositor.configure(only(shown).id, size);
        ASSERT_TRUE(until([&] {
            shown.clock.advance(0.001);
            shown.compositor.frame(100.0);
            return only(shown).picture.size() == size;
        })) << size.width();
        const wltest::Surface surface = only(shown);
        EXPECT_EQ(surface.logical, size);
        EXPECT_EQ(surface.opaque, QRegion(QRect(QPoint(0, 0), size)));
    }
}

TEST(GlOnWayland, AFadeIsInThePixels) {
    MovingWindow shown = onGl();
    shown.window.setContentView(quarters());
    shown.window.setAlpha(0.5);
    const auto comesToShow = [&](int green, int alpha) {
        return until([&] {
            shown.clock.advance(0.001);
            shown.compositor.frame(100.0);
            const auto all = shown.compositor.shown();
            if (all.empty()) return false;
            const QRgb pixel = all.front().picture.pixel(10, 470);
            return qAbs(qAlpha(pixel) - alpha) <= 1 && qAbs(qGreen(pixel) - green) <= 1;
        });
    };

    EXPECT_TRUE(comesToShow(100, 128));
    EXPECT_TRUE(only(shown).opaque.isEmpty());
    shown.window.setAlpha(1.0);
    EXPECT_TRUE(comesToShow(200, 255));
    EXPECT_EQ(only(shown).opaque, QRegion(0, 0, 640, 480));
}

TEST(GlOnWayland, ASurfaceThatEndsAndComesBackHasItsPictureAgain) {
    MovingWindow shown = onGl();
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(shown.paintsOnce());
        EXPECT_EQ(only(shown).picture.size(), QSize(640, 480));
        shown.window.hide();
        shown.settle();
        EXPECT_TRUE(shown.compositor.shown().empty());
        shown.window.show();
    }
    EXPECT_TRUE(shown.window.statistics().drawer.contains(QStringLiteral("llvmpipe")));
}

TEST(GlOnWayland, AHiddenWindowLeavesNoBufferBehind) {
    MovingWindow shown = onGl();
    ASSERT_TRUE(shown.paintsOnce());
    // The pointer's picture has one, from the moment that the client hears of the pointer.
    const auto pointers = [&] {
        const auto all = shown.compositor.surfaces();
        return std::count_if(all.begin(), all.end(), [](const wltest::Surface& surface) {
            return surface.role == wltest::Role::Cursor;
        });
    };
    shown.settle();
    EXPECT_GT(shown.compositor.buffers(), pointers());
    shown.window.hide();
    shown.settle();
    EXPECT_EQ(shown.compositor.buffers(), pointers());
}

TEST(GlOnWayland, AFrozenCompositorHoldsNoEndUp) {
    MovingWindow shown = onGl();
    ASSERT_TRUE(shown.paintsOnce());
    shown.compositor.freeze();
    for (int i = 0; i < 10; ++i) {
        shown.clock.advance(0.02);
        QCoreApplication::processEvents();
    }
    shown.window.hide();
}

// The driver waits for its first answers, seconds at most once the window is to go.
TEST(GlOnWayland, ACompositorThatStopsWhileTheDriverStartsHoldsNoEndUp) {
    wltest::Compositor compositor;
    ManualClock clock{100.0};
    const auto system = std::make_shared<WaylandSystem>(clock, compositor.address());
    WindowServer server(clock, {.drawer = DrawerChoice::OpenGl, .system = system});
    compositor.freeze();
    {
        Window window(server, {.frame = {0, 0, 640, 480}, .style = WindowStyle::FullScreen});
        window.setContentView(quarters());
        window.show();
        EXPECT_GE(runsAtRest("render"), 0);
        EXPECT_TRUE(system->isConnected());
    }
    EXPECT_TRUE(until([&] { return !system->isConnected(); }));
    EXPECT_EQ(system->lossReason(), QString());
}

// A driver that waits within a swap, as users can have it wait for the display by a setting of
// Mesa's, for an answer that the compositor owes. The compositor answers the window itself.
class InASwapWithoutEnd : public testing::Test {
  protected:
    InASwapWithoutEnd() { qputenv("vblank_mode", "3"); }
    ~InASwapWithoutEnd() override { qunsetenv("vblank_mode"); }
    InASwapWithoutEnd(const InASwapWithoutEnd&) = delete;
    InASwapWithoutEnd& operator=(const InASwapWithoutEnd&) = delete;

    // The window's first picture is there, and the driver has the second one for good.
    static void begin(MovingWindow& shown) {
        ASSERT_TRUE(shown.paintsOnce());
        const int asked = shown.compositor.count("wl_surface", "frame");
        shown.compositor.frame(100.0);
        ASSERT_TRUE(until([&] {
            shown.clock.advance(0.001);
            return shown.compositor.count("wl_surface", "frame") == asked + 1;
        }));
        ASSERT_GE(runsAtRest("render"), 0);
        ASSERT_EQ(shown.pictures(), 1);
    }
    static wltest::Options owing() { return {.answersAllCallbacks = false}; }
};

TEST_F(InASwapWithoutEnd, TheMainThreadGoesOn) {
    MovingWindow shown = onGl(owing());
    begin(shown);
    const QSize size(320, 240);
    shown.compositor.configure(only(shown).id, size);
    // The driver has read the main thread's event, and nothing on the connection tells of it.
    ASSERT_GE(runsAtRest("render"), 0);
    EXPECT_TRUE(until([&] { return shown.window.contentView()->frame().size() == size; }));
    shown.window.setIgnoresMouseEvents(true);
    shown.settle();
    EXPECT_TRUE(shown.system->isConnected());
}

TEST_F(InASwapWithoutEnd, TheWindowEndsAndTheConnectionWithIt) {
    MovingWindow shown = onGl(owing());
    int lost = 0;
    shown.server.onConnectionLost([&] { ++lost; });
    begin(shown);
    shown.window.hide();
    EXPECT_TRUE(until([&] { return lost == 1; }));
    EXPECT_EQ(shown.system->lossReason(), QString());
    EXPECT_TRUE(until([&] { return shown.compositor.clients() == 0; }));
}

TEST_F(InASwapWithoutEnd, ACompositorThatDiesEndsTheSwap) {
    MovingWindow shown = onGl(owing());
    int lost = 0;
    shown.server.onConnectionLost([&] { ++lost; });
    begin(shown);
    shown.compositor.die();
    EXPECT_TRUE(until([&] { return lost == 1; }));
}

TEST(GlOnWayland, ADisplayThatGoesInTheMiddleOfAFrameEndsNothing) {
    wltest::Options options;
    const wltest::Output other{.name = "B", .mode = {64, 48}, .at = {1000, 0}};
    options.outputs.push_back(other);
    MovingWindow shown = onGl(options);
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(shown.paintsOnce());
        // The frame is on its way to the render thread.
        shown.compositor.frame(100.0);
        QCoreApplication::processEvents();
        shown.clock.advance(0.02);
        QCoreApplication::processEvents();
        shown.compositor.removeOutput("PROEF-1");
        shown.settle();
        EXPECT_TRUE(shown.compositor.shown().empty());
        shown.compositor.addOutput({});
        shown.settle();
    }
    EXPECT_TRUE(shown.system->isConnected());
    ASSERT_TRUE(shown.paintsOnce());
}

TEST(GlOnWayland, ACompositorThatDiesIsToldQuietly) {
    testing::internal::CaptureStderr();
    {
        MovingWindow shown = onGl();
        int lost = 0;
        shown.server.onConnectionLost([&] { ++lost; });
        ASSERT_TRUE(shown.paintsOnce());
        ASSERT_TRUE(nextPicture(shown));
        shown.compositor.die();
        EXPECT_TRUE(until([&] {
            shown.clock.advance(0.001);
            return lost == 1;
        }));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(GlOnWayland, AProtocolErrorHasItsReason) {
    MovingWindow shown = onGl();
    int lost = 0;
    shown.server.onConnectionLost([&] { ++lost; });
    ASSERT_TRUE(shown.paintsOnce());
    shown.compositor.postError();
    EXPECT_TRUE(until([&] { return lost == 1; }));
    EXPECT_FALSE(shown.system->lossReason().isEmpty());
}

// A compositor and a user do what they can, while frames are drawn all the time.
TEST(GlOnWayland, ThousandsOfEventsInAnyOrderEndNothing) {
    for (const std::uint64_t seed : {1, 2, 3}) {
        RandomSource random(seed);
        MovingWindow shown = onGl();
        bool there = true;
        for (int i = 0; i < 1000 && shown.system->isConnected(); ++i) {
            shown.clock.advance(0.01);
            switch (random.below(8)) {
                case 0:
                    random.coin() ? shown.window.show() : shown.window.hide();
                    break;
                case 1:
                    for (const std::uint64_t id : shown.compositor.ids())
                        shown.compositor.configure(id, {static_cast<int>(random.below(300)),
                                                        static_cast<int>(random.below(300))});
                    break;
                case 2:
                    shown.window.setIgnoresMouseEvents(random.coin());
                    break;
                case 3:
                    if (random.below(4) != 0) break;
                    if (std::exchange(there, !there))
                        shown.compositor.removeOutput("PROEF-1");
                    else
                        shown.compositor.addOutput({.scale = random.coin() ? 1.0 : 1.5});
                    break;
                case 4:
                    shown.system->workspace().setSaverCovers(random.below(4) == 0);
                    break;
                default:
                    shown.compositor.frame(100.0);
            }
            QCoreApplication::processEvents();
        }
        EXPECT_TRUE(shown.system->isConnected()) << seed;
    }
}

}  // namespace
}  // namespace platform::wayland
