// SPDX-License-Identifier: MIT
#include "worlds/DrieSoort.h"

namespace brixtel {

namespace {

struct Regel {
    QLatin1String ruw;
    QLatin1String uitleg;
    DrieStart start;
};

// The rows are indexed by the number of the case.
constexpr std::array<Regel, alleSoorten.size()> kRegels{{
#define DRIE(ruw, naam, nl, en, uitleg, bouwer, ...) \
    {QLatin1String(#ruw), QLatin1String(uitleg), {__VA_ARGS__}},
#include "worlds/Scenes.def"
}};

const Regel& regel(DrieSoort soort) {
    return kRegels.at(static_cast<std::size_t>(soort));
}

}  // namespace

QString ruweWaarde(DrieSoort soort) {
    return regel(soort).ruw;
}

QString id(DrieSoort soort) {
    return ruweWaarde(soort);
}

std::optional<DrieSoort> soortUitRuw(QStringView ruw) {
    for (const DrieSoort soort : alleSoorten)
        if (ruw == regel(soort).ruw) return soort;
    return std::nullopt;
}

QString naam(DrieSoort soort) {
    return ruweWaarde(soort).toUpper();
}

QString uitleg(DrieSoort soort) {
    return regel(soort).uitleg;
}

const DrieStart& start(DrieSoort soort) {
    return regel(soort).start;
}

}  // namespace brixtel
