// SPDX-License-Identifier: MIT
// Whole pictures of points: their size, their place and their light.
#include "platform/scene/Shading.h"
#include "tests/platform/render/gl/ScenePictures.h"
#include "tests/support/Pictures.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {
namespace {

using ScenePointsTest = ScenePictures;

TEST_F(ScenePointsTest, PointsAreRoundAndAsWideAtEveryDensity) {
    Stage stage;
    stage.add(makePoints({{0.02F, 0.01F, -1}}, 6.0, constant(QColor(0, 188, 0))), {});
    for (const double scale : {1.0, 2.0}) {
        const QImage image = snapshot_->picture(stage.list(), QSizeF(32, 32), scale);
        const double area = 0.25 * kPi * 36.0 * scale * scale;
        EXPECT_NEAR(lightOf(image) / srgbDecode(188 / 255.0), area, 0.05 * area);
    }
}

TEST_F(ScenePointsTest, APointsLightLiesRoundItsPlace) {
    constexpr int kSide = 32;  // pixels; two units across at this depth
    for (const float shift : {0.0F, 0.3F, 0.5F, 0.8F}) {
        Stage stage;
        const float right = shift * 2.0F / kSide;
        const float up = 0.5F * right;
        stage.add(makePoints({{right, up, -1}}, 6.0, constant(QColor(0, 188, 0))), {});
        // Surfaces make the picture multisampled.
        stage.add(square(0.1, constant(QColor(Qt::black))), {-0.5, -0.5, -1.0});
        const QImage image = picture(stage, {kSide, kSide});
        double sum = 0.0, x = 0.0, y = 0.0;
        for (int row = 0; row < kSide; ++row)
            for (int column = 0; column < kSide; ++column) {
                const double light = srgbDecode(green(image, column, row) / 255.0);
                sum += light;
                x += light * (column + 0.5);
                y += light * (row + 0.5);
            }
        EXPECT_NEAR(x / sum, 0.5 * kSide + shift, 0.1) << shift;
        EXPECT_NEAR(y / sum, 0.5 * kSide - 0.5 * shift, 0.1) << shift;
    }
}

TEST_F(ScenePointsTest, PointsOfSeveralSizesAreDrawnAtOnceEachInItsOwn) {
    const auto light = [this](bool large, bool small) {
        Stage stage;
        QColor half(0, 188, 0);
        half.setAlphaF(0.5F);
        if (large)
            stage.add(makePoints({{0.41F, 0.01F, -1}}, 9.0, constant(QColor(0, 188, 0))), {});
        if (small) stage.add(makePoints({{-0.4F, 0.01F, -1}}, 4.0, constant(half)), {});
        return lightOf(picture(stage, {64, 64}));
    };
    const double one = light(true, false);
    const int calls = snapshot_->renderer().drawCalls();
    const double other = light(false, true);
    EXPECT_NEAR(light(true, true), one + other, 0.02 * one);
    EXPECT_EQ(snapshot_->renderer().drawCalls(), calls);
    EXPECT_NEAR(other / one, 0.5 * 16.0 / 81.0, 0.02);
}

TEST_F(ScenePointsTest, APointIsNeverThinnerThanAPixel) {
    Stage stage;
    stage.add(makePoints({{0.0F, 0.0F, -1}}, 0.1, constant(QColor(0, 188, 0))), {});
    const double light = lightOf(picture(stage, {33, 33})) / srgbDecode(188 / 255.0);
    EXPECT_NEAR(light, 1.0, 0.35);
}

// The camera's own angle would show three quarters of the height that the square picture shows.
TEST_F(ScenePointsTest, APointIsNoLargerThanItsShareOfTheHeightAtTheCamerasOwnAngle) {
    for (const int height : {64, 160}) {
        Stage stage;
        stage.add(makeGeometry({.primitive = Primitive::Points,
                                .positions = {{0.02F, 0.01F, -1}},
                                .indices = {0},
                                .pointSize = 8.0,
                                .pointHeightShare = 0.0625},
                               constant(QColor(0, 188, 0))),
                  {});
        const double across = std::min(8.0, 0.75 * 0.0625 * height);
        const double area = 0.25 * kPi * across * across;
        EXPECT_NEAR(lightOf(picture(stage, {height, height})) / srgbDecode(188 / 255.0), area,
                    0.08 * area);
    }
}

// Shares of the height that are less than a pixel.
TEST_F(ScenePointsTest, APointWhoseShareOfTheHeightIsLessThanAPixelHasLessLight) {
    const auto light = [this](double share) {
        Stage stage;
        stage.add(makeGeometry({.primitive = Primitive::Points,
                                .positions = {{0.0F, 0.0F, -1}},
                                .indices = {0},
                                .pointSize = 8.0,
                                .pointHeightShare = share},
                               constant(QColor(0, 255, 0))),
                  {});
        return lightOf(picture(stage, {64, 64}));
    };
    const double pixel = 1.0 / (0.75 * 64.0);
    const double whole = light(pixel);
    ASSERT_GT(whole, 0.5);
    EXPECT_NEAR(light(0.8 * pixel) / whole, 0.64, 0.02);
    EXPECT_NEAR(light(0.5 * pixel) / whole, 0.25, 0.02);
}

// A dot between two pixels covers half of each. Another lies behind, drawn later.
TEST_F(ScenePointsTest, TheRimOfAPointHidesNoPointBehind) {
    const auto light = [this](std::initializer_list<float> depths) {
        Stage stage;
        for (const float depth : depths)
            stage.add(makePoints({{depth / 33.0F, 0.0F, -depth}}, 1.0, constant(QColor(0, 188, 0))),
                      {});
        return lightOf(picture(stage, {33, 33}));
    };
    EXPECT_NEAR(light({1.0F, 1.2F}) / light({1.0F}), 1.5, 0.05);
}

}  // namespace
}  // namespace platform::test
