// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace brixtel {

// "a, b en c", with this word before the last.
[[nodiscard]] QString opsomming(const QStringList& woorden, QLatin1String voegwoord);

// The column of --help at which the meaning of an option begins.
inline constexpr int kHulpKolom = 25;

// The text broken into lines for --help: every line after the first begins with
// `inspringing` spaces, no line is longer than a terminal is wide, and the first has
// `inspringing` columns taken already. Without a line break at the end.
[[nodiscard]] QString vouw(const QString& tekst, int inspringing);

}  // namespace brixtel
