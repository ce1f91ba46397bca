// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace brixtel {

// Makes `bytes` the whole content of the file. Returns what went wrong, for the
// user; empty if nothing did. See platform::replaceFile(). Any thread.
[[nodiscard]] QString schrijfBestand(const QString& naam, const QByteArray& bytes);

// Prints `tekst` on the standard output, where all of it must arrive. Returns
// what went wrong, for the user; empty if nothing did. Main thread.
[[nodiscard]] QString drukAf(const QByteArray& tekst);

// Says in one line on standard error why the settings of `module` cannot be read
// and the defaults hold; nothing where they can, or are not there. Main thread.
void meldInstellingen(const QString& programma, const QString& module);

}  // namespace brixtel
