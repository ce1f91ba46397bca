// SPDX-License-Identifier: MIT
#include "rain/MatrixRegen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>

#include "platform/layers/DisplayListBuilder.h"

using brixtel::MatrixRegen;
using brixtel::MatrixRegenOpties;
using platform::GradientLayer;
using platform::Layer;

namespace {

struct Proef {
    platform::ManualClock klok{500.0};
    platform::RandomSource toeval{42};

    std::unique_ptr<MatrixRegen> maak(MatrixRegenOpties opties) {
        return std::make_unique<MatrixRegen>(opties, klok, toeval);
    }
    platform::DisplayList lijst(const MatrixRegen& regen) {
        platform::DisplayList lijst;
        platform::DisplayListBuilder bouw(lijst, klok.now());
        bouw.add(*regen.laag(), {0, 0}, regen.laag()->frame());
        return lijst;
    }
};

std::size_t druppels(const MatrixRegen::Kolom& kolom) {
    return kolom.staart->mask()->sublayers().size();
}

// The pieces that show at this moment: what is drawn, and how much of it.
std::vector<QRectF> zichtbaar(const platform::DisplayList& lijst) {
    std::vector<QRectF> vakken;
    for (const auto& stuk : lijst.pieces)
        vakken.push_back(stuk.rect);
    return vakken;
}

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

const platform::KeyframeAnimation& val(const Layer& stuk) {
    return stuk.animation("val")->data();
}

TEST(MatrixRegen, EveryDropStepsDownRowByRowUntilItHasLeft) {
    Proef proef;
    const auto regen = proef.maak({.maat = {2000, 500}});
    // 500 / 26 rounds up to 20 rows, and one more.
    const double hoogte = 21 * 26;
    for (const auto& kolom : regen->kolommen()) {
        for (std::size_t i = 0; i < druppels(kolom); ++i) {
            const auto& staart =
                dynamic_cast<const GradientLayer&>(*kolom.staart->mask()->sublayers()[i]);
            const Layer& kop = *kolom.kop->mask()->sublayers()[i];
            const double spoor = staart.bounds().height();
            const int lengte = static_cast<int>(spoor / 26);
            EXPECT_GE(lengte, 8);
            EXPECT_LE(lengte, 26);
            EXPECT_EQ(staart.frame(), QRectF(0, hoogte, 21, spoor));
            EXPECT_EQ(kop.frame(), QRectF(0, hoogte, 21, 26));
            const auto& v = val(staart);
            ASSERT_EQ(v.values.size(), static_cast<std::size_t>(21 + lengte + 2));
            for (std::size_t m = 0; m < v.values.size(); ++m) {
                EXPECT_EQ(v.values[m], hoogte - 26.0 * static_cast<double>(m) + spoor / 2);
                EXPECT_EQ(val(kop).values[m], hoogte - 26.0 * static_cast<double>(m) + 13);
            }
            EXPECT_LE(v.values.back() + spoor / 2, 0.0);
            EXPECT_EQ(v.calculationMode, platform::CalculationMode::Discrete);
            EXPECT_EQ(v.timing.repeatCount, platform::kForever);
            EXPECT_FALSE(v.timing.removedOnCompletion);
            const double stap = v.timing.duration / (21 + lengte + 1);
            EXPECT_GE(stap, 0.05);
            EXPECT_LE(stap, 0.12);
            EXPECT_EQ(v.timing.time.beginTime, 500.0);
            EXPECT_GE(v.timing.time.timeOffset, 0.0);
            EXPECT_LT(v.timing.time.timeOffset, v.timing.duration);
            EXPECT_EQ(val(kop).timing.time, v.timing.time);
            EXPECT_EQ(val(kop).timing.duration, v.timing.duration);
        }
    }
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

TEST(MatrixRegen, SpeedBelow0_2CountsAs0_2) {
    const auto duur = [](double snelheid) {
        Proef proef;
        const auto regen = proef.maak({.maat = {100, 500}, .snelheid = snelheid});
        return val(*regen->kolommen().front().staart->mask()->sublayers().front()).timing.duration;
    };
    EXPECT_DOUBLE_EQ(duur(0.05), duur(0.2));
    EXPECT_DOUBLE_EQ(duur(-3), duur(0.2));
    EXPECT_DOUBLE_EQ(duur(0.2), 5 * duur(1.0));
    EXPECT_DOUBLE_EQ(duur(2.0), duur(1.0) / 2);
}

TEST(MatrixRegen, AColumnWithoutDropsIsBuiltAddedAndInvisible) {
    Proef proef;
    const auto regen = proef.maak({.maat = {500, 300}, .dichtheid = 0, .doorzichtig = true});
    EXPECT_EQ(regen->laag()->sublayers().size(), 2 * regen->kolommen().size());
    EXPECT_TRUE(proef.lijst(*regen).items.empty());
    const auto strook = [&] { return regen->kolommen().front().staart->contents().cacheKey(); };
    const auto eerst = strook();
    bool gewisseld = false;
    for (int i = 0; i < 400 && !gewisseld; ++i) {
        proef.klok.advance(0.09);
        gewisseld = strook() != eerst;
    }
    EXPECT_TRUE(gewisseld);  // the flicker picks it all the same
}

TEST(MatrixRegen, SeeThroughShowsNothingAtFirstAndEveryDropWithin2_2Seconds) {
    Proef proef;
    const auto regen = proef.maak({.maat = {2000, 600}, .dichtheid = 1, .doorzichtig = true});
    EXPECT_TRUE(proef.lijst(*regen).items.empty());
    for (const auto& kolom : regen->kolommen())
        for (const auto& stuk : kolom.staart->mask()->sublayers()) {
            EXPECT_GE(val(*stuk).timing.time.beginTime, 500.0);
            EXPECT_LE(val(*stuk).timing.time.beginTime, 502.2);
            EXPECT_EQ(val(*stuk).timing.time.timeOffset, 0.0);
        }
    // Two steps bring a drop from above the strip, over its overhang, into view.
    std::set<double> gezien;
    for (double t = 0.0; t < 2.2 + 2 * 0.12; t += 0.04) {
        proef.klok.advance(0.04);
        for (const auto& ding : proef.lijst(*regen).items)
            gezien.insert(ding.rect.left());
    }
    std::size_t metDruppel = 0;
    for (const auto& kolom : regen->kolommen())
        metDruppel += druppels(kolom) > 0 ? 1 : 0;
    EXPECT_EQ(gezien.size(), metDruppel);
}

TEST(MatrixRegen, OpaqueFillsTheScreenAtOnce) {
    Proef proef;
    const auto regen = proef.maak({.maat = {2000, 600}});
    const auto lijst = proef.lijst(*regen);
    EXPECT_GT(lijst.items.size(), regen->kolommen().size());
    // In every part of the screen something shows.
    for (double y = 0; y < 600; y += 100)
        EXPECT_TRUE(std::any_of(lijst.pieces.begin(), lijst.pieces.end(), [&](const auto& stuk) {
            return stuk.rect.intersects(QRectF(0, y, 2000, 100));
        })) << y;
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

TEST(MatrixRegen, StopOnAStillOneIsHarmless) {
    Proef proef;
    const auto regen = proef.maak({.maat = {300, 500}, .stil = true});
    regen->stop();
    regen->stop();
    EXPECT_FALSE(proef.lijst(*regen).items.empty());
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

TEST(MatrixRegen, TheFlickerChangesOneColumnPerTick) {
    Proef proef;
    const auto regen = proef.maak({.maat = {2000, 500}});
    EXPECT_DOUBLE_EQ(regen->flikker().interval(), 0.09);
    const auto stand = [&] {
        std::vector<qint64> sleutels;
        for (const auto& kolom : regen->kolommen())
            sleutels.push_back(kolom.staart->contents().cacheKey());
        return sleutels;
    };
    auto voor = stand();
    int wissels = 0;
    for (int tik = 0; tik < 200; ++tik) {
        proef.klok.advance(0.09);
        const auto na = stand();
        int anders = 0;
        for (std::size_t i = 0; i < na.size(); ++i)
            anders += na[i] != voor[i] ? 1 : 0;
        EXPECT_LE(anders, 1);
        wissels += anders;
        voor = na;
    }
    EXPECT_NEAR(wissels, 180, 20);  // one in ten draws the strip that is there already
}

TEST(MatrixRegen, StopHaltsTheFlickerAndTheRainFallsOn) {
    Proef proef;
    const auto regen = proef.maak({.maat = {600, 500}});
    regen->stop();
    EXPECT_EQ(proef.klok.timerCount(), 0U);
    const auto voor = zichtbaar(proef.lijst(*regen));
    proef.klok.advance(0.5);
    EXPECT_NE(zichtbaar(proef.lijst(*regen)), voor);
}

TEST(MatrixRegen, DroppingItEndsItsTimer) {
    Proef proef;
    auto regen = proef.maak({.maat = {600, 500}});
    EXPECT_EQ(proef.klok.timerCount(), 1U);
    regen.reset();
    EXPECT_EQ(proef.klok.timerCount(), 0U);
}

TEST(MatrixRegen, TempoZeroFreezesAndTempoOneResumesFromTheSamePicture) {
    Proef proef;
    const auto regen = proef.maak({.maat = {600, 500}});
    regen->stop();
    proef.klok.advance(3.21);
    const auto beeld = zichtbaar(proef.lijst(*regen));
    regen->zetTempo(0);
    EXPECT_EQ(zichtbaar(proef.lijst(*regen)), beeld);
    EXPECT_EQ(proef.lijst(*regen).nextChange, platform::kForever);
    proef.klok.advance(100.0);
    EXPECT_EQ(zichtbaar(proef.lijst(*regen)), beeld);
    regen->zetTempo(1);
    EXPECT_EQ(zichtbaar(proef.lijst(*regen)), beeld);

    // From here on it goes on as one that never stood still.
    Proef ander;
    const auto zonder = ander.maak({.maat = {600, 500}});
    zonder->stop();
    ander.klok.advance(3.21 + 0.4);
    proef.klok.advance(0.4);
    EXPECT_EQ(zichtbaar(proef.lijst(*regen)), zichtbaar(ander.lijst(*zonder)));
}

TEST(MatrixRegen, TempoKeepsThePhaseAndChangesTheRate) {
    Proef dubbel, enkel;
    const auto snel = dubbel.maak({.maat = {600, 500}});
    const auto gewoon = enkel.maak({.maat = {600, 500}});
    dubbel.klok.advance(2.0);
    snel->zetTempo(2);
    dubbel.klok.advance(1.5);
    enkel.klok.advance(2.0 + 2 * 1.5);
    EXPECT_EQ(zichtbaar(dubbel.lijst(*snel)), zichtbaar(enkel.lijst(*gewoon)));
}

TEST(MatrixRegen, TheSameSeedGivesTheSameRain) {
    Proef een, twee;
    const auto a = een.maak({.maat = {600, 500}});
    const auto b = twee.maak({.maat = {600, 500}});
    EXPECT_EQ(a->stroken().front(), b->stroken().front());
    EXPECT_EQ(zichtbaar(een.lijst(*a)), zichtbaar(twee.lijst(*b)));
}

}  // namespace
