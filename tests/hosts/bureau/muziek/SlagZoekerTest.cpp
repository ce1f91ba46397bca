// SPDX-License-Identifier: MIT
#include "hosts/bureau/muziek/SlagZoeker.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/AllocationCounter.h"
#include "tests/support/KlikSpoor.h"

using brixtel::SlagZoeker;
using steun::KlikSpoor;

namespace {

constexpr double kDichtbij = 0.06;  // seconds

struct Uitslag {
    int kliks = 0;
    int gevonden = 0;
    int vals = 0;
    double grootsteFout = 0;   // seconds between a click and its beat
    double laatstGeweten = 0;  // seconds from a click until its beat is known
    double kleinsteSterkte = 1;
    double grootsteSterkte = 0;
};

// Feeds the track in pieces as a sound server does, and compares.
Uitslag zoek(const KlikSpoor& spoor, const std::vector<float>& monsters) {
    SlagZoeker zoeker(spoor.tempo);
    Uitslag uitslag{.kliks = spoor.kliks()};
    std::vector<bool> raak(static_cast<std::size_t>(uitslag.kliks));
    constexpr std::size_t kStuk = 100;
    for (std::size_t i = 0; i < monsters.size(); i += kStuk) {
        const int voor = zoeker.aantal();
        zoeker.voeg(std::span(monsters).subspan(i, std::min(kStuk, monsters.size() - i)));
        if (zoeker.aantal() == voor) continue;
        EXPECT_EQ(zoeker.aantal(), voor + 1);
        const double tijd = static_cast<double>(zoeker.laatste().plaats) / spoor.tempo;
        const auto klik = std::lround((tijd - spoor.eerste) / spoor.periode());
        const double fout = std::abs(tijd - spoor.tijd(static_cast<int>(klik)));
        const bool echt = klik >= 0 && klik < uitslag.kliks && fout <= kDichtbij;
        if (!echt || raak[static_cast<std::size_t>(klik)]) {
            ++uitslag.vals;
            continue;
        }
        raak[static_cast<std::size_t>(klik)] = true;
        ++uitslag.gevonden;
        uitslag.grootsteFout = std::max(uitslag.grootsteFout, fout);
        uitslag.laatstGeweten =
            std::max(uitslag.laatstGeweten, static_cast<double>(zoeker.monsters()) / spoor.tempo -
                                                spoor.tijd(static_cast<int>(klik)));
        uitslag.kleinsteSterkte = std::min(uitslag.kleinsteSterkte, zoeker.laatste().sterkte);
        uitslag.grootsteSterkte = std::max(uitslag.grootsteSterkte, zoeker.laatste().sterkte);
    }
    return uitslag;
}

void verwacht(const Uitslag& uitslag) {
    EXPECT_GE(uitslag.gevonden, 0.95 * uitslag.kliks);
    EXPECT_LT(uitslag.vals, 0.02 * uitslag.kliks);
    EXPECT_LE(uitslag.grootsteFout, kDichtbij);
    EXPECT_LE(uitslag.laatstGeweten, kDichtbij);
    testing::Test::RecordProperty("gevonden", uitslag.gevonden);
    testing::Test::RecordProperty("vals", uitslag.vals);
    testing::Test::RecordProperty("fout_ms", static_cast<int>(1000 * uitslag.grootsteFout));
}

class Kliks : public testing::TestWithParam<double> {
  protected:
    KlikSpoor spoor{.perMinuut = GetParam()};
};

TEST_P(Kliks, AreFoundInSilence) {
    const Uitslag uitslag = zoek(spoor, spoor.maak());
    verwacht(uitslag);
    EXPECT_GT(uitslag.kleinsteSterkte, 0.7);
}

TEST_P(Kliks, AreFoundAtEveryRateASoundServerHas) {
    for (const double tempo : {16'000.0, 22'050.0, 48'000.0, 96'000.0, 192'000.0}) {
        SCOPED_TRACE(tempo);
        KlikSpoor ander = spoor;
        ander.tempo = tempo;
        ander.seconden = 20;
        verwacht(zoek(ander, ander.maak()));
    }
}

TEST_P(Kliks, AreFoundUnderWhiteNoise) {
    auto monsters = spoor.maak();
    steun::voegRuis(monsters, 0.05, 1);
    verwacht(zoek(spoor, monsters));
}

TEST_P(Kliks, AreFoundUnderPinkNoise) {
    auto monsters = spoor.maak();
    steun::voegRozeRuis(monsters, 0.05, 2);
    verwacht(zoek(spoor, monsters));
}

TEST_P(Kliks, AreFoundUnderAChord) {
    auto monsters = spoor.maak();
    steun::voegAkkoord(monsters, 0.2, spoor.tempo);
    verwacht(zoek(spoor, monsters));
}

TEST_P(Kliks, AreFoundWhenTheyAreDrums) {
    spoor.hoogte = 60;
    spoor.duur = 0.06;
    spoor.sterkte = 0.8;
    auto monsters = spoor.maak();
    steun::voegAkkoord(monsters, 0.1, spoor.tempo);
    verwacht(zoek(spoor, monsters));
}

TEST_P(Kliks, AreFoundWhenTheyAreSoft) {
    spoor.sterkte = 0.01;
    verwacht(zoek(spoor, spoor.maak()));
}

INSTANTIATE_TEST_SUITE_P(PerMinuut, Kliks, testing::Values(60, 90, 120, 174),
                         [](const auto& geval) { return std::to_string(int(geval.param)); });

TEST(SlagZoeker, SilenceHasNeitherBeatsNorLoudness) {
    SlagZoeker zoeker(44'100);
    zoeker.voeg(std::vector<float>(44'100 * 10));
    EXPECT_EQ(zoeker.aantal(), 0);
    EXPECT_EQ(zoeker.level(), 0.0);
    EXPECT_EQ(zoeker.monsters(), 441'000);
}

TEST(SlagZoeker, NoiseAloneHasNoBeats) {
    for (const double sterkte : {1e-4, 0.01, 0.5}) {
        std::vector<float> monsters(44'100 * 60);
        steun::voegRuis(monsters, sterkte, 3);
        SlagZoeker zoeker(44'100);
        zoeker.voeg(monsters);
        EXPECT_EQ(zoeker.aantal(), 0) << sterkte;
        std::fill(monsters.begin(), monsters.end(), 0.0F);
        steun::voegRozeRuis(monsters, sterkte, 4);
        SlagZoeker roze(44'100);
        roze.voeg(monsters);
        EXPECT_EQ(roze.aantal(), 0) << sterkte;
    }
}

TEST(SlagZoeker, WhatAlreadySoundsAtTheStartIsNoBeat) {
    std::vector<float> monsters(44'100 * 5);
    steun::voegAkkoord(monsters, 0.5, 44'100);
    SlagZoeker zoeker(44'100);
    zoeker.voeg(monsters);
    EXPECT_EQ(zoeker.aantal(), 0);
}

TEST(SlagZoeker, AWeakerBeatIsLessStrong) {
    KlikSpoor hard{.perMinuut = 60, .seconden = 20};
    KlikSpoor zacht{.perMinuut = 60, .seconden = 20, .sterkte = 0.02, .eerste = 1.0};
    auto monsters = hard.maak();
    const auto zachte = zacht.maak();
    for (std::size_t i = 0; i < monsters.size(); ++i)
        monsters[i] += zachte[i];
    steun::voegRuis(monsters, 0.002, 5);
    SlagZoeker zoeker(44'100);
    double hardste = 0, zachtste = 1;
    for (std::size_t i = 0; i + 441 <= monsters.size(); i += 441) {
        const int voor = zoeker.aantal();
        zoeker.voeg(std::span(monsters).subspan(i, 441));
        if (zoeker.aantal() == voor) continue;
        const double sterkte = zoeker.laatste().sterkte;
        EXPECT_GT(sterkte, 0.0);
        EXPECT_LE(sterkte, 1.0);
        const double deel = std::fmod(static_cast<double>(zoeker.laatste().plaats) / 44'100, 1.0);
        if (deel > 0.25 && deel < 0.75)
            hardste = std::max(hardste, sterkte);
        else
            zachtste = std::min(zachtste, sterkte);
    }
    EXPECT_EQ(zoeker.aantal(), hard.kliks() + zacht.kliks());
    EXPECT_GT(hardste, zachtste + 0.2);
}

// The number of beats of ten pairs of clicks.
int slagenVan(double uiteen) {
    const KlikSpoor eerste{.perMinuut = 60, .seconden = 10};
    const KlikSpoor tweede{.perMinuut = 60, .seconden = 10, .eerste = eerste.eerste + uiteen};
    auto monsters = eerste.maak();
    const auto latere = tweede.maak();
    for (std::size_t i = 0; i < monsters.size(); ++i)
        monsters[i] += latere[i];
    SlagZoeker zoeker(eerste.tempo);
    zoeker.voeg(monsters);
    return zoeker.aantal();
}

TEST(SlagZoeker, TwoBeatsAreAtLeastAFifthOfASecondApart) {
    EXPECT_EQ(slagenVan(0.15), 10);
    EXPECT_EQ(slagenVan(0.25), 20);
}

TEST(SlagZoeker, ASineOfFullScaleIsAsLoudAsItGets) {
    SlagZoeker zoeker(48'000);
    std::vector<float> monsters(48'000);
    for (std::size_t i = 0; i < monsters.size(); ++i)
        monsters[i] = static_cast<float>(std::sin(2 * std::numbers::pi * 440 * i / 48'000));
    zoeker.voeg(monsters);
    EXPECT_NEAR(zoeker.level(), 1.0, 0.02);
    for (float& monster : monsters)
        monster *= 0.25F;
    zoeker.voeg(monsters);
    EXPECT_NEAR(zoeker.level(), 0.25, 0.01);
    zoeker.voeg(std::vector<float>(24'000));
    EXPECT_LT(zoeker.level(), 0.05);
}

TEST(SlagZoeker, WhatIsNoNumberCountsAsSilence) {
    constexpr float kGeen = std::numeric_limits<float>::quiet_NaN();
    constexpr float kOneindig = std::numeric_limits<float>::infinity();
    SlagZoeker zoeker(44'100);
    zoeker.voeg(std::vector<float>(44'100, kGeen));
    zoeker.voeg(std::vector<float>(44'100, kOneindig));
    EXPECT_EQ(zoeker.aantal(), 0);
    EXPECT_EQ(zoeker.level(), 0.0);
    const KlikSpoor spoor{.seconden = 10};
    zoeker.voeg(spoor.maak());
    EXPECT_EQ(zoeker.aantal(), spoor.kliks());
}

TEST(SlagZoeker, TheSizeOfThePiecesMakesNoDifference) {
    KlikSpoor spoor{.perMinuut = 90, .seconden = 10};
    const auto monsters = spoor.maak();
    SlagZoeker heel(44'100), per(44'100);
    heel.voeg(monsters);
    for (const float monster : monsters)
        per.voeg({&monster, 1});
    EXPECT_EQ(heel.aantal(), per.aantal());
    EXPECT_EQ(heel.laatste().plaats, per.laatste().plaats);
    EXPECT_EQ(heel.level(), per.level());
}

TEST(SlagZoeker, ListeningAllocatesNothing) {
    const KlikSpoor spoor{.seconden = 5};
    const auto monsters = spoor.maak();
    SlagZoeker zoeker(44'100);
    const AllocationCounter teller;
    zoeker.voeg(monsters);
    EXPECT_EQ(teller.count(), 0U);
    EXPECT_GT(zoeker.aantal(), 0);
}

TEST(SlagZoekerDeathTest, ARateThatIsNoneStopsTheProgram) {
    EXPECT_DEATH(SlagZoeker(0), "");
    EXPECT_DEATH(SlagZoeker(1e6), "");
}

}  // namespace
