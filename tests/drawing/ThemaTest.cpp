// SPDX-License-Identifier: MIT
#include "drawing/Thema.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <limits>

using brixtel::Tekenvlak;
using brixtel::Thema;

namespace {

const auto kNiets = [](Tekenvlak&) {};

TEST(Thema, ThePaletteIsSrgbWithAlphaOne) {
    const struct {
        const QColor& kleur;
        double r, g, b;
    } palet[] = {{Thema::groen(), 0.0, 1.0, 0.255},     {Thema::middel(), 0.0, 0.72, 0.17},
                 {Thema::donker(), 0.0, 0.34, 0.09},    {Thema::wit(), 0.82, 1.0, 0.86},
                 {Thema::zwart(), 0.012, 0.028, 0.018}, {Thema::oranje(), 1.0, 0.72, 0.1},
                 {Thema::cijfer(), 0.03, 0.78, 0.11},   {Thema::cijferFel(), 0.42, 1.0, 0.42}};
    for (const auto& [kleur, r, g, b] : palet) {
        EXPECT_NEAR(kleur.redF(), r, 1e-5);
        EXPECT_NEAR(kleur.greenF(), g, 1e-5);
        EXPECT_NEAR(kleur.blueF(), b, 1e-5);
        EXPECT_EQ(kleur.alphaF(), 1.0F);
    }
    EXPECT_EQ(&Thema::groen(), &Thema::groen());
}

TEST(Thema, TheFontIsMonospacedInBothWeights) {
    for (const bool vet : {false, true}) {
        const QFont font = Thema::font(20, {.vet = vet});
        EXPECT_EQ(font.bold(), vet);
        EXPECT_EQ(font.pixelSize(), 20);
        EXPECT_TRUE(QFontInfo(font).fixedPitch());
        const QFontMetricsF maten(font);
        EXPECT_DOUBLE_EQ(maten.horizontalAdvance(u'i'), maten.horizontalAdvance(u'M'));
    }
}

TEST(Thema, PictureOf0_4By10AtScale2Is1By20Pixels) {
    const auto beeld = Thema::beeld({0.4, 10}, {.schaal = 2, .teken = kNiets});
    ASSERT_TRUE(beeld);
    EXPECT_EQ(beeld->size(), QSize(1, 20));
    EXPECT_EQ(beeld->format(), QImage::Format_ARGB32_Premultiplied);
}

TEST(Thema, TheSidesOfAPictureAreRoundedUp) {
    const std::tuple<QSizeF, double, QSize> gevallen[]{
        {{10.1, 10.4}, 1.0, {11, 11}},
        {{10.6, 10.0}, 1.0, {11, 10}},
        {{3.3, 7.1}, 1.5, {5, 11}},
        {{0.01, 0.01}, 2.0, {1, 1}},
    };
    for (const auto& [maat, schaal, pixels] : gevallen)
        EXPECT_EQ(Thema::beeld(maat, {.schaal = schaal, .teken = kNiets})->size(), pixels)
            << maat.width() << ' ' << schaal;
}

TEST(Thema, PictureOfWidthZeroIsNoneAndIsNotDrawn) {
    bool getekend = false;
    EXPECT_FALSE(Thema::beeld({0, 10}, {.teken = [&](Tekenvlak&) { getekend = true; }}));
    EXPECT_FALSE(Thema::beeld({10, -3}, {.teken = [&](Tekenvlak&) { getekend = true; }}));
    EXPECT_FALSE(getekend);
}

TEST(Thema, PictureTooLargeForMemoryIsNone) {
    EXPECT_FALSE(Thema::beeld({1e9, 1e9}, {.teken = kNiets}));
}

TEST(ThemaDeathTest, PictureOfNoNumberOfPixelsStopsTheProcess) {
    const double geen = std::numeric_limits<double>::quiet_NaN();
    EXPECT_DEATH(Thema::beeld({geen, 10}, {.teken = kNiets}), "");
    EXPECT_DEATH(Thema::beeld({1e300, 10}, {.teken = kNiets}), "");
}

TEST(Thema, APictureHasItsOriginAtTheLowerLeftInPoints) {
    const auto beeld =
        Thema::beeld({4, 3}, {.schaal = 2, .teken = [](Tekenvlak& vlak) {
                                  vlak.painter().fillRect(QRectF(0, 0, 1, 1), Qt::red);
                              }});
    ASSERT_TRUE(beeld);
    EXPECT_EQ(beeld->pixel(0, 5), qRgb(255, 0, 0));
    EXPECT_EQ(beeld->pixel(1, 4), qRgb(255, 0, 0));
    EXPECT_EQ(qAlpha(beeld->pixel(2, 5)), 0);
    EXPECT_EQ(qAlpha(beeld->pixel(0, 0)), 0);
}

// The columns that hold ink, in points.
std::pair<int, int> inkt(const QImage& beeld) {
    int van = beeld.width(), tot = -1;
    for (int x = 0; x < beeld.width(); ++x)
        for (int y = 0; y < beeld.height(); ++y)
            if (qAlpha(beeld.pixel(x, y)) > 60) {
                van = std::min(van, x);
                tot = std::max(tot, x);
            }
    return {van, tot};
}

QImage tekstBeeld(const Thema::TekstOpties& opties, const QString& tekst) {
    return *Thema::beeld({200, 100},
                         {.teken = [&](Tekenvlak& vlak) { Thema::tekst(tekst, opties, vlak); }});
}

TEST(Thema, CentredTextStartsHalfItsWidthToTheLeft) {
    const QFont font = Thema::font(20);
    const QString tekst = QStringLiteral("MM");
    const double breed = Thema::breedte(tekst, {.font = font});
    const QImage midden =
        tekstBeeld({.font = font, .kleur = Qt::white, .op = {100, 50}, .midden = true}, tekst);
    const QImage links = tekstBeeld(
        {.font = font, .kleur = Qt::white, .op = {100 - breed / 2, 50}, .midden = false}, tekst);
    EXPECT_EQ(midden, links);
    EXPECT_GE(inkt(midden).first, 100 - breed / 2 - 1);
    EXPECT_LE(inkt(midden).second, 100 + breed / 2 + 1);
}

TEST(Thema, CentredTextOfWidth40At100StartsAt80OnTheSameBaseline) {
    QFont font = Thema::font(20);
    const QString tekst = QStringLiteral("MM");
    font.setLetterSpacing(QFont::AbsoluteSpacing,
                          20.0 - Thema::breedte(tekst, {.font = font}) / 2.0);
    ASSERT_NEAR(Thema::breedte(tekst, {.font = font}), 40.0, 0.02);
    EXPECT_EQ(
        tekstBeeld({.font = font, .kleur = Qt::white, .op = {100, 50}, .midden = true}, tekst),
        tekstBeeld({.font = font, .kleur = Qt::white, .op = {80, 50}}, tekst));
}

TEST(Thema, TextStandsUprightOnItsBaseline) {
    const QImage beeld = tekstBeeld({.font = Thema::font(40), .kleur = Qt::white, .op = {20, 50}},
                                    QStringLiteral("L"));
    // The bar of an L lies at its foot, just above the baseline at row 50.
    const auto inRij = [&](int y) {
        int n = 0;
        for (int x = 0; x < 200; ++x)
            n += qAlpha(beeld.pixel(x, y)) > 128 ? 1 : 0;
        return n;
    };
    EXPECT_GT(inRij(48), 2 * inRij(30));
    EXPECT_GT(inRij(30), 0);
    EXPECT_EQ(inRij(52), 0);
}

TEST(Thema, TextLeavesTheDrawingStateAsItWas) {
    Thema::beeld({50, 50}, {.teken = [](Tekenvlak& vlak) {
                     const QTransform voor = vlak.painter().transform();
                     Thema::tekst(QStringLiteral("x"),
                                  {.font = Thema::font(12), .kleur = Qt::white, .op = {5, 5}},
                                  vlak);
                     EXPECT_EQ(vlak.painter().transform(), voor);
                 }});
}

TEST(Thema, WidthCountsTrailingSpaces) {
    const QFont font = Thema::font(12);
    EXPECT_GT(Thema::breedte(QStringLiteral("ab "), {.font = font}),
              Thema::breedte(QStringLiteral("ab"), {.font = font}) + 1);
}

TEST(Thema, BitsGivesThatManyZeroesAndOnes) {
    platform::RandomSource toeval(1);
    EXPECT_EQ(Thema::bits(0, toeval), QString());
    EXPECT_EQ(Thema::bits(8, toeval).size(), 8);
    const QString veel = Thema::bits(10'000, toeval);
    EXPECT_EQ(veel.count(u'0') + veel.count(u'1'), 10'000);
    EXPECT_NEAR(veel.count(u'1'), 5'000, 300);
}

TEST(ThemaDeathTest, ANegativeNumberOfBitsStopsTheProcess) {
    platform::RandomSource toeval(1);
    EXPECT_DEATH(Thema::bits(-1, toeval), "");
}

}  // namespace
