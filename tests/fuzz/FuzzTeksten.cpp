// SPDX-License-Identifier: MIT
// Files that people and other programs write.
#include "connections/Overzicht.h"
#include "hosts/saver/ProgrammaLijst.h"
#include "platform/session/IniText.h"
#include "tests/fuzz/FuzzDoelen.h"

namespace fuzz {

void json(Bytes bytes) {
    const auto lijnen = brixtel::leesJson(alsArray(bytes));
    if (!lijnen) return;
    for (const brixtel::Lijn& lijn : *lijnen) {
        eis(lijn.aantal >= 0);
        eis(lijn.land.breedte >= -90.0 && lijn.land.breedte <= 90.0);
        eis(lijn.land.lengte >= -180.0 && lijn.land.lengte <= 180.0);
    }
    // A sum that is no number stops the process, as the watcher's does.
    std::int64_t som = 0;
    for (const brixtel::Lijn& lijn : *lijnen)
        if (__builtin_add_overflow(som, lijn.aantal, &som)) return;
    const auto weer = brixtel::leesJson(brixtel::alsJson(*lijnen));
    eis(weer && weer->size() == lijnen->size());
    for (std::size_t i = 0; i < weer->size(); ++i) {
        eis((*weer)[i].aantal == (*lijnen)[i].aantal);
        eis((*weer)[i].land.code == (*lijnen)[i].land.code);
        eis((*weer)[i].programmas == (*lijnen)[i].programmas);
    }
}

void instellingen(Bytes bytes) {
    // The new value is the first half, the file the second.
    const QByteArray alles = alsArray(bytes);
    const qsizetype grens = alles.indexOf('\n');
    const QString waarde = QString::fromUtf8(alles.left(std::max(grens, qsizetype{0})));
    platform::IniText tekst(alles.mid(grens + 1));
    const QByteArray sleutel = QByteArrayLiteral("keuze");
    const auto ander = tekst.value(QByteArrayLiteral("dichtheid"));
    (void)tekst.value(sleutel);
    tekst.setValue(sleutel, waarde);
    eis(tekst.value(sleutel) == waarde);
    eis(tekst.value(QByteArrayLiteral("dichtheid")) == ander);
    const platform::IniText weer(tekst.text());
    eis(weer.value(sleutel) == waarde);
    eis(weer.text() == tekst.text());
}

void gastheer(Bytes bytes) {
    using namespace brixtel::programmalijst;
    const QByteArray tekst = alsArray(bytes);
    if (onleesbareRegel(tekst) != 0) return;
    const Staat was = staat(tekst);
    const QByteArray met = metOns(tekst, QByteArrayLiteral("brixtel-saver --root"));
    eis(onleesbareRegel(met) == 0);
    eis(staat(met) == (was == Staat::Afwezig ? Staat::Aanwezig : was));
    eis(was == Staat::Afwezig || met == tekst);
    const QByteArray zonder = zonderOns(met);
    eis(staat(zonder) == Staat::Afwezig);
    // An earlier value, which the host overwrites, may hold our program too.
    eis(was != Staat::Afwezig || zonder == zonderOns(tekst));
    eis(zonderOns(zonder) == zonder);
}

}  // namespace fuzz
