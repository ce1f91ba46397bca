// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/platform/render/GlFixture.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/ExampleTrees.h"
#include "tests/support/Pictures.h"

namespace platform::test {

namespace {

// Both drawers round to 255ths with each thing that they draw: the processor in
// whole numbers, OpenGL's blending once for the thing and once for what lies
// below. So each may be one 255th off, each time, in either direction; what is
// drawn over it fades that, but a dozen half transparent things over one another
// leave up to four. (Into floats OpenGL differs by three at most, and those are
// the processor's.)
constexpr PictureLimits kRandomLimits{.largest = 4, .mean = 0.4};
// Where no more than two things lie over one another, as in rain.
constexpr PictureLimits kLimits{.largest = 2, .mean = 0.1};

QRgb at(const QImage& picture, int x, int y) {
    return picture.pixel(x, y);
}

std::shared_ptr<Layer> rootOf(QSizeF size) {
    auto root = std::make_shared<Layer>();
    root->setFrame({QPointF(0.0, 0.0), size});
    return root;
}

std::shared_ptr<Layer> coloured(const QRectF& frame, const QColor& colour) {
    auto layer = std::make_shared<Layer>();
    layer->setFrame(frame);
    layer->setBackgroundColor(colour);
    return layer;
}

class GlAtScale : public Gl, public testing::WithParamInterface<double> {
  protected:
    [[nodiscard]] PixelGrid grid(QSizeF points) const {
        return {.scale = GetParam(), .size = (points * GetParam()).toSize()};
    }
    [[nodiscard]] std::string named(const std::string& what) const {
        return what + "-" + std::to_string(GetParam()).substr(0, 4);
    }
};

TEST_P(GlAtScale, RandomTreesLookAsTheProcessorDrawsThem) {
    const QSizeF size(160, 120);
    DisplayList list;
    for (std::uint64_t seed = 1; seed <= 100; ++seed) {
        RandomSource random(seed);
        const auto root = randomTree(size, GetParam(), random);
        build(list, *root);
        const Rgba background = Rgba::from(QColor::fromRgbF(0.2F, 0.1F, 0.4F, 0.6F));
        EXPECT_TRUE(agree(drawn(list, grid(size), background),
                          drawnByCpu(list, grid(size), background),
                          named("random-" + std::to_string(seed)), kRandomLimits));
    }
}

TEST_P(GlAtScale, RainLooksAsTheProcessorDrawsIt) {
    const QSizeF size(400, 300);
    RandomSource random(5);
    const auto root = rainTree(size, GetParam(), kClock, random);
    DisplayList list;
    for (int i = 0; i < 5; ++i) {
        build(list, *root, kClock + i * 0.7);
        EXPECT_TRUE(agree(drawn(list, grid(size)), drawnByCpu(list, grid(size), kBlack),
                          named("rain-" + std::to_string(i)), kLimits));
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, GlAtScale, testing::Values(1.0, 1.25, 2.0));

TEST_F(Gl, AFullScreenOfRainIsOneDrawCall) {
    for (const PixelGrid& grid : {PixelGrid{.scale = 1.0, .size = {1920, 1080}},
                                  PixelGrid{.scale = 2.0, .size = {5120, 2880}}}) {
        RandomSource random(1);
        const auto root = rainTree(QSizeF(grid.size) / grid.scale, grid.scale, kClock, random);
        DisplayList list;
        build(list, *root);
        EXPECT_FALSE(drawn(list, grid).isNull());
        EXPECT_EQ(offscreen_->drawer().drawCalls(), 1);
        EXPECT_EQ(offscreen_->drawer().pictureCount() % 20, 0);
    }
}

TEST_F(Gl, AnEmptyListIsTheBackgroundAndNoDrawCall) {
    const QImage picture = drawn({}, {.scale = 1.0, .size = {8, 8}}, {0.5F, 0.0F, 0.25F, 0.5F});
    EXPECT_EQ(offscreen_->drawer().drawCalls(), 0);
    const auto pixel = reinterpret_cast<const QRgb*>(picture.constScanLine(3))[3];
    EXPECT_NEAR(qRed(pixel), 128, 1);
    EXPECT_EQ(qGreen(pixel), 0);
    EXPECT_NEAR(qBlue(pixel), 64, 1);
    EXPECT_NEAR(qAlpha(pixel), 128, 1);
}

TEST_F(Gl, ASteadyFrameAllocatesNothing) {
    const PixelGrid grid{.scale = 1.0, .size = {200, 150}};
    RandomSource random(3);
    const auto root = rainTree(grid.size, 1.0, kClock, random);
    DisplayList list;
    EXPECT_FALSE(drawn(list, grid).isNull());
    // The rain's whole course once, so that every list has been as long as it gets.
    for (int i = 0; i < 100; ++i) {
        build(list, *root, kClock + i * 0.05);
        offscreen_->drawer().draw(list, grid, kBlack);
    }
    for (int i = 0; i < 100; ++i) {
        build(list, *root, kClock + i * 0.05);
        const AllocationCounter counter;
        offscreen_->drawer().draw(list, grid, kBlack);
        ASSERT_EQ(counter.count(), 0U) << "frame " << i;
    }
}

TEST_F(Gl, EdgesLieOnWholePixels) {
    const auto root = rootOf({10, 10});
    root->addSublayer(coloured({2.4, 3.6, 3.0, 2.0}, Qt::red));
    DisplayList list;
    build(list, *root);
    const QImage picture = drawn(list, {.scale = 1.0, .size = {10, 10}});
    // From 2 to 5, and from 4 to 6 above the lower edge.
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 10; ++x) {
            const bool inside = x >= 2 && x < 5 && 9 - y >= 4 && 9 - y < 6;
            EXPECT_EQ(at(picture, x, y), inside ? qRgb(255, 0, 0) : qRgb(0, 0, 0))
                << x << ", " << y;
        }
    }
}

TEST_F(Gl, APictureOfTheRectanglesSizeIsShownPixelForPixel) {
    RandomSource random(4);
    const QImage image = noise({7, 5}, true, random);
    auto layer = std::make_shared<Layer>();
    layer->setContents(image);
    // 7.4 by 4.2 pixels: within less than one of the picture's own size.
    layer->setFrame({1.0, 2.0, 7.4, 4.2});
    const auto root = rootOf({12, 12});
    root->addSublayer(layer);
    DisplayList list;
    build(list, *root);
    const QImage picture = drawn(list, {.scale = 1.0, .size = {12, 12}});
    // Its lower left pixel at (1, 2); its top row, beyond the snapped edge, cut off.
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 7; ++x)
            EXPECT_EQ(at(picture, 1 + x, 11 - 2 - y), image.pixel(x, 4 - y)) << x << ", " << y;
    }
    EXPECT_EQ(at(picture, 8, 9), qRgb(0, 0, 0));
    EXPECT_EQ(at(picture, 1, 5), qRgb(0, 0, 0));
}

TEST_F(Gl, WhereNoPieceOfAMaskLiesNothingShows) {
    const auto root = rootOf({20, 20});
    const auto layer = coloured({0, 0, 20, 20}, Qt::green);
    const auto mask = std::make_shared<Layer>();
    mask->setFrame({0, 0, 20, 20});
    mask->addSublayer(coloured({5, 5, 4, 4}, QColor(255, 255, 255, 128)));
    mask->addSublayer(coloured({7, 5, 4, 4}, QColor(0, 0, 0, 128)));
    layer->setMask(mask);
    root->addSublayer(layer);
    DisplayList list;
    build(list, *root);
    const QImage picture = drawn(list, {.scale = 1.0, .size = {20, 20}});
    EXPECT_EQ(qGreen(at(picture, 4, 13)), 0);
    EXPECT_NEAR(qGreen(at(picture, 5, 13)), 128, 1);
    EXPECT_NEAR(qGreen(at(picture, 8, 13)), 192, 1);  // one over the other: a + b - ab
    EXPECT_NEAR(qGreen(at(picture, 10, 13)), 128, 1);
    EXPECT_EQ(qGreen(at(picture, 11, 13)), 0);
}

TEST_F(Gl, MasksOfManyPiecesAreDrawnAllTheSame) {
    const auto root = rootOf({64, 64});
    const auto layer = coloured({0, 0, 64, 64}, Qt::green);
    const auto mask = std::make_shared<Layer>();
    mask->setFrame({0, 0, 64, 64});
    RandomSource random(9);
    for (int i = 0; i < 40; ++i)
        mask->addSublayer(coloured({random.between(0, 60), random.between(0, 60), 6.0, 5.0},
                                   QColor(255, 255, 255, 100)));
    layer->setMask(mask);
    root->addSublayer(layer);
    DisplayList list;
    build(list, *root);
    const PixelGrid grid{.scale = 1.0, .size = {64, 64}};
    EXPECT_TRUE(agree(drawn(list, grid), drawnByCpu(list, grid, kBlack), "many-pieces", kLimits));
}

TEST_F(Gl, AGradientWithoutAnAxisShowsItsFirstColour) {
    auto gradient = std::make_shared<GradientLayer>();
    gradient->setFrame({0, 0, 4, 4});
    gradient->setStops({{0.0, Qt::red}, {1.0, Qt::blue}});
    gradient->setAxis({0.5, 0.5}, {0.5, 0.5});
    DisplayList list;
    build(list, *gradient);
    EXPECT_EQ(at(drawn(list, {.scale = 1.0, .size = {4, 4}}), 2, 2), qRgb(255, 0, 0));
}

TEST_F(Gl, AListTooLongForOneDrawCallIsDrawnInSeveral) {
    const PixelGrid grid{.scale = 1.0, .size = {320, 240}};
    RandomSource random(6);
    const auto root = rainTree(grid.size, 1.0, kClock, random);
    DisplayList list;
    build(list, *root);
    const QImage whole = drawn(list, grid);
    const auto limited = OffscreenPicture::create({.maxRecords = 60});
    ASSERT_TRUE(limited);
    EXPECT_TRUE(agree(limited->draw(list, grid, kBlack), whole, "several-calls", {}));
    EXPECT_GT(limited->drawer().drawCalls(), 4);
    EXPECT_EQ(limited->errors(), 0);
}

}  // namespace

}  // namespace platform::test
