// SPDX-License-Identifier: MIT
#include "worlds/DrieSoort.h"

namespace brixtel {

namespace {

struct Regel {
    QLatin1String ruw;
    QLatin1String uitleg;
};

// By the number of the case.
constexpr std::array<Regel, alleSoorten.size()> kRegels{{
    {QLatin1String("bol"),
     QLatin1String("de aarde van groene puntjes; de lijnen gaan naar de landen waar je Mac nu "
                   "mee praat")},
    {QLatin1String("kubus"),
     QLatin1String("een kubus van 343 nullen en enen die omspringen en golven")},
    {QLatin1String("tunnel"), QLatin1String("vlieg door een tunnel van matrix-cijfers")},
    {QLatin1String("logo"), QLatin1String("BRIXTEL in 3D-blokjes op een spiegelende vloer")},
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

}  // namespace brixtel
