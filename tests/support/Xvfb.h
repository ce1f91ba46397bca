// SPDX-License-Identifier: MIT
// An X server of a test's own.
#pragma once

#include <sys/types.h>

#include <string>

namespace platform::test {

// Xvfb, without a GPU to share, until it is dropped.
class Xvfb {
  public:
    // One screen, as "WIDTHxHEIGHTxDEPTH". Waits until it answers.
    explicit Xvfb(const std::string& screen = "640x480x24");
    ~Xvfb();
    Xvfb(const Xvfb&) = delete;
    Xvfb& operator=(const Xvfb&) = delete;

    // As DISPLAY has it; empty if the server did not start.
    [[nodiscard]] const std::string& name() const { return name_; }

  private:
    pid_t process_ = -1;
    std::string name_;
};

}  // namespace platform::test
