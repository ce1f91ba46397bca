// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QRect>
#include <memory>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/render/CpuDrawer.h"
#include "platform/render/GlDrawer.h"
#include "platform/render/OffscreenPicture.h"

namespace platform::test {

inline constexpr double kClock = 1000.0;

// What the tree looks like at the clock's time.
inline void build(DisplayList& list, Layer& root, double clockTime = kClock) {
    DisplayListBuilder(list, clockTime).add(root, {}, root.frame());
}

inline QImage drawnByCpu(const DisplayList& list, const PixelGrid& grid, Rgba background) {
    QImage picture(grid.size, QImage::Format_ARGB32_Premultiplied);
    const QRect all(QPoint(0, 0), grid.size);
    CpuDrawer().draw(list, grid, {&all, 1}, background,
                     {.pixels = reinterpret_cast<std::uint32_t*>(picture.bits()),
                      .stride = static_cast<int>(picture.bytesPerLine() / 4),
                      .size = grid.size});
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

    static constexpr Rgba kBlack{0.0F, 0.0F, 0.0F, 1.0F};
    std::unique_ptr<OffscreenPicture> offscreen_;
};

}  // namespace platform::test
