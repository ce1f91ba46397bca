// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"

namespace brixtel {

// Shows the module's configuration sheet until it closes, and prints the picked mode on
// standard output, in the form of --keuze. Writes a picture of the sheet instead where the
// command names a file. Needs the application of the module that holds the sheet. Sets
// `doorSignaal` to the signal that ended the sheet, if one did. Returns the error as one
// line for the user; empty on success.
[[nodiscard]] QString toonInstellingen(const Opdracht& opdracht, const ModuleLader& module,
                                       int& doorSignaal);

}  // namespace brixtel
