// SPDX-License-Identifier: MIT
// A file descriptor and complete writes to it. Any thread, one at a time.
#pragma once

#include <string_view>

namespace platform {

// Owns a descriptor, and closes it when dropped.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { (void)close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int get() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    // Closes the descriptor at once: 0, or the error's number.
    [[nodiscard]] int close();
    // Takes over the other's descriptor, which is then none; closes the present one.
    void take(Descriptor& other);

  private:
    int number_;
};

// Writes all bytes: 0, or the error's number. A reader that goes away gives EPIPE and no
// signal.
[[nodiscard]] int writeAll(int descriptor, std::string_view bytes);

}  // namespace platform
