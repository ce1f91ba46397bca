// SPDX-License-Identifier: MIT
#pragma once

#include "platform/time/Queue.h"

namespace brixtel {

// Reads what the program's first globe needs, the table of countries and the map of the
// land, on a thread of its own. A globe made meanwhile waits for the rest. Owned by whoever
// will show a globe later and must not halt then; its end waits for the reading. Main thread.
class BolVoorraad {
  public:
    BolVoorraad();

  private:
    platform::SerialQueue wachtrij_;
};

}  // namespace brixtel
