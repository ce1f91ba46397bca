// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"

namespace brixtel {

// Makes the command's still picture and writes it, whole or not at all. Needs a
// QGuiApplication whose main screen has the wanted scale, and no display. Returns the error
// as one line for the user; empty on success.
[[nodiscard]] QString maakPlaatje(const Opdracht& opdracht, const ModuleLader& module);

}  // namespace brixtel
