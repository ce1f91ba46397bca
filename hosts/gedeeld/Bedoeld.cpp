// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Bedoeld.h"

#include <algorithm>
#include <vector>

namespace brixtel {

int afstand(const QString& een, const QString& ander) {
    const auto breedte = static_cast<std::size_t>(ander.size()) + 1;
    // Row i holds the distances of the first i letters of one word to the first j letters of
    // the other. Only the last three rows are kept.
    std::vector<int> voorvorige(breedte), vorige(breedte), rij(breedte);
    for (std::size_t j = 0; j < breedte; ++j)
        vorige[j] = static_cast<int>(j);
    for (qsizetype i = 1; i <= een.size(); ++i) {
        rij[0] = static_cast<int>(i);
        for (qsizetype j = 1; j <= ander.size(); ++j) {
            const auto k = static_cast<std::size_t>(j);
            const int anders = een[i - 1] == ander[j - 1] ? 0 : 1;
            rij[k] = std::min({vorige[k] + 1, rij[k - 1] + 1, vorige[k - 1] + anders});
            if (i > 1 && j > 1 && een[i - 1] == ander[j - 2] && een[i - 2] == ander[j - 1])
                rij[k] = std::min(rij[k], voorvorige[k - 2] + 1);
        }
        voorvorige.swap(vorige);
        vorige.swap(rij);
    }
    return vorige.back();
}

QString bedoeld(const QString& woord, const QStringList& alle) {
    QString beste;
    int minste = 0;
    for (const QString& kandidaat : alle) {
        const int ver = afstand(woord, kandidaat);
        if (3 * ver > std::max(woord.size(), kandidaat.size())) continue;
        if (!beste.isEmpty() && ver >= minste) continue;
        beste = kandidaat;
        minste = ver;
    }
    return beste;
}

}  // namespace brixtel
