// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/support/CpuPicture.h"
#include "tests/support/FallingColumns.h"
#include "tests/support/RandomTree.h"
#include "tests/support/ReferenceDrawer.h"

using namespace platform;

namespace {

// Every item drawn over another rounds once more, to 255ths.
constexpr int kLargestDifference = 2;

class AgainstReference : public testing::TestWithParam<double> {};

TEST_P(AgainstReference, RandomTreesLookTheSame) {
    const PixelGrid grid{.scale = GetParam(), .size = {73, 61}};
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        RandomTree tree(seed, QSizeF(grid.size) / grid.scale, grid.scale, 10.0);
        for (const double clock : {10.0, 10.7, 11.9}) {
            const DisplayList list = listOf(tree.root(), grid, clock);
            const Rgba background = seed % 3 == 0 ? Rgba{} : kBlack;
            EXPECT_LE(largestDifference(drawCpu(list, grid, background),
                                        drawReference(list, grid, background)),
                      kLargestDifference)
                << "seed " << seed << " at " << clock;
        }
    }
}

TEST_P(AgainstReference, FallingColumnsLookTheSame) {
    const double scale = GetParam();
    const PixelGrid grid{.scale = scale, .size = QSize(130, 160)};
    FallingColumns columns(
        {.size = QSizeF(grid.size) / scale, .columnWidth = 11, .rowHeight = 13, .scale = scale});
    columns.fill(100.0);
    for (const double clock : {100.0, 101.3, 107.7}) {
        const DisplayList list = columns.shown(clock);
        ASSERT_FALSE(list.items.empty());
        EXPECT_LE(largestDifference(drawCpu(list, grid), drawReference(list, grid, kBlack)),
                  kLargestDifference);
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, AgainstReference, testing::Values(1.0, 1.5, 2.0));

}  // namespace
