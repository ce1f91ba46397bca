// SPDX-License-Identifier: MIT
#include "controls/BXVlak.h"

#include <QPainter>
#include <algorithm>

namespace brixtel {

void BXVlak::zetKleur(const QColor& kleur) {
    if (kleur_ == kleur) return;
    kleur_ = kleur;
    verouder();
    Q_EMIT kleurChanged();
}

void BXVlak::zetRand(const QColor& rand) {
    if (rand_ == rand) return;
    rand_ = rand;
    verouder();
    Q_EMIT randChanged();
}

void BXVlak::zetRonding(double ronding) {
    if (ronding_ == ronding) return;
    ronding_ = ronding;
    verouder();
    Q_EMIT rondingChanged();
}

void BXVlak::zetDun(bool dun) {
    if (dun_ == dun) return;
    dun_ = dun;
    verouder();
    Q_EMIT dunChanged();
}

QRect BXVlak::pixels(QPointF plaats, double schaal) const {
    QRect doel = BXTekening::pixels(plaats, schaal);
    if (!dun_ || doel.isEmpty()) return doel;
    if (width() < height())
        doel.setWidth(lijnDikte(schaal));
    else
        doel.setHeight(lijnDikte(schaal));
    return doel;
}

void BXVlak::teken(QPainter& painter, QSize maat, double schaal) const {
    const int dikte = rand_.alpha() > 0 ? lijnDikte(schaal) : 0;
    const double ronding = std::min(ronding_ * schaal, std::min(maat.width(), maat.height()) / 2.0);
    if (ronding > 0.0)
        tekenRond(painter, maat, dikte, ronding);
    else
        tekenRecht(painter, maat, dikte);
}

void BXVlak::tekenRecht(QPainter& painter, QSize maat, int dikte) const {
    const QRect alles({}, maat);
    const QRect binnen = alles.adjusted(dikte, dikte, -dikte, -dikte);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(alles, dikte > 0 ? rand_ : kleur_);
    if (dikte > 0 && binnen.isValid()) painter.fillRect(binnen, kleur_);
}

void BXVlak::tekenRond(QPainter& painter, QSize maat, int dikte, double ronding) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(kleur_);
    painter.setPen(dikte > 0 ? QPen(rand_, dikte) : QPen(Qt::NoPen));
    const double half = dikte / 2.0;
    painter.drawRoundedRect(QRectF({}, maat).adjusted(half, half, -half, -half), ronding - half,
                            ronding - half);
}

}  // namespace brixtel
