// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>
#include <QString>
#include <optional>

#include "worlds/DrieSoort.h"

namespace brixtel {

// The strength of the flash on a beat that the user wants to see.
enum class Flits { gewoon, zacht, uit };

[[nodiscard]] QString ruweWaarde(Flits flits);
[[nodiscard]] std::optional<Flits> flitsUitRuw(const QString& ruw);
// The share of the flash that shows, 0...1.
[[nodiscard]] double flitsDeel(Flits flits);

// The user's choices for the desktop effects.
struct BureauKeuzes {
    double dichtheid = 0.7;          // 0...1
    double snelheid = 1.0;           // 0.2...4, times the usual
    bool muziek = false;             // whether the black screen follows the music
    Flits flits = Flits::gewoon;     // on a beat
    std::optional<DrieSoort> soort;  // what the panel's black screen shows; none for the rain
    bool voorbeeld = true;           // whether the panel shows it
    int rust = 0;                    // minutes without input until a black screen; 0 for never
    friend bool operator==(const BureauKeuzes&, const BureauKeuzes&) = default;
};

// The only store of the choices between runs, in the program's own preferences. Main thread.
class BureauInstellingen final {
  public:
    BureauInstellingen() = delete;

    static constexpr QLatin1String moduleNaam{"nl.groenlicht.brixtel.bureau"};
    static constexpr double kLangzaamst = 0.2;
    static constexpr double kSnelst = 4.0;
    static constexpr int kLangsteRust = 120;

    // Returns the stored choices; an absent or invalid value is the default.
    static BureauKeuzes lees();

    // Writes the choices out at once. Returns 0, or the number of the error that prevented
    // it; ENOENT without a store.
    static int bewaar(const BureauKeuzes& keuzes);
};

}  // namespace brixtel
