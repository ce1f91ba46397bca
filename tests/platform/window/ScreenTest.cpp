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

TEST(Screen, AMirrorIsLeftOutAndOnlyAMirrorIs) {
    const Screen left{.name = QStringLiteral("A"), .frame = {0, 0, 800, 600}};
    const Screen right{.name = QStringLiteral("B"), .frame = {800, 0, 800, 600}};
    // Sharper, and in the same place.
    const Screen mirror{.name = QStringLiteral("C"), .frame = {0, 0, 800, 600}, .scale = 2.0};
    // From the same corner.
    const Screen larger{.name = QStringLiteral("D"), .frame = {0, 0, 800, 601}};
    EXPECT_EQ(platform::distinctRectangles({left, right, mirror, larger, mirror}),
              (std::vector{left, right, larger}));
    EXPECT_EQ(platform::distinctRectangles({mirror, left}), std::vector{mirror});
    EXPECT_TRUE(platform::distinctRectangles({}).empty());
}

}  // namespace
