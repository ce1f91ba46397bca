// SPDX-License-Identifier: MIT
// The rain's random choices, by their distribution: fixed seeds, exact sums.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/rain/RegenProef.h"

using Proef = brixtel::RegenProef;
using platform::GradientLayer;
using platform::Layer;

namespace {

const platform::AnimationTiming& tijd(const Layer& stuk) {
    return stuk.animation("val")->data().timing;
}

template <typename Doe>
void elkeDruppel(const brixtel::MatrixRegen& regen, Doe doe) {
    for (const auto& kolom : regen.kolommen())
        for (const auto& stuk : kolom.staart->mask()->sublayers())
            doe(dynamic_cast<const GradientLayer&>(*stuk));
}

int lengte(const Layer& stuk, double rijHoogte) {
    return static_cast<int>(stuk.bounds().height() / rijHoogte);
}

// The digit one, unlike the nought, has a block in the lower left corner of its cell.
int enen(const QImage& strook, int& cellen) {
    int aantal = 0;
    for (int y = strook.height() - 26; y >= 0; y -= 26, ++cellen)
        aantal += qAlpha(strook.pixel(4, y + 26 - 4 - 1)) == 255 ? 1 : 0;
    return aantal;
}

TEST(RegenKans, HalfOfTheDigitsAreOnesAndNoTwoStripsAreAlike) {
    Proef proef;
    const auto regen = proef.maak({.maat = {100, 2600}});
    std::set<int> verschillend;
    int cellen = 0;
    int som = 0;
    for (const QImage& strook : regen->stroken()) {
        const int aantal = enen(strook, cellen);
        verschillend.insert(aantal);
        som += aantal;
    }
    EXPECT_EQ(cellen, 10 * 101);
    EXPECT_NEAR(som, cellen / 2, 50);
    EXPECT_GT(verschillend.size(), 5U);
}

TEST(RegenKans, EveryStripHangsInATenthOfTheColumns) {
    Proef proef;
    const auto regen = proef.maak({.maat = {21 * 1000, 300}});
    std::map<qint64, int> per;
    for (const auto& kolom : regen->kolommen())
        ++per[kolom.staart->contents().cacheKey()];
    ASSERT_EQ(per.size(), 10U);
    for (const auto& [strook, aantal] : per)
        EXPECT_NEAR(aantal, 100, 35);
}

TEST(RegenKans, EveryLengthOfATrailComesAsOftenAsEveryOther) {
    for (const bool doorzichtig : {false, true}) {
        Proef proef;
        const auto regen =
            proef.maak({.maat = {40'000, 300}, .dichtheid = 1, .doorzichtig = doorzichtig});
        std::map<int, int> per;
        int som = 0;
        elkeDruppel(*regen, [&](const GradientLayer& staart) {
            ++per[lengte(staart, doorzichtig ? 30 : 26)];
            ++som;
        });
        const int soorten = doorzichtig ? 11 : 19;
        ASSERT_EQ(per.size(), static_cast<std::size_t>(soorten));
        EXPECT_EQ(per.begin()->first, doorzichtig ? 6 : 8);
        for (const auto& [cellen, aantal] : per)
            EXPECT_NEAR(aantal, som / soorten, som / soorten * 0.4) << cellen;
    }
}

// In four equal parts of the range lies a quarter each.
void verwachtEven(const std::vector<double>& waarden, double laag, double hoog) {
    ASSERT_GT(waarden.size(), 1000U);
    std::array<int, 4> per{};
    for (const double waarde : waarden) {
        const double deel = (waarde - laag) / (hoog - laag);
        ASSERT_GE(deel, -1e-9);
        ASSERT_LE(deel, 1.0 + 1e-9);
        ++per[static_cast<std::size_t>(std::clamp(deel * 4.0, 0.0, 3.0))];
    }
    for (const int aantal : per)
        EXPECT_NEAR(aantal, static_cast<double>(waarden.size()) / 4.0,
                    0.04 * static_cast<double>(waarden.size()));
}

TEST(RegenKans, TheTimesOfTheDropsAreSpreadOverTheirRanges) {
    Proef proef;
    const auto regen = proef.maak({.maat = {40'000, 500}, .dichtheid = 1});
    std::vector<double> stappen;
    std::vector<double> verschuivingen;
    elkeDruppel(*regen, [&](const GradientLayer& staart) {
        stappen.push_back(tijd(staart).duration / (21 + lengte(staart, 26) + 1));
        verschuivingen.push_back(tijd(staart).time.timeOffset / tijd(staart).duration);
    });
    verwachtEven(stappen, 0.05, 0.12);
    verwachtEven(verschuivingen, 0.0, 1.0);
}

TEST(RegenKans, SeeThroughDropsBeginSpreadOverTwoPointTwoSeconds) {
    Proef proef;
    const auto regen = proef.maak({.maat = {60'000, 300}, .dichtheid = 1, .doorzichtig = true});
    std::vector<double> begin;
    elkeDruppel(*regen, [&](const GradientLayer& staart) {
        begin.push_back(tijd(staart).time.beginTime - proef.klok.now());
    });
    verwachtEven(begin, 0.0, 2.2);
}

TEST(RegenKans, TheFlickerComesToEveryColumnAndEveryStrip) {
    Proef proef;
    const auto regen = proef.maak({.maat = {21 * 8, 300}});
    ASSERT_EQ(regen->kolommen().size(), 8U);
    std::vector<int> perKolom(8, 0);
    std::map<qint64, int> perStrook;
    for (int blik = 0; blik < 4000; ++blik) {
        std::vector<qint64> voor;
        for (const auto& kolom : regen->kolommen())
            voor.push_back(kolom.staart->contents().cacheKey());
        proef.klok.advance(0.09);
        for (std::size_t i = 0; i < voor.size(); ++i) {
            const qint64 nu = regen->kolommen()[i].staart->contents().cacheKey();
            if (nu == voor[i]) continue;
            ++perKolom[i];
            ++perStrook[nu];
        }
    }
    // One flicker in ten picks the strip that hangs there already.
    for (const int aantal : perKolom)
        EXPECT_NEAR(aantal, 450, 90);
    ASSERT_EQ(perStrook.size(), 10U);
    for (const auto& [strook, aantal] : perStrook)
        EXPECT_NEAR(aantal, 360, 80);
}

TEST(RegenKans, ATrailFadesOverItsWholeLength) {
    Proef proef;
    for (const bool doorzichtig : {false, true}) {
        const auto regen =
            proef.maak({.maat = {1000, 500}, .dichtheid = 1, .doorzichtig = doorzichtig});
        elkeDruppel(*regen, [](const GradientLayer& staart) {
            ASSERT_EQ(staart.stops().size(), 3U);
            EXPECT_FLOAT_EQ(staart.stops()[0].location, 0.0F);
            EXPECT_FLOAT_EQ(staart.stops()[1].location, 0.12F);
            EXPECT_FLOAT_EQ(staart.stops()[2].location, 1.0F);
            EXPECT_FLOAT_EQ(staart.stops()[0].colour.a, 1.0F);
            EXPECT_NEAR(staart.stops()[1].colour.a, 0.72F, 1e-4);
            EXPECT_FLOAT_EQ(staart.stops()[2].colour.a, 0.0F);
        });
    }
}

}  // namespace
