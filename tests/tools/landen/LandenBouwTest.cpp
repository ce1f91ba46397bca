// SPDX-License-Identifier: MIT
#include "tools/landen/LandenBouw.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "tools/landen/LandenKeur.h"
#include "tools/landen/LandenSchrijf.h"

using namespace brixtel;

namespace {

constexpr Adres kEen64 = Adres{1} << 64;

// BE has a shape, LU a zone, NL both; EU is a correction.
LandenBronnen bronnen() {
    return {.v4 = {},
            .v6 = {},
            .iso = {{"BE", "056"}, {"GB", "826"}, {"LU", "442"}, {"NL", "528"}},
            .kaart = Kaart(R"({"transform": {"scale": [1, 1], "translate": [0, 0]},
                "arcs": [[[4,49],[0,2],[1,0],[0,-2],[-1,0]], [[4,51],[0,2],[3,0],[0,-2],[-3,0]]],
                "objects": {"countries": {"geometries": [
                    {"type": "Polygon", "id": "056", "arcs": [[0]]},
                    {"type": "Polygon", "id": "528", "arcs": [[1]]}]}}})"),
            .zones = {{"LU", {49.6, 6.151}}, {"NL", {52.37, 4.9}}},
            .correcties = {.zelfde = {{"UK", "GB"}},
                           .plaatsen = {{"EU", {50.85, 4.35}}, {"GB", {54, -2}}}}};
}
constexpr std::uint8_t kBE = 0, kEU = 1, kGB = 2, kLU = 3, kNL = 4;
using Starts4 = std::vector<std::uint32_t>;
using Starts6 = std::vector<std::uint64_t>;
using Indexen = std::vector<std::uint8_t>;

TEST(LandenBouw, RecordsAreByCodeEachAtItsBestPlaceToAHundredth) {
    const auto landen = bouwLanden(bronnen());
    ASSERT_EQ(landen.size(), 5U);
    EXPECT_EQ(landen[kBE].code, "BE");
    EXPECT_NEAR(landen[kBE].breedte, 50.0, 0.02);  // the sphere is narrower in the north
    EXPECT_EQ(landen[kBE].lengte, 4.5);
    EXPECT_EQ(landen[kEU].code, "EU");
    EXPECT_FLOAT_EQ(static_cast<float>(landen[kEU].breedte), 50.85F);
    EXPECT_EQ(landen[kGB], (Land{"GB", 54.0, -2.0}));
    EXPECT_FLOAT_EQ(static_cast<float>(landen[kLU].lengte), 6.15F);
    EXPECT_EQ(landen[kNL].lengte, 5.5);  // its shape, not its zone
}

TEST(LandenBouw, ACountryThatIsNowhereIsRefused) {
    auto b = bronnen();
    b.zones.erase("LU");
    EXPECT_THROW((void)bouwLanden(b), std::runtime_error);
}

TEST(LandenBouw, MoreCountriesThanAnIndexCountsAreRefused) {
    auto b = bronnen();
    for (char x = 'A'; x <= 'Z'; ++x)
        for (char y = 'A'; y <= 'J'; ++y)
            b.correcties.plaatsen[std::string{x, y}] = {0, 0};
    EXPECT_THROW((void)bouwLanden(b), std::runtime_error);
}

TEST(LandenBouw, GapsBecomeRangesOfNoCountry) {
    auto b = bronnen();
    b.v4 = {{100, 199, "NL"}, {300, 399, "BE"}};
    const auto t = bouwTabel(b);
    EXPECT_EQ(t.v4, (Starts4{0, 100, 200, 300, 400}));
    EXPECT_EQ(t.v4Land, (Indexen{kGeenLand, kNL, kGeenLand, kBE, kGeenLand}));
}

TEST(LandenBouw, RowsFromTheFirstAddressToTheLastNeedNoGaps) {
    auto b = bronnen();
    b.v4 = {{0, 9, "NL"}, {10, 0xFFFFFFFF, "BE"}};
    b.v6 = {{0, std::numeric_limits<Adres>::max(), "NL"}};
    const auto t = bouwTabel(b);
    EXPECT_EQ(t.v4, (Starts4{0, 10}));
    EXPECT_EQ(t.v4Land, (Indexen{kNL, kBE}));
    EXPECT_EQ(t.v6, Starts6{0});
    EXPECT_EQ(t.v6Land, Indexen{kNL});
}

TEST(LandenBouw, NeighboursOfOneCountryAreOneRange) {
    auto b = bronnen();
    b.v4 = {{0, 9, "NL"}, {10, 19, "NL"}, {20, 29, "UK"}, {30, 39, "GB"}};
    const auto t = bouwTabel(b);
    EXPECT_EQ(t.v4, (Starts4{0, 20, 40}));
    EXPECT_EQ(t.v4Land, (Indexen{kNL, kGB, kGeenLand}));
}

TEST(LandenBouw, MarksAreMappedAndUnknownOnesBelongToNoCountry) {
    auto b = bronnen();
    b.v4 = {{0, 9, "UK"}, {10, 19, "EU"}, {20, 29, "??"}, {30, 39, "AP"}, {40, 49, "LU"}};
    const auto t = bouwTabel(b);
    EXPECT_EQ(t.v4, (Starts4{0, 10, 20, 40, 50}));
    EXPECT_EQ(t.v4Land, (Indexen{kGB, kEU, kGeenLand, kLU, kGeenLand}));
}

TEST(LandenBouw, Ipv6IsCutToItsUpperHalf) {
    auto b = bronnen();
    b.v6 = {{5 * kEen64, 8 * kEen64 - 1, "NL"}};
    const auto t = bouwTabel(b);
    EXPECT_EQ(t.v6, (Starts6{0, 5, 8}));
    EXPECT_EQ(t.v6Land, (Indexen{kGeenLand, kNL, kGeenLand}));
}

TEST(LandenBouw, OfSeveralRowsInOne64TheLargestHasAllOfIt) {
    auto b = bronnen();
    // From within 5 to within 7, and the rest of 7: most of 5 is nobody's, most of 7 is BE's.
    b.v6 = {{6 * kEen64 - 10, 7 * kEen64 + 9, "NL"}, {7 * kEen64 + 10, 8 * kEen64 - 1, "BE"}};
    const auto t = bouwTabel(b);
    EXPECT_EQ(t.v6, (Starts6{0, 6, 7, 8}));
    EXPECT_EQ(t.v6Land, (Indexen{kGeenLand, kNL, kBE, kGeenLand}));
}

TEST(LandenBouw, ACountrysRowsInOne64AddUp) {
    auto b = bronnen();
    const Adres derde = kEen64 / 3;
    b.v6 = {{0, derde - 1, "BE"}, {derde, 2 * derde - 10, "NL"}, {2 * derde, kEen64 - 1, "BE"}};
    const auto t = bouwTabel(b);
    EXPECT_EQ(t.v6, (Starts6{0, 1}));
    EXPECT_EQ(t.v6Land, (Indexen{kBE, kGeenLand}));
}

TEST(LandenBouw, ARowWithinThe64AtTheVeryEnd) {
    auto b = bronnen();
    b.v6 = {{std::numeric_limits<Adres>::max() - 5, std::numeric_limits<Adres>::max(), "NL"}};
    const auto t = bouwTabel(b);
    EXPECT_EQ(t.v6, Starts6{0});
    EXPECT_EQ(t.v6Land, Indexen{kGeenLand});
}

TEST(LandenBouw, TheSameInputGivesTheSameBytesAndTheyAreSound) {
    auto b = bronnen();
    b.v4 = {{100, 199, "NL"}};
    b.v6 = {{5 * kEen64, 8 * kEen64 - 1, "NL"}};
    const auto een = pakIn(schrijfLanden(bouwTabel(b)));
    const auto twee = pakIn(schrijfLanden(bouwTabel(b)));
    EXPECT_EQ(een, twee);
    EXPECT_EQ(keurLanden(een), std::vector<std::string>{});
    const auto terug = leesLanden(*pakUit(een));
    EXPECT_EQ(terug.landen, bouwLanden(b));
}

TEST(LandenSchrijf, ACodeThatIsNotTwoBytesIsRefused) {
    LandenInhoud inhoud;
    inhoud.landen = {{"NLD", 0, 0}};
    EXPECT_THROW((void)schrijfLanden(inhoud), std::runtime_error);
}

}  // namespace
