// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace platform {

// Called with true once no input came for the time of a watch, and with false on the first
// input after that. Main thread.
using IdleAction = std::function<void(bool idle)>;

// A watch on the user's input, by whatever knows of the input. Its owner ends the watch by
// dropping it; the action is not called from then on. Main thread.
class IdleWatch {
  public:
    IdleWatch() = default;
    virtual ~IdleWatch() = default;
    IdleWatch(const IdleWatch&) = delete;
    IdleWatch& operator=(const IdleWatch&) = delete;
};

}  // namespace platform
