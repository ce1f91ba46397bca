// SPDX-License-Identifier: MIT
#include "controls/BXBalken.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "controls/BX.h"
#include "controls/SchuifRekenen.h"

namespace brixtel {

namespace {

constexpr float kGedoofd = 0.55F;
constexpr double kHoog = 11.0;

}  // namespace

BXBalken::BXBalken(QQuickItem* ouder) : BXTekening(ouder) {
    setImplicitHeight(kHoog);
}

void BXBalken::zetAantal(int aantal) {
    aantal = std::max(0, aantal);
    if (aantal_ == aantal) return;
    aantal_ = aantal;
    setImplicitWidth(aantal == 0 ? 0.0
                                 : SchuifRekenen::kBalkAfstand * (aantal - 1) +
                                       SchuifRekenen::kBalkBreedte);
    verouder();
    Q_EMIT aantalChanged();
}

void BXBalken::zetGevuld(int gevuld) {
    if (gevuld_ == gevuld) return;
    gevuld_ = gevuld;
    verouder();
    Q_EMIT gevuldChanged();
}

void BXBalken::teken(QPainter& painter, QSize maat, double schaal) const {
    QColor gedoofd = BXKleur::bxDonker();
    gedoofd.setAlphaF(kGedoofd);
    // All bars have one width, so the gaps take the remainder.
    const int breed = std::max(1, static_cast<int>(SchuifRekenen::kBalkBreedte * schaal + 1e-3));
    for (int i = 0; i < aantal_; ++i) {
        const int x = static_cast<int>(std::lround(SchuifRekenen::kBalkAfstand * i * schaal));
        painter.fillRect(x, 0, breed, maat.height(), i < gevuld_ ? BXKleur::bx() : gedoofd);
    }
}

}  // namespace brixtel
