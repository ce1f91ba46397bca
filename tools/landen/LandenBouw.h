// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "connections/LandenBestand.h"
#include "tools/landen/Adressen.h"
#include "tools/landen/Kaart.h"
#include "tools/landen/Plaatsen.h"

namespace brixtel {

// The index of a range without a country.
inline constexpr std::uint8_t kGeenLand = 255;

struct LandenBronnen {
    std::vector<AdresRij> v4;
    std::vector<AdresRij> v6;
    std::map<std::string, std::string> iso;
    Kaart kaart;
    std::map<std::string, Plaats> zones;
    Correcties correcties;
};

// The records by code: the countries of ISO and of the corrections. A record's
// place is the corrected one, else the middle of the shape, else the first
// zone, rounded to a hundredth of a degree. Throws std::runtime_error for a
// country without any place, and when an index cannot tell all of them apart.
[[nodiscard]] std::vector<Land> bouwLanden(const LandenBronnen& bronnen);

// The whole table. Every address is in a range: gaps between rows become ranges
// without a country. In a /64 that several rows share, the country with most of
// its addresses gets the whole /64.
[[nodiscard]] LandenInhoud bouwTabel(const LandenBronnen& bronnen);

}  // namespace brixtel
