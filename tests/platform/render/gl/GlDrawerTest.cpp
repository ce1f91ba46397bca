// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/platform/render/gl/GlFixture.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FallingColumns.h"
#include "tests/support/Pictures.h"
#include "tests/support/RandomTree.h"
#include "tests/support/ReferenceDrawer.h"

namespace platform::test {

namespace {

// Into floats: single precision beside double, rounded to either side.
constexpr PictureLimits kFloatLimits{.largest = 1, .mean = 0.01};
// Where no more than two things lie over one another, as in rain. Both drawers
// round to 255ths with each thing that they draw, the processor in whole numbers,
// OpenGL's blending once for the thing and once for what lies below.
constexpr PictureLimits kLimits{.largest = 2, .mean = 0.1};
// The random trees pile up a dozen see-through things and more, and llvmpipe's
// blending rounds each; the float test beside shows that it is only that.
constexpr PictureLimits kHeapLimits{.largest = 6, .mean = 0.75};

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

TEST_P(GlAtScale, InFloatsRandomTreesLookAsTheRulesSay) {
    const PixelGrid grid{.scale = GetParam(), .size = {73, 61}};
    DisplayList list;
    for (std::uint64_t seed = 1; seed <= 60; ++seed) {
        RandomTree tree(seed, QSizeF(grid.size) / grid.scale, grid.scale, kClock);
        build(list, tree.root(), kClock + 0.7);
        const Rgba background = seed % 3 == 0 ? Rgba{} : kBlack;
        EXPECT_TRUE(agree(drawnInFloats(list, grid, background),
                          drawReference(list, grid, background),
                          named("floats-" + std::to_string(seed)), kFloatLimits));
    }
}

TEST_P(GlAtScale, RandomTreesLookAsTheProcessorDrawsThem) {
    const QSizeF size(160, 120);
    DisplayList list;
    for (std::uint64_t seed = 1; seed <= 60; ++seed) {
        RandomTree tree(seed, size, GetParam(), kClock);
        build(list, tree.root(), kClock + 0.7);
        const Rgba background = Rgba::from(QColor::fromRgbF(0.2F, 0.1F, 0.4F, 0.6F));
        EXPECT_TRUE(agree(drawn(list, grid(size), background),
                          drawCpu(list, grid(size), background),
                          named("random-" + std::to_string(seed)), kHeapLimits));
    }
}

TEST_P(GlAtScale, RainLooksAsTheProcessorDrawsIt) {
    const QSizeF size(400, 300);
    FallingColumns columns({.size = size, .scale = GetParam()});
    columns.fill(kClock);
    DisplayList list;
    for (int i = 0; i < 5; ++i) {
        columns.show(kClock + i * 0.7, list);
        EXPECT_TRUE(agree(drawn(list, grid(size)), drawCpu(list, grid(size), kBlack),
                          named("rain-" + std::to_string(i)), kLimits));
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, GlAtScale, testing::Values(1.0, 1.25, 2.0));

TEST_F(Gl, AFullScreenOfRainIsOneDrawCall) {
    for (const PixelGrid& grid : {PixelGrid{.scale = 1.0, .size = {1920, 1080}},
                                  PixelGrid{.scale = 2.0, .size = {5120, 2880}}}) {
        FallingColumns columns({.size = QSizeF(grid.size) / grid.scale, .scale = grid.scale});
        columns.fill(kClock);
        const DisplayList list = columns.shown(kClock);
        EXPECT_FALSE(drawn(list, grid).isNull());
        EXPECT_EQ(offscreen_->drawer().drawCalls(), 1);
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
    FallingColumns columns({.size = grid.size});
    columns.fill(kClock);
    DisplayList list;
    EXPECT_FALSE(drawn(list, grid).isNull());
    // The rain's whole course once, so that every list has been as long as it gets.
    for (int i = 0; i < 100; ++i) {
        columns.show(kClock + i * 0.05, list);
        offscreen_->drawer().draw(list, grid, kBlack);
    }
    for (int i = 0; i < 100; ++i) {
        columns.show(kClock + i * 0.05, list);
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
    const QImage image = noise({7, 5}, random);
    auto layer = std::make_shared<Layer>();
    layer->setContents(image);
    // 7.4 by 4.2 pixels: within less than one of the picture's own size.
    layer->setFrame({1.0, 2.0, 7.4, 4.2});
    const auto root = rootOf({12, 12});
    root->addSublayer(layer);
    DisplayList list;
    build(list, *root);
    const QImage picture = drawn(list, {.scale = 1.0, .size = {12, 12}});
    // The picture's lower left pixel lies at (1, 2); its top row, beyond the snapped edge, is cut
    // off.
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
    EXPECT_TRUE(agree(drawn(list, grid), drawCpu(list, grid, kBlack), "many-pieces", kLimits));
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
    FallingColumns columns({.size = grid.size});
    columns.fill(kClock);
    const DisplayList list = columns.shown(kClock);
    const QImage whole = drawn(list, grid);
    const auto limited = OffscreenPicture::create({.maxRecords = 60});
    ASSERT_TRUE(limited);
    EXPECT_TRUE(agree(limited->draw(list, grid, kBlack), whole, "several-calls", {}));
    EXPECT_GT(limited->drawer().drawCalls(), 4);
    EXPECT_EQ(limited->errors(), 0);
}

}  // namespace

}  // namespace platform::test
