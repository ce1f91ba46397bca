// SPDX-License-Identifier: MIT
// The rain's random choices: each draw of a source of the same seed in its order, and their
// distribution over fixed seeds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
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

// Four standard deviations of how often one of so many even choices comes.
double vierSigma(int keren, int keuzes) {
    const double kans = 1.0 / keuzes;
    return 4.0 * std::sqrt(keren * kans * (1.0 - kans));
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

// The draws of a rain of that size, one by one, from a source of the same seed.
class Trekking {
  public:
    Trekking(const Proef& proef, brixtel::MatrixRegenOpties opties)
        : toeval_(proef.toeval), opties_(opties), nu_(proef.klok.now()) {}

    // Whether the digits of the ten strips are the first draws.
    void stroken(const brixtel::MatrixRegen& regen) {
        for (const QImage& strook : regen.stroken())
            for (int rij = 0; rij < rijen(); ++rij)
                ASSERT_EQ(isEen(strook, rij), toeval_.coin()) << "row " << rij;
    }
    void kolom(const brixtel::MatrixRegen& regen, const brixtel::MatrixRegen::Kolom& kolom) {
        const auto strook = toeval_.below(10);
        EXPECT_EQ(kolom.staart->contents().cacheKey(), regen.stroken()[strook].cacheKey());
        EXPECT_EQ(kolom.kop->contents().cacheKey(), regen.kopStroken()[strook].cacheKey());
        ASSERT_EQ(brixtel::druppels(kolom), druppels());
        for (std::size_t i = 0; i < brixtel::druppels(kolom); ++i)
            druppel(*kolom.staart->mask()->sublayers()[i], *kolom.kop->mask()->sublayers()[i]);
    }
    // No draw is left over: the next one of both sources is the same.
    void eindigtBij(platform::RandomSource toeval) { EXPECT_EQ(toeval.bits(), toeval_.bits()); }

  private:
    [[nodiscard]] int rijHoogte() const { return opties_.doorzichtig ? 30 : 26; }
    [[nodiscard]] int rijen() const {
        return static_cast<int>(std::ceil(opties_.maat.height() / rijHoogte())) + 1;
    }
    // The digit one, unlike the nought, has a block in the lower left corner of its cell.
    [[nodiscard]] bool isEen(const QImage& strook, int rij) const {
        const int onder = strook.height() - (rijen() - 1 - rij) * rijHoogte();
        const QRgb pixel = strook.pixel(opties_.doorzichtig ? 5 : 4, onder - 5);
        return qAlpha(pixel) == 255 && qGreen(pixel) > 100;
    }
    std::size_t druppels() {
        const double r1 = toeval_.unit();
        if (opties_.doorzichtig) return r1 < 0.25 + 0.6 * opties_.dichtheid ? 1 : 0;
        const double r2 = toeval_.unit();
        return (r1 < 0.35 + 0.65 * opties_.dichtheid ? 2 : 1) +
               (r2 < 0.7 * opties_.dichtheid ? 1 : 0);
    }
    void druppel(const Layer& staart, const Layer& kop) {
        const int cellen = opties_.doorzichtig ? 6 + static_cast<int>(toeval_.below(11))
                                               : 8 + static_cast<int>(toeval_.below(19));
        EXPECT_EQ(lengte(staart, rijHoogte()), cellen);
        const double stap = 0.05 + 0.07 * toeval_.unit();
        const double duur = stap * (rijen() + cellen + 1) / opties_.snelheid;
        EXPECT_NEAR(tijd(staart).duration, duur, 1e-12);
        const double lot = toeval_.unit();
        const double begin = opties_.doorzichtig ? nu_ + 2.2 * lot : nu_;
        const double verschuiving = opties_.doorzichtig ? 0.0 : duur * lot;
        EXPECT_NEAR(tijd(staart).time.beginTime, begin, 1e-12);
        EXPECT_NEAR(tijd(staart).time.timeOffset, verschuiving, 1e-12);
        EXPECT_EQ(tijd(staart).time, tijd(kop).time);
        EXPECT_EQ(tijd(staart).duration, tijd(kop).duration);
    }

    platform::RandomSource toeval_;
    const brixtel::MatrixRegenOpties opties_;
    const double nu_;
};

TEST(RegenKans, EveryChoiceIsADrawOfTheSourceInItsOrder) {
    for (const std::uint64_t zaad : {1U, 2U, 3U})
        for (const bool doorzichtig : {false, true})
            for (const double dichtheid : {0.3, 0.7, 1.0}) {
                Proef proef;
                proef.toeval = platform::RandomSource(zaad);
                const brixtel::MatrixRegenOpties opties{.maat = {2000, 500},
                                                        .dichtheid = dichtheid,
                                                        .snelheid = 1.7,
                                                        .doorzichtig = doorzichtig};
                Trekking trekking(proef, opties);
                const auto regen = proef.maak(opties);
                ASSERT_EQ(regen->stroken().size(), 10U);
                ASSERT_NO_FATAL_FAILURE(trekking.stroken(*regen));
                for (const auto& kolom : regen->kolommen())
                    ASSERT_NO_FATAL_FAILURE(trekking.kolom(*regen, kolom));
                trekking.eindigtBij(proef.toeval);
            }
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
    EXPECT_NEAR(som, cellen / 2, vierSigma(cellen, 2));
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
        EXPECT_NEAR(aantal, 100, vierSigma(1000, 10));
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
            EXPECT_NEAR(aantal, som / soorten, vierSigma(som, soorten)) << cellen;
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
    const int som = static_cast<int>(waarden.size());
    for (const int aantal : per)
        EXPECT_NEAR(aantal, som / 4.0, vierSigma(som, 4));
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
        EXPECT_NEAR(aantal, 450, vierSigma(3600, 8));
    ASSERT_EQ(perStrook.size(), 10U);
    for (const auto& [strook, aantal] : perStrook)
        EXPECT_NEAR(aantal, 360, vierSigma(3600, 10));
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
