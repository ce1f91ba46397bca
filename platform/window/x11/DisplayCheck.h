// SPDX-License-Identifier: MIT
#pragma once

struct xcb_connection_t;

namespace platform {

// Owns a connection that shows whether the environment's X server answers. Qt
// would crash without an answer. Keep the object until Qt has connected: a
// server may restart when its last client leaves, and refuse others meanwhile.
// Main thread.
class DisplayCheck {
  public:
    DisplayCheck();
    ~DisplayCheck();
    DisplayCheck(const DisplayCheck&) = delete;
    DisplayCheck& operator=(const DisplayCheck&) = delete;

    [[nodiscard]] bool isReachable() const;

  private:
    xcb_connection_t* const connection_;
};

}  // namespace platform
