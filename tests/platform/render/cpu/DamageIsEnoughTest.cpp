// SPDX-License-Identifier: MIT
// Pixels that findDamage leaves out look the same before and after; repainting
// the pixels it names makes the one picture into the other.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/layers/Damage.h"
#include "tests/support/CpuPicture.h"
#include "tests/support/FallingColumns.h"
#include "tests/support/RandomTree.h"
#include "tests/support/ReferenceDrawer.h"

using namespace platform;

namespace {

bool covered(const std::vector<QRect>& rects, int x, int y) {
    return std::any_of(rects.begin(), rects.end(),
                       [=](const QRect& rect) { return rect.contains(x, y); });
}

// The number of pixels that differ outside the rectangles.
int missed(const QImage& before, const QImage& after, const std::vector<QRect>& rects) {
    int count = 0;
    for (int y = 0; y < before.height(); ++y) {
        const auto* const a = reinterpret_cast<const QRgb*>(before.constScanLine(y));
        const auto* const b = reinterpret_cast<const QRgb*>(after.constScanLine(y));
        for (int x = 0; x < before.width(); ++x)
            if (a[x] != b[x] && !covered(rects, x, y)) ++count;
    }
    return count;
}

void expectEnough(const DisplayList& old, const DisplayList& now, const PixelGrid& grid) {
    std::vector<QRect> rects;
    findDamage(old, now, grid, rects);
    for (const QRect& rect : rects)
        EXPECT_TRUE(QRect(QPoint(), grid.size).contains(rect));
    const QImage before = drawCpu(old, grid);
    const QImage after = drawCpu(now, grid);
    EXPECT_EQ(missed(before, after, rects), 0);
    QImage repainted = before;
    CpuDrawer().draw(now, grid, rects, kBlack, bufferOf(repainted));
    // A mask that is even along a rectangle's rows but not along the picture's
    // goes another way and may be rounded otherwise.
    EXPECT_LE(largestDifference(repainted, after), 1);
}

class DamageIsEnough : public testing::TestWithParam<double> {};

TEST_P(DamageIsEnough, ForRandomTreesThatMoveAndChange) {
    const PixelGrid grid{.scale = GetParam(), .size = {73, 61}};
    for (std::uint64_t seed = 100; seed < 160; ++seed) {
        SCOPED_TRACE(seed);
        RandomTree tree(seed, QSizeF(grid.size) / grid.scale, grid.scale, 10.0);
        DisplayList old = listOf(tree.root(), grid, 10.0);
        for (int step = 1; step < 8; ++step) {
            if (step % 2 == 0) tree.change();
            DisplayList now = listOf(tree.root(), grid, 10.0 + 0.4 * (step / 2));
            expectEnough(old, now, grid);
            old = std::move(now);
        }
    }
}

TEST_P(DamageIsEnough, ForFallingColumns) {
    const double scale = GetParam();
    const PixelGrid grid{.scale = scale, .size = QSize(130, 160)};
    FallingColumns columns(
        {.size = QSizeF(grid.size) / scale, .columnWidth = 11, .rowHeight = 13, .scale = scale});
    columns.fill(100.0);
    DisplayList old = columns.shown(100.0);
    for (int frame = 1; frame < 60; ++frame) {
        if (frame % 5 == 0) columns.swapContents(frame % columns.columnCount());
        DisplayList now = columns.shown(100.0 + frame / 60.0);
        expectEnough(old, now, grid);
        old = std::move(now);
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, DamageIsEnough, testing::Values(1.0, 1.5, 2.0));

}  // namespace
