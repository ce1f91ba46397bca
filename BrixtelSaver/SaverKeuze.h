// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

namespace brixtel {

// What the saver shows: one scene, or another one every minute. The cases come from the
// table of scenes, so that a 3D scene has the raw value of its DrieSoort.
enum class SaverKeuze : std::uint8_t {
#define AFWISSELING(ruw, ...) ruw,
#define VLAK(ruw, ...) ruw,
#define DRIE(ruw, ...) ruw,
#include "worlds/Scenes.def"
};

// In the order in which they are offered.
inline constexpr std::array alleKeuzes{
#define AFWISSELING(ruw, ...) SaverKeuze::ruw,
#define VLAK(ruw, ...) SaverKeuze::ruw,
#define DRIE(ruw, ...) SaverKeuze::ruw,
#include "worlds/Scenes.def"
};

// The same without the mode that changes: one scene each.
inline constexpr std::array alleScenes{
#define VLAK(ruw, ...) SaverKeuze::ruw,
#define DRIE(ruw, ...) SaverKeuze::ruw,
#include "worlds/Scenes.def"
};

// The raw value, which is what is stored: the case's own name.
[[nodiscard]] QString ruweWaarde(SaverKeuze keuze);

// None for anything but exactly one of the raw values.
[[nodiscard]] std::optional<SaverKeuze> keuzeUitRuw(QStringView ruw);

// What the user reads.
[[nodiscard]] QString naam(SaverKeuze keuze);

}  // namespace brixtel
