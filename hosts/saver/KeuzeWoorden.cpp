// SPDX-License-Identifier: MIT
#include "hosts/saver/KeuzeWoorden.h"

#include "BrixtelSaver/SaverKeuze.h"
#include "worlds/DrieSoort.h"

namespace brixtel {

namespace {

template <typename Past>
QStringList soorten(Past past) {
    QStringList woorden;
    for (const DrieSoort soort : alleSoorten)
        if (past(start(soort))) woorden << ruweWaarde(soort);
    return woorden;
}

}  // namespace

QStringList keuzeWoorden() {
    QStringList woorden;
    for (const SaverKeuze keuze : alleKeuzes)
        woorden << ruweWaarde(keuze);
    return woorden;
}

QStringList keuzesMetLus() {
    return soorten([](const DrieStart& begin) { return begin.lus.duur > 0.0; });
}

QStringList keuzesMetLijnen() {
    return soorten([](const DrieStart& begin) { return begin.lijnen; });
}

}  // namespace brixtel
