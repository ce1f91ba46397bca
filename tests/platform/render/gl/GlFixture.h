// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <memory>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/render/gl/GlCalls.h"
#include "platform/render/gl/GlDrawer.h"
#include "platform/render/gl/OffscreenPicture.h"
#include "tests/support/CpuPicture.h"

namespace platform::test {

inline constexpr double kClock = 1000.0;

// Lists the tree as it looks at the clock's time.
inline void build(DisplayList& list, Layer& root, double clockTime = kClock) {
    DisplayListBuilder(list, clockTime).add(root, {}, root.frame());
}

// Rounds to 255ths. QImage's own conversion goes through fewer bits.
inline QImage rounded(const QImage& floats) {
    QImage picture(floats.size(), QImage::Format_ARGB32_Premultiplied);
    const auto byte = [](float value) { return static_cast<int>(std::lround(value * 255.0F)); };
    for (int y = 0; y < floats.height(); ++y) {
        const auto* from = reinterpret_cast<const float*>(floats.constScanLine(y));
        auto* const to = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < floats.width(); ++x, from += 4)
            to[x] = qRgba(byte(from[0]), byte(from[1]), byte(from[2]), byte(from[3]));
    }
    return picture;
}

// Gives each test an off-screen context, and fails it for any error that OpenGL
// reports (strict builds).
class Gl : public testing::Test {
  protected:
    void SetUp() override {
        offscreen_ = OffscreenPicture::create();
        ASSERT_TRUE(offscreen_) << "no OpenGL 3.3";
    }
    void TearDown() override {
        if (!offscreen_) return;
        EXPECT_EQ(offscreen_->errors(), 0);
    }

    QImage drawn(const DisplayList& list, const PixelGrid& grid, Rgba background = kBlack) {
        return offscreen_->draw(list, grid, background);
    }

    // The same through a framebuffer of floats, rounded once at the end: what the
    // shaders say, without what blending in 255ths adds.
    QImage drawnInFloats(const DisplayList& list, const PixelGrid& grid, Rgba background) {
        EXPECT_FALSE(drawn(list, grid).isNull());
        GLint usual = 0;
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &usual);
        GLuint framebuffer = 0, renderbuffer = 0;
        glGenFramebuffers(1, &framebuffer);
        glGenRenderbuffers(1, &renderbuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
        glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA32F, grid.size.width(), grid.size.height());
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                  renderbuffer);
        offscreen_->drawer().draw(list, grid, background);
        QImage picture(grid.size, QImage::Format_RGBA32FPx4_Premultiplied);
        glReadPixels(0, 0, grid.size.width(), grid.size.height(), GL_RGBA, GL_FLOAT,
                     picture.bits());
        glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(usual));
        glDeleteFramebuffers(1, &framebuffer);
        glDeleteRenderbuffers(1, &renderbuffer);
        return rounded(picture).mirrored(false, true);
    }

    std::unique_ptr<OffscreenPicture> offscreen_;
};

}  // namespace platform::test
