// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "connections/VerbindingWacht.h"

namespace brixtel {

// Measures once and prints the connections on standard output, as a table or as
// JSON. Waits for lsof; a SIGINT, SIGTERM or SIGHUP meanwhile ends that, with
// all that it started, and then this process, by the signal. One that the
// process was started to ignore stays ignored. Main thread, once at a time.
// Returns what went wrong, as one line for the user; empty if nothing did.
[[nodiscard]] QString toonVerbindingen(bool json, const VerbindingWacht::Bron& bron = {});

}  // namespace brixtel
