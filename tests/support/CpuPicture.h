// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <vector>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/render/cpu/CpuDrawer.h"

inline constexpr platform::Rgba kBlack{0.0F, 0.0F, 0.0F, 1.0F};

inline platform::PixelBuffer bufferOf(QImage& image) {
    return {reinterpret_cast<std::uint32_t*>(image.bits()),
            static_cast<int>(image.bytesPerLine() / 4), image.size()};
}

// The CPU drawer's picture of a whole list.
inline QImage drawCpu(const platform::DisplayList& list, const platform::PixelGrid& grid,
                      const platform::Rgba& background = kBlack) {
    QImage image(grid.size, QImage::Format_ARGB32_Premultiplied);
    image.fill(0x12345678);
    const std::vector<QRect> all{image.rect()};
    platform::CpuDrawer().draw(list, grid, all, background, bufferOf(image));
    return image;
}

// The list of one tree for a picture of `grid`, at the clock's time.
inline platform::DisplayList listOf(platform::Layer& root, const platform::PixelGrid& grid,
                                    double clock = 0.0) {
    platform::DisplayList list;
    platform::DisplayListBuilder(list, clock)
        .add(root, {}, {QPointF(), QSizeF(grid.size) / grid.scale});
    return list;
}
