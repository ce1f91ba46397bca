// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

namespace brixtel {

// The saver's mode: one scene, or another scene every minute. The cases come from the table
// of scenes, so that a 3D scene has the raw value of its DrieSoort.
enum class SaverKeuze : std::uint8_t {
#define AFWISSELING(ruw, ...) ruw,
#define VLAK(ruw, ...) ruw,
#define DRIE(ruw, ...) ruw,
#include "worlds/Scenes.def"
};

// All modes, in the order of menus.
inline constexpr std::array alleKeuzes{
#define AFWISSELING(ruw, ...) SaverKeuze::ruw,
#define VLAK(ruw, ...) SaverKeuze::ruw,
#define DRIE(ruw, ...) SaverKeuze::ruw,
#include "worlds/Scenes.def"
};

// The modes of one scene each, without the rotating mode.
inline constexpr std::array alleScenes{
#define VLAK(ruw, ...) SaverKeuze::ruw,
#define DRIE(ruw, ...) SaverKeuze::ruw,
#include "worlds/Scenes.def"
};

// The raw value, which is stored: the case's own name.
[[nodiscard]] QString ruweWaarde(SaverKeuze keuze);

// The mode of a raw value; none for any other text.
[[nodiscard]] std::optional<SaverKeuze> keuzeUitRuw(QStringView ruw);

// The name for the user.
[[nodiscard]] QString naam(SaverKeuze keuze);

}  // namespace brixtel
