// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/window/SpaceFunctions.h"
#include "platform/window/Window.h"

namespace brixtel {

// Lifts windows above everything on the desktop, full-screen windows and panels included,
// by putting them in one space of their own. The space's functions are looked up by name
// among the process's loaded libraries. Where one is missing, or no such space can be made,
// the windows silently stay at their ordinary level. Without instances; the state lasts as
// long as the process. Main thread only.
class Bovenlaag final {
  public:
    Bovenlaag() = delete;

    // Puts a window in the space, which is made and shown for the first one. A window that
    // has no number yet stays where it is.
    static void zet(platform::Window& venster);

    // Hides and destroys the space, if it exists.
    static void ruimOp();

    // The space; 0 without one.
    [[nodiscard]] static std::uint64_t ruimte();

    // The functions, each looked up once and then kept; nullptr where absent.
    using Verbinding = std::int32_t (*)();
    using Maak = std::uint64_t (*)(std::int32_t verbinding, std::int32_t vlag,
                                   const CGSOptions* opties);
    using ZetNiveau = void (*)(std::int32_t verbinding, std::uint64_t ruimte, std::int32_t niveau);
    using Toon = void (*)(std::int32_t verbinding, const CGSNumbers* ruimten);
    using Verberg = void (*)(std::int32_t verbinding, const CGSNumbers* ruimten);
    using Voeg = void (*)(std::int32_t verbinding, const CGSNumbers* vensters,
                          const CGSNumbers* ruimten);
    using Sloop = void (*)(std::int32_t verbinding, std::uint64_t ruimte);

    [[nodiscard]] static Verbinding verbinding();  // "_CGSDefaultConnection"
    [[nodiscard]] static Maak maak();              // "CGSSpaceCreate"
    [[nodiscard]] static ZetNiveau zetNiveau();    // "CGSSpaceSetAbsoluteLevel"
    [[nodiscard]] static Toon toon();              // "CGSShowSpaces"
    [[nodiscard]] static Verberg verberg();        // "CGSHideSpaces"
    [[nodiscard]] static Voeg voeg();              // "CGSAddWindowsToSpaces"
    [[nodiscard]] static Sloop sloop();            // "CGSSpaceDestroy"

    // Resets the state to that of a new process, with functions found by `zoek` in place of
    // the process's own search; nullptr restores that search. For tests.
    using Zoek = void* (*)(const char* naam);
    static void begin(Zoek zoek);
};

}  // namespace brixtel
