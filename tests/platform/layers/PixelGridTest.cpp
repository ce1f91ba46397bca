// SPDX-License-Identifier: MIT
#include "platform/layers/PixelGrid.h"

#include <gtest/gtest.h>

using platform::PixelGrid;

namespace {

TEST(PixelGrid, TurnsPointsUpIntoPixelsDown) {
    const PixelGrid grid{.scale = 2.0, .size = {200, 100}};
    EXPECT_EQ(grid.snap({10.0, 5.0, 20.0, 8.0}), QRect(20, 74, 40, 16));
}

TEST(PixelGrid, EachEdgeGoesToTheNearestPixelHalvesUp) {
    const PixelGrid grid{.scale = 1.0, .size = {100, 100}};
    EXPECT_EQ(grid.snap({0.4, 0.4, 1.0, 1.0}), QRect(0, 99, 1, 1));
    EXPECT_EQ(grid.snap({0.5, 0.5, 1.0, 1.0}), QRect(1, 98, 1, 1));
    EXPECT_EQ(grid.snap({-0.5, 0.0, 1.0, 1.0}), QRect(0, 99, 1, 1));
    EXPECT_EQ(grid.snap({-1.5, 0.0, 1.0, 1.0}), QRect(-1, 99, 1, 1));
}

TEST(PixelGrid, WhatTouchesInPointsTouchesInPixels) {
    const PixelGrid grid{.scale = 1.5, .size = {300, 300}};
    for (int i = 0; i < 50; ++i) {
        const QRect left = grid.snap({4.5 + 21.0 * i, 3.0, 21.0, 7.0});
        const QRect right = grid.snap({4.5 + 21.0 * (i + 1), 3.0, 21.0, 7.0});
        EXPECT_EQ(left.x() + left.width(), right.x());
    }
}

TEST(PixelGrid, TellsThePixelsCentreInPoints) {
    const PixelGrid grid{.scale = 2.0, .size = {200, 100}};
    EXPECT_DOUBLE_EQ(grid.x(0), 0.25);
    EXPECT_DOUBLE_EQ(grid.y(99), 0.25);
    EXPECT_DOUBLE_EQ(grid.y(0), 49.75);
}

}  // namespace
