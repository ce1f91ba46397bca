// SPDX-License-Identifier: MIT
#include "connections/VerbindingWacht.h"

#include <algorithm>
#include <utility>

#include "connections/LsofTekst.h"

namespace brixtel {

namespace {
constexpr double kSpeling = 0.15;  // the part of the interval by which the timer may be late
}

VerbindingWacht::VerbindingWacht(platform::MediaClock& klok, Bron bron)
    : mediaKlok_(klok), bron_(std::move(bron)), wachtrij_("nl.brixtel.verbindingen") {}

VerbindingWacht::~VerbindingWacht() {
    stop_.request();
}

VerbindingWacht& VerbindingWacht::gedeeld() {
    // The table is made before the watcher, so that it outlives the watcher.
    static LandenTabel& tabel = LandenTabel::gedeeld();
    static platform::SystemClock klok;
    static VerbindingWacht wacht(klok, {.tabel = tabel});
    return wacht;
}

void VerbindingWacht::gebruik(const std::string& sleutel, bool aan, double elke) {
    if (aan) {
        gebruikers_[sleutel] = elke;
    } else {
        gebruikers_.erase(sleutel);
    }
    const auto vaakst =
        std::min_element(gebruikers_.begin(), gebruikers_.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    const double nieuw = vaakst == gebruikers_.end() ? 0.0 : vaakst->second;
    if (nieuw == tussentijd_) return;

    const double oud = std::exchange(tussentijd_, nieuw);
    klok_.invalidate();
    if (nieuw <= 0.0) return;
    if (oud == 0.0) kijk();
    // The watcher owns the timer, which ends with it.
    klok_ = platform::Timer(mediaKlok_,
                            {.interval = nieuw, .repeats = true, .tolerance = nieuw * kSpeling},
                            [this] { kijk(); });
}

void VerbindingWacht::kijk() {
    if (bezig_) return;
    bezig_ = true;
    wachtrij_.async([this, leeft = std::weak_ptr(leeft_)] {
        auto lijnen = std::make_shared<std::vector<Lijn>>(meet(bron_, &stop_));
        platform::runOnMainQueue([this, leeft, lijnen] {
            if (!leeft.expired()) toon(std::move(*lijnen));
        });
    });
}

void VerbindingWacht::daarna(std::function<void()> doe) {
    wachtrij_.async([doe = std::move(doe)] { platform::runOnMainQueue(doe); });
}

void VerbindingWacht::toon(std::vector<Lijn> lijnen) {
    bezig_ = false;
    const auto leeft = std::weak_ptr(leeft_);
    totaal_.zet(totaalVan(lijnen));
    // A subscriber that received the total may have dropped the watcher.
    if (!leeft.expired()) lijnen_.zet(std::move(lijnen));
}

std::vector<Lijn> VerbindingWacht::meet(const Bron& bron, const platform::ToolStop* stop) {
    return probeer(bron, stop).value_or(std::vector<Lijn>());
}

std::optional<std::vector<Lijn>> VerbindingWacht::probeer(const Bron& bron,
                                                          const platform::ToolStop* stop) {
    const auto pad = bron.lsof.empty() ? platform::findTool("lsof") : bron.lsof;
    if (!pad) return std::nullopt;
    auto einde = platform::ToolEnd::done;
    const auto uit = platform::runTool({.program = *pad,
                                        .arguments = {"-nP", "-iTCP", "-sTCP:ESTABLISHED", "-FcnT"},
                                        .mostBytes = kMeesteBytes,
                                        .mostSeconds = bron.seconden},
                                       stop, &einde);
    // lsof exits with 1 where there are no connections.
    if (!uit || (einde == platform::ToolEnd::failed && uit->text().empty())) return std::nullopt;
    return groepeer(uit->text(), bron.tabel);
}

std::string VerbindingWacht::netteNaam(std::string_view naam) {
    return brixtel::netteNaam(naam);
}

}  // namespace brixtel
