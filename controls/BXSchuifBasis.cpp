// SPDX-License-Identifier: MIT
#include "controls/BXSchuifBasis.h"

#include <QAccessible>
#include <QPointer>
#include <cmath>

#include "controls/SchuifFocus.h"

namespace brixtel {

namespace {

bool gelijk(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

BXSchuifBasis::BXSchuifBasis(QQuickItem* ouder) : QQuickItem(ouder) {
    meldWaarden();
    setActiveFocusOnTab(true);
    connect(&SchuifFocus::gedeeld(), &SchuifFocus::actiefGewijzigd, this,
            &BXSchuifBasis::actiefChanged);
}

BXSchuifBasis::~BXSchuifBasis() {
    disconnect(&SchuifFocus::gedeeld(), nullptr, this, nullptr);
    if (toetsenbord_) SchuifFocus::gedeeld().laatLos(naam_);
}

SchuifRekenen BXSchuifBasis::reken() const {
    if (bereik_.size() != 2) return SchuifRekenen({.boven = 0.0, .stap = stap_});
    return SchuifRekenen({.onder = bereik_[0], .boven = bereik_[1], .stap = stap_});
}

void BXSchuifBasis::zetNaam(const QString& naam) {
    if (naam_ == naam) return;
    naam_ = naam;
    if (toetsenbord_) neemFocus();
    Q_EMIT naamChanged();
    Q_EMIT actiefChanged();
}

void BXSchuifBasis::zetWaarde(double waarde) {
    if (gelijk(waarde_, waarde)) return;
    waarde_ = waarde;
    Q_EMIT waardeChanged();
    if (!QAccessible::isActive()) return;
    QAccessibleValueChangeEvent melding(this, waarde_);
    QAccessible::updateAccessibility(&melding);
}

void BXSchuifBasis::zetBereik(const QList<double>& bereik) {
    if (bereik_ == bereik) return;
    bereik_ = bereik;
    Q_EMIT bereikChanged();
    Q_EMIT stepSizeChanged();
}

void BXSchuifBasis::zetStap(double stap) {
    if (gelijk(stap_, stap)) return;
    stap_ = stap;
    Q_EMIT stapChanged();
    Q_EMIT stepSizeChanged();
}

void BXSchuifBasis::zetTekst(const QString& tekst) {
    if (tekst_ == tekst) return;
    tekst_ = tekst;
    Q_EMIT tekstChanged();
}

void BXSchuifBasis::zetNaamBreedte(double breedte) {
    if (naamBreedte_ == breedte) return;
    naamBreedte_ = breedte;
    Q_EMIT naamBreedteChanged();
}

bool BXSchuifBasis::actief() const {
    return SchuifFocus::gedeeld().actief() == naam_;
}

int BXSchuifBasis::gevuld(double waarde, int balken) const {
    return reken().gevuld(waarde, balken);
}

void BXSchuifBasis::kies(double waarde) {
    // Assistive technology calls this on disabled sliders too.
    if (!isEnabled()) return;
    const double nieuw = reken().binnen(waarde);
    if (gelijk(nieuw, waarde_)) return;
    zetWaarde(nieuw);
    Q_EMIT bewogen(nieuw);
}

void BXSchuifBasis::sleep(double fractie) {
    if (std::isnan(fractie)) return;
    kies(reken().opFractie(fractie));
}

void BXSchuifBasis::verzet(int stappen) {
    kies(reken().verzet(waarde_, stappen));
}

void BXSchuifBasis::verhoog() {
    kies(reken().verhoogd(waarde_));
}

void BXSchuifBasis::verlaag() {
    kies(reken().verlaagd(waarde_));
}

void BXSchuifBasis::neemFocus() {
    SchuifFocus::gedeeld().neem(naam_, [zelf = QPointer(this)](int stappen) {
        if (BXSchuifBasis* schuif = zelf.data()) schuif->verzet(stappen);
    });
}

void BXSchuifBasis::keyPressEvent(QKeyEvent* event) {
    event->setAccepted(
        SchuifFocus::gedeeld().toets(event->key(), static_cast<int>(event->modifiers())));
}

void BXSchuifBasis::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    toetsenbord_ = true;
    neemFocus();
}

void BXSchuifBasis::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    toetsenbord_ = false;
    SchuifFocus::gedeeld().laatLos(naam_);
}

}  // namespace brixtel
