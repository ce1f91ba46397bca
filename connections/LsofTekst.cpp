// SPDX-License-Identifier: MIT
#include "connections/LsofTekst.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include "connections/Utf8.h"

namespace brixtel {

namespace {

struct Groep {
    std::set<std::string, std::less<>> programmas;
    std::int64_t aantal = 0;
};

class Groepering {
  public:
    explicit Groepering(LandenTabel& tabel) : tabel_(tabel) {}

    void regel(std::string_view regel) {
        if (regel.empty()) return;
        const std::string_view waarde = regel.substr(1);
        if (regel.front() == 'c') {
            programma_ = waarde;
            nette_.reset();
        } else if (regel.front() == 'n') {
            verbinding(waarde);
        }
    }

    std::vector<Lijn> lijnen() && {
        std::vector<Lijn> lijnen;
        lijnen.reserve(groepen_.size());
        for (auto& [land, groep] : groepen_)
            lijnen.push_back({.land = land,
                              .programmas = {groep.programmas.begin(), groep.programmas.end()},
                              .aantal = groep.aantal});
        std::stable_sort(lijnen.begin(), lijnen.end(), [](const Lijn& a, const Lijn& b) {
            return a.aantal != b.aantal ? a.aantal > b.aantal : a.land.code < b.land.code;
        });
        return lijnen;
    }

  private:
    void verbinding(std::string_view naam) {
        const std::string_view adres = verAdres(naam);
        if (adres.empty()) return;
        const std::optional<Land> land = tabel_.land(adres);
        if (!land) return;
        if (!nette_) nette_ = netteNaam(herstelUtf8(programma_));
        Groep& groep = groepen_[*land];
        groep.programmas.insert(*nette_);
        groep.aantal = telOp(groep.aantal, 1);
    }

    LandenTabel& tabel_;
    std::string_view programma_ = "?";
    std::optional<std::string> nette_;  // of programma_, made when it is needed
    std::unordered_map<Land, Groep> groepen_;
};

}  // namespace

std::string_view verAdres(std::string_view naam) {
    const std::size_t pijl = naam.find("->");
    if (pijl == std::string_view::npos) return {};
    std::string_view ver = naam.substr(pijl + 2);
    ver = ver.substr(0, ver.rfind(':'));
    const std::size_t begin = ver.find_first_not_of("[]");
    if (begin == std::string_view::npos) return {};
    return ver.substr(begin, ver.find_last_not_of("[]") + 1 - begin);
}

std::string netteNaam(std::string_view naam) {
    // The names as lsof cuts them off, before its escapes are decoded.
    using Paar = std::pair<std::string_view, std::string_view>;
    static constexpr std::array<Paar, 7> kNamen{{{"Google Chrome He", "Chrome"},
                                                 {"Google", "Chrome"},
                                                 {"com.apple.WebKi", "Safari"},
                                                 {"Spotify Helper", "Spotify"},
                                                 {"Discord Helper", "Discord"},
                                                 {"Code Helper", "VS Code"},
                                                 {"java", "Minecraft"}}};
    for (const auto& [lang, kort] : kNamen)
        if (naam == lang) return std::string(kort);

    static constexpr std::string_view kSpatie = "\\x20";
    std::string netjes;
    for (;;) {
        const std::size_t plaats = naam.find(kSpatie);
        netjes += naam.substr(0, plaats);
        if (plaats == std::string_view::npos) return netjes;
        netjes += ' ';
        naam.remove_prefix(plaats + kSpatie.size());
    }
}

std::vector<Lijn> groepeer(std::string_view tekst, LandenTabel& tabel) {
    Groepering groepering(tabel);
    while (!tekst.empty()) {
        const std::size_t einde = std::min(tekst.find('\n'), tekst.size());
        groepering.regel(tekst.substr(0, einde));
        tekst.remove_prefix(std::min(einde + 1, tekst.size()));
    }
    return std::move(groepering).lijnen();
}

std::int64_t telOp(std::int64_t a, std::int64_t b) {
    std::int64_t som = 0;
    if (__builtin_add_overflow(a, b, &som)) std::abort();
    return som;
}

std::int64_t totaalVan(const std::vector<Lijn>& lijnen) {
    std::int64_t som = 0;
    for (const Lijn& lijn : lijnen)
        som = telOp(som, lijn.aantal);
    return som;
}

}  // namespace brixtel
