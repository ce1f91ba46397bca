// SPDX-License-Identifier: MIT
#include "tools/landen/Plaatsen.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

using brixtel::Plaats;

namespace {

TEST(Zones, TheFirstRowOfACountryIsItsPlace) {
    std::istringstream in(
        "# comment\nAD\t+4230+00131\tEurope/Andorra\n"
        "AQ\t-7750+16636\tAntarctica/McMurdo\tx\nAQ\t-6617+11031\tAntarctica/Casey\n"
        "XX\t-000615-1234530\tNergens\n");
    const auto zones = brixtel::leesZones(in);
    EXPECT_EQ(zones.size(), 3U);
    EXPECT_NEAR(zones.at("AD").breedte, 42.5, 1e-9);
    EXPECT_NEAR(zones.at("AD").lengte, 1 + 31.0 / 60, 1e-9);
    EXPECT_NEAR(zones.at("AQ").breedte, -(77 + 50.0 / 60), 1e-9);
    EXPECT_NEAR(zones.at("AQ").lengte, 166 + 36.0 / 60, 1e-9);
    EXPECT_NEAR(zones.at("XX").breedte, -(6.0 / 60 + 15.0 / 3600), 1e-9);
    EXPECT_NEAR(zones.at("XX").lengte, -(123 + 45.0 / 60 + 30.0 / 3600), 1e-9);
}

TEST(Iso, GivesTheNumberOfEachCode) {
    const auto iso =
        brixtel::leesIso(R"({"3166-1": [{"alpha_2": "AW", "numeric": "533", "name": "Aruba"}]})");
    EXPECT_EQ(iso, (std::map<std::string, std::string>{{"AW", "533"}}));
    EXPECT_THROW((void)brixtel::leesIso("{}"), std::runtime_error);
}

TEST(Correcties, AreReadLineByLine) {
    std::istringstream in("# uitleg\n\nzelfde UK GB\nplaats EU 50.85 4.35  # Brussel\n");
    const auto correcties = brixtel::leesCorrecties(in);
    EXPECT_EQ(correcties.zelfde, (std::map<std::string, std::string>{{"UK", "GB"}}));
    EXPECT_EQ(correcties.plaatsen, (std::map<std::string, Plaats>{{"EU", {50.85, 4.35}}}));
}

TEST(Correcties, RefuseALineThatTheyDoNotKnow) {
    for (const char* tekst :
         {"zelfde UK", "zelfde UK GB NL", "plaats EU 50", "plaats EU a b", "x"}) {
        std::istringstream in(tekst);
        EXPECT_THROW((void)brixtel::leesCorrecties(in), std::runtime_error) << tekst;
    }
}

}  // namespace
