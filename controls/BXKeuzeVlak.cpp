// SPDX-License-Identifier: MIT
#include "controls/BXKeuzeVlak.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "controls/BX.h"

namespace brixtel {

void BXKeuzeVlak::zetVan(double van) {
    if (van_ == van) return;
    van_ = van;
    verouder();
    Q_EMIT vanChanged();
}

void BXKeuzeVlak::zetTot(double tot) {
    if (tot_ == tot) return;
    tot_ = tot;
    verouder();
    Q_EMIT totChanged();
}

void BXKeuzeVlak::teken(QPainter& painter, QSize maat, double schaal) const {
    painter.setRenderHint(QPainter::Antialiasing);
    const int dikte = lijnDikte(schaal);
    const double half = dikte / 2.0;
    const QRectF midden = QRectF({}, maat).adjusted(half, half, -half, -half);
    QPainterPath omtrek;
    omtrek.addRoundedRect(midden, midden.height() / 2.0, midden.height() / 2.0);
    const auto van = std::lround(van_ * schaal), tot = std::lround(tot_ * schaal);
    if (tot > van) {
        QPainterPath deel;
        deel.addRect(
            QRectF(static_cast<double>(van), 0.0, static_cast<double>(tot - van), maat.height()));
        painter.fillPath(omtrek & deel, BXKleur::bx());
    }
    painter.strokePath(omtrek, QPen(BXKleur::bxMiddel(), dikte));
}

}  // namespace brixtel
