// SPDX-License-Identifier: MIT
#include "platform/scene/Material.h"

#include <gtest/gtest.h>

using namespace platform;

namespace {

TEST(Material, StartsOpaqueClampedAndWritingDepth) {
    const Material material;
    EXPECT_TRUE(material.isOpaque());
    EXPECT_TRUE(material.writesDepth());
    EXPECT_FALSE(material.isDoubleSided());
    EXPECT_EQ(material.blendMode(), BlendMode::Alpha);
    EXPECT_EQ(material.wrapS(), WrapMode::Clamp);
    EXPECT_EQ(material.emission(), QColor(Qt::black));
}

TEST(Material, TheRevisionRisesWithEveryRealChangeOnly) {
    Material material{QColor(Qt::green)};
    const auto before = material.revision();
    material.setDiffuse(QColor(Qt::green));
    material.setDoubleSided(false);
    EXPECT_EQ(material.revision(), before);
    material.setDoubleSided(true);
    material.setContentsTransform(glm::dmat4(2.0));
    EXPECT_EQ(material.revision(), before + 2);
}

TEST(Material, TheSamePictureIsNoChange) {
    QImage picture(4, 4, QImage::Format_RGB32);
    Material material{Contents(picture)};
    const auto before = material.revision();
    material.setDiffuse(picture);
    EXPECT_EQ(material.revision(), before);
    picture.fill(Qt::red);
    material.setDiffuse(picture);
    EXPECT_EQ(material.revision(), before + 1);
    EXPECT_EQ(material.picture().cacheKey(), picture.cacheKey());
    EXPECT_FALSE(material.colour().isValid());
}

TEST(Material, AlphaInColourOrPictureMakesItBlended) {
    Material material(QColor(0, 255, 0, 200));
    EXPECT_FALSE(material.isOpaque());
    material.setDiffuse(QColor(0, 255, 0));
    EXPECT_TRUE(material.isOpaque());
    material.setDiffuse(QImage(2, 2, QImage::Format_ARGB32_Premultiplied));
    EXPECT_FALSE(material.isOpaque());
    material.setDiffuse(QImage(2, 2, QImage::Format_RGB32));
    EXPECT_TRUE(material.isOpaque());
}

TEST(Material, LightCommutesOnlyWithoutDepth) {
    Material material;
    EXPECT_FALSE(material.commutes());
    material.setBlendMode(BlendMode::Additive);
    EXPECT_FALSE(material.isOpaque());
    EXPECT_FALSE(material.commutes());
    material.setWritesDepth(false);
    EXPECT_TRUE(material.commutes());
}

TEST(Material, AnEmptyPictureDrawsNothing) {
    Material material;
    EXPECT_FALSE(material.drawsNothing());
    material.setDiffuse(QImage());
    EXPECT_TRUE(material.drawsNothing());
    EXPECT_TRUE(Material(Contents(QImage())).drawsNothing());
}

}  // namespace
