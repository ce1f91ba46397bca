// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"

namespace brixtel {

// Makes the still picture that the command asks for and writes it, whole or not
// at all. Needs a QGuiApplication whose main screen has the wanted scale, and no
// display. Returns what went wrong, as one line for the user; empty if nothing
// did.
[[nodiscard]] QString maakPlaatje(const Opdracht& opdracht, const ModuleLader& module);

}  // namespace brixtel
