// SPDX-License-Identifier: MIT
#include "BrixtelSaver/SaverKeuze.h"

namespace brixtel {

namespace {

struct Regel {
    QLatin1String ruw;
    QLatin1String naam;
};

// By the number of the case.
constexpr std::array<Regel, alleKeuzes.size()> kRegels{{
    {QLatin1String("wisselend"), QLatin1String("Steeds iets anders (elke minuut)")},
    {QLatin1String("regen"), QLatin1String("Matrix-regen")},
    {QLatin1String("bol"), QLatin1String("Wereldbol met verbindingen")},
    {QLatin1String("kubus"), QLatin1String("Kubus van bits")},
    {QLatin1String("tunnel"), QLatin1String("Matrix-tunnel")},
    {QLatin1String("logo"), QLatin1String("Brixtel-logo")},
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
