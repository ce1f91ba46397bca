// SPDX-License-Identifier: MIT
// The smaller sources of the country table.
#pragma once

#include <QByteArray>
#include <iosfwd>
#include <map>
#include <string>

#include "tools/landen/Kaart.h"

namespace brixtel {

// Two-letter code to three-digit number, from iso-codes' iso_3166-1.json.
[[nodiscard]] std::map<std::string, std::string> leesIso(const QByteArray& json);

// The place of each country's first row in tzdata's zone.tab, usually its chief
// town.
[[nodiscard]] std::map<std::string, Plaats> leesZones(std::istream& in);

// Corrections of errors and gaps in the sources; see correcties.txt.
struct Correcties {
    std::map<std::string, std::string> zelfde;  // a mark in the ranges -> the country's code
    std::map<std::string, Plaats> plaatsen;     // overrides every other source
};
[[nodiscard]] Correcties leesCorrecties(std::istream& in);

}  // namespace brixtel
