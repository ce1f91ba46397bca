// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

namespace brixtel {

// The kinds of 3D scene. The raw values are those of the saver's choices too,
// by which it finds the kind of a choice. A kind is written down as its raw value
// and nothing else.
enum class DrieSoort : std::uint8_t { bol, kubus, tunnel, logo };

// In the order in which they are offered.
inline constexpr std::array alleSoorten{DrieSoort::bol, DrieSoort::kubus, DrieSoort::tunnel,
                                        DrieSoort::logo};

// The raw value: the case's own name. The same serves as its identity.
[[nodiscard]] QString ruweWaarde(DrieSoort soort);
[[nodiscard]] QString id(DrieSoort soort);

// None for anything but exactly one of the four raw values.
[[nodiscard]] std::optional<DrieSoort> soortUitRuw(QStringView ruw);

// What the user reads: the raw value in upper case, and one line of explanation.
[[nodiscard]] QString naam(DrieSoort soort);
[[nodiscard]] QString uitleg(DrieSoort soort);

}  // namespace brixtel
