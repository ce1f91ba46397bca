// SPDX-License-Identifier: MIT
#include "controls/BXKeuzeBasis.h"

#include <algorithm>

#include "controls/KeuzeRekenen.h"

namespace brixtel {

QVariant BXKeuzeBasis::waarde(qsizetype index) const {
    return opties_[index].toMap().value(QStringLiteral("waarde"));
}

void BXKeuzeBasis::zetOpties(const QVariantList& opties) {
    if (opties_ == opties) return;
    opties_ = opties;
    Q_EMIT optiesChanged();
    Q_EMIT gekozenChanged();
}

void BXKeuzeBasis::zetKeuze(const QVariant& keuze) {
    if (keuze_ == keuze) return;
    keuze_ = keuze;
    Q_EMIT keuzeChanged();
    Q_EMIT gekozenChanged();
}

int BXKeuzeBasis::gekozen() const {
    for (qsizetype i = 0; i < opties_.size(); ++i)
        if (waarde(i) == keuze_) return static_cast<int>(i);
    return -1;
}

void BXKeuzeBasis::kies(int index) {
    if (index < 0 || index >= opties_.size() || waarde(index) == keuze_) return;
    zetKeuze(waarde(index));
    Q_EMIT gewisseld(keuze_);
}

QList<double> BXKeuzeBasis::verdeel(const QList<double>& gevraagd, const QList<double>& minst,
                                    double ruimte) {
    QList<KeuzeVraag> vragen;
    for (qsizetype i = 0; i < std::min(gevraagd.size(), minst.size()); ++i)
        vragen << KeuzeVraag{.gevraagd = gevraagd[i], .minst = minst[i]};
    return keuzeVerdeling(vragen, ruimte);
}

}  // namespace brixtel
