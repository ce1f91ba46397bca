// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

namespace brixtel {

// The kinds of 3D scene, from the table of scenes. The raw values are those of the
// saver's choices too, and the saver finds the kind of a choice by them. A kind is written
// down as its raw value and nothing else.
enum class DrieSoort : std::uint8_t {
#define DRIE(ruw, ...) ruw,
#include "worlds/Scenes.def"
};

// In the order in which they are offered.
inline constexpr std::array alleSoorten{
#define DRIE(ruw, ...) DrieSoort::ruw,
#include "worlds/Scenes.def"
};

// The raw value: the case's own name. The identity is the raw value too.
[[nodiscard]] QString ruweWaarde(DrieSoort soort);
[[nodiscard]] QString id(DrieSoort soort);

// None for anything but exactly one of the raw values.
[[nodiscard]] std::optional<DrieSoort> soortUitRuw(QStringView ruw);

// What the user reads: the raw value in upper case, and one line of explanation.
[[nodiscard]] QString naam(DrieSoort soort);
[[nodiscard]] QString uitleg(DrieSoort soort);

}  // namespace brixtel
