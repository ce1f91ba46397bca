// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "connections/VerbindingWacht.h"

namespace brixtel {

// Measures once and prints the connections on standard output, as a table or as JSON. Waits
// for lsof. A SIGINT, SIGTERM or SIGHUP ends the measurement with all its processes, and
// then this process, by that signal. A signal that the process was started to ignore stays
// ignored. Main thread, one call at a time. Returns the error as one line for the user;
// empty on success.
[[nodiscard]] QString toonVerbindingen(bool json, const VerbindingWacht::Bron& bron = {});

}  // namespace brixtel
