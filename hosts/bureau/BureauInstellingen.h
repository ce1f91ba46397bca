// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>
#include <optional>

#include "worlds/DrieSoort.h"

namespace brixtel {

// The user's choices for the desktop effects.
struct BureauKeuzes {
    double dichtheid = 0.7;          // 0...1
    double snelheid = 1.0;           // 0.2...4, times the usual
    bool muziek = false;             // whether the black screen follows the music
    std::optional<DrieSoort> soort;  // the panel's black screen; none is the rain
    bool voorbeeld = true;           // whether the panel shows a preview
    friend bool operator==(const BureauKeuzes&, const BureauKeuzes&) = default;
};

// The only store of the choices between runs, in the program's own preferences. Main thread.
class BureauInstellingen final {
  public:
    BureauInstellingen() = delete;

    static constexpr QLatin1String moduleNaam{"nl.groenlicht.brixtel.bureau"};
    static constexpr double kLangzaamst = 0.2;
    static constexpr double kSnelst = 4.0;

    // Returns the stored choices; an absent or invalid value is the default.
    static BureauKeuzes lees();

    // Writes the choices out at once. Returns 0, or the number of the error that prevented
    // it; without a store nothing happens.
    static int bewaar(const BureauKeuzes& keuzes);
};

}  // namespace brixtel
