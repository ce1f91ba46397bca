// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "worlds/DrieSoort.h"

namespace brixtel {

// What a black screen shows: a scene, or none for the rain.
using ZwartSoort = std::optional<DrieSoort>;

// In the order in which they are offered, the rain first.
[[nodiscard]] const std::vector<ZwartSoort>& alleZwartSoorten();

// As DrieSoort's: the raw value, and what the user reads.
[[nodiscard]] QString ruweWaarde(ZwartSoort soort);
[[nodiscard]] QString naam(ZwartSoort soort);
[[nodiscard]] QString uitleg(ZwartSoort soort);

// The raw values.
[[nodiscard]] const QStringList& zwartWoorden();

// From a raw value; nothing is the rain too. False for anything else.
[[nodiscard]] bool leesSoort(const QString& tekst, ZwartSoort& soort);

}  // namespace brixtel
