// SPDX-License-Identifier: MIT
#include <linux/input-event-codes.h>

#include "tests/platform/window/wayland/WaylandFixture.h"

namespace platform::wayland {
namespace {

constexpr Rgba kGreen{0.0F, 1.0F, 0.0F, 1.0F};
constexpr Rgba kRed{1.0F, 0.0F, 0.0F, 1.0F};
constexpr Rgba kGlass{0.0F, 0.5F, 0.0F, 0.5F};
constexpr QRgb kGreenPixel = 0xff00ff00;
constexpr QRgb kRedPixel = 0xffff0000;

TEST(WaylandWindow, AFullScreenWindowIsAnOverlayWithTheKeyboardOverAllOfItsDisplay) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    EXPECT_TRUE(window.native->isSeen());
    EXPECT_EQ(f.commits(), 1);
    EXPECT_TRUE(f.compositor.shown().empty());
    window.paintAll(kGreen);
    f.settle();
    const wltest::Surface surface = f.only();
    EXPECT_EQ(surface.role, wltest::Role::Layer);
    EXPECT_EQ(surface.output, "PROEF-1");
    EXPECT_EQ(surface.layer, 3U);
    EXPECT_EQ(surface.anchor, 15U);
    EXPECT_EQ(surface.exclusiveZone, -1);
    EXPECT_EQ(surface.keyboard, 1U);
    EXPECT_FALSE(surface.input.has_value());
    EXPECT_EQ(surface.opaque, QRegion(0, 0, 640, 480));
    EXPECT_EQ(surface.logical, QSize(640, 480));
    EXPECT_EQ(surface.picture.format(), QImage::Format_RGB32);
    EXPECT_EQ(surface.picture.pixel(320, 240), kGreenPixel);
    EXPECT_EQ(f.compositor.keyboardFocus(), surface.id);
    EXPECT_TRUE(window.native->hasKeyboard());
}

TEST(WaylandWindow, TheRainIsAnOverlayThatTakesNeitherClickNorKey) {
    WaylandFixture f;
    TestWindow window(f.system, rain());
    window.native->show();
    f.settle();
    window.paintAll(kGlass);
    f.settle();
    const wltest::Surface surface = f.only();
    EXPECT_EQ(surface.layer, 3U);
    EXPECT_EQ(surface.keyboard, 0U);
    EXPECT_EQ(surface.exclusiveZone, -1);
    ASSERT_TRUE(surface.input.has_value());
    EXPECT_TRUE(surface.input->isEmpty());
    EXPECT_TRUE(surface.opaque.isEmpty());
    EXPECT_EQ(f.compositor.click({100, 100}), 0U);
    f.compositor.key(KEY_A, true);
    f.settle();
    EXPECT_TRUE(window.clicks.empty());
    EXPECT_TRUE(window.keys.empty());
}

TEST(WaylandWindow, ASurfaceMadeAnewLetsClicksThroughAgain) {
    WaylandFixture f;
    TestWindow window(f.system, rain());
    for (int round = 0; round < 3; ++round) {
        window.native->show();
        f.settle();
        window.paintAll(kGreen);
        f.settle();
        const wltest::Surface surface = f.only();
        EXPECT_TRUE(surface.input && surface.input->isEmpty());
        EXPECT_EQ(surface.exclusiveZone, -1);
        EXPECT_EQ(f.compositor.click({100, 100}), 0U);
        window.native->hide();
        f.settle();
        EXPECT_TRUE(f.compositor.surfaces().empty());
    }
}

TEST(WaylandWindow, AWindowShownAgainAsksForItsWholePicture) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    for (std::size_t round = 1; round <= 2; ++round) {
        window.native->show();
        f.settle();
        EXPECT_EQ(window.exposures.size(), round);
        EXPECT_EQ(window.exposures.back(), QRect(0, 0, 640, 480));
        window.native->hide();
    }
}

TEST(WaylandWindow, ClicksGoThroughOrNotAsAskedMeanwhile) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    window.native->setIgnoresMouse(true);
    f.settle();
    EXPECT_EQ(f.compositor.click({10, 10}), 0U);
    window.native->setIgnoresMouse(false);
    f.settle();
    EXPECT_EQ(f.compositor.click({10, 10}), f.only().id);
    f.settle();
    EXPECT_EQ(window.clicks.size(), 1U);
}

TEST(WaylandWindow, OnePictureIsOneCommitAndTheNextWaitsUntilTheCompositorWantsIt) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    const int before = f.commits();
    window.paintAll(kGreen);
    f.settle();
    EXPECT_EQ(f.commits(), before + 1);
    EXPECT_FALSE(window.ready);
    window.paint(kRed, {QRect(0, 0, 10, 10)});
    window.paint(kRed, {QRect(100, 100, 10, 10)});
    f.settle();
    EXPECT_EQ(f.commits(), before + 1);
    f.compositor.frame();
    f.settle();
    EXPECT_EQ(f.commits(), before + 2);
    const wltest::Surface surface = f.only();
    // One commit has both, and the picture has both.
    EXPECT_EQ(surface.commits.back().damage.size(), 2U);
    EXPECT_TRUE(surface.commits.back().frameCallback);
    EXPECT_TRUE(surface.commits.back().feedback);
    EXPECT_FALSE(surface.commits.back().surfaceDamage);
    EXPECT_EQ(surface.picture.pixel(5, 5), kRedPixel);
    EXPECT_EQ(surface.picture.pixel(105, 105), kRedPixel);
    EXPECT_EQ(surface.picture.pixel(50, 50), kGreenPixel);
    f.compositor.frame();
    f.settle();
    EXPECT_TRUE(window.ready);
    EXPECT_EQ(f.commits(), before + 2);
}

TEST(WaylandWindow, ThirtyNineScatteredChangesAreFourBoxes) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    f.compositor.frame();
    f.settle();
    std::vector<QRect> scattered;
    for (int i = 0; i < 39; ++i)
        scattered.emplace_back(i % 8 * 80, i / 8 * 90, 14, 40);
    window.paint(kRed, scattered);
    f.settle();
    const wltest::Surface surface = f.only();
    EXPECT_LE(surface.commits.back().damage.size(), 4U);
    QRegion told;
    for (const QRect& box : surface.commits.back().damage)
        told += box;
    for (const QRect& rect : scattered)
        EXPECT_TRUE((QRegion(rect) - told).isEmpty());
}

TEST(WaylandWindow, AHundredPicturesUseThreeBuffersAndEachIsWhole) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    QImage expected(640, 480, QImage::Format_RGB32);
    expected.fill(kGreenPixel);
    for (int i = 0; i < 100; ++i) {
        f.compositor.frame();
        f.settle();
        const QRect part(i * 37 % 600, i * 53 % 440, 17, 23);
        window.paint(i % 2 == 0 ? kRed : kGreen, {part});
        f.settle();
        const wltest::Surface surface = f.only();
        for (int y = part.top(); y <= part.bottom(); ++y)
            for (int x = part.left(); x <= part.right(); ++x)
                expected.setPixel(x, y, i % 2 == 0 ? kRedPixel : kGreenPixel);
        ASSERT_EQ(surface.picture, expected) << "picture " << i;
    }
    EXPECT_LE(f.compositor.count("wl_shm_pool", "create_buffer"), 3);
}

TEST(WaylandWindow, ACompositorThatKeepsAllBuffersGetsThreePicturesAndHoldsNothingUp) {
    wltest::Options options;
    options.releasesBuffers = false;
    WaylandFixture f(options);
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    const int before = f.commits();
    for (int i = 0; i < 20; ++i) {
        window.paintAll(i % 2 == 0 ? kGreen : kRed);
        f.settle();
        f.compositor.frame();
        f.settle();
    }
    EXPECT_EQ(f.commits(), before + 3);
    EXPECT_FALSE(window.ready);
    // Another size has other buffers.
    f.compositor.configure(f.only().id, {320, 240});
    f.settle();
    window.paintAll(kRed);
    f.settle();
    EXPECT_EQ(f.commits(), before + 4);
    EXPECT_EQ(f.only().picture.size(), QSize(320, 240));
}

TEST(WaylandWindow, WithoutAnAnswerToTheFrameCallbackNothingMoreIsCommitted) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    const int before = f.commits();
    for (int i = 0; i < 10; ++i) {
        window.paintAll(i % 2 == 0 ? kGreen : kRed);
        f.settle();
    }
    EXPECT_EQ(f.commits(), before);
    EXPECT_FALSE(window.ready);
}

struct ScaleCase {
    double scale;
    QSize mode;
    QSize logical;
};

class WaylandScale : public testing::TestWithParam<ScaleCase> {};

TEST_P(WaylandScale, APictureHasExactlyTheDisplaysPixels) {
    const ScaleCase c = GetParam();
    wltest::Options options;
    options.outputs = {{.name = "A", .mode = c.mode, .scale = c.scale}};
    WaylandFixture f(options);
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    EXPECT_EQ(window.native->pixelSize(), c.mode);
    EXPECT_EQ(window.native->size(), QSizeF(c.logical));
    EXPECT_DOUBLE_EQ(window.native->scale(), c.scale);
    window.paintAll(kGreen);
    f.settle();
    const wltest::Surface surface = f.only();
    EXPECT_EQ(surface.picture.size(), c.mode);
    EXPECT_EQ(surface.logical, c.logical);
    EXPECT_EQ(surface.commits.back().destination, c.logical);
    EXPECT_EQ(surface.commits.back().bufferScale, 1);
}

INSTANTIATE_TEST_SUITE_P(Fractions, WaylandScale,
                         testing::Values(ScaleCase{1.0, {640, 480}, {640, 480}},
                                         ScaleCase{1.25, {1600, 900}, {1280, 720}},
                                         ScaleCase{1.5, {1920, 1080}, {1280, 720}},
                                         ScaleCase{1.5, {1366, 768}, {911, 512}},
                                         ScaleCase{2.75, {1760, 1100}, {640, 400}}));

TEST(WaylandWindow, WithoutFractionsThePictureIsAWholeNumberOfPixelsPerPoint) {
    wltest::Options options;
    options.globals.fractionalScale = false;
    options.outputs = {{.name = "A", .mode = {1280, 960}, .scale = 2.0}};
    WaylandFixture f(options);
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    const wltest::Surface surface = f.only();
    EXPECT_EQ(surface.picture.size(), QSize(1280, 960));
    EXPECT_EQ(surface.commits.back().bufferScale, 2);
    EXPECT_EQ(surface.logical, QSize(640, 480));
}

TEST(WaylandWindow, ADisplayThatChangesItsScaleAndModeIsFollowed) {
    wltest::Options options;
    options.outputs = {{.name = "A", .mode = {1200, 800}}};
    WaylandFixture f(options);
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    f.compositor.changeOutput({.name = "A", .mode = {1500, 1000}, .scale = 1.25});
    f.settle();
    EXPECT_EQ(window.native->pixelSize(), QSize(1500, 1000));
    f.compositor.frame();
    window.paintAll(kRed);
    f.settle();
    EXPECT_EQ(f.only().picture.size(), QSize(1500, 1000));
    EXPECT_EQ(f.only().logical, QSize(1200, 800));
}

TEST(WaylandWindow, EachDisplayHasItsOwnWindowByName) {
    wltest::Options options;
    options.outputs = {{.name = "A"}, {.name = "B", .mode = {800, 600}, .at = {640, 0}}};
    WaylandFixture f(options);
    TestWindow a(f.system, saver());
    TestWindow b(f.system, saver({640, -120, 800, 600}));
    a.native->show();
    b.native->show();
    f.settle();
    a.paintAll(kGreen);
    b.paintAll(kRed);
    f.settle();
    const auto shown = f.compositor.shown();
    ASSERT_EQ(shown.size(), 2U);
    EXPECT_EQ(shown[0].output, "A");
    EXPECT_EQ(shown[1].output, "B");
    EXPECT_EQ(shown[1].picture.size(), QSize(800, 600));
    EXPECT_EQ(b.native->screen()->name, QStringLiteral("B"));
}

TEST(WaylandWindow, WithItsDisplayTheWindowGoesInMidFrameAndNothingIsCommittedAnyMore) {
    wltest::Options options;
    options.outputs = {{.name = "A"}, {.name = "B", .at = {640, 0}}};
    WaylandFixture f(options);
    TestWindow window(f.system, saver({640, 0, 640, 480}));
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    window.paintAll(kRed);
    f.compositor.removeOutput("B");
    f.settle();
    EXPECT_FALSE(window.native->isSeen());
    EXPECT_TRUE(f.compositor.surfaces().empty());
    const int before = f.commits();
    window.paintAll(kGreen);
    f.settle();
    EXPECT_EQ(f.commits(), before);
    // The display is back: so is the window, which was never hidden.
    f.compositor.addOutput({.name = "B", .at = {640, 0}});
    f.settle();
    EXPECT_TRUE(window.native->isSeen());
    window.paintAll(kGreen);
    f.settle();
    EXPECT_EQ(f.only().output, "B");
}

TEST(WaylandWindow, ASurfaceThatIsClosedComesBackAFewTimesAndThenStaysAway) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    for (int i = 0; i < 3; ++i) {
        f.settle();
        ASSERT_TRUE(window.native->isSeen()) << i;
        f.compositor.close(f.compositor.surfaces().front().id);
        f.settle();
    }
    ASSERT_TRUE(window.native->isSeen());
    f.compositor.close(f.compositor.surfaces().front().id);
    f.settle();
    EXPECT_FALSE(window.native->isSeen());
    EXPECT_TRUE(f.compositor.surfaces().empty());
    EXPECT_EQ(window.closings, 0);
}

TEST(WaylandWindow, ASizeThatTheCompositorLeavesOpenIsTheDisplays) {
    wltest::Options options;
    options.configuresByItself = false;
    WaylandFixture f(options);
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    EXPECT_FALSE(window.native->isSeen());
    f.compositor.configure(f.compositor.surfaces().front().id, {0, 0});
    f.settle();
    EXPECT_TRUE(window.native->isSeen());
    EXPECT_EQ(window.native->pixelSize(), QSize(640, 480));
}

TEST(WaylandWindow, ASizeWithoutSenseTakesNoMoreThanOnePicturesMemory) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    const std::uint64_t id = f.compositor.surfaces().front().id;
    for (const QSize size : {QSize(2'000'000'000, 2'000'000'000), QSize(1, 2'000'000'000),
                             QSize(2'000'000'000, 1), QSize(1, 1)}) {
        f.compositor.configure(id, size);
        f.settle();
        const QSize pixels = window.native->pixelSize();
        EXPECT_GE(std::min(pixels.width(), pixels.height()), 1);
        EXPECT_LE(std::max(pixels.width(), pixels.height()), 16384);
        EXPECT_LE(std::int64_t{pixels.width()} * pixels.height(), 65'000'000);
    }
    window.paintAll(kGreen);
    f.settle();
    EXPECT_EQ(f.only().picture.size(), QSize(1, 1));
}

TEST(WaylandWindow, APictureOfAnotherSizeThanTheCompositorWantsIsNeverShown) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.compositor.configure(f.compositor.surfaces().front().id, {320, 200});
    f.settle();
    // Painted for the size before; whether it was shown first is a matter of order.
    f.compositor.frame();
    f.settle();
    const int before = f.commits();
    window.paintAll(kRed);
    f.settle();
    EXPECT_EQ(f.commits(), before + 1);
    EXPECT_EQ(f.only().picture.size(), QSize(320, 200));
}

TEST(WaylandWindow, AFadeIsInThePixels) {
    WaylandFixture f;
    TestWindow window(f.system, saver());
    window.native->show();
    f.settle();
    window.paintAll(kGreen, 0.5);
    f.settle();
    EXPECT_EQ(f.only().picture.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(*reinterpret_cast<const QRgb*>(f.only().picture.constScanLine(7)), 0x7f007f00U);
    EXPECT_TRUE(f.only().opaque.isEmpty());
    f.compositor.frame();
    f.settle();
    window.paintAll(kGreen, 1.0);
    f.settle();
    EXPECT_EQ(f.only().picture.format(), QImage::Format_RGB32);
    EXPECT_EQ(f.only().opaque, QRegion(0, 0, 640, 480));
}

TEST(WaylandWindow, WithoutALayerShellAFullScreenWindowIsAskedForOnTheDisplayByName) {
    wltest::Options options;
    options.globals.layerShell = false;
    options.outputs = {{.name = "A"}, {.name = "B", .at = {640, 0}}};
    WaylandFixture f(options);
    EXPECT_FALSE(f.system.capabilities().liesAboveAll);
    TestWindow window(f.system, saver({640, 0, 640, 480}));
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    const wltest::Surface surface = f.only();
    EXPECT_EQ(surface.role, wltest::Role::Toplevel);
    EXPECT_TRUE(surface.fullScreen);
    EXPECT_EQ(surface.output, "B");
    EXPECT_EQ(surface.logical, QSize(640, 480));
    EXPECT_TRUE(window.native->hasKeyboard());
}

TEST(WaylandWindow, AnOrdinaryWindowHasItsSizeItsTitleAndTheCompositorsFrame) {
    WaylandFixture f;
    TestWindow window(f.system, {.window = {.frame = {10, 10, 300, 200},
                                            .style = WindowStyle::Titled,
                                            .title = QStringLiteral("Brixtel")}});
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    const wltest::Surface surface = f.only();
    EXPECT_EQ(surface.role, wltest::Role::Toplevel);
    EXPECT_FALSE(surface.fullScreen);
    EXPECT_EQ(surface.logical, QSize(300, 200));
    EXPECT_EQ(surface.title, "Brixtel");
    EXPECT_EQ(f.compositor.count("zxdg_toplevel_decoration_v1", "set_mode"), 1);
    f.compositor.close(surface.id);
    f.settle();
    EXPECT_EQ(window.closings, 1);
    EXPECT_TRUE(window.native->isSeen());
    f.compositor.configure(surface.id, {500, 400});
    f.settle();
    EXPECT_EQ(window.native->size(), QSizeF(500, 400));
}

TEST(WaylandWindow, AnOpaqueOverlayKeepsThoseBelowItDownWhileItIsShown) {
    WaylandFixture f;
    TestWindow below(f.system, rain());
    NativeWindowOptions black = saver();
    black.window.level = 2000;
    TestWindow above(f.system, black);
    below.native->show();
    f.settle();
    below.paintAll(kGreen);
    f.settle();
    above.native->show();
    f.settle();
    above.paintAll(kRed);
    f.settle();
    EXPECT_EQ(f.only().keyboard, 1U);
    EXPECT_FALSE(below.native->isSeen());
    EXPECT_TRUE(below.native->isShown());
    above.native->hide();
    f.settle();
    EXPECT_TRUE(below.native->isSeen());
    below.paintAll(kGreen);
    f.settle();
    EXPECT_TRUE(f.only().input && f.only().input->isEmpty());
}

TEST(WaylandWindow, UnderALockEveryOverlayIsDownAndStaysDown) {
    WaylandFixture f;
    TestWindow first(f.system, rain());
    first.native->show();
    f.settle();
    first.paintAll(kGreen);
    f.settle();
    f.system.workspace().setSaverCovers(true);
    f.settle();
    EXPECT_TRUE(f.compositor.surfaces().empty());
    TestWindow second(f.system, saver());
    second.native->show();
    f.settle();
    EXPECT_TRUE(f.compositor.surfaces().empty());
    f.system.workspace().setSaverCovers(false);
    f.settle();
    EXPECT_EQ(f.compositor.surfaces().size(), 2U);
}

TEST(WaylandWindow, TheKeyboardIsTakenWhereItWasNotAskedForFirst) {
    WaylandFixture f;
    NativeWindowOptions options = saver();
    options.takesKeyboard = false;
    TestWindow window(f.system, options);
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    EXPECT_FALSE(window.native->hasKeyboard());
    window.native->takeKeyboard();
    f.settle();
    EXPECT_TRUE(window.native->hasKeyboard());
    f.compositor.key(KEY_Q, true);
    f.settle();
    ASSERT_EQ(window.keys.size(), 1U);
    EXPECT_EQ(window.keys[0].key, Qt::Key_Q);
}

TEST(WaylandWindow, ThePointerIsToldInPointsFromTheLowerLeftAndOnTheScreens) {
    wltest::Options options;
    options.outputs = {{.name = "A"}, {.name = "B", .mode = {800, 600}, .at = {640, 0}}};
    WaylandFixture f(options);
    TestWindow window(f.system, saver({640, -120, 800, 600}));
    window.native->show();
    f.settle();
    window.paintAll(kGreen);
    f.settle();
    f.compositor.pointerTo({650, 20});
    f.settle();
    ASSERT_FALSE(window.moves.empty());
    EXPECT_EQ(window.moves.back().location, QPointF(10, 580));
    EXPECT_EQ(window.moves.back().screenLocation, QPointF(650, 460));
    EXPECT_EQ(f.system.workspace().mouseLocation(), QPointF(650, 460));
    EXPECT_TRUE(f.compositor.cursorHidden());
}

TEST(WaylandWindow, LeavesNothingBehind) {
    wltest::Compositor compositor;
    ManualClock clock;
    {
        WaylandSystem system(clock, compositor.address());
        TestWindow window(system, saver());
        window.native->show();
        until([&] { return window.native->isSeen(); });
        window.paintAll(kGreen);
        EXPECT_TRUE(until([&] { return compositor.buffers() == 1; }));
    }
    EXPECT_TRUE(until([&] { return compositor.clients() == 0; }));
    EXPECT_EQ(compositor.buffers(), 0);
    EXPECT_EQ(clock.timerCount(), 0U);
}

}  // namespace
}  // namespace platform::wayland
