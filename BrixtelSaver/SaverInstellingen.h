// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "BrixtelSaver/SaverKeuze.h"
#include "platform/session/Preferences.h"

namespace brixtel {

// The one place where the chosen mode is kept between runs: key "keuze" in the
// module's own preferences, holding the raw value. Main thread.
class SaverInstellingen final {
  public:
    SaverInstellingen() = delete;

    static constexpr QLatin1String moduleNaam{"nl.groenlicht.brixtel.saver"};

    // The store, asked for anew each time; none where there is none.
    static std::unique_ptr<platform::Preferences> opslag();

    // `wisselend` when nothing, or nothing valid, is stored.
    static SaverKeuze keuze();

    // Stored and written out at once; without a store nothing happens.
    static void zetKeuze(SaverKeuze keuze);
};

}  // namespace brixtel
