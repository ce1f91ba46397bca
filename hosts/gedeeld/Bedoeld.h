// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace brixtel {

// The number of edits between two words. A missing, extra or replaced letter is one edit; so
// is a swap of two neighbours.
[[nodiscard]] int afstand(const QString& een, const QString& ander);

// The word of `alle` that `woord` probably means: the nearest one, and the first of equally
// near ones. Empty where the edits are more than a third of the letters.
[[nodiscard]] QString bedoeld(const QString& woord, const QStringList& alle);

}  // namespace brixtel
