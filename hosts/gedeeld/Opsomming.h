// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace brixtel {

// Joins the words as "a, b en c", with `voegwoord` before the last.
[[nodiscard]] QString opsomming(const QStringList& woorden, QLatin1String voegwoord);

// The column of --help at which the meaning of an option begins.
inline constexpr int kHulpKolom = 25;

// The text broken into lines for --help. Every line after the first begins with
// `inspringing` spaces, and the first line has that many columns taken already. No line is
// wider than a terminal. Without a line break at the end.
[[nodiscard]] QString vouw(const QString& tekst, int inspringing);

}  // namespace brixtel
