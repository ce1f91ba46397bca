// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

#include "worlds/DrieStart.h"

namespace brixtel {

// The kinds of 3D scene, from the table of scenes. The raw values are also those of the
// saver's choices, and the saver finds a choice's kind by them. A kind is stored as its raw
// value alone.
enum class DrieSoort : std::uint8_t {
#define DRIE(ruw, ...) ruw,
#include "worlds/Scenes.def"
};

// All kinds, in the order of menus.
inline constexpr std::array alleSoorten{
#define DRIE(ruw, ...) DrieSoort::ruw,
#include "worlds/Scenes.def"
};

// The raw value: the case's own name. id() is for lists that identify their entries by it.
[[nodiscard]] QString ruweWaarde(DrieSoort soort);
[[nodiscard]] QString id(DrieSoort soort);

// The kind of a raw value; none for any other text.
[[nodiscard]] std::optional<DrieSoort> soortUitRuw(QStringView ruw);

// The name and explanation for the user: the raw value in upper case, and one line.
[[nodiscard]] QString naam(DrieSoort soort);
[[nodiscard]] QString uitleg(DrieSoort soort);

// The state that the scene's builder begins with.
[[nodiscard]] const DrieStart& start(DrieSoort soort);

}  // namespace brixtel
