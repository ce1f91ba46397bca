// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/render/gl/GlDrawer.h"
#include "platform/window/x11/EglOnX11.h"
#include "tests/support/Xvfb.h"

namespace platform::test {

namespace {

class WindowSurface : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(server_.isRunning()) << "Xvfb did not start";
        setenv("DISPLAY", server_.display().toLocal8Bit().constData(), 1);
        connection_ = xcb_connect(nullptr, nullptr);
        ASSERT_EQ(xcb_connection_has_error(connection_), 0);
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    }
    void TearDown() override { xcb_disconnect(connection_); }

    xcb_window_t window(std::uint8_t depth, xcb_visualid_t visual, std::uint16_t width = 60,
                        std::uint16_t height = 40) {
        const xcb_colormap_t map = xcb_generate_id(connection_);
        xcb_create_colormap(connection_, XCB_COLORMAP_ALLOC_NONE, map, screen_->root, visual);
        const xcb_window_t id = xcb_generate_id(connection_);
        const std::uint32_t values[] = {0, 0, map};
        xcb_create_window(connection_, depth, id, screen_->root, 0, 0, width, height, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP, values);
        xcb_map_window(connection_, id);
        xcb_flush(connection_);
        return id;
    }
    xcb_window_t plainWindow() { return window(24, screen_->root_visual); }

    // The pixel as the server shows it; none if it shows nothing.
    std::optional<std::uint32_t> pixel(xcb_window_t id, int x, int y) {
        const auto asked =
            xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, id, static_cast<std::int16_t>(x),
                          static_cast<std::int16_t>(y), 1, 1, 0xFFFFFFFFU);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
            xcb_get_image_reply(connection_, asked, nullptr), std::free);
        if (!reply) return std::nullopt;
        std::uint32_t value = 0;
        std::memcpy(&value, xcb_get_image_data(reply.get()), sizeof value);
        return value;
    }

    // Fills the window by way of OpenGL and reads back what the server shows.
    void expectGreen(const std::shared_ptr<EglDisplay>& display, xcb_window_t id) {
        ASSERT_TRUE(display);
        const auto surface = eglSurfaceFor(display, connection_, id);
        ASSERT_TRUE(surface);
        const auto context = GlContext::create(display, surface.get());
        ASSERT_TRUE(context && context->makeCurrent(*surface));
        EXPECT_TRUE(surface->setSwapInterval(0));
        EXPECT_EQ(surface->size(), QSize(60, 40));
        const auto drawer = GlDrawer::create();
        ASSERT_TRUE(drawer);
        drawer->draw({}, {.scale = 1.0, .size = surface->size()},
                     platform::Rgba{0.0F, 1.0F, 0.0F, 1.0F});
        EXPECT_TRUE(surface->swap());
        // A driver with a connection of its own may be served after this one, so
        // the server is asked again, each time a round trip later.
        std::uint32_t seen = 0;
        for (int asked = 0; asked < 5000 && seen != 0x00FF00U; ++asked)
            seen = pixel(id, 30, 20).value_or(0) & 0xFFFFFFU;
        EXPECT_EQ(seen, 0x00FF00U);
        EXPECT_EQ(context->errors(), 0);
    }

    Xvfb server_;
    xcb_connection_t* connection_ = nullptr;
    xcb_screen_t* screen_ = nullptr;
};

TEST_F(WindowSurface, WhatIsDrawnShowsInTheWindow) {
    expectGreen(eglDisplayOn(connection_, 0), plainWindow());
}

TEST_F(WindowSurface, ADriverWithoutXcbIsReachedThroughXlib) {
    expectGreen(eglDisplayThroughXlib(connection_, 0), plainWindow());
}

TEST_F(WindowSurface, AWindowWithAlphaCanBeDrawnInto) {
    const auto display = eglDisplayOn(connection_, 0);
    ASSERT_TRUE(display);
    xcb_visualid_t visual = 0;
    for (auto depth = xcb_screen_allowed_depths_iterator(screen_); depth.rem;
         xcb_depth_next(&depth)) {
        if (depth.data->depth == 32) visual = xcb_depth_visuals(depth.data)->visual_id;
    }
    ASSERT_NE(visual, 0U);
    expectGreen(display, window(32, visual));
}

TEST_F(WindowSurface, TheSurfaceFollowsTheWindowsSize) {
    const xcb_window_t id = plainWindow();
    const auto display = eglDisplayOn(connection_, 0);
    const auto surface = eglSurfaceFor(display, connection_, id);
    ASSERT_TRUE(surface);
    const auto context = GlContext::create(display, surface.get());
    ASSERT_TRUE(context && context->makeCurrent(*surface));
    const auto drawer = GlDrawer::create();
    const std::uint32_t size[] = {200, 150};
    xcb_configure_window(connection_, id, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    EXPECT_TRUE(pixel(id, 190, 140).has_value());
    const auto fill = [&] {
        drawer->draw({}, {.scale = 1.0, .size = {200, 150}},
                     platform::Rgba{0.0F, 1.0F, 0.0F, 1.0F});
        return surface->swap();
    };
    // The driver may learn of the new size only now, and draw it with the second.
    EXPECT_TRUE(fill());
    EXPECT_TRUE(fill());
    EXPECT_EQ(surface->size(), QSize(200, 150));
    EXPECT_EQ(pixel(id, 190, 140).value_or(0) & 0xFFFFFFU, 0x00FF00U);
}

TEST_F(WindowSurface, AWindowThatIsGoneGivesNone) {
    const xcb_window_t id = plainWindow();
    xcb_destroy_window(connection_, id);
    EXPECT_FALSE(eglSurfaceFor(eglDisplayOn(connection_, 0), connection_, id));
    EXPECT_FALSE(eglSurfaceFor(nullptr, connection_, id));
}

#ifdef __SANITIZE_ADDRESS__
// Mesa keeps the server's answer that there is no such window.
using DriverMayLeak = __lsan::ScopedDisabler;
#else
struct DriverMayLeak {
    DriverMayLeak() {}
};
#endif

class VanishingWindow : public WindowSurface, public testing::WithParamInterface<bool> {};

TEST_P(VanishingWindow, DrawingIntoItGoesOnWithoutHarm) {
    const xcb_window_t id = plainWindow();
    const auto display =
        GetParam() ? eglDisplayThroughXlib(connection_, 0) : eglDisplayOn(connection_, 0);
    auto surface = eglSurfaceFor(display, connection_, id);
    ASSERT_TRUE(surface);
    const auto context = GlContext::create(display, surface.get());
    ASSERT_TRUE(context && context->makeCurrent(*surface));
    const auto drawer = GlDrawer::create();
    xcb_destroy_window(connection_, id);
    EXPECT_FALSE(pixel(id, 0, 0).has_value());
    const DriverMayLeak forNow;
    for (int i = 0; i < 3; ++i) {
        drawer->draw({}, {.scale = 1.0, .size = {60, 40}}, {});
        surface->swap();
    }
    surface.reset();
    EXPECT_TRUE(context->makeCurrent());
}

INSTANTIATE_TEST_SUITE_P(XlibOrXcb, VanishingWindow, testing::Bool());

TEST_F(WindowSurface, AWindowOfAnotherDepthGivesNone) {
    const Xvfb server("640x480x8");
    xcb_connection_t* const connection =
        xcb_connect(server.display().toLocal8Bit().constData(), nullptr);
    ASSERT_EQ(xcb_connection_has_error(connection), 0);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    EXPECT_FALSE(eglSurfaceFor(eglDisplayOn(connection, 0), connection, screen->root));
    xcb_disconnect(connection);
}

TEST_F(WindowSurface, TwoWindowsShareADisplay) {
    auto first = eglDisplayOn(connection_, 0);
    const auto second = eglDisplayOn(connection_, 0);
    first.reset();
    expectGreen(second, plainWindow());
    expectGreen(second, plainWindow());
}

TEST_F(WindowSurface, AServerThatGoesAwayEndsNothing) {
    auto server = std::make_unique<Xvfb>();
    xcb_connection_t* const connection =
        xcb_connect(server->display().toLocal8Bit().constData(), nullptr);
    {
        const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
        const auto display = eglDisplayOn(connection, 0);
        const auto surface = eglSurfaceFor(display, connection, screen->root);
        ASSERT_TRUE(surface);
        const auto context = GlContext::create(display, surface.get());
        ASSERT_TRUE(context && context->makeCurrent(*surface));
        const auto drawer = GlDrawer::create();
        server.reset();
        for (int i = 0; i < 3; ++i) {
            drawer->draw({}, {.scale = 1.0, .size = {60, 40}}, {});
            EXPECT_FALSE(surface->swap());
        }
    }
    xcb_disconnect(connection);
}

}  // namespace

}  // namespace platform::test
