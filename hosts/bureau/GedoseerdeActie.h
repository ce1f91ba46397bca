// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/time/Timer.h"

namespace brixtel {

// An action that may be requested often, as by a moving slider, and runs at most once in
// `tussentijd` seconds. It runs at once after a longer pause. Otherwise one run at the end
// of the interval serves all requests, so that the last request is never lost. Main thread;
// the clock must outlive it.
class GedoseerdeActie {
  public:
    GedoseerdeActie(platform::MediaClock& klok, double tussentijd, std::function<void()> doe);
    GedoseerdeActie(const GedoseerdeActie&) = delete;
    GedoseerdeActie& operator=(const GedoseerdeActie&) = delete;

    void vraag();
    // Runs a waiting action now.
    void doeNu();
    // Drops a waiting action, as the destructor does. The next request runs at once.
    void vergeet();

  private:
    void doe();

    platform::MediaClock& klok_;
    const double tussentijd_;
    const std::function<void()> doe_;
    platform::Timer pauzeKlok_;
    bool wacht_ = false;
};

}  // namespace brixtel
