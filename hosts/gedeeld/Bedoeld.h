// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace brixtel {

// How many letters differ between two words: one that is missing, too many or another
// counts once, and so do two neighbours that changed places.
[[nodiscard]] int afstand(const QString& een, const QString& ander);

// The word of `alle` that was probably meant by `woord`: the nearest, the first of
// equals; empty where more than a third of the letters would differ.
[[nodiscard]] QString bedoeld(const QString& woord, const QStringList& alle);

}  // namespace brixtel
