// SPDX-License-Identifier: MIT
#include "controls/BXTweestand.h"

namespace brixtel {

BXTweestand::BXTweestand(QQuickItem* ouder) : BXDruk(ouder) {
    connect(this, &BXDruk::gedrukt, this, &BXTweestand::wissel);
}

void BXTweestand::wissel() {
    zetAan(!aan_);
    Q_EMIT gewisseld(aan_);
}

void BXTweestand::zetAan(bool aan) {
    if (aan_ == aan) return;
    aan_ = aan;
    Q_EMIT aanChanged();
}

void BXTweestand::zetLabel(const QString& label) {
    if (label_ == label) return;
    label_ = label;
    Q_EMIT labelChanged();
}

}  // namespace brixtel
