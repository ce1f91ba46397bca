// SPDX-License-Identifier: MIT
#include "platform/render/cpu/CpuDrawer.h"

#include <gtest/gtest.h>

#include "tests/support/CpuPicture.h"

using namespace platform;

namespace {

// A picture as rows of its pixels, top row first.
std::vector<std::vector<QRgb>> rowsOf(const QImage& image) {
    std::vector<std::vector<QRgb>> rows;
    for (int y = 0; y < image.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        rows.emplace_back(row, row + image.width());
    }
    return rows;
}

constexpr QRgb kOn = 0xFFFFFFFF;
constexpr QRgb kOff = 0xFF000000;

QImage image(const std::vector<std::vector<QRgb>>& rows) {
    QImage made(static_cast<int>(rows.front().size()), static_cast<int>(rows.size()),
                QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < made.height(); ++y)
        std::copy(rows[static_cast<std::size_t>(y)].begin(),
                  rows[static_cast<std::size_t>(y)].end(),
                  reinterpret_cast<QRgb*>(made.scanLine(y)));
    return made;
}

constexpr QRgb grey(int v) {
    return qRgba(v, v, v, 255);
}

class CpuDrawing : public testing::Test {
  protected:
    CpuDrawing() { root.addSublayer(layer); }

    [[nodiscard]] std::vector<std::vector<QRgb>> drawn(int width, int height, double scale = 1.0) {
        const PixelGrid grid{.scale = scale, .size = {width, height}};
        root.setFrame({QPointF(), QSizeF(grid.size) / scale});
        return rowsOf(drawCpu(listOf(root, grid), grid));
    }

    Layer root;
    std::shared_ptr<GradientLayer> layer = std::make_shared<GradientLayer>();
};

TEST_F(CpuDrawing, EdgesLieOnWholePixels) {
    layer->setBackgroundColor(Qt::white);
    layer->setFrame({0.6, 0.4, 1.0, 1.6});
    EXPECT_EQ(drawn(3, 3), (std::vector<std::vector<QRgb>>{
                               {kOff, kOff, kOff}, {kOff, kOn, kOff}, {kOff, kOn, kOff}}));
}

TEST_F(CpuDrawing, FollowsTheScale) {
    layer->setBackgroundColor(Qt::white);
    layer->setFrame({0.5, 0.0, 1.0, 0.5});
    EXPECT_EQ(drawn(4, 2, 2.0),
              (std::vector<std::vector<QRgb>>{{kOff, kOff, kOff, kOff}, {kOff, kOn, kOn, kOff}}));
}

TEST_F(CpuDrawing, APictureThatFitsIsDrawnPixelForPixelFromItsLowerLeft) {
    const auto picture = image({{grey(10), grey(20)}, {grey(30), grey(40)}});
    layer->setContents(picture);
    layer->setFrame({0.4, 0.3, 2.0, 2.0});
    EXPECT_EQ(drawn(3, 3),
              (std::vector<std::vector<QRgb>>{
                  {kOff, kOff, kOff}, {grey(10), grey(20), kOff}, {grey(30), grey(40), kOff}}));
}

TEST_F(CpuDrawing, APictureAFractionTooLargeLosesItsTopAndRight) {
    layer->setContents(image({{grey(10), grey(20)}, {grey(30), grey(40)}}));
    layer->setFrame({0.0, 0.0, 1.25, 1.25});
    EXPECT_EQ(drawn(2, 2), (std::vector<std::vector<QRgb>>{{kOff, kOff}, {grey(30), kOff}}));
}

TEST_F(CpuDrawing, APictureAFractionTooSmallLeavesTheTopAndRightFree) {
    layer->setContents(image({{grey(40)}}));
    layer->setFrame({0.0, 0.0, 1.75, 1.75});
    EXPECT_EQ(drawn(2, 2), (std::vector<std::vector<QRgb>>{{kOff, kOff}, {grey(40), kOff}}));
}

TEST_F(CpuDrawing, OtherPicturesAreStretchedBetweenPixelCentres) {
    layer->setContents(image({{grey(0), grey(200)}}));
    layer->setFrame({0.0, 0.0, 4.0, 1.0});
    EXPECT_EQ(drawn(4, 1),
              (std::vector<std::vector<QRgb>>{{grey(0), grey(50), grey(150), grey(200)}}));
}

TEST_F(CpuDrawing, StretchingGoesDownwardsToo) {
    layer->setContents(image({{grey(200)}, {grey(0)}}));
    layer->setFrame({0.0, 0.0, 1.0, 4.0});
    EXPECT_EQ(drawn(1, 4),
              (std::vector<std::vector<QRgb>>{{grey(200)}, {grey(150)}, {grey(50)}, {grey(0)}}));
}

TEST_F(CpuDrawing, PicturesOfOtherFormatsAreDrawnToo) {
    const QImage picture = image({{qPremultiply(qRgba(200, 100, 50, 128))}});
    layer->setFrame({0.0, 0.0, 1.0, 1.0});
    layer->setContents(picture);
    const auto expected = drawn(1, 1);
    layer->setContents(picture.convertToFormat(QImage::Format_RGBA8888_Premultiplied));
    EXPECT_EQ(drawn(1, 1), expected);
    QImage opaque(1, 1, QImage::Format_RGB32);
    opaque.fill(QColor(1, 2, 3));
    layer->setContents(opaque);
    EXPECT_EQ(drawn(1, 1), (std::vector<std::vector<QRgb>>{{qRgba(1, 2, 3, 255)}}));
}

TEST_F(CpuDrawing, AGradientIsTakenAtPixelCentresFromBottomToTop) {
    layer->setStops(
        {{.location = 0.0, .colour = Qt::black}, {.location = 1.0, .colour = Qt::white}});
    layer->setFrame({0.0, 0.0, 1.0, 5.0});
    EXPECT_EQ(drawn(1, 5), (std::vector<std::vector<QRgb>>{{grey(230)},  // 0.9 * 255 = 229.5
                                                           {grey(179)},
                                                           {grey(128)},
                                                           {grey(77)},
                                                           {grey(26)}}));
}

TEST_F(CpuDrawing, AGradientLiesInTheRectangleBeforeSnapping) {
    layer->setStops(
        {{.location = 0.0, .colour = Qt::black}, {.location = 1.0, .colour = Qt::white}});
    layer->setAxis({0.0, 0.0}, {1.0, 0.0});
    layer->setFrame({0.25, 0.0, 2.5, 1.0});
    EXPECT_EQ(drawn(3, 1), (std::vector<std::vector<QRgb>>{{grey(26), grey(128), grey(230)}}));
}

TEST_F(CpuDrawing, AGradientsEndColoursExtend) {
    layer->setStops(
        {{.location = 0.25, .colour = QColor(40, 40, 40)}, {.location = 0.5, .colour = Qt::white}});
    layer->setAxis({0.0, 0.0}, {1.0, 0.0});
    layer->setFrame({0.0, 0.0, 8.0, 1.0});
    const auto row = drawn(8, 1).front();
    EXPECT_EQ(row[0], grey(40));
    EXPECT_EQ(row[1], grey(40));
    for (std::size_t i = 4; i < 8; ++i)
        EXPECT_EQ(row[i], kOn);
}

TEST_F(CpuDrawing, AGradientWithoutAnAxisShowsItsFirstColour) {
    layer->setStops(
        {{.location = 0.0, .colour = QColor(40, 40, 40)}, {.location = 1.0, .colour = Qt::white}});
    layer->setAxis({0.5, 0.5}, {0.5, 0.5});
    layer->setFrame({0.0, 0.0, 2.0, 1.0});
    EXPECT_EQ(drawn(2, 1), (std::vector<std::vector<QRgb>>{{grey(40), grey(40)}}));
}

TEST_F(CpuDrawing, OpacityAndMaskMultiply) {
    layer->setBackgroundColor(Qt::white);
    layer->setFrame({0.0, 0.0, 2.0, 1.0});
    layer->setOpacity(0.5);
    const auto mask = std::make_shared<Layer>();
    mask->setFrame({0.0, 0.0, 1.0, 1.0});
    mask->setBackgroundColor(QColor(255, 0, 0, 51));
    layer->setMask(mask);
    EXPECT_EQ(drawn(2, 1), (std::vector<std::vector<QRgb>>{{grey(26), kOff}}));
}

TEST_F(CpuDrawing, PiecesOfAMaskLieOverOneAnother) {
    layer->setBackgroundColor(Qt::white);
    layer->setFrame({0.0, 0.0, 3.0, 1.0});
    const auto mask = std::make_shared<Layer>();
    mask->setFrame({0.0, 0.0, 3.0, 1.0});
    for (const double x : {0.0, 1.0}) {
        auto piece = std::make_shared<Layer>();
        piece->setFrame({x, 0.0, 2.0, 1.0});
        piece->setBackgroundColor(QColor(0, 0, 0, 51));
        mask->addSublayer(piece);
    }
    layer->setMask(mask);
    // 0.2, then 0.2 + 0.2 - 0.04, then 0.2.
    EXPECT_EQ(drawn(3, 1), (std::vector<std::vector<QRgb>>{{grey(51), grey(92), grey(51)}}));
}

TEST_F(CpuDrawing, NestedMasksMultiply) {
    const auto white = [](const QRectF& frame, const QColor& colour) {
        auto made = std::make_shared<Layer>();
        made->setFrame(frame);
        made->setBackgroundColor(colour);
        return made;
    };
    layer->setBackgroundColor(Qt::white);
    layer->setFrame({0.0, 0.0, 2.0, 1.0});
    layer->setMask(white({0.0, 0.0, 2.0, 1.0}, QColor(0, 0, 0, 51)));
    root.setMask(white({0.0, 0.0, 1.0, 1.0}, QColor(0, 0, 0, 102)));
    EXPECT_EQ(drawn(2, 1), (std::vector<std::vector<QRgb>>{{grey(20), kOff}}));
}

TEST_F(CpuDrawing, ClipsToTheBoundsThatMask) {
    root.setMasksToBounds(true);
    const PixelGrid grid{.scale = 1.0, .size = {3, 1}};
    root.setFrame({0.0, 0.0, 2.0, 1.0});
    layer->setBackgroundColor(Qt::white);
    layer->setFrame({1.0, 0.0, 5.0, 1.0});
    EXPECT_EQ(rowsOf(drawCpu(listOf(root, grid), grid)),
              (std::vector<std::vector<QRgb>>{{kOff, kOn, kOff}}));
}

TEST_F(CpuDrawing, ASeeThroughBackgroundKeepsItsAlpha) {
    layer->setBackgroundColor(QColor(255, 255, 255, 128));
    layer->setFrame({0.0, 0.0, 1.0, 1.0});
    const PixelGrid grid{.scale = 1.0, .size = {2, 1}};
    EXPECT_EQ(rowsOf(drawCpu(listOf(*layer, grid), grid, {})),
              (std::vector<std::vector<QRgb>>{{0x80808080, 0}}));
}

TEST_F(CpuDrawing, TouchesNoPixelOutsideTheRectangles) {
    const PixelGrid grid{.scale = 1.0, .size = {6, 4}};
    root.setFrame({QPointF(), grid.size});
    layer->setBackgroundColor(Qt::white);
    layer->setFrame({1.0, 0.0, 5.0, 4.0});
    QImage picture(8, 4, QImage::Format_ARGB32_Premultiplied);
    constexpr QRgb kOld = 0xFF112233;
    picture.fill(kOld);
    PixelBuffer target = bufferOf(picture);
    target.size = grid.size;
    const std::vector<QRect> rects{{0, 1, 2, 2}, {1, 2, 2, 1}, {5, 3, 10, 10}, {-5, -5, 6, 6}};
    CpuDrawer().draw(listOf(root, grid), grid, rects, kBlack, target);
    EXPECT_EQ(rowsOf(picture),
              (std::vector<std::vector<QRgb>>{{kOff, kOld, kOld, kOld, kOld, kOld, kOld, kOld},
                                              {kOff, kOn, kOld, kOld, kOld, kOld, kOld, kOld},
                                              {kOff, kOn, kOn, kOld, kOld, kOld, kOld, kOld},
                                              {kOld, kOld, kOld, kOld, kOld, kOn, kOld, kOld}}));
}

TEST_F(CpuDrawing, DrawingTwiceIsTheSameAsOnce) {
    const PixelGrid grid{.scale = 1.0, .size = {4, 4}};
    root.setFrame({QPointF(), grid.size});
    layer->setBackgroundColor(QColor(200, 100, 50, 77));
    layer->setFrame({0.0, 0.0, 3.0, 3.0});
    const DisplayList list = listOf(root, grid);
    QImage picture = drawCpu(list, grid);
    const QImage once = picture.copy();
    const std::vector<QRect> rects{picture.rect(), {1, 1, 2, 2}};
    CpuDrawer().draw(list, grid, rects, kBlack, bufferOf(picture));
    EXPECT_EQ(picture, once);
}

TEST_F(CpuDrawing, NoRectanglesOrAnEmptyListAreNoError) {
    const PixelGrid grid{.scale = 1.0, .size = {2, 1}};
    QImage picture(2, 1, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::red);
    CpuDrawer().draw({}, grid, {}, kBlack, bufferOf(picture));
    EXPECT_EQ(rowsOf(picture).front(), std::vector<QRgb>(2, 0xFFFF0000));
    EXPECT_EQ(rowsOf(drawCpu({}, grid)).front(), std::vector<QRgb>(2, kOff));
}

}  // namespace
