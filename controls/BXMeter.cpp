// SPDX-License-Identifier: MIT
#include "controls/BXMeter.h"

#include <cmath>

namespace brixtel {

BXMeter::BXMeter(QQuickItem* ouder) : BXBalken(ouder) {
    meldWaarden();
    connect(this, &BXBalken::aantalChanged, this, &BXMeter::vul);
}

void BXMeter::zetWaarde(double waarde) {
    if (waarde_ == waarde) return;
    waarde_ = waarde;
    vul();
    Q_EMIT waardeChanged();
}

void BXMeter::vul() {
    zetGevuld(static_cast<int>(std::lround(waarde_ * aantal())));
}

}  // namespace brixtel
