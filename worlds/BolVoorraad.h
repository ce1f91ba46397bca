// SPDX-License-Identifier: MIT
#pragma once

#include "platform/time/Queue.h"

namespace brixtel {

// Reads what the program's first globe needs, the table of countries and the map of the
// land, each on a thread of its own. A globe made meanwhile waits for the rest. Owned by
// whoever will show a globe later and must not halt then; its end waits for the reading. Main
// thread.
class BolVoorraad {
  public:
    // Reads the table, and nothing of the environment: the main thread may write there.
    BolVoorraad();

    // Reads the map; once there is an application object, whose screens the pictures ask for.
    void leesKaart();

  private:
    platform::SerialQueue tabel_;
    platform::SerialQueue kaart_;
};

}  // namespace brixtel
