// SPDX-License-Identifier: MIT
// The layers of the rain.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>

#include "drawing/BlokCijfer.h"
#include "drawing/Thema.h"
#include "tests/rain/RegenProef.h"

using brixtel::BlokCijfer;
using brixtel::Tekenvlak;
using brixtel::Thema;
using Proef = brixtel::RegenProef;
using platform::GradientLayer;
using platform::Layer;

namespace {

TEST(MatrixRegen, TheRootFillsTheAreaAndClips) {
    Proef proef;
    const auto regen = proef.maak({.maat = {640, 480}});
    EXPECT_EQ(regen->laag()->frame(), QRectF(0, 0, 640, 480));
    EXPECT_TRUE(regen->laag()->masksToBounds());
}

TEST(MatrixRegen, OpaqueMeasuresFollowFromTheGlyph) {
    Proef proef;
    const auto regen = proef.maak({.maat = {1920, 1080}, .schaal = 2});
    // Glyph 14.5 × 20.5: columns of 21, rows of 26, one row more than fits.
    ASSERT_EQ(regen->kolommen().size(), 91U);
    const QRectF eerste = regen->kolommen().front().staart->frame();
    EXPECT_EQ(eerste, QRectF(4.5, 1080 - 43 * 26, 21, 43 * 26));
    EXPECT_EQ(regen->kolommen()[90].kop->frame().left(), 4.5 + 90 * 21);
    EXPECT_EQ(regen->stroken().front().size(), QSize(42, 2 * 43 * 26));
}

TEST(MatrixRegen, SeeThroughMeasuresFollowFromTheLargerGlyph) {
    Proef proef;
    const auto regen = proef.maak({.maat = {1000, 500}, .doorzichtig = true});
    // Glyph 17 × 24: columns of 25, rows of 30.
    EXPECT_EQ(regen->kolommen().size(), 40U);
    EXPECT_EQ(regen->kolommen().front().staart->frame(), QRectF(0, 500 - 18 * 30, 25, 18 * 30));
}

TEST(MatrixRegen, TenStripsInTwoColoursFromTheSameBits) {
    Proef proef;
    const auto regen = proef.maak({.maat = {300, 200}});
    ASSERT_EQ(regen->stroken().size(), 10U);
    ASSERT_EQ(regen->kopStroken().size(), 10U);
    for (std::size_t i = 0; i < 10; ++i) {
        const QImage& gewoon = regen->stroken()[i];
        const QImage& fel = regen->kopStroken()[i];
        // Blocks are opaque in both; where the one has a block, so has the other.
        for (int y = 0; y < gewoon.height(); ++y)
            for (int x = 0; x < gewoon.width(); ++x)
                ASSERT_EQ(qAlpha(gewoon.pixel(x, y)) > 250, qAlpha(fel.pixel(x, y)) > 250);
    }
}

TEST(MatrixRegen, TheDigitIsCentredInItsCellSnappedToHalfPoints) {
    Proef proef;
    const auto regen = proef.maak({.maat = {300, 200}, .schaal = 2});
    const QImage& strook = regen->stroken().front();
    // x = round(21 − 14.5) / 2 = 3.5 points; y = round(26 − 20.5) / 2 = 3 points.
    int links = strook.width(), laag = 0;
    for (int y = 0; y < strook.height(); ++y)
        for (int x = 0; x < strook.width(); ++x)
            if (qAlpha(strook.pixel(x, y)) == 255) {
                links = std::min(links, x);
                laag = std::max(laag, y);
            }
    EXPECT_EQ(links, 7);
    EXPECT_EQ(laag, strook.height() - 1 - 6);
}

// Reads a strip's digits from its picture: of the two, only the one has a block
// in the lower left corner.
std::vector<bool> leesBits(const QImage& strook, QPointF hoek, double rijHoogte, double schaal) {
    std::vector<bool> bits;
    for (double y = strook.height() / schaal - rijHoogte; y >= 0.0; y -= rijHoogte) {
        const QPointF punt = hoek + QPointF(1.0, y + 1.0);
        bits.push_back(
            qAlpha(strook.pixel(static_cast<int>(punt.x() * schaal),
                                strook.height() - 1 - static_cast<int>(punt.y() * schaal))) == 255);
    }
    return bits;
}

struct Uitvoering {
    bool doorzichtig;
    double blok, rijHoogte;
    QPointF hoek;  // of a digit in its cell
    double vervaging;
    QColor schaduw;
};

TEST(MatrixRegen, AStripIsItsDigitsFromTheTopEachOnItsShadow) {
    const double schaal = 2.0;
    for (const Uitvoering& u :
         {Uitvoering{false, 2.5, 26, {3.5, 3}, 2.0, QColor::fromRgbF(0.03F, 0.78F, 0.11F, 0.45F)},
          Uitvoering{true, 3.0, 30, {4, 3}, 2.5, Qt::black}}) {
        Proef proef;
        const auto regen =
            proef.maak({.maat = {100, 200}, .schaal = schaal, .doorzichtig = u.doorzichtig});
        for (std::size_t i = 0; i < regen->stroken().size(); ++i) {
            const QImage& strook = regen->stroken()[i];
            const auto bits = leesBits(strook, u.hoek, u.rijHoogte, schaal);
            const auto hertekend = [&](const QColor& kleur) {
                return Thema::beeld(
                    QSizeF(strook.size()) / schaal,
                    {.schaal = schaal, .teken = [&](Tekenvlak& vlak) {
                         vlak.zetSchaduw({.vervaging = u.vervaging, .kleur = u.schaduw});
                         double y = strook.height() / schaal;
                         for (const bool bit : bits) {
                             y -= u.rijHoogte;
                             BlokCijfer::teken(bit,
                                               {.linksonder = u.hoek + QPointF(0, y),
                                                .blok = u.blok,
                                                .spleet = 0.5,
                                                .kleur = kleur},
                                               vlak);
                         }
                     }});
            };
            EXPECT_EQ(strook, hertekend(Thema::cijfer()));
            EXPECT_EQ(regen->kopStroken()[i], hertekend(Thema::cijferFel()));
        }
    }
}

TEST(MatrixRegen, TheGlowIsGreenAndSoftAndTheSeeThroughShadowBlack) {
    Proef proef;
    for (const bool doorzichtig : {false, true}) {
        const auto regen = proef.maak({.maat = {100, 200}, .doorzichtig = doorzichtig});
        int zacht = 0;
        for (const QImage& strook : regen->kopStroken())
            for (int y = 0; y < strook.height(); ++y)
                for (int x = 0; x < 3; ++x) {  // left of any block
                    const QRgb pixel = strook.pixel(x, y);
                    if (qAlpha(pixel) == 0) continue;
                    ++zacht;
                    if (doorzichtig)
                        EXPECT_EQ(pixel & 0xFFFFFFU, 0U);
                    else
                        EXPECT_GE(qGreen(pixel), qRed(pixel));
                }
        EXPECT_GT(zacht, 100);
    }
}

TEST(MatrixRegen, AColumnShowsTheSameStripInTailAndHead) {
    Proef proef;
    const auto regen = proef.maak({.maat = {800, 400}});
    const auto index = [](const std::vector<QImage>& stroken, const QImage& strook) {
        for (std::size_t i = 0; i < stroken.size(); ++i)
            if (stroken[i].cacheKey() == strook.cacheKey()) return static_cast<int>(i);
        return -1;
    };
    const auto klopt = [&] {
        for (const auto& kolom : regen->kolommen()) {
            const int i = index(regen->stroken(), kolom.staart->contents());
            ASSERT_GE(i, 0);
            ASSERT_EQ(i, index(regen->kopStroken(), kolom.kop->contents()));
        }
    };
    klopt();
    proef.klok.advance(30.0);  // some 333 flickers later
    klopt();
}

TEST(MatrixRegen, HeadAboveTailInEveryColumn) {
    Proef proef;
    const auto regen = proef.maak({.maat = {200, 200}});
    const auto& lagen = regen->laag()->sublayers();
    ASSERT_EQ(lagen.size(), 2 * regen->kolommen().size());
    for (std::size_t i = 0; i < regen->kolommen().size(); ++i) {
        EXPECT_EQ(lagen[2 * i], regen->kolommen()[i].staart);
        EXPECT_EQ(lagen[2 * i + 1], regen->kolommen()[i].kop);
    }
}

TEST(MatrixRegen, AWidthSmallerThanOneColumnStillYieldsOneCentredColumn) {
    Proef proef;
    const auto regen = proef.maak({.maat = {10, 300}});
    ASSERT_EQ(regen->kolommen().size(), 1U);
    EXPECT_EQ(regen->kolommen().front().staart->frame().left(), -5.5);
}

TEST(MatrixRegen, DensityZeroGivesOneDropPerColumnWhenOpaque) {
    Proef proef;
    const auto regen = proef.maak({.maat = {4000, 300}, .dichtheid = 0});
    for (const auto& kolom : regen->kolommen())
        EXPECT_EQ(druppels(kolom), 1U);
}

TEST(MatrixRegen, DensityZeroGivesNoDropsWhenSeeThroughUnlessStill) {
    Proef proef;
    const auto regen = proef.maak({.maat = {4000, 300}, .dichtheid = 0, .doorzichtig = true});
    for (const auto& kolom : regen->kolommen())
        EXPECT_EQ(druppels(kolom), 0U);
    const auto stil =
        proef.maak({.maat = {4000, 300}, .dichtheid = 0, .doorzichtig = true, .stil = true});
    for (const auto& kolom : stil->kolommen())
        EXPECT_EQ(druppels(kolom), 1U);
}

// The average number of drops per column over many columns.
double gemiddeld(Proef& proef, double dichtheid, bool doorzichtig) {
    const auto regen =
        proef.maak({.maat = {60'000, 20}, .dichtheid = dichtheid, .doorzichtig = doorzichtig});
    std::size_t som = 0;
    for (const auto& kolom : regen->kolommen())
        som += druppels(kolom);
    return static_cast<double>(som) / static_cast<double>(regen->kolommen().size());
}

TEST(MatrixRegen, DensitySetsHowManyDropsAColumnGets) {
    Proef proef;
    EXPECT_NEAR(gemiddeld(proef, 0.7, false), 1 + (0.35 + 0.65 * 0.7) + 0.7 * 0.7, 0.05);
    EXPECT_NEAR(gemiddeld(proef, 1.0, false), 2 + 0.7, 0.05);
    EXPECT_NEAR(gemiddeld(proef, 0.7, true), 0.25 + 0.6 * 0.7, 0.05);
    EXPECT_NEAR(gemiddeld(proef, 0.2, true), 0.25 + 0.6 * 0.2, 0.05);
}

TEST(MatrixRegen, TheTrailFadesFromItsLeadingEndUpwards) {
    Proef proef;
    const auto regen = proef.maak({.maat = {100, 500}});
    const auto& staart = dynamic_cast<const GradientLayer&>(
        *regen->kolommen().front().staart->mask()->sublayers().front());
    ASSERT_EQ(staart.stops().size(), 3U);
    EXPECT_FLOAT_EQ(staart.stops()[0].colour.a, 1.0F);
    EXPECT_FLOAT_EQ(staart.stops()[1].location, 0.12F);
    EXPECT_NEAR(staart.stops()[1].colour.a, 0.72F, 1e-4);
    EXPECT_FLOAT_EQ(staart.stops()[2].colour.a, 0.0F);
    EXPECT_EQ(staart.start(), QPointF(0.5, 0));
    EXPECT_EQ(staart.end(), QPointF(0.5, 1));
    const auto& kop = *regen->kolommen().front().kop->mask()->sublayers().front();
    EXPECT_EQ(kop.backgroundColor(), QColor(Qt::white));
}

TEST(MatrixRegen, SeeThroughTrailsAreShorter) {
    Proef proef;
    const auto regen = proef.maak({.maat = {20'000, 300}, .doorzichtig = true});
    std::set<int> lengtes;
    for (const auto& kolom : regen->kolommen())
        for (const auto& stuk : kolom.staart->mask()->sublayers())
            lengtes.insert(static_cast<int>(stuk->bounds().height() / 30));
    EXPECT_EQ(*lengtes.begin(), 6);
    EXPECT_EQ(*lengtes.rbegin(), 16);
}

TEST(MatrixRegen, StillPlacesEveryDropFullyWithinTheStripAndHasNoTimer) {
    Proef proef;
    const auto regen = proef.maak({.maat = {20'000, 500}, .stil = true});
    EXPECT_EQ(proef.klok.timerCount(), 0U);
    EXPECT_FALSE(regen->flikker().isValid());
    std::set<int> rijen;
    for (const auto& kolom : regen->kolommen())
        for (std::size_t i = 0; i < druppels(kolom); ++i) {
            const Layer& kop = *kolom.kop->mask()->sublayers()[i];
            const Layer& staart = *kolom.staart->mask()->sublayers()[i];
            EXPECT_EQ(kop.animation("val"), nullptr);
            EXPECT_EQ(staart.animation("val"), nullptr);
            EXPECT_EQ(kop.frame().top(), staart.frame().top());
            rijen.insert(static_cast<int>((21 * 26 - kop.frame().top()) / 26));
        }
    // The strip has 21 rows: stops 4 up to and including 18.
    EXPECT_EQ(*rijen.begin(), 4);
    EXPECT_EQ(*rijen.rbegin(), 18);
    EXPECT_EQ(rijen.size(), 15U);
}

TEST(MatrixRegenDeathTest, AStillOneNeedsMoreThanSixRows) {
    Proef proef;
    EXPECT_DEATH(proef.maak({.maat = {300, 5 * 26}, .stil = true}), "");
    EXPECT_NE(proef.maak({.maat = {300, 5 * 26 + 1}, .stil = true}), nullptr);
}

TEST(MatrixRegenDeathTest, ASizeThatIsNoNumberOfRowsStopsTheProcess) {
    Proef proef;
    const double oneindig = std::numeric_limits<double>::infinity();
    EXPECT_DEATH(proef.maak({.maat = {300, oneindig}}), "");
    EXPECT_DEATH(proef.maak({.maat = {oneindig, 300}}), "");
    EXPECT_DEATH(proef.maak({.maat = {300, -500}}), "");
}

TEST(MatrixRegen, WithoutStripsTheLayerStaysEmptyAndThereIsNoTimer) {
    Proef proef;
    const auto regen = proef.maak({.maat = {300, 500}, .schaal = 0});
    EXPECT_TRUE(regen->stroken().empty());
    EXPECT_TRUE(regen->kolommen().empty());
    EXPECT_TRUE(regen->laag()->sublayers().empty());
    EXPECT_EQ(proef.klok.timerCount(), 0U);
}

}  // namespace
