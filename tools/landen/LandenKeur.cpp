// SPDX-License-Identifier: MIT
#include "tools/landen/LandenKeur.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "connections/LandenBestand.h"
#include "tools/landen/LandenBouw.h"

namespace brixtel {

namespace {

using Klachten = std::vector<std::string>;

std::string plek(const char* wat, std::size_t nummer) {
    return std::string(wat) + " " + std::to_string(nummer);
}

void keurRecords(const std::vector<Land>& landen, Klachten& klachten) {
    // An index is one byte, and its last value means "no country".
    if (landen.size() > kGeenLand) klachten.push_back("aantal: meer landen dan een index telt");
    std::set<std::string> codes;
    for (std::size_t i = 0; i < landen.size(); ++i) {
        const Land& land = landen[i];
        const bool letters =
            land.code.size() == 2 && std::all_of(land.code.begin(), land.code.end(),
                                                 [](char c) { return c >= 'A' && c <= 'Z'; });
        if (!letters) klachten.push_back(plek("code: geen twee hoofdletters in land", i));
        if (!codes.insert(land.code).second) klachten.push_back(plek("code: dubbel in land", i));
        // This form of the test rejects NaN too.
        if (!(std::abs(land.breedte) <= 90.0 && std::abs(land.lengte) <= 180.0))
            klachten.push_back(plek("plaats: niet op aarde, land", i));
    }
    if (!codes.contains("NL")) klachten.push_back("code: geen record voor NL");
}

template <typename Getal>
void keurReeks(const char* naam, const std::vector<Getal>& starts,
               const std::vector<std::uint8_t>& indexen, std::size_t landenTal,
               Klachten& klachten) {
    const std::string wat(naam);
    if (starts.empty()) klachten.push_back("aantal: geen reeksen, " + wat);
    for (std::size_t i = 0; i < starts.size(); ++i) {
        if (i > 0 && starts[i] <= starts[i - 1])
            klachten.push_back(plek(("volgorde: " + wat).c_str(), i));
        if (indexen[i] != kGeenLand && indexen[i] >= landenTal)
            klachten.push_back(plek(("index: geen land, " + wat).c_str(), i));
    }
}

}  // namespace

Klachten keurLanden(std::span<const std::uint8_t> bestand) {
    const auto data = pakUit(bestand);
    if (!data) return {"pak: geen hele, onbeschadigde DEFLATE-stroom"};
    const auto kop = leesKop(*data);
    if (!kop) return {"merk: begint niet met BXGEO1 en een kop"};
    if (kop->maat() != data->size())
        return {"aantal: " + std::to_string(data->size()) + " bytes in plaats van " +
                std::to_string(kop->maat())};
    const LandenInhoud inhoud = leesLanden(*data);
    Klachten klachten;
    keurRecords(inhoud.landen, klachten);
    keurReeks("v4", inhoud.v4, inhoud.v4Land, inhoud.landen.size(), klachten);
    keurReeks("v6", inhoud.v6, inhoud.v6Land, inhoud.landen.size(), klachten);
    return klachten;
}

}  // namespace brixtel
