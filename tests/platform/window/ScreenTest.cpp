// SPDX-License-Identifier: MIT
#include "platform/window/Screen.h"

#include <gtest/gtest.h>

#include "platform/window/ScreenSpace.h"

using platform::Screen;

namespace {

TEST(Screen, TheMainOnesLowerLeftIsTheZero) {
    const auto main = Screen::main();
    ASSERT_TRUE(main);
    EXPECT_EQ(main->frame.topLeft(), QPointF(0, 0));
    EXPECT_GT(main->frame.width(), 0.0);
    EXPECT_GE(main->refreshRate, 1.0);
    EXPECT_GE(main->scale, 1.0);
    ASSERT_FALSE(Screen::all().empty());
    EXPECT_EQ(Screen::all().front(), *main);
}

TEST(Screen, PlacesAreTurnedUpsideDownAndBack) {
    const double height = Screen::main()->frame.height();
    const QRectF ours(10, 20, 30, 40);
    const QRectF theirs = platform::toQt(ours);
    EXPECT_EQ(theirs, QRectF(10, height - 60, 30, 40));
    EXPECT_EQ(platform::fromQt(theirs), ours);
    EXPECT_EQ(platform::fromQt(QPointF(3, height)), QPointF(3, 0));
}

}  // namespace
