// SPDX-License-Identifier: MIT
#include "hosts/bureau/NaRust.h"

#include <utility>

#include "BrixtelSaver/SaverInstellingen.h"
#include "hosts/bureau/ZwartSoort.h"

namespace brixtel {

namespace {

constexpr double kMinuut = 60.0;  // seconds

ZwartSoort soortVan(SaverKeuze keuze, platform::RandomSource& toeval) {
    ZwartSoort soort;
    if (leesSoort(ruweWaarde(keuze), soort)) return soort;
    const auto& alle = alleZwartSoorten();
    return alle[toeval.below(static_cast<std::uint32_t>(alle.size()))];
}

}  // namespace

NaRust::NaRust(Bureau& bureau, const NaRustBronnen& bronnen) : bureau_(bureau), bronnen_(bronnen) {
    stand_ = bureau_.stand().volg([this](const BureauStand& stand) { volg(stand); });
    beveiliging_ = bronnen_.werkruimte.observe([this](platform::Workspace::Change wat) {
        const bool komt =
            wat == platform::Workspace::Change::Saver && bronnen_.werkruimte.isSaverActive();
        if (komt && vanRust_) bureau_.sluitZwart();
    });
}

void NaRust::volg(const BureauStand& stand) {
    if (!stand.zwart) vanRust_ = false;
    const int minuten = stand.keuzes.rust;
    if (std::exchange(minuten_, minuten) == minuten) return;
    wacht_.reset();
    if (minuten == 0) return;
    wacht_ = bronnen_.maakWacht(
        {.seconden = minuten * kMinuut,
         .bijRust = [this] { begin(); },
         .bijBewaking = [this](bool bewaakt) { bureau_.zetRustBewaakt(bewaakt); }});
}

void NaRust::begin() {
    if (bureau_.stand().waarde().zwart || !bureau_.zwartBeletsel().isEmpty()) return;
    bureau_.toonZwart(soortVan(SaverInstellingen::keuze(), bronnen_.toeval));
    vanRust_ = bureau_.stand().waarde().zwart;
}

}  // namespace brixtel
