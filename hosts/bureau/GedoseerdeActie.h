// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/time/Timer.h"

namespace brixtel {

// Something that is asked for as often as a slider moves, and done no more often
// than once in `tussentijd` seconds: at once where it has not been done lately, and
// else once for all, as that time is up. So what was asked for last is done too.
// Main thread; the clock must outlive it.
class GedoseerdeActie {
  public:
    GedoseerdeActie(platform::MediaClock& klok, double tussentijd, std::function<void()> doe);
    GedoseerdeActie(const GedoseerdeActie&) = delete;
    GedoseerdeActie& operator=(const GedoseerdeActie&) = delete;

    void vraag();
    // What waits, if anything does, is done now.
    void nu();
    // What waits is done no more, as when this is dropped; the next is done at once.
    void vergeet();

  private:
    void doe();

    platform::MediaClock& klok_;
    const double tussentijd_;
    const std::function<void()> doe_;
    platform::Timer rust_;
    bool wacht_ = false;
};

}  // namespace brixtel
