// SPDX-License-Identifier: MIT
#include "controls/KeuzeRekenen.h"

#include <algorithm>
#include <cmath>

namespace brixtel {

QList<double> keuzeVerdeling(const QList<KeuzeVraag>& vragen, double ruimte) {
    if (!(ruimte > 0.0)) return QList<double>(vragen.size(), 0.0);
    double gevraagd = 0.0, minst = 0.0;
    for (const KeuzeVraag& een : vragen) {
        gevraagd += een.gevraagd;
        minst += een.minst;
    }
    const double over = std::max(0.0, ruimte - gevraagd) / static_cast<double>(vragen.size());
    // The share of the way from the longest words to whole labels that the room allows.
    const double deel =
        gevraagd > minst ? std::clamp((ruimte - minst) / (gevraagd - minst), 0.0, 1.0) : 1.0;
    const double krimp = ruimte < minst ? ruimte / minst : 1.0;

    QList<double> breedtes;
    double plek = 0.0, rand = 0.0;
    for (const KeuzeVraag& een : vragen) {
        plek += (een.minst + (een.gevraagd - een.minst) * deel) * krimp + over;
        const bool laatste = breedtes.size() + 1 == vragen.size();
        const double tot = laatste ? ruimte : std::round(plek);
        breedtes << tot - rand;
        rand = tot;
    }
    return breedtes;
}

}  // namespace brixtel
