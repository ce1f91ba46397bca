// SPDX-License-Identifier: MIT
#include "controls/BX.h"

#include <QQmlEngine>
#include <algorithm>

#include "controls/Getallen.h"
#include "drawing/Thema.h"

namespace brixtel {

const QColor& BXKleur::bx() {
    return Thema::groen();
}
const QColor& BXKleur::bxMiddel() {
    return Thema::middel();
}
const QColor& BXKleur::bxDonker() {
    return Thema::donker();
}
const QColor& BXKleur::bxWit() {
    return Thema::wit();
}
const QColor& BXKleur::bxZwart() {
    return Thema::zwart();
}
const QColor& BXKleur::bxOranje() {
    return Thema::oranje();
}
const QColor& BXKleur::bxCijfer() {
    return Thema::cijfer();
}

QFont bxFont(double grootte, BXFontOpties opties) {
    return Thema::font(grootte, {.vet = opties.vet});
}

void bxBereid(QQmlEngine& machine) {
    machine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

QFont BX::font(double grootte, bool vet) const {
    return bxFont(grootte, {.vet = vet});
}

QColor BX::dek(const QColor& kleur, double dekking) const {
    QColor gedekt = kleur;
    gedekt.setAlphaF(static_cast<float>(kleur.alphaF() * std::clamp(dekking, 0.0, 1.0)));
    return gedekt;
}

QString BX::bxGetal(double waarde, int decimalen) const {
    return brixtel::bxGetal(waarde, decimalen);
}

QString BX::bxProcent(double fractie) const {
    return brixtel::bxProcent(fractie);
}

}  // namespace brixtel
