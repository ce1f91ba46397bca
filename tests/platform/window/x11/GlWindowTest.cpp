// SPDX-License-Identifier: MIT
// OpenGL on host's windows, in software.
#include <gtest/gtest.h>

#include "tests/platform/window/x11/Client.h"
#include "tests/support/KeepDriver.h"

using platform::DrawerChoice;

namespace {

class GlDepths : public testing::TestWithParam<int> {};

TEST_P(GlDepths, ShowsThePicture) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({.width = 201, .height = 151, .depth = GetParam()});
    Client client(x, id, DrawerChoice::OpenGl);
    ASSERT_TRUE(client.waitForFrames(1));
    const std::uint32_t alpha = GetParam() == 32 ? 0xff000000 : 0;
    ASSERT_TRUE(until([&] { return x.pixel(id, 100, 140) == (alpha | 0x00ff00); }));
    EXPECT_EQ(x.pixel(id, 100, 10), alpha);
    EXPECT_EQ(x.pixel(id, 2, 148), alpha | 0xffffff);
    EXPECT_NE(client.window->statistics().drawer, QStringLiteral("cpu"));
    EXPECT_NE(client.window->statistics().drawer, QString());
}

INSTANTIATE_TEST_SUITE_P(GlWindow, GlDepths, testing::Values(24, 32),
                         testing::PrintToStringParamName());

TEST(GlWindow, FollowsItsSize) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id, DrawerChoice::OpenGl);
    ASSERT_TRUE(client.waitForFrames(1));
    x.resize(id, 400, 300);
    EXPECT_TRUE(until([&] { return x.pixel(id, 399, 299) == 0x00ff00; }));
    EXPECT_TRUE(until([&] { return x.pixel(id, 5, 295) == 0xffffff; }));
    x.resize(id, 50, 40);
    EXPECT_TRUE(until([&] { return x.pixel(id, 5, 35) == 0xffffff; }));
}

TEST(GlWindow, WhatTheWindowLostIsShownAgain) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id, DrawerChoice::OpenGl);
    ASSERT_TRUE(until([&] { return x.pixel(id, 60, 120) == 0x00ff00U; }));
    x.clear(id, {50, 100, 100, 50});
    EXPECT_TRUE(until([&] { return x.pixel(id, 60, 120) == 0x00ff00U; }));
}

TEST(GlWindow, DestroyedWhileRunningIsToldWithinATenthOfASecond) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(Destruction::canTakeLessThan(0.1, platform::DrawerChoice::OpenGl));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(GlWindow, TheServersDeathIsToldQuietly) {
    Xvfb x;
    testing::internal::CaptureStderr();
    {
        Client client(x, x.makeWindow({}), DrawerChoice::OpenGl);
        ASSERT_TRUE(client.waitForFrames(1));
        int lost = 0;
        client.server.onConnectionLost([&] { ++lost; });
        const platform::Timer busy(client.clock, {.interval = 0.005, .repeats = true}, [&] {
            auto& layer = *client.window->contentView()->layer();
            layer.setOpacity(layer.opacity() > 0.5 ? 0.4 : 1.0);
        });
        ASSERT_TRUE(client.waitForFrames(5));
        x.kill();
        EXPECT_TRUE(until([&] { return lost == 1; }));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(GlWindow, AWindowThatOpenGlCannotDrawInIsDrawnByTheProcessor) {
    const Xvfb x("640x480x8");
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id, DrawerChoice::OpenGl);
    ASSERT_TRUE(client.waitForFrames(1));
    EXPECT_EQ(client.window->statistics().drawer, QStringLiteral("cpu"));
}

TEST(GlWindow, AWindowLargerThanOpenGlCanDrawIsDrawnByTheProcessor) {
    const Xvfb x;
    // The window has the greatest width that X allows.
    const xcb_window_t id = x.makeWindow({.width = 32767, .height = 40});
    Client client(x, id, DrawerChoice::OpenGl);
    ASSERT_TRUE(until([&] { return x.pixel(id, 100, 30) == 0x00ff00U; }));
    EXPECT_EQ(client.window->statistics().drawer, QStringLiteral("cpu"));
    x.resize(id, 300, 200);
    EXPECT_TRUE(until([&] { return x.pixel(id, 299, 199) == 0x00ff00U; }));
}

TEST(GlWindow, OneThatBecomesTooLargeIsToo) {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Client client(x, id, DrawerChoice::OpenGl);
    ASSERT_TRUE(client.waitForFrames(1));
    EXPECT_NE(client.window->statistics().drawer, QStringLiteral("cpu"));
    x.resize(id, 40, 32767);
    EXPECT_TRUE(until([&] { return client.window->statistics().drawer == QStringLiteral("cpu"); }));
    x.resize(id, 300, 200);
    EXPECT_TRUE(until([&] { return x.pixel(id, 299, 199) == 0x00ff00U; }));
}

TEST(GlWindow, AutoTakesTheProcessorWhereOpenGlIsSoftware) {
    const Xvfb x;
    Client client(x, x.makeWindow({}), DrawerChoice::Auto);
    ASSERT_TRUE(client.waitForFrames(1));
    EXPECT_EQ(client.window->statistics().drawer, QStringLiteral("cpu"));
}

}  // namespace
