// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "platform/session/ReducedMotion.h"
#include "platform/time/RestableClock.h"
#include "platform/time/Timer.h"
#include "platform/window/WindowServer.h"

namespace brixtel {

// Stills in place of movement, for as long as the desktop says that its user
// wishes so: every ten seconds another picture, and nothing in between. Main
// thread.
class StilleBeelden {
  public:
    // `beelden` is what the server's pictures move by; `bus` the session bus's
    // address.
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
