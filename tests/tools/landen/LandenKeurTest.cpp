// SPDX-License-Identifier: MIT
#include "tools/landen/LandenKeur.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <limits>
#include <random>
#include <sstream>

#include "connections/LandenBestand.h"
#include "tools/landen/LandenSchrijf.h"

using namespace brixtel;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

LandenInhoud goed() {
    return {.landen = {{"BE", 50.5, 4.5}, {"NL", 52.25, 5.5}},
            .v4 = {0, 100, 200},
            .v4Land = {255, 0, 1},
            .v6 = {0, 7},
            .v6Land = {255, 1}};
}

auto keur(const LandenInhoud& inhoud) {
    return keurLanden(pakIn(schrijfLanden(inhoud)));
}

TEST(LandenKeur, ASoundFileHasNothingWrong) {
    EXPECT_THAT(keur(goed()), ElementsAre());
}

TEST(LandenKeur, TheShippedFileHasNothingWrong) {
    std::ifstream bestand(BRIXTEL_SOURCE_DIR "/resources/landen.bin", std::ios::binary);
    std::ostringstream tekst;
    tekst << bestand.rdbuf();
    const std::string bytes = tekst.str();
    ASSERT_GT(bytes.size(), 1'000'000U);
    EXPECT_THAT(keurLanden({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}),
                ElementsAre());
}

TEST(LandenKeur, SeesAFileThatDoesNotUnpack) {
    EXPECT_THAT(keurLanden({}), ElementsAre(StartsWith("pak")));
    EXPECT_THAT(keurLanden(schrijfLanden(goed())), ElementsAre(StartsWith("pak")));
    auto kort = pakIn(schrijfLanden(goed()));
    kort.pop_back();
    EXPECT_THAT(keurLanden(kort), ElementsAre(StartsWith("pak")));
}

TEST(LandenKeur, SeesTheWrongMark) {
    auto data = schrijfLanden(goed());
    data[0] = 'b';
    EXPECT_THAT(keurLanden(pakIn(data)), ElementsAre(StartsWith("merk")));
}

TEST(LandenKeur, SeesCountsThatLie) {
    auto data = schrijfLanden(goed());
    data[8] = 4;
    EXPECT_THAT(keurLanden(pakIn(data)), ElementsAre(StartsWith("aantal")));
    data[8] = 2;
    EXPECT_THAT(keurLanden(pakIn(data)), ElementsAre(StartsWith("aantal")));
    data[11] = 255;
    EXPECT_THAT(keurLanden(pakIn(data)), ElementsAre(StartsWith("aantal")));
}

TEST(LandenKeur, SeesMoreCountriesThanAnIndexCounts) {
    auto inhoud = goed();
    for (char x = 'A'; x <= 'J'; ++x)
        for (char y = 'A'; y <= 'Z'; ++y)
            if (const std::string code{x, y}; code != "BE") inhoud.landen.push_back({code, 0, 0});
    EXPECT_THAT(keur(inhoud), ElementsAre(StartsWith("aantal")));
}

TEST(LandenKeur, SeesATableWithoutRanges) {
    auto inhoud = goed();
    inhoud.v6.clear();
    inhoud.v6Land.clear();
    EXPECT_THAT(keur(inhoud), ElementsAre("aantal: geen reeksen, v6"));
}

TEST(LandenKeur, SeesStartsOutOfOrderOrTwice) {
    auto inhoud = goed();
    inhoud.v4 = {0, 200, 100};
    inhoud.v6 = {7, 7};
    EXPECT_THAT(keur(inhoud), ElementsAre("volgorde: v4 2", "volgorde: v6 1"));
}

TEST(LandenKeur, SeesAnIndexThatIsNeitherACountrysNorTheMarkOfNone) {
    auto inhoud = goed();
    inhoud.v4Land[1] = 2;
    inhoud.v6Land[0] = 254;
    EXPECT_THAT(keur(inhoud), ElementsAre("index: geen land, v4 1", "index: geen land, v6 0"));
}

TEST(LandenKeur, SeesAPlaceThatIsNotOnEarth) {
    for (const double fout : {90.5, -91.0, std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity()}) {
        auto inhoud = goed();
        inhoud.landen[1].breedte = fout;
        EXPECT_THAT(keur(inhoud), ElementsAre("plaats: niet op aarde, land 1"));
    }
    auto inhoud = goed();
    inhoud.landen[0].lengte = -180.5;
    EXPECT_THAT(keur(inhoud), ElementsAre("plaats: niet op aarde, land 0"));
}

TEST(LandenKeur, SeesCodesThatAreNoneOrTwice) {
    auto inhoud = goed();
    inhoud.landen.push_back({"nl", 0, 0});
    inhoud.landen.push_back({"BE", 0, 0});
    EXPECT_THAT(keur(inhoud),
                ElementsAre("code: geen twee hoofdletters in land 2", "code: dubbel in land 3"));
}

TEST(LandenKeur, MissesTheNetherlands) {
    auto inhoud = goed();
    inhoud.landen[1].code = "LU";
    EXPECT_THAT(keur(inhoud), ElementsAre("code: geen record voor NL"));
}

TEST(LandenKeur, SurvivesAnyBytes) {
    std::mt19937 lot(3);
    for (int beurt = 0; beurt < 2000; ++beurt) {
        auto data = schrijfLanden(goed());
        for (int i = 0; i < 3; ++i)
            data[lot() % data.size()] = static_cast<std::uint8_t>(lot());
        (void)keurLanden(pakIn(data));
        for (auto& byte : data)
            byte = static_cast<std::uint8_t>(lot());
        EXPECT_FALSE(keurLanden(data).empty());
    }
}

}  // namespace
