// SPDX-License-Identifier: MIT
// Whether the counting of flashes counts them.
#include "tests/support/FlashAnalysis.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <cmath>

namespace {

constexpr QSize kSize(48, 27);
constexpr double kRate = 60.0;

// Flashes so many times a second between two colours, in a part of the picture.
FlashAnalysis flashing(double perSecond, QColor one, QColor other, QRect where = {{}, kSize}) {
    FlashAnalysis analysis;
    QImage picture(kSize, QImage::Format_RGB32);
    for (int frame = 0; frame < 240; ++frame) {
        const double time = frame / kRate;
        const bool on = std::fmod(time * perSecond, 1.0) < 0.5;
        picture.fill(other);
        QPainter(&picture).fillRect(where, on ? one : other);
        analysis.add(picture, time);
    }
    return analysis;
}

TEST(FlashAnalysisTest, CountsTheFlashesOfASecond) {
    for (const int times : {1, 2, 3, 4, 5})
        EXPECT_EQ(flashing(times, Qt::white, Qt::black).generalFlashes(), times);
}

TEST(FlashAnalysisTest, ASmallChangeIsNone) {
    // Relative luminances of 0.10 and 0.17, and of 0.10 and 0.25.
    EXPECT_EQ(flashing(5, QColor(115, 115, 115), QColor(89, 89, 89)).generalFlashes(), 0);
    EXPECT_EQ(flashing(5, QColor(137, 137, 137), QColor(89, 89, 89)).generalFlashes(), 5);
    // Between two that are both bright.
    EXPECT_EQ(flashing(5, QColor(255, 255, 255), QColor(235, 235, 235)).generalFlashes(), 0);
}

TEST(FlashAnalysisTest, ASmallPlaceIsNone) {
    // The fields are 16 by 9: less than a quarter flashes, and then more.
    EXPECT_EQ(flashing(5, Qt::white, Qt::black, {16, 9, 7, 5}).generalFlashes(), 0);
    EXPECT_EQ(flashing(5, Qt::white, Qt::black, {16, 9, 8, 5}).generalFlashes(), 5);
}

TEST(FlashAnalysisTest, RedCountsByItself) {
    const FlashAnalysis red = flashing(4, QColor(150, 0, 0), Qt::black);
    EXPECT_EQ(red.redFlashes(), 4);
    EXPECT_EQ(red.generalFlashes(), 0);
    EXPECT_EQ(flashing(4, Qt::green, Qt::black).redFlashes(), 0);
}

TEST(FlashAnalysisTest, LightIsRelativeLuminance) {
    EXPECT_NEAR(flashing(0, Qt::green, Qt::black).meanLight(), 0.7152, 1e-4);
}

}  // namespace
