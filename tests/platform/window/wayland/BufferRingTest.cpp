// SPDX-License-Identifier: MIT
// A window's three buffers without a compositor: pictures are painted and taken in turn, and
// released by hand.
#include "platform/window/wayland/BufferRing.h"

#include <gtest/gtest.h>

namespace platform::wayland {
namespace {

constexpr QSize kSize(64, 32);
constexpr QRect kWhole(0, 0, 64, 32);
constexpr QRect kLeft(0, 0, 8, 32);
constexpr QRect kRight(56, 0, 8, 32);

class BufferRingTest : public testing::Test {
  protected:
    // Paints a picture that differs within `damage`, and returns its buffer.
    Buffer* paint(const QRect& damage, QSize size = kSize) {
        Buffer* const buffer = ring_.begin(size, {&damage, 1}, painted_);
        if (buffer) ring_.finish(*buffer, {&damage, 1}, true);
        return buffer;
    }
    // Paints a picture and takes it.
    Buffer* show(const QRect& damage) {
        paint(damage);
        return ring_.take(kSize, damage_).buffer;
    }

    BufferRing ring_;
    std::vector<QRect> painted_, damage_;
};

TEST_F(BufferRingTest, ANewBufferIsPaintedWhole) {
    paint(kLeft);
    EXPECT_EQ(painted_, (std::vector{kWhole, kLeft}));
}

TEST_F(BufferRingTest, ABufferIsPaintedWhereOthersWere) {
    Buffer* const first = show(kWhole);
    ASSERT_TRUE(first);
    Buffer* const second = show(kRight);
    EXPECT_NE(second, first);
    ring_.released(*first);
    EXPECT_EQ(show(kLeft), first);
    EXPECT_EQ(painted_, (std::vector{kRight, kLeft}));
    ring_.released(*second);
    EXPECT_EQ(show(kRight), second);
    EXPECT_EQ(painted_, (std::vector{kLeft, kRight})) << "without its own damage";
}

TEST_F(BufferRingTest, ThreeShownBuffersLeaveNone) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(ring_.hasFree());
        EXPECT_TRUE(show(kWhole));
    }
    EXPECT_FALSE(ring_.hasFree());
    EXPECT_FALSE(paint(kWhole));
}

TEST_F(BufferRingTest, ABufferThatIsBeingPaintedIsNotGivenOutAgain) {
    Buffer* const shown = show(kWhole);
    ring_.released(*shown);
    ASSERT_EQ(ring_.begin(kSize, {}, painted_), shown);
    // The compositor's word for its earlier picture comes twice.
    ring_.released(*shown);
    EXPECT_NE(ring_.begin(kSize, {}, painted_), shown);
}

TEST_F(BufferRingTest, APictureThatNobodyTookGivesWayToANewerOne) {
    Buffer* const older = paint(kLeft);
    Buffer* const newer = paint(kRight);
    EXPECT_NE(older, newer);
    EXPECT_EQ(ring_.take(kSize, damage_).buffer, newer);
    EXPECT_EQ(damage_, (std::vector{kLeft, kRight}));
    EXPECT_EQ(paint(kLeft), older);
}

TEST_F(BufferRingTest, APictureOfAnotherSizeIsDropped) {
    Buffer* const painted = paint(kWhole);
    EXPECT_FALSE(ring_.take({65, 32}, damage_).buffer);
    EXPECT_EQ(damage_, std::vector<QRect>());
    EXPECT_FALSE(ring_.take(kSize, damage_).buffer) << "dropped, not kept";
    EXPECT_EQ(paint(kLeft), painted) << "and its buffer is free";
    EXPECT_EQ(ring_.take(kSize, damage_).buffer, painted);
}

TEST_F(BufferRingTest, ANewSizeMakesNewBuffers) {
    Buffer* const shown = show(kWhole);
    ASSERT_TRUE(shown);
    const QSize larger(96, 32);
    Buffer* const buffer = paint(QRect({}, larger), larger);
    ASSERT_TRUE(buffer);
    EXPECT_EQ(buffer->size(), larger);
    EXPECT_EQ(painted_, (std::vector(2, QRect({}, larger))));
    // The compositor still reads the earlier one.
    EXPECT_EQ(shown->size(), kSize);
    EXPECT_EQ(ring_.take(larger, damage_).buffer, buffer);
}

TEST_F(BufferRingTest, AfterTheSurfaceEveryBufferIsFreeAndPaintedWhole) {
    Buffer* const shown = show(kWhole);
    Buffer* const painting = ring_.begin(kSize, {}, painted_);
    ASSERT_TRUE(painting);
    ring_.reset();
    // The picture that was being painted is of the surface that has gone.
    ring_.finish(*painting, {}, true);
    EXPECT_FALSE(ring_.take(kSize, damage_).buffer);
    EXPECT_EQ(paint(kLeft), shown);
    EXPECT_EQ(painted_, (std::vector{kWhole, kLeft}));
}

}  // namespace
}  // namespace platform::wayland
