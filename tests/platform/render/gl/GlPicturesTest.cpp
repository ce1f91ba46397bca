// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QColor>

#include "tests/platform/render/gl/GlFixture.h"
#include "tests/support/Pictures.h"

namespace platform::test {

namespace {

constexpr PixelGrid kGrid{.scale = 1.0, .size = {64, 64}};

std::shared_ptr<Layer> showing(const QImage& image) {
    auto layer = std::make_shared<Layer>();
    layer->setFrame({0.0, 0.0, 64.0, 64.0});
    layer->setContents(image);
    return layer;
}

class GlPictures : public Gl {
  protected:
    int kept(const DisplayList& list) {
        EXPECT_FALSE(drawn(list, kGrid).isNull());
        return offscreen_->drawer().pictureCount();
    }
    RandomSource random_{1};
};

TEST_F(GlPictures, APictureShownTwiceIsKeptOnce) {
    const QImage image = noise({64, 64}, random_);
    const auto root = showing(image);
    root->addSublayer(showing(image));
    DisplayList list;
    build(list, *root);
    EXPECT_EQ(kept(list), 1);
    EXPECT_EQ(kept(list), 1);
}

TEST_F(GlPictures, AChangedPictureIsAnotherOne) {
    QImage image = noise({64, 64}, random_);
    const auto root = showing(image);
    DisplayList list;
    build(list, *root);
    EXPECT_EQ(kept(list), 1);
    image.fill(Qt::red);
    root->setContents(image);
    build(list, *root);
    EXPECT_EQ(drawn(list, kGrid).pixel(5, 5), qRgb(255, 0, 0));
    EXPECT_EQ(offscreen_->drawer().pictureCount(), 2);
}

TEST_F(GlPictures, APictureNotShownForAWhileIsDropped) {
    offscreen_ = OffscreenPicture::create({.keepDraws = 3});
    const QImage first = noise({64, 64}, random_);
    const auto root = showing(first);
    DisplayList list;
    build(list, *root);
    EXPECT_EQ(kept(list), 1);
    root->setContents(noise({32, 64}, random_));
    build(list, *root);
    EXPECT_EQ(kept(list), 2);
    EXPECT_EQ(kept(list), 2);
    EXPECT_EQ(kept(list), 1);
    // And comes again.
    root->setContents(first);
    build(list, *root);
    EXPECT_TRUE(agree(drawn(list, kGrid), first, "again", {}));
}

TEST_F(GlPictures, TheRoomOfADroppedPictureIsUsedAgain) {
    offscreen_ = OffscreenPicture::create({.maxTexels = 2 * 64 * 64, .keepDraws = 1000});
    const auto root = showing({});
    DisplayList list;
    for (int i = 0; i < 20; ++i) {
        const QImage image = noise({64, 64}, random_);
        root->setContents(image);
        build(list, *root);
        ASSERT_TRUE(agree(drawn(list, kGrid), image, "reused-" + std::to_string(i), {}));
    }
    EXPECT_LE(offscreen_->drawer().pictureCount(), 2);
}

TEST_F(GlPictures, APictureLargerThanThereIsRoomForIsShownCoarser) {
    offscreen_ = OffscreenPicture::create({.maxTexels = 40 * 40});
    QImage halves(64, 64, QImage::Format_ARGB32_Premultiplied);
    halves.fill(Qt::blue);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 32; ++x)
            halves.setPixel(x, y, qRgb(255, 0, 0));
    }
    DisplayList list;
    build(list, *showing(halves));
    const QImage picture = drawn(list, kGrid);
    EXPECT_EQ(picture.pixel(8, 32), qRgb(255, 0, 0));
    EXPECT_EQ(picture.pixel(56, 32), qRgb(0, 0, 255));
}

TEST_F(GlPictures, WithoutAnyRoomOnlyThePictureIsMissing) {
    offscreen_ = OffscreenPicture::create({.maxTexels = 1});
    const auto root = showing(noise({1, 1}, random_));
    root->addSublayer(showing(noise({64, 64}, random_)));
    const auto corner = std::make_shared<Layer>();
    corner->setFrame({0, 0, 4, 4});
    corner->setBackgroundColor(Qt::green);
    root->addSublayer(corner);
    DisplayList list;
    build(list, *root);
    EXPECT_EQ(drawn(list, kGrid).pixel(2, 62), qRgb(0, 255, 0));
}

TEST_F(GlPictures, EveryFormatIsShown) {
    for (const QImage::Format format :
         {QImage::Format_ARGB32, QImage::Format_RGB32, QImage::Format_RGBA8888,
          QImage::Format_Grayscale8, QImage::Format_RGB888, QImage::Format_Indexed8}) {
        const QImage image = noise({63, 64}, random_).convertToFormat(format);
        const auto root = showing(image);
        root->setFrame({0, 0, 63, 64});
        DisplayList list;
        build(list, *root);
        EXPECT_TRUE(agree(drawn(list, {.scale = 1.0, .size = {63, 64}}), image,
                          "format-" + std::to_string(format), {}));
    }
}

TEST_F(GlPictures, RowsWithPaddingAreReadAsTheyLie) {
    const QImage wide = noise({80, 64}, random_);
    const QImage part(wide.constBits(), 64, 64, wide.bytesPerLine(), wide.format());
    DisplayList list;
    build(list, *showing(part));
    EXPECT_TRUE(agree(drawn(list, kGrid), wide.copy(0, 0, 64, 64), "padded", {}));
}

TEST_F(GlPictures, APictureLargerThanAnyTextureIsShown) {
    // A strip as long as that of a very tall screen, and a full-size picture.
    const QImage strip = noise({42, 20000}, random_);
    const auto root = showing(strip);
    root->setFrame({0, 64 - 20000, 42, 20000});
    DisplayList list;
    DisplayListBuilder(list, kClock).add(*root, {}, {0, 0, 64, 64});
    EXPECT_TRUE(
        agree(drawn(list, {.scale = 1.0, .size = {42, 64}}), strip.copy(0, 0, 42, 64), "tall", {}));
}

}  // namespace

}  // namespace platform::test
