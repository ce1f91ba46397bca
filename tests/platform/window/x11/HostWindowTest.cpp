// SPDX-License-Identifier: MIT
// Windows that someone else made, each on an X server of the test's own.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <algorithm>

#include "tests/platform/window/x11/Client.h"
#include "tests/support/WindowSystems.h"

using platform::SystemClock;
using platform::Window;
using platform::WindowServer;

namespace {

struct Colours {
    std::uint32_t black, green, white;
};

class Depths : public testing::TestWithParam<std::tuple<const char*, int, Colours>> {};

TEST_P(Depths, ShowsThePicture) {
    const auto& [screen, depth, colours] = GetParam();
    const Xvfb x(screen);
    ASSERT_TRUE(x.isRunning());
    const xcb_window_t id = x.makeWindow({.width = 201, .height = 151, .depth = depth});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    EXPECT_EQ(client.window->frame().size(), QSizeF(201, 151));
    EXPECT_EQ(x.pixel(id, 100, 10), colours.black);
    EXPECT_EQ(x.pixel(id, 100, 140), colours.green);
    EXPECT_EQ(x.pixel(id, 2, 148), colours.white);
    EXPECT_EQ(x.pixel(id, 200, 150), colours.green);
    EXPECT_EQ(client.window->statistics().drawer, QStringLiteral("cpu"));
}

INSTANTIATE_TEST_SUITE_P(
    HostWindow, Depths,
    testing::Values(std::tuple{"640x480x24", 24, Colours{0, 0x00ff00, 0xffffff}},
                    std::tuple{"640x480x24", 32, Colours{0xff000000, 0xff00ff00, 0xffffffff}},
                    std::tuple{"640x480x16", 16, Colours{0, 0x07e0, 0xffff}},
                    std::tuple{"640x480x15", 15, Colours{0, 0x03e0, 0x7fff}},
                    std::tuple{"640x480x30", 30, Colours{0, 0x000ffc00, 0x3fffffff}}),
    [](const auto& instance) { return "Depth" + std::to_string(std::get<1>(instance.param)); });

// The colours that a window with a colour table shows.
std::vector<QRgb> shownColours(const Xvfb& x, xcb_window_t window,
                               const std::vector<std::uint32_t>& pixels) {
    auto* const look = xcb_get_window_attributes_reply(
        x.connection(), xcb_get_window_attributes(x.connection(), window), nullptr);
    auto* const reply = xcb_query_colors_reply(
        x.connection(),
        xcb_query_colors(x.connection(), look->colormap, static_cast<std::uint32_t>(pixels.size()),
                         pixels.data()),
        nullptr);
    std::vector<QRgb> colours;
    const xcb_rgb_t* const all = xcb_query_colors_colors(reply);
    for (int i = 0; i < xcb_query_colors_colors_length(reply); ++i)
        colours.push_back(qRgb(all[i].red >> 8, all[i].green >> 8, all[i].blue >> 8));
    std::free(look);
    std::free(reply);
    return colours;
}

TEST(HostWindow, OfEightBitsShowsColoursOfItsTable) {
    const Xvfb x("640x480x8");
    ASSERT_TRUE(x.isRunning());
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    const auto colours =
        shownColours(x, id, {x.pixel(id, 100, 10), x.pixel(id, 100, 140), x.pixel(id, 2, 148)});
    EXPECT_EQ(colours, (std::vector<QRgb>{qRgb(0, 0, 0), qRgb(0, 255, 0), qRgb(255, 255, 255)}));
}

TEST(HostWindow, OfEightBitsWithAFullTableTakesTheNearest) {
    const Xvfb x("640x480x8");
    ASSERT_TRUE(x.isRunning());
    const xcb_window_t id = x.makeWindow({});
    auto* const look = xcb_get_window_attributes_reply(
        x.connection(), xcb_get_window_attributes(x.connection(), id), nullptr);
    // Only greens and blues are left to share.
    for (std::uint16_t i = 0; i < 256; ++i)
        std::free(xcb_alloc_color_reply(
            x.connection(),
            xcb_alloc_color(x.connection(), look->colormap, 0, static_cast<std::uint16_t>(i << 8),
                            static_cast<std::uint16_t>(i << 7)),
            nullptr));
    std::free(look);
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    const auto colours = shownColours(x, id, {x.pixel(id, 100, 10), x.pixel(id, 100, 140)});
    EXPECT_EQ(qGreen(colours[0]), 0);
    EXPECT_GT(qGreen(colours[1]), 200);
}

TEST(HostWindow, FollowsItsSize) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    x.resize(id, 400, 300);
    ASSERT_TRUE(until([&] { return client.window->contentView()->frame().width() == 400; }));
    EXPECT_EQ(client.window->contentView()->frame(), QRectF(0, 0, 400, 300));
    ASSERT_TRUE(until([&] { return x.pixel(id, 399, 299) == 0x00ff00; }));
    EXPECT_EQ(x.pixel(id, 399, 10), 0U);
    EXPECT_EQ(x.pixel(id, 5, 295), 0xffffffU);
    x.resize(id, 50, 40);
    ASSERT_TRUE(until([&] { return client.window->contentView()->frame().width() == 50; }));
    ASSERT_TRUE(until([&] { return x.pixel(id, 5, 35) == 0xffffff; }));
}

TEST(HostWindow, WithoutAnyNothingIsLookedAtEverySoOften) {
    const Xvfb x;
    platform::ManualClock clock;
    platform::WindowServer server(clock, {.system = systemOn(clock, x.display())});
    EXPECT_EQ(clock.timerCount(), 0U);
    auto window = std::make_unique<platform::Window>(server, hostRef(x.makeWindow({})));
    // Whether the display sleeps, and whether anything covers the window; and frames.
    EXPECT_GE(clock.timerCount(), 2U);
    window.reset();
    EXPECT_EQ(clock.timerCount(), 0U);
}

TEST(HostWindow, DestroyedWhileRunningIsToldWithinATenthOfASecond) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(Destruction::canTakeLessThan(0.1, platform::DrawerChoice::Cpu));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(HostWindow, ThatNeverExistedIsAnEndToo) {
    const Xvfb x;
    testing::internal::CaptureStderr();
    {
        Client client(x, 0x00abcdef);
        EXPECT_EQ(client.closed, 0);
        ASSERT_TRUE(until([&] { return client.closed > 0; }));
        EXPECT_EQ(client.closed, 1);
        EXPECT_EQ(client.window->statistics().frames, 0U);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(HostWindow, TheClosingActionMayDropTheWindow) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    client.window->onClose([&] { client.window.reset(); });
    x.destroy(id);
    EXPECT_TRUE(until([&] { return client.window == nullptr; }));
}

TEST(HostWindow, UnmappedHasNoFramesUntilItIsMappedAgain) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({.mapped = false});
    Client client(x, id);
    auto& layer = *client.window->contentView()->layer();
    EXPECT_FALSE(client.window->isVisible());
    x.map(id);
    ASSERT_TRUE(client.waitForFrames(1));
    EXPECT_TRUE(client.window->isVisible());
    x.unmap(id);
    ASSERT_TRUE(until([&] { return !client.window->isVisible(); }));
    const auto before = client.window->statistics().frames;
    Beats beats(x);
    for (int i = 0; i < 5; ++i) {
        layer.setOpacity(0.1 * i);
        ASSERT_TRUE(beats.pass(2));
    }
    EXPECT_EQ(client.window->statistics().frames, before);
    layer.setOpacity(1.0);
    layer.setBackgroundColor(QColor(0, 0, 255));
    x.map(id);
    ASSERT_TRUE(client.waitForFrames(before + 1));
    EXPECT_TRUE(until([&] { return x.pixel(id, 100, 10) == 0x0000ffU; }));
}

TEST(HostWindow, InAnUnmappedParentHasNoFramesUntilThatIsMapped) {
    const Xvfb x;
    const xcb_window_t parent = x.makeWindow({.mapped = false});
    const xcb_window_t id = x.makeWindow({.width = 100, .height = 80, .parent = parent});
    Client client(x, id);
    ASSERT_TRUE(Beats(x).pass(3));
    EXPECT_EQ(client.window->statistics().frames, 0U);
    x.map(parent);
    EXPECT_TRUE(client.waitForFrames(1));
}

TEST(HostWindow, DestroyedWithItsParentIsToldToo) {
    const Xvfb x;
    const xcb_window_t parent = x.makeWindow({});
    const xcb_window_t id = x.makeWindow({.width = 100, .height = 80, .parent = parent});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    x.destroy(parent);
    EXPECT_TRUE(until([&] { return client.closed == 1; }));
}

TEST(HostWindow, FullyCoveredHasNoFrames) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    const xcb_window_t cover = x.makeWindow({.width = 300, .height = 300});
    Beats beats(x);
    ASSERT_TRUE(beats.pass(1));
    const auto before = client.window->statistics().frames;
    client.window->contentView()->layer()->setBackgroundColor(QColor(0, 0, 255));
    ASSERT_TRUE(beats.pass(5));
    EXPECT_EQ(client.window->statistics().frames, before);
    x.destroy(cover);
    ASSERT_TRUE(client.waitForFrames(before + 1));
    EXPECT_TRUE(until([&] { return x.pixel(id, 100, 10) == 0x0000ffU; }));
}

TEST(HostWindow, NothingChangedIsNoFrame) {
    const Xvfb x;
    Client client(x, x.makeWindow({}));
    ASSERT_TRUE(client.waitForFrames(1));
    ASSERT_TRUE(Beats(x).pass(20));
    EXPECT_EQ(client.window->statistics().frames, 1U);
}

TEST(HostWindow, WhatTheWindowLostIsShownAgainWithoutAFrame) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    x.clear(id, {50, 100, 100, 50});
    EXPECT_TRUE(until([&] { return x.pixel(id, 60, 120) == 0x00ff00U; }));
    EXPECT_EQ(client.window->statistics().frames, 1U);
}

TEST(HostWindow, OnlyWhatChangedIsSent) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    x.fill(id, 0x123456);
    const auto& corner = client.window->contentView()->subviews()[0]->subviews()[0];
    corner->layer()->setBackgroundColor(QColor(255, 0, 0));
    ASSERT_TRUE(client.waitForFrames(2));
    ASSERT_TRUE(until([&] { return x.pixel(id, 2, 148) == 0xff0000U; }));
    EXPECT_EQ(x.pixel(id, 100, 140), 0x123456U);
    EXPECT_EQ(x.pixel(id, 10, 140), 0x123456U);
    EXPECT_EQ(x.pixel(id, 9, 140), 0xff0000U);
}

TEST(HostWindow, WithoutSharedMemoryShowsTheSame) {
    const Xvfb x("1600x1200x24", {"-extension", "MIT-SHM"});
    ASSERT_TRUE(x.isRunning());
    // More than fits one request.
    const xcb_window_t id = x.makeWindow({.width = 1500, .height = 1100});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    const QImage picture = x.picture(id);
    for (const int row : {0, 170, 171, 349, 350, 540})
        EXPECT_EQ(picture.pixel(1499, row) & 0xffffff, 0U) << row;
    for (const int row : {550, 700, 900, 1099})
        EXPECT_EQ(picture.pixel(1499, row) & 0xffffff, 0x00ff00U) << row;
    x.fill(id, 0x123456);
    const auto& corner = client.window->contentView()->subviews()[0]->subviews()[0];
    corner->layer()->setBackgroundColor(QColor(255, 0, 0));
    ASSERT_TRUE(until([&] { return x.pixel(id, 2, 1098) == 0xff0000U; }));
    EXPECT_EQ(x.pixel(id, 100, 10), 0x123456U);
    for (std::uint64_t frames = 2; frames < 10; ++frames) {
        corner->layer()->setOpacity(1.0 / static_cast<double>(frames));
        ASSERT_TRUE(client.waitForFrames(frames + 1));
    }
}

TEST(HostWindow, WithoutSharedMemoryOfSixteenBits) {
    const Xvfb x("640x480x16", {"-extension", "MIT-SHM"});
    ASSERT_TRUE(x.isRunning());
    const xcb_window_t id = x.makeWindow({.width = 201, .height = 151});
    Client client(x, id);
    ASSERT_TRUE(client.waitForFrames(1));
    EXPECT_TRUE(until([&] { return x.pixel(id, 200, 150) == 0x07e0U; }));
    EXPECT_EQ(x.pixel(id, 2, 148), 0xffffU);
}

TEST(HostWindow, TwoConnectionsToTwoServers) {
    const Xvfb first("640x480x24"), second("640x480x16");
    const xcb_window_t one = first.makeWindow({}), two = second.makeWindow({});
    Client left(first, one), right(second, two);
    ASSERT_TRUE(left.waitForFrames(1));
    ASSERT_TRUE(right.waitForFrames(1));
    EXPECT_EQ(first.pixel(one, 100, 140), 0x00ff00U);
    EXPECT_EQ(second.pixel(two, 100, 140), 0x07e0U);
    first.destroy(one);
    ASSERT_TRUE(until([&] { return left.closed == 1; }));
    EXPECT_EQ(right.closed, 0);
}

TEST(HostWindow, TwoProgramsInOneWindow) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client first(x, id), second(x, id);
    ASSERT_TRUE(first.waitForFrames(1));
    ASSERT_TRUE(second.waitForFrames(1));
    x.destroy(id);
    EXPECT_TRUE(until([&] { return first.closed == 1 && second.closed == 1; }));
}

TEST(HostWindow, TheRootWindowIsNumberZero) {
    const Xvfb x;
    Client client(x, 0);
    ASSERT_TRUE(client.waitForFrames(1));
    EXPECT_EQ(client.window->frame().size(), QSizeF(640, 480));
    EXPECT_EQ(x.pixel(x.screen().root, 300, 400), 0x00ff00U);
}

TEST(HostWindow, TheServersDeathIsToldOnceAndQuietly) {
    Xvfb x;
    testing::internal::CaptureStderr();
    {
        Client client(x, x.makeWindow({}));
        ASSERT_TRUE(client.waitForFrames(1));
        int lost = 0;
        client.server.onConnectionLost([&] { ++lost; });
        x.kill();
        ASSERT_TRUE(until([&] { return lost > 0; }));
        EXPECT_FALSE(client.server.isConnected());
        client.window->setNeedsFrame();
        QCoreApplication::processEvents();
        EXPECT_EQ(lost, 1);
        EXPECT_EQ(client.closed, 0);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(HostWindow, WithoutAnyServerTheWindowStaysEmpty) {
    SystemClock clock;
    WindowServer server(clock, {.drawer = {}, .system = withoutSystem(clock)});
    EXPECT_FALSE(server.isConnected());
    Window window(server, hostRef(4));
    window.setNeedsFrame();
    EXPECT_EQ(window.statistics().frames, 0U);
    EXPECT_FALSE(window.isVisible());
}

TEST(HostWindow, LeavesNoFileOpenBehind) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    const auto open = [] { return QDir(QStringLiteral("/proc/self/fd")).entryList().size(); };
    // The first window opens the descriptors that libraries keep for good.
    { Client client(x, id); }
    const auto before = open();
    for (int i = 0; i < 5; ++i) {
        Client client(x, id);
        ASSERT_TRUE(client.waitForFrames(1));
        x.resize(id, 210 + i, 150);
        ASSERT_TRUE(client.waitForFrames(2));
    }
    EXPECT_EQ(open(), before);
}

}  // namespace
