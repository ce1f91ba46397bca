// SPDX-License-Identifier: MIT
#include "controls/BXRijBasis.h"

namespace brixtel {

void BXRijBasis::zetTitel(const QString& titel) {
    if (titel_ == titel) return;
    titel_ = titel;
    Q_EMIT titelChanged();
}

void BXRijBasis::zetStatus(const QString& status) {
    if (status_ == status) return;
    status_ = status;
    Q_EMIT statusChanged();
}

void BXRijBasis::zetAan(bool aan) {
    if (aan_ == aan) return;
    aan_ = aan;
    Q_EMIT aanChanged();
}

void BXRijBasis::zetOpen(bool open) {
    if (open_ == open) return;
    open_ = open;
    Q_EMIT openChanged();
}

void BXRijBasis::schakel(bool aan) {
    if (aan_ == aan) return;
    zetAan(aan);
    Q_EMIT gewisseld(aan);
}

}  // namespace brixtel
