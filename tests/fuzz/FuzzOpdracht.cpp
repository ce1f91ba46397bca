// SPDX-License-Identifier: MIT
#include <cmath>

#include "BrixtelSaver/SaverKeuze.h"
#include "hosts/bureau/Opdracht.h"
#include "hosts/gedeeld/Melding.h"
#include "hosts/saver/Opdracht.h"
#include "tests/fuzz/FuzzDoelen.h"

namespace fuzz {

namespace {

using brixtel::Opdracht;

void eisGoed(const Opdracht& opdracht) {
    eis(opdracht.venster.width() > 0 && opdracht.venster.height() > 0);
    eis(opdracht.maat.width() > 0 && opdracht.maat.height() > 0);
    eis(std::isfinite(opdracht.schaal) && opdracht.schaal > 0.0);
    eis(std::isfinite(opdracht.na) && opdracht.na >= 0.0);
    eis(!opdracht.seconden || (std::isfinite(*opdracht.seconden) && *opdracht.seconden >= 0.0));
    eis(opdracht.filmTempo.value_or(1) > 0);
    eis(opdracht.keuze.isEmpty() || brixtel::keuzeUitRuw(opdracht.keuze));
}

}  // namespace

void opdracht(Bytes bytes) {
    QStringList woorden;
    for (const QByteArray& woord : alsArray(bytes).split('\0'))
        woorden << QString::fromUtf8(woord);
    // The last word is the environment's.
    const QString omgeving = woorden.takeLast();
    const auto saver = brixtel::leesOpdracht(woorden, omgeving);
    if (const auto* fout = std::get_if<brixtel::Fout>(&saver))
        eis(!brixtel::eenRegel(fout->regel).isEmpty());
    else
        eisGoed(std::get<Opdracht>(saver));
    const auto bureau = brixtel::leesBureauOpdracht(woorden);
    if (const auto* fout = std::get_if<brixtel::Fout>(&bureau))
        eis(!brixtel::eenRegel(fout->regel).isEmpty());
}

}  // namespace fuzz
