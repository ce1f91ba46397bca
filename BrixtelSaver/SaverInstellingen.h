// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "BrixtelSaver/SaverKeuze.h"
#include "platform/session/Preferences.h"

namespace brixtel {

// The only store of the chosen mode between runs: key "keuze" in the module's own
// preferences, with the raw value. Main thread.
class SaverInstellingen final {
  public:
    SaverInstellingen() = delete;

    static constexpr QLatin1String moduleNaam{"nl.groenlicht.brixtel.saver"};

    // The store, looked up at each call; none where it is absent.
    static std::unique_ptr<platform::Preferences> opslag();

    // The stored mode; `wisselend` when none, or no valid one, is stored.
    static SaverKeuze keuze();

    // Stores the mode and writes it out at once; without a store nothing happens.
    static void zetKeuze(SaverKeuze keuze);
};

}  // namespace brixtel
