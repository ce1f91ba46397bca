// SPDX-License-Identifier: MIT
// The kit draws on whole device pixels, at every scale and place.
#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <set>

#include "controls/BX.h"
#include "controls/BXBalken.h"
#include "controls/BXKeuzeVlak.h"
#include "controls/BXVlak.h"

using brixtel::BXBalken;
using brixtel::BXKeuzeVlak;
using brixtel::BXKleur;
using brixtel::BXTekening;
using brixtel::BXVlak;

namespace {

constexpr double kSchalen[] = {1.0, 1.25, 1.5, 1.75, 2.0, 3.0};
constexpr QPointF kPlaatsen[] = {{0.0, 0.0}, {1.0, 3.0}, {2.5, 7.25}, {0.3, 0.9}};

std::set<QRgb> kleuren(const QImage& beeld) {
    std::set<QRgb> gezien;
    for (int y = 0; y < beeld.height(); ++y)
        for (int x = 0; x < beeld.width(); ++x)
            gezien.insert(beeld.pixel(x, y));
    return gezien;
}

TEST(Raster, WholePointsStayTheyAre) {
    EXPECT_EQ(BXTekening::raster({3, 4, 13, 11}, 1.0), QRect(3, 4, 13, 11));
    EXPECT_EQ(BXTekening::raster({3, 4, 13, 11}, 2.0), QRect(6, 8, 26, 22));
}

TEST(Raster, WhatWasCentredStaysCentred) {
    for (const double schaal : {1.0, 1.5, 2.0, 3.0}) {
        const QRect buiten = BXTekening::raster({0, 0, 34, 16}, schaal);
        const QRect binnen = BXTekening::raster({2.5, 2.5, 29, 11}, schaal);
        EXPECT_EQ(binnen.top() - buiten.top(), buiten.bottom() - binnen.bottom()) << schaal;
        EXPECT_EQ(binnen.left() - buiten.left(), buiten.right() - binnen.right()) << schaal;
    }
}

TEST(Raster, NothingStaysNothing) {
    EXPECT_TRUE(BXTekening::raster({3, 4, 0, 11}, 1.5).isEmpty());
    EXPECT_TRUE(BXTekening::raster({3, 4, 5, -1}, 1.5).isEmpty());
}

TEST(Raster, WhatIsThinnerThanAPixelIsOneThick) {
    EXPECT_EQ(BXTekening::raster({3.4, 0, 0.1, 10}, 1.0).width(), 1);
}

TEST(Raster, ALineIsWholePixelsThickAndAtLeastOne) {
    EXPECT_EQ(BXTekening::lijnDikte(0.5), 1);
    EXPECT_EQ(BXTekening::lijnDikte(1.0), 1);
    EXPECT_EQ(BXTekening::lijnDikte(1.5), 1);
    EXPECT_EQ(BXTekening::lijnDikte(2.0), 2);
}

TEST(BXVlak, ItsEdgesAreSharpAtEveryScaleAndPlace) {
    BXVlak vlak;
    vlak.setSize({13, 11});
    vlak.zetKleur(Qt::red);
    vlak.zetRand(Qt::blue);
    for (const double schaal : kSchalen)
        for (const QPointF plaats : kPlaatsen) {
            const QImage beeld = vlak.beeld(plaats, schaal);
            EXPECT_EQ(kleuren(beeld), (std::set<QRgb>{0xFFFF0000, 0xFF0000FF}));
            const int dikte = BXTekening::lijnDikte(schaal);
            EXPECT_EQ(beeld.pixel(dikte - 1, beeld.height() / 2), 0xFF0000FF);
            EXPECT_EQ(beeld.pixel(dikte, beeld.height() / 2), 0xFFFF0000);
        }
}

TEST(BXVlak, AnOutlineDoesNotLieOverTheFill) {
    BXVlak vlak;
    vlak.setSize({10, 10});
    vlak.zetKleur(Qt::white);
    QColor half = Qt::black;
    half.setAlpha(128);
    vlak.zetRand(half);
    EXPECT_EQ(qAlpha(vlak.beeld({}, 1.0).pixel(0, 0)), 128);
}

TEST(BXVlak, WithRoundedCornersItsSidesAreSharp) {
    BXVlak vlak;
    vlak.setSize({40, 30});
    vlak.zetRand(Qt::blue);
    vlak.zetRonding(6);
    for (const double schaal : kSchalen) {
        const QImage beeld = vlak.beeld({1.0, 3.0}, schaal);
        const int dikte = BXTekening::lijnDikte(schaal);
        for (int i = 0; i < beeld.height() / 2; ++i) {
            const QRgb verwacht = i < dikte ? 0xFF0000FF : 0;
            ASSERT_EQ(beeld.pixel(beeld.width() / 2, i), verwacht) << schaal << " " << i;
        }
        EXPECT_EQ(qAlpha(beeld.pixel(0, 0)), 0);
    }
}

// The distance from the left at which a circle of that radius in the upper left corner
// begins, in a row of pixels.
double inham(double straal, int rij) {
    const double omhoog = std::max(0.0, straal - rij - 0.5);
    return straal - std::sqrt(straal * straal - omhoog * omhoog);
}
// Where the row's first pixel is that has anything in it, which may be the one
// before or after when the curve only grazes it.
int begin(const QImage& beeld, int rij) {
    int x = 0;
    while (x < beeld.width() && qAlpha(beeld.pixel(x, rij)) == 0)
        ++x;
    return x;
}

TEST(BXVlak, ACornerIsRoundedByItsRadius) {
    BXVlak vlak;
    vlak.setSize({40, 30});
    vlak.zetRand(Qt::blue);
    vlak.zetRonding(6);
    for (const double schaal : {1.0, 1.5, 2.0, 3.0}) {
        const QImage beeld = vlak.beeld({}, schaal);
        for (int rij = 1; rij < beeld.height() / 2; ++rij)
            EXPECT_NEAR(begin(beeld, rij), inham(6.0 * schaal, rij), 1.5) << schaal << " " << rij;
    }
}

TEST(BXVlak, ARuleIsAsThickAsAnOutlineWhereverItLies) {
    BXVlak liggend, staand;
    liggend.setSize({50, 1});
    staand.setSize({1, 50});
    liggend.zetDun(true);
    staand.zetDun(true);
    for (const double schaal : kSchalen)
        for (const QPointF plaats : kPlaatsen) {
            EXPECT_EQ(liggend.beeld(plaats, schaal).height(), BXTekening::lijnDikte(schaal));
            EXPECT_EQ(staand.beeld(plaats, schaal).width(), BXTekening::lijnDikte(schaal));
        }
}

TEST(BXVlak, WithoutASizeThereIsNoPicture) {
    EXPECT_TRUE(BXVlak().beeld({}, 1.0).isNull());
}

// The picture of so many bars, and how wide each is and where, in pixels.
struct Rij {
    std::vector<int> begin, breed;
    std::vector<QRgb> kleur;
};

Rij lees(const QImage& beeld) {
    Rij rij;
    for (int x = 0; x < beeld.width(); ++x) {
        const QRgb nu = beeld.pixel(x, 0), vorige = x == 0 ? 0 : beeld.pixel(x - 1, 0);
        if (nu == 0) continue;
        if (vorige != 0) {
            ++rij.breed.back();
            continue;
        }
        rij.begin.push_back(x);
        rij.breed.push_back(1);
        rij.kleur.push_back(nu);
    }
    return rij;
}

TEST(BXBalken, StandFourPointsApartAndAreEquallyWide) {
    for (const double schaal : kSchalen) {
        BXBalken balken;
        balken.zetAantal(20);
        balken.setSize({79, 11});
        const Rij rij = lees(balken.beeld({3.0, 1.0}, schaal));
        ASSERT_EQ(rij.begin.size(), 20U) << schaal;
        for (std::size_t i = 0; i < 20; ++i) {
            EXPECT_EQ(rij.begin[i], static_cast<int>(4.0 * static_cast<double>(i) * schaal));
            EXPECT_EQ(rij.breed[i], static_cast<int>(3.0 * schaal));
        }
    }
}

TEST(BXBalken, TheFirstAreLitAndTheRestDark) {
    BXBalken balken;
    balken.zetAantal(5);
    balken.zetGevuld(2);
    balken.setSize({19, 11});
    // Green is (0, 1, 0.255); dark (0, 0.34, 0.09), times its 0.55 as pictures keep it.
    const auto verwacht = [](QRgb is, int groen, int blauw, int dekking) {
        EXPECT_EQ(qAlpha(is), dekking);
        EXPECT_EQ(qRed(is), 0);
        EXPECT_NEAR(qGreen(is), groen, 1);
        EXPECT_NEAR(qBlue(is), blauw, 1);
    };
    const Rij rij = lees(balken.beeld({}, 1.0));
    ASSERT_EQ(rij.kleur.size(), 5U);
    for (const std::size_t i : {0U, 1U})
        verwacht(rij.kleur[i], 255, 65, 255);
    for (const std::size_t i : {2U, 3U, 4U})
        verwacht(rij.kleur[i], 48, 13, 140);
}

TEST(BXBalken, ANumberBelowNoneIsNone) {
    BXBalken balken;
    balken.zetAantal(-3);
    EXPECT_EQ(balken.aantal(), 0);
    EXPECT_EQ(balken.implicitWidth(), 0.0);
}

TEST(BXKeuzeVlak, TheChosenPartEndsOnAWholePixel) {
    BXKeuzeVlak vlak;
    vlak.setSize({100, 21});
    vlak.zetVan(30);
    vlak.zetTot(60);
    for (const double schaal : kSchalen) {
        const QImage beeld = vlak.beeld({}, schaal);
        const int midden = beeld.height() / 2;
        const int van = static_cast<int>(std::lround(30 * schaal));
        const int tot = static_cast<int>(std::lround(60 * schaal));
        EXPECT_EQ(beeld.pixel(van - 1, midden), 0U) << schaal;
        EXPECT_EQ(beeld.pixel(van, midden), BXKleur::bx().rgba()) << schaal;
        EXPECT_EQ(beeld.pixel(tot - 1, midden), BXKleur::bx().rgba()) << schaal;
        EXPECT_EQ(beeld.pixel(tot, midden), 0U) << schaal;
    }
}

TEST(BXKeuzeVlak, ItsOutlineIsOnePointOfMediumGreen) {
    BXKeuzeVlak vlak;
    vlak.setSize({100, 21});
    for (const double schaal : kSchalen) {
        const QImage beeld = vlak.beeld({}, schaal);
        const int midden = beeld.width() / 2, dikte = BXTekening::lijnDikte(schaal);
        for (int i = 0; i < beeld.height() / 2; ++i) {
            const QRgb verwacht = i < dikte ? BXKleur::bxMiddel().rgba() : 0;
            ASSERT_EQ(beeld.pixel(midden, i), verwacht) << schaal << " " << i;
            ASSERT_EQ(beeld.pixel(midden, beeld.height() - 1 - i), verwacht) << schaal << " " << i;
        }
    }
}

TEST(BXKeuzeVlak, IsRoundedByHalfItsHeight) {
    BXKeuzeVlak vlak;
    vlak.setSize({100, 20});
    vlak.zetTot(30);
    const QImage beeld = vlak.beeld({}, 1.0);
    EXPECT_EQ(qAlpha(beeld.pixel(0, 0)), 0) << "the corner lies outside, chosen or not";
    EXPECT_EQ(beeld.pixel(50, 0), BXKleur::bxMiddel().rgba());
    EXPECT_GT(qAlpha(beeld.pixel(0, 10)), 200);
    for (int rij = 1; rij < 10; ++rij)
        EXPECT_NEAR(begin(beeld, rij), inham(10.0, rij), 1.5) << rij;
}

}  // namespace
