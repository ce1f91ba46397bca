// SPDX-License-Identifier: MIT
#include "platform/window/wayland/DamageBoxes.h"

#include <gtest/gtest.h>

#include <QRegion>

#include "platform/time/RandomSource.h"

namespace platform::wayland {
namespace {

std::vector<QRect> joined(const std::vector<QRect>& rects) {
    std::vector<QRect> boxes;
    joinDamage(rects, boxes);
    return boxes;
}

std::int64_t areaOf(const std::vector<QRect>& rects) {
    std::int64_t sum = 0;
    for (const QRect& rect : rects)
        sum += std::int64_t{rect.width()} * rect.height();
    return sum;
}

TEST(DamageBoxes, NothingIsNoBox) {
    EXPECT_TRUE(joined({}).empty());
    EXPECT_TRUE(joined({QRect(5, 5, 0, 3)}).empty());
}

TEST(DamageBoxes, OneStaysAsItIs) {
    EXPECT_EQ(joined({QRect(3, 4, 5, 6)}), std::vector{QRect(3, 4, 5, 6)});
}

TEST(DamageBoxes, TwoThatTouchAreOne) {
    EXPECT_EQ(joined({QRect(0, 0, 10, 10), QRect(10, 0, 10, 10)}),
              std::vector{QRect(0, 0, 20, 10)});
}

TEST(DamageBoxes, TwoFarApartStayTwo) {
    EXPECT_EQ(joined({QRect(0, 0, 10, 10), QRect(500, 500, 10, 10)}).size(), 2U);
}

TEST(DamageBoxes, JoiningStopsWhereTheAreaReachesOneAndAHalfTimesTheSum) {
    // Together 200 pixels: a box of 290 is worth it, one of exactly 300 is not.
    EXPECT_EQ(joined({QRect(0, 0, 10, 10), QRect(19, 0, 10, 10)}).size(), 1U);
    EXPECT_EQ(joined({QRect(0, 0, 10, 10), QRect(20, 0, 10, 10)}).size(), 2U);
}

TEST(DamageBoxes, NeverMoreThanFourHoweverFarApart) {
    std::vector<QRect> corners;
    for (int i = 0; i < 16; ++i)
        corners.emplace_back(i % 4 * 500, i / 4 * 500, 3, 3);
    EXPECT_EQ(joined(corners).size(), 4U);
}

TEST(DamageBoxes, FourCompactClustersAreFourBoxes) {
    std::vector<QRect> rects;
    for (const QPoint corner : {QPoint(0, 0), QPoint(1600, 0), QPoint(0, 900), QPoint(1600, 900)})
        for (int i = 0; i < 10; ++i)
            rects.emplace_back(corner + QPoint(i * 12, 0), QSize(12, 60));
    const auto boxes = joined(rects);
    EXPECT_EQ(boxes.size(), 4U);
    EXPECT_EQ(areaOf(boxes), areaOf(rects));
}

TEST(DamageBoxes, EveryRectangleLiesInTheBoxes) {
    RandomSource random(7);
    for (int round = 0; round < 300; ++round) {
        std::vector<QRect> rects;
        QRegion all;
        const int count = static_cast<int>(random.unit() * 80.0);
        for (int i = 0; i < count; ++i) {
            const auto at = [&](double most) { return static_cast<int>(random.unit() * most); };
            rects.emplace_back(at(1900), at(1000), at(40), at(60));
            all += rects.back();
        }
        const auto boxes = joined(rects);
        ASSERT_LE(boxes.size(), kMostBoxes);
        for (const QRect& box : boxes)
            all -= box;
        ASSERT_TRUE(all.isEmpty()) << "round " << round;
    }
}

}  // namespace
}  // namespace platform::wayland
