// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"

namespace brixtel {

// Shows the module's configuration sheet until it closes and prints what was picked in it,
// as --keuze takes it, on standard output; or puts its picture in
// the file that the command names. Needs the application of the module that the
// sheet is in. `doorSignaal` is set to the signal that ended it, if one did.
// Returns what went wrong, as one line for the user; empty if nothing did.
[[nodiscard]] QString toonInstellingen(const Opdracht& opdracht, const ModuleLader& module,
                                       int& doorSignaal);

}  // namespace brixtel
