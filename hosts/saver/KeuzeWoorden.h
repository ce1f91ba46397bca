// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace brixtel {

// The raw values of --keuze, in the order of menus: all, those of scenes that end as they
// began, those of scenes that draw lines to countries. Any thread.
[[nodiscard]] QStringList keuzeWoorden();
[[nodiscard]] QStringList keuzesMetLus();
[[nodiscard]] QStringList keuzesMetLijnen();

}  // namespace brixtel
