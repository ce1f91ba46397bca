// SPDX-License-Identifier: MIT
#include "hosts/bureau/ZwartSoort.h"

namespace brixtel {

namespace {

struct Regen {
    QLatin1String ruw;
    QString uitleg;
};

const Regen& regen() {
    static const Regen regel{
#define VLAK(ruw, naam, nl, ...) QLatin1String(#ruw), QStringLiteral(nl),
#include "worlds/Scenes.def"
    };
    return regel;
}

}  // namespace

const std::vector<ZwartSoort>& alleZwartSoorten() {
    static const std::vector<ZwartSoort> alle = [] {
        std::vector<ZwartSoort> soorten{std::nullopt};
        soorten.insert(soorten.end(), alleSoorten.begin(), alleSoorten.end());
        return soorten;
    }();
    return alle;
}

QString ruweWaarde(ZwartSoort soort) {
    return soort ? ruweWaarde(*soort) : QString(regen().ruw);
}

QString naam(ZwartSoort soort) {
    return soort ? naam(*soort) : ruweWaarde(soort).toUpper();
}

QString uitleg(ZwartSoort soort) {
    return soort ? uitleg(*soort) : regen().uitleg;
}

const QStringList& zwartWoorden() {
    static const QStringList alle = [] {
        QStringList woorden;
        for (const ZwartSoort soort : alleZwartSoorten())
            woorden << ruweWaarde(soort);
        return woorden;
    }();
    return alle;
}

bool leesSoort(const QString& tekst, ZwartSoort& soort) {
    soort = soortUitRuw(tekst);
    return soort || tekst.isEmpty() || tekst == regen().ruw;
}

}  // namespace brixtel
