// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Bedoeld.h"

#include <algorithm>
#include <vector>

namespace brixtel {

int afstand(const QString& een, const QString& ander) {
    const auto breedte = static_cast<std::size_t>(std::max<qsizetype>(ander.size(), 0)) + 1;
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

namespace {

// A shorter beginning says too little.
constexpr qsizetype kKortsteBegin = 2;
// Two edits are allowed in words of five letters.
constexpr qsizetype kVijf = 5;
// More words are a list, not a question.
constexpr qsizetype kMeesteWoorden = 3;

// The nearest word with at most `grens(letters)` edits; empty for none.
template <typename Grens>
QString dichtste(const QString& woord, const QStringList& alle, Grens grens) {
    QString beste;
    int minste = 0;
    for (const QString& kandidaat : alle) {
        const int ver = afstand(woord, kandidaat);
        if (ver > grens(std::max(woord.size(), kandidaat.size()))) continue;
        if (!beste.isEmpty() && ver >= minste) continue;
        beste = kandidaat;
        minste = ver;
    }
    return beste;
}

QStringList metBegin(const QString& begin, const QStringList& alle) {
    QStringList gevonden;
    if (begin.size() < kKortsteBegin) return gevonden;
    for (const QString& kandidaat : alle)
        if (kandidaat.startsWith(begin)) gevonden << kandidaat;
    return gevonden.size() > kMeesteWoorden ? QStringList() : gevonden;
}

}  // namespace

QStringList bedoeld(const QString& woord, const QStringList& alle) {
    const auto derde = [](qsizetype letters) { return letters / 3; };
    if (const QString een = dichtste(woord, alle, derde); !een.isEmpty()) return {een};
    if (const QStringList begonnen = metBegin(woord, alle); !begonnen.isEmpty()) return begonnen;
    const auto ruimer = [](qsizetype letters) { return letters == kVijf ? 2 : 0; };
    const QString een = dichtste(woord, alle, ruimer);
    return een.isEmpty() ? QStringList() : QStringList{een};
}

}  // namespace brixtel
