// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "platform/session/ReducedMotion.h"
#include "platform/time/RestableClock.h"
#include "platform/time/Timer.h"
#include "platform/window/WindowServer.h"

namespace brixtel {

// Stills in place of movement while the desktop asks for reduced motion: a new picture
// every ten seconds, and nothing in between. Main thread.
class StilleBeelden {
  public:
    // `beelden` is the clock of the server's pictures; `bus` is the session bus's address.
    StilleBeelden(platform::RestableClock& beelden, platform::WindowServer& server,
                  const QString& bus);

  private:
    void zet(bool stil);
    void stap();

    platform::RestableClock& beelden_;
    platform::WindowServer& server_;
    platform::Timer stap_;
    platform::ReducedMotion wens_;
};

}  // namespace brixtel
