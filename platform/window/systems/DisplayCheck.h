// SPDX-License-Identifier: MIT
#pragma once

struct xcb_connection_t;

namespace platform {

// Whether the X server that the environment names answers. Qt would end the
// program with a crash where it does not. To be kept until Qt has connected: a
// server may start anew when its last client leaves, and turn others away
// meanwhile.
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
