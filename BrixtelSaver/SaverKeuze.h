// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

namespace brixtel {

// What the saver shows: one scene, or another one every minute. The names of
// the 3D scenes are those of the scene kinds too, which the view relies on.
enum class SaverKeuze : std::uint8_t { wisselend, regen, bol, kubus, tunnel, logo };

// In the order in which they are offered.
inline constexpr std::array alleKeuzes{SaverKeuze::wisselend, SaverKeuze::regen,  SaverKeuze::bol,
                                       SaverKeuze::kubus,     SaverKeuze::tunnel, SaverKeuze::logo};

// The raw value, which is what is stored: the case's own name.
[[nodiscard]] QString ruweWaarde(SaverKeuze keuze);

// None for anything but exactly one of the six raw values.
[[nodiscard]] std::optional<SaverKeuze> keuzeUitRuw(QStringView ruw);

// What the user reads.
[[nodiscard]] QString naam(SaverKeuze keuze);

}  // namespace brixtel
