// SPDX-License-Identifier: MIT
#include "controls/BX.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>
#include <algorithm>
#include <cmath>

#include "controls/Getallen.h"
#include "drawing/Thema.h"

namespace brixtel {

namespace {

constexpr double kPuntenPerDuim = 72.0;

}  // namespace

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
    QFont font = Thema::font(grootte, {.vet = opties.vet});
    const QScreen* scherm = QGuiApplication::primaryScreen();
    if (grootte == std::round(grootte) || grootte <= 0.0 || !scherm) return font;
    // Only the typographer's point comes in parts; a screen says how many of
    // those go into its inch of layout.
    font.setPointSizeF(grootte * kPuntenPerDuim / std::round(scherm->logicalDotsPerInchY()));
    return font;
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
