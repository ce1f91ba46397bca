// SPDX-License-Identifier: MIT
// The rain's movement.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/rain/RegenProef.h"

using Proef = brixtel::RegenProef;
using platform::GradientLayer;
using platform::Layer;

namespace {

// The pieces that show at this moment: what is drawn, and how much of it.
std::vector<QRectF> zichtbaar(const platform::DisplayList& lijst) {
    std::vector<QRectF> vakken;
    for (const auto& stuk : lijst.pieces)
        vakken.push_back(stuk.rect);
    return vakken;
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

TEST(MatrixRegen, StopOnAStillOneIsHarmless) {
    Proef proef;
    const auto regen = proef.maak({.maat = {300, 500}, .stil = true});
    regen->stop();
    regen->stop();
    EXPECT_FALSE(proef.lijst(*regen).items.empty());
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

    // The rain goes on like a rain that never stood still.
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
