// SPDX-License-Identifier: MIT
#include "worlds/LandKaart.h"

#include <gtest/gtest.h>

#include <QBuffer>

#include "tests/support/TijdelijkeMap.h"

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

// libpng would print a line of its own.
TEST(LandKaart, ADamagedFileIsAnAbsentMapWithoutAWord) {
    QByteArray png;
    QBuffer naar(&png);
    ASSERT_TRUE(naar.open(QIODevice::WriteOnly));
    ASSERT_TRUE(zee({720, 360}, {0, 0}).save(&naar, "PNG"));
    const steun::TijdelijkeMap map;
    const auto breedteVan = [&](const QByteArray& bytes) {
        return LandKaart::uitBestand(map.bestand("kaart.png", bytes.toStdString())).breedte();
    };
    testing::internal::CaptureStderr();
    EXPECT_EQ(breedteVan(png), 720);
    for (const qsizetype lengte : {png.size() - 1, png.size() - 12, png.size() / 2, qsizetype{40},
                                   qsizetype{12}, qsizetype{8}, qsizetype{3}, qsizetype{0}})
        EXPECT_EQ(breedteVan(png.left(lengte)), 0) << lengte;
    // One byte of the size, of the pixels, of a checksum.
    for (const qsizetype plaats : {qsizetype{18}, png.size() / 2, png.size() - 1}) {
        QByteArray anders = png;
        anders[plaats] = static_cast<char>(anders[plaats] ^ 1);
        EXPECT_EQ(breedteVan(anders), 0) << plaats;
    }
    QByteArray lang = png;
    lang[8] = static_cast<char>(0xFF);  // a chunk of more than there is
    EXPECT_EQ(breedteVan(lang), 0);
    EXPECT_EQ(LandKaart::uitBestand("/no/such/map.png").breedte(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// --- the map that comes with the program ---

TEST(LandKaart, CoastsAreRecognisable) {
    const LandKaart& kaart = LandKaart::gedeeld();
    ASSERT_EQ(kaart.breedte(), 720);
    const std::pair<double, double> land[] = {
        {42.5, 13.0},   {39.3, 16.4},   {37.6, 14.2},                  // Italy's boot, Sicily
        {44.0, -84.6},  {46.4, -86.5},  {43.5, -80.5}, {44.5, -90.0},  // round the Great Lakes
        {36.2, 138.3},  {43.4, 142.8},  {32.7, 131.0},                 // Japan
        {-38.8, 176.0}, {-43.5, 171.5},                                // New Zealand
        {-19.0, 46.8},  {-23.5, 45.0}};                                // Madagascar
    for (const auto& [breedte, lengte] : land)
        EXPECT_TRUE(kaart.isLand(breedte, lengte)) << breedte << ", " << lengte;
    const std::pair<double, double> zee[] = {
        {43.2, 15.0},   {40.0, 12.0},   {38.5, 18.5},                                 // round Italy
        {47.6, -88.0},  {43.5, -87.0},  {44.8, -82.4}, {42.1, -81.2}, {43.6, -77.8},  // the Lakes
        {39.5, 135.0},  {33.0, 137.0},                                                // round Japan
        {-40.0, 170.0}, {-45.0, 176.0},  // round New Zealand
        {-19.0, 41.0},  {-19.0, 52.0}};  // round Madagascar
    for (const auto& [breedte, lengte] : zee)
        EXPECT_FALSE(kaart.isLand(breedte, lengte)) << breedte << ", " << lengte;
}

TEST(LandKaart, NoStripeRunsAcrossItAndAntarcticaIsClosed) {
    const LandKaart& kaart = LandKaart::gedeeld();
    for (double breedte = 89.75; breedte > -90.0; breedte -= 0.5) {
        int land = 0;
        for (double lengte = -179.75; lengte < 180.0; lengte += 0.5)
            land += kaart.isLand(breedte, lengte) ? 1 : 0;
        EXPECT_TRUE(breedte > -86.0 || land == 720) << breedte;
        EXPECT_TRUE(breedte < -60.0 || land < 600) << breedte;
    }
    // Chukotka, which the date line cuts, and the sea on either side.
    EXPECT_TRUE(kaart.isLand(67.5, 179.5));
    EXPECT_TRUE(kaart.isLand(67.5, -179.5));
    EXPECT_FALSE(kaart.isLand(60.0, 179.5));
    EXPECT_FALSE(kaart.isLand(60.0, -179.5));
}

}  // namespace
