// SPDX-License-Identifier: MIT
#include "tools/landen/LandenBouw.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>
#include <utility>

namespace brixtel {

namespace {

// A range of numbers of the table's own width, first and last included.
struct Stuk {
    std::uint64_t eerste = 0;
    std::uint64_t laatste = 0;
    std::uint8_t index = kGeenLand;
};

std::optional<Plaats> plaatsVan(const LandenBronnen& bronnen, const std::string& code,
                                const std::string& nummer) {
    const auto& vaste = bronnen.correcties.plaatsen;
    if (const auto p = vaste.find(code); p != vaste.end()) return p->second;
    if (const auto p = bronnen.kaart.midden(nummer)) return p;
    if (const auto p = bronnen.zones.find(code); p != bronnen.zones.end()) return p->second;
    return std::nullopt;
}

// Rounds to the file's own precision, so that a table reads back unchanged. Not inline:
// GCC 12 drops the conversion through float where it inlines two of them at once.
[[gnu::noinline]] double afgerond(double graden) {
    return static_cast<double>(static_cast<float>(std::round(graden * 100.0) / 100.0));
}

class Indexen {
  public:
    Indexen(const std::vector<Land>& landen, const Correcties& correcties) {
        for (std::size_t i = 0; i < landen.size(); ++i)
            indexen_[landen[i].code] = static_cast<std::uint8_t>(i);
        for (const auto& [merk, code] : correcties.zelfde)
            indexen_[merk] = indexen_.at(code);
    }
    [[nodiscard]] std::uint8_t van(const std::string& merk) const {
        const auto index = indexen_.find(merk);
        return index == indexen_.end() ? kGeenLand : index->second;
    }

  private:
    std::map<std::string, std::uint8_t> indexen_;
};

std::vector<Stuk> stukken4(const std::vector<AdresRij>& rijen, const Indexen& indexen) {
    std::vector<Stuk> stukken;
    stukken.reserve(rijen.size());
    for (const AdresRij& rij : rijen)
        stukken.push_back({static_cast<std::uint64_t>(rij.eerste),
                           static_cast<std::uint64_t>(rij.laatste), indexen.van(rij.code)});
    return stukken;
}

constexpr Adres kPer64 = Adres{1} << 64;

// Collects the rows that cover a /64 only in part.
class Verdeling {
  public:
    void voegToe(std::uint64_t blok, Adres aantal, std::uint8_t index) {
        Adres& van = aandelen_[blok].try_emplace(index, 0).first->second;
        van += aantal;
    }
    void geefAan(std::vector<Stuk>& stukken) const {
        for (const auto& [blok, aandelen] : aandelen_)
            stukken.push_back({blok, blok, grootste(aandelen)});
    }

  private:
    using Aandelen = std::map<std::uint8_t, Adres>;

    static std::uint8_t grootste(Aandelen aandelen) {
        Adres over = kPer64;
        for (const auto& [index, aantal] : aandelen)
            over -= aantal;
        aandelen[kGeenLand] += over;
        return std::max_element(aandelen.begin(), aandelen.end(),
                                [](const auto& a, const auto& b) { return a.second < b.second; })
            ->first;
    }

    std::map<std::uint64_t, Aandelen> aandelen_;
};

std::vector<Stuk> stukken6(const std::vector<AdresRij>& rijen, const Indexen& indexen) {
    std::vector<Stuk> stukken;
    Verdeling verdeling;
    for (const AdresRij& rij : rijen) {
        const std::uint8_t index = indexen.van(rij.code);
        auto begin = static_cast<std::uint64_t>(rij.eerste >> 64);
        auto einde = static_cast<std::uint64_t>(rij.laatste >> 64);
        const Adres kop = rij.eerste % kPer64;
        const Adres staart = rij.laatste % kPer64 + 1;
        if (begin == einde && staart - kop < kPer64) {
            verdeling.voegToe(begin, staart - kop, index);
            continue;
        }
        if (kop > 0) verdeling.voegToe(begin++, kPer64 - kop, index);
        if (staart < kPer64) verdeling.voegToe(einde--, staart, index);
        if (begin <= einde) stukken.push_back({begin, einde, index});
    }
    verdeling.geefAan(stukken);
    std::sort(stukken.begin(), stukken.end(),
              [](const Stuk& a, const Stuk& b) { return a.eerste < b.eerste; });
    return stukken;
}

// The range starts, with gaps filled and neighbours of one country joined.
template <typename Getal>
void zet(const std::vector<Stuk>& stukken, std::vector<Getal>& starts,
         std::vector<std::uint8_t>& indexen) {
    const auto begin = [&](std::uint64_t start, std::uint8_t index) {
        if (!indexen.empty() && indexen.back() == index) return;
        starts.push_back(static_cast<Getal>(start));
        indexen.push_back(index);
    };
    std::uint64_t volgende = 0;
    bool vol = false;
    for (const Stuk& stuk : stukken) {
        if (stuk.eerste > volgende) begin(volgende, kGeenLand);
        begin(stuk.eerste, stuk.index);
        vol = stuk.laatste == std::numeric_limits<Getal>::max();
        volgende = stuk.laatste + 1;
    }
    if (!vol) begin(volgende, kGeenLand);
}

}  // namespace

std::vector<Land> bouwLanden(const LandenBronnen& bronnen) {
    std::map<std::string, std::string> nummers = bronnen.iso;
    for (const auto& [code, plaats] : bronnen.correcties.plaatsen)
        nummers.try_emplace(code);
    if (nummers.size() > kGeenLand) throw std::runtime_error("te veel landen");
    std::vector<Land> landen;
    for (const auto& [code, nummer] : nummers) {
        const auto plaats = plaatsVan(bronnen, code, nummer);
        if (!plaats) throw std::runtime_error("geen plaats voor " + code);
        landen.push_back({code, afgerond(plaats->breedte), afgerond(plaats->lengte)});
    }
    return landen;
}

LandenInhoud bouwTabel(const LandenBronnen& bronnen) {
    LandenInhoud inhoud;
    inhoud.landen = bouwLanden(bronnen);
    const Indexen indexen(inhoud.landen, bronnen.correcties);
    zet(stukken4(bronnen.v4, indexen), inhoud.v4, inhoud.v4Land);
    zet(stukken6(bronnen.v6, indexen), inhoud.v6, inhoud.v6Land);
    return inhoud;
}

}  // namespace brixtel
