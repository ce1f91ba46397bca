// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace brixtel {

// The number of edits between two words. A missing, extra or replaced letter is one edit; so
// is a swap of two neighbours.
[[nodiscard]] int afstand(const QString& een, const QString& ander);

// The words of `alle` that `woord` probably means. The nearest word comes alone, the first of
// equally near ones, where the edits are at most a third of the letters. Otherwise the words
// that begin with `woord` come, three at most; otherwise the nearest word of five letters with
// two edits. Empty where none is near.
[[nodiscard]] QStringList bedoeld(const QString& woord, const QStringList& alle);

}  // namespace brixtel
