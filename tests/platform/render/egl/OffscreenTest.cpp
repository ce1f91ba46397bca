// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QColor>
#include <cstdlib>
#include <thread>

#include "platform/render/egl/Egl.h"
#include "platform/render/gl/GlDrawer.h"
#include "platform/render/gl/OffscreenPicture.h"

namespace platform::test {

namespace {

TEST(Offscreen, AContextKnowsItsRendererOnceItIsCurrent) {
    const auto display = EglDisplay::offscreen();
    ASSERT_TRUE(display);
    const auto context = GlContext::create(display);
    ASSERT_TRUE(context);
    EXPECT_TRUE(context->rendererName().empty());
    ASSERT_TRUE(context->makeCurrent());
    EXPECT_FALSE(context->rendererName().empty());
    EXPECT_EQ(context->isSoftware(), isSoftwareRenderer(context->rendererName()));
    EXPECT_EQ(context->errors(), 0);
}

TEST(Offscreen, RenderersAreToldApartByName) {
    EXPECT_TRUE(isSoftwareRenderer("llvmpipe (LLVM 15.0.6, 256 bits)"));
    EXPECT_TRUE(isSoftwareRenderer("softpipe"));
    EXPECT_TRUE(isSoftwareRenderer("Software Rasterizer"));
    EXPECT_FALSE(isSoftwareRenderer("SVGA3D; build: RELEASE;  LLVM;"));
    EXPECT_FALSE(isSoftwareRenderer("virgl (AMD Radeon Graphics)"));
    EXPECT_FALSE(isSoftwareRenderer("Mesa Intel(R) UHD Graphics 620 (KBL GT2)"));
    EXPECT_FALSE(isSoftwareRenderer(""));
}

TEST(Offscreen, DroppingOneDisplayLeavesTheOther) {
    auto first = EglDisplay::offscreen();
    const auto second = EglDisplay::offscreen();
    ASSERT_TRUE(first && second);
    first.reset();
    const auto context = GlContext::create(second);
    ASSERT_TRUE(context);
    EXPECT_TRUE(context->makeCurrent());
}

TEST(Offscreen, AContextMayMoveToAnotherThread) {
    auto context = GlContext::create(EglDisplay::offscreen());
    ASSERT_TRUE(context && context->makeCurrent());
    context->doneCurrent();
    bool drawn = false;
    std::thread([&] {
        drawn = context->makeCurrent() && GlDrawer::create() != nullptr;
        context.reset();
    }).join();
    EXPECT_TRUE(drawn);
}

TEST(Offscreen, PicturesOfAnySizeFollowOneAnother) {
    const auto offscreen = OffscreenPicture::create();
    ASSERT_TRUE(offscreen);
    const Rgba red = Rgba::from(Qt::red);
    for (const QSize size : {QSize(3, 5), QSize(200, 100), QSize(1, 1)}) {
        const QImage picture = offscreen->draw({}, {.scale = 1.0, .size = size}, red);
        ASSERT_EQ(picture.size(), size);
        EXPECT_EQ(picture.pixel(0, 0), qRgb(255, 0, 0));
    }
    EXPECT_EQ(offscreen->errors(), 0);
}

TEST(Offscreen, APictureTooLargeOrEmptyIsNone) {
    const auto offscreen = OffscreenPicture::create();
    ASSERT_TRUE(offscreen);
    EXPECT_TRUE(offscreen->draw({}, {.scale = 1.0, .size = {1'000'000, 4}}, {}).isNull());
    EXPECT_TRUE(offscreen->draw({}, {.scale = 1.0, .size = {0, 4}}, {}).isNull());
    EXPECT_FALSE(offscreen->draw({}, {.scale = 1.0, .size = {4, 4}}, {}).isNull());
    EXPECT_EQ(offscreen->errors(), 0);
}

// In a process of its own, since EGL looks for its drivers once only.
TEST(OffscreenDeathTest, AMachineWithoutDriversGivesNone) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto none = [] {
        setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/nonexistent", 1);
        const bool is = !EglDisplay::offscreen() && !OffscreenPicture::create();
        std::_Exit(is ? 0 : 1);
    };
    EXPECT_EXIT(none(), testing::ExitedWithCode(0), "^$");
}

}  // namespace

}  // namespace platform::test
