// SPDX-License-Identifier: MIT
#include "tests/fuzz/FuzzDoelen.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <string>

#include "connections/LsofTekst.h"
#include "tests/connections/Tabellen.h"
#include "tools/landen/LandenKeur.h"

namespace fuzz {

namespace {

using namespace brixtel;

std::string_view tekstVan(Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

LandenTabel& kleineTabel() {
    static steun::Tabel tabel(steun::kleineTabel());
    return *tabel;
}

// By walking along the ranges, one after the other.
template <typename Getal>
std::string loopLangs(Getal sleutel, const std::vector<Getal>& starts,
                      const std::vector<std::uint8_t>& indexen) {
    std::string code = "-";
    const auto landen = steun::kleineTabel().landen;
    for (std::size_t i = 0; i < starts.size() && starts[i] <= sleutel; ++i)
        code = indexen[i] < landen.size() ? landen[indexen[i]].code : "-";
    return code;
}

template <typename Getal>
Getal getal(const std::uint8_t* bytes) {
    Getal uit = 0;
    for (std::size_t i = 0; i < sizeof(Getal); ++i)
        uit = static_cast<Getal>(uit << 8) | bytes[i];
    return uit;
}

std::string verwacht(const std::string& tekst) {
    static const LandenInhoud inhoud = steun::kleineTabel();
    std::array<std::uint8_t, 16> b{};
    if (inet_pton(AF_INET, tekst.c_str(), b.data()) == 1)
        return loopLangs(getal<std::uint32_t>(b.data()), inhoud.v4, inhoud.v4Land);
    if (inet_pton(AF_INET6, tekst.c_str(), b.data()) != 1) return "-";
    const bool gemengd = getal<std::uint64_t>(b.data()) == 0 && b[8] == 0 && b[9] == 0 &&
                         b[10] == 0xFF && b[11] == 0xFF;
    if (gemengd) return loopLangs(getal<std::uint32_t>(&b[12]), inhoud.v4, inhoud.v4Land);
    return loopLangs(getal<std::uint64_t>(b.data()), inhoud.v6, inhoud.v6Land);
}

}  // namespace

void regels(Bytes bytes) {
    const std::string_view tekst = tekstVan(bytes);
    const auto lijnen = groepeer(tekst, kleineTabel());
    const auto kaal = static_cast<std::int64_t>(std::count(tekst.begin(), tekst.end(), 'n'));
    eis(totaalVan(lijnen) <= kaal);
    for (std::size_t i = 0; i < lijnen.size(); ++i) {
        const Lijn& lijn = lijnen[i];
        eis(lijn.aantal > 0 && !lijn.programmas.empty());
        eis(static_cast<std::int64_t>(lijn.programmas.size()) <= lijn.aantal);
        eis(std::adjacent_find(lijn.programmas.begin(), lijn.programmas.end(),
                               std::greater_equal<>()) == lijn.programmas.end());
        if (i == 0) continue;
        const Lijn& voor = lijnen[i - 1];
        eis(voor.aantal > lijn.aantal ||
            (voor.aantal == lijn.aantal && voor.land.code < lijn.land.code));
    }
}

void adres(Bytes bytes) {
    const std::string_view tekst = tekstVan(bytes);
    eis(steun::codeVan(kleineTabel(), tekst) == verwacht(std::string(tekst)));
}

void bestand(Bytes bytes) {
    // Damaged in its packing as well as in what it packs.
    (void)keurLanden(bytes);
    (void)keurLanden(pakIn(bytes));
    const auto kop = leesKop(bytes);
    if (kop && kop->maat() > bytes.size()) return;  // which stops the process
    steun::Tabel tabel(pakIn(bytes));
    for (const char* adres : {"1.2.3.4", "255.255.255.255", "::", "2a00::1"})
        (void)tabel->land(adres);
    (void)tabel->thuis();
}

}  // namespace fuzz
