// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace brixtel {

// Makes `bytes` the whole content of the file. Returns the error as text for the user;
// empty on success. See platform::replaceFile(). Any thread.
[[nodiscard]] QString schrijfBestand(const QString& naam, const QByteArray& bytes);

// The text for the user where a file cannot be written, by the error's number. Any thread.
[[nodiscard]] QString nietTeSchrijven(const QString& naam, int fout);

// Prints the whole `tekst` on the standard output. Returns the error as text for the user;
// empty on success. Main thread.
[[nodiscard]] QString drukAf(const QByteArray& tekst);

// Prints one line on standard error where the settings of `module` cannot be read and the
// defaults hold: the reason. Prints nothing where they can be read, or are absent. Main
// thread.
void meldInstellingen(const QString& programma, const QString& module);

}  // namespace brixtel
