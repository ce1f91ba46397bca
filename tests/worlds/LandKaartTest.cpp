// SPDX-License-Identifier: MIT
#include "worlds/LandKaart.h"

#include <gtest/gtest.h>

using brixtel::LandKaart;

namespace {

// White but for one black pixel.
QImage zee(QSize maat, QPoint land) {
    QImage beeld(maat, QImage::Format_ARGB32);
    beeld.fill(Qt::white);
    beeld.setPixelColor(land, Qt::black);
    return beeld;
}

TEST(LandKaart, NorthWestIsTheFirstByte) {
    const LandKaart kaart(zee({720, 360}, {0, 0}));
    EXPECT_EQ(kaart.breedte(), 720);
    EXPECT_EQ(kaart.hoogte(), 360);
    EXPECT_TRUE(kaart.isLand(90.0, -180.0));
    EXPECT_TRUE(kaart.isLand(89.6, -179.6));
    EXPECT_FALSE(kaart.isLand(89.6, -179.4));
    EXPECT_FALSE(kaart.isLand(89.4, -179.6));
    EXPECT_FALSE(kaart.isLand(-90.0, 180.0));
}

TEST(LandKaart, SouthEastIsTheLastByteClamped) {
    const LandKaart kaart(zee({720, 360}, {719, 359}));
    EXPECT_TRUE(kaart.isLand(-90.0, 180.0));
    EXPECT_TRUE(kaart.isLand(-89.6, 179.6));
    EXPECT_FALSE(kaart.isLand(90.0, -180.0));
}

TEST(LandKaart, WithTheMapAbsentAllIsSea) {
    for (const LandKaart& kaart : {LandKaart(), LandKaart(QImage())}) {
        EXPECT_EQ(kaart.breedte(), 0);
        EXPECT_EQ(kaart.hoogte(), 0);
        for (double breedte = -90.0; breedte <= 90.0; breedte += 15.0)
            for (double lengte = -180.0; lengte <= 180.0; lengte += 15.0)
                EXPECT_FALSE(kaart.isLand(breedte, lengte));
    }
}

TEST(LandKaart, AMapOfAnotherSizeIsFitted) {
    QImage beeld(1440, 720, QImage::Format_ARGB32);
    beeld.fill(Qt::white);
    for (int y = 0; y < 360; ++y)
        for (int x = 720; x < 1440; ++x)
            beeld.setPixelColor(x, y, Qt::black);
    const LandKaart kaart(beeld);
    EXPECT_TRUE(kaart.isLand(45.0, 90.0));
    EXPECT_FALSE(kaart.isLand(45.0, -90.0));
    EXPECT_FALSE(kaart.isLand(-45.0, 90.0));
}

TEST(LandKaart, WhereThePictureIsClearThereIsSea) {
    QImage beeld(720, 360, QImage::Format_ARGB32);
    beeld.fill(Qt::transparent);
    EXPECT_FALSE(LandKaart(beeld).isLand(10.0, 10.0));
}

TEST(LandKaart, LandIsDarkerThan128) {
    QImage beeld(720, 360, QImage::Format_ARGB32);
    beeld.fill(QColor(127, 127, 127));
    EXPECT_TRUE(LandKaart(beeld).isLand(0.0, 0.0));
    beeld.fill(QColor(128, 128, 128));
    EXPECT_FALSE(LandKaart(beeld).isLand(0.0, 0.0));
}

}  // namespace
