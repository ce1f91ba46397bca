// SPDX-License-Identifier: MIT
#include "BrixtelSaver/SaverKeuze.h"

namespace brixtel {

namespace {

struct Regel {
    QLatin1String ruw;
    QLatin1String naam;
};

// The rows are indexed by the number of the case.
constexpr std::array<Regel, alleKeuzes.size()> kRegels{{
#define AFWISSELING(ruw, naam) {QLatin1String(#ruw), QLatin1String(naam)},
#define VLAK(ruw, naam, ...) {QLatin1String(#ruw), QLatin1String(naam)},
#define DRIE(ruw, naam, ...) {QLatin1String(#ruw), QLatin1String(naam)},
#include "worlds/Scenes.def"
}};

const Regel& regel(SaverKeuze keuze) {
    return kRegels.at(static_cast<std::size_t>(keuze));
}

}  // namespace

QString ruweWaarde(SaverKeuze keuze) {
    return regel(keuze).ruw;
}

std::optional<SaverKeuze> keuzeUitRuw(QStringView ruw) {
    for (const SaverKeuze keuze : alleKeuzes)
        if (ruw == regel(keuze).ruw) return keuze;
    return std::nullopt;
}

QString naam(SaverKeuze keuze) {
    return regel(keuze).naam;
}

}  // namespace brixtel
