// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "worlds/DrieSoort.h"

namespace brixtel {

// The content of a black screen: a scene, or none for the rain.
using ZwartSoort = std::optional<DrieSoort>;

// All kinds in the order of menus, the rain first.
[[nodiscard]] const std::vector<ZwartSoort>& alleZwartSoorten();

// The raw value and the name for the user, as in DrieSoort.
[[nodiscard]] QString ruweWaarde(ZwartSoort soort);
[[nodiscard]] QString naam(ZwartSoort soort);
[[nodiscard]] QString uitleg(ZwartSoort soort);

// The raw values of all kinds.
[[nodiscard]] const QStringList& zwartWoorden();

// Reads a raw value; an empty text is the rain too. False for anything else.
[[nodiscard]] bool leesSoort(const QString& tekst, ZwartSoort& soort);

}  // namespace brixtel
