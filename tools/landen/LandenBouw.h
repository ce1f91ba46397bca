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

// The index that marks a range without a country.
inline constexpr std::uint8_t kGeenLand = 255;

struct LandenBronnen {
    std::vector<AdresRij> v4;
    std::vector<AdresRij> v6;
    std::map<std::string, std::string> iso;
    Kaart kaart;
    std::map<std::string, Plaats> zones;
    Correcties correcties;
};

// The records by code: ISO's countries and those that the corrections add, each
// at its corrected place, else the middle of its shape, else its first zone; to
// a hundredth of a degree. Throws std::runtime_error for a country that is
// nowhere, and when there are more than an index can tell apart.
[[nodiscard]] std::vector<Land> bouwLanden(const LandenBronnen& bronnen);

// The whole table. Every address is in a range from the first on: gaps between
// rows become ranges without a country. Of the rows within one /64 that has
// several, the country with most of its addresses gets all of it.
[[nodiscard]] LandenInhoud bouwTabel(const LandenBronnen& bronnen);

}  // namespace brixtel
