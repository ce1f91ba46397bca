// SPDX-License-Identifier: MIT
// A file that is only in memory.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

namespace steun {

class GeheugenBestand {
  public:
    explicit GeheugenBestand(std::span<const std::uint8_t> bytes)
        : nummer_(memfd_create("proef", MFD_CLOEXEC)) {
        while (!bytes.empty()) {
            const ssize_t aantal = write(nummer_, bytes.data(), bytes.size());
            if (aantal < 0) std::abort();
            bytes = bytes.subspan(static_cast<std::size_t>(aantal));
        }
    }
    ~GeheugenBestand() { close(nummer_); }
    GeheugenBestand(const GeheugenBestand&) = delete;
    GeheugenBestand& operator=(const GeheugenBestand&) = delete;

    [[nodiscard]] std::string pad() const { return "/proc/self/fd/" + std::to_string(nummer_); }

  private:
    int nummer_;
};

}  // namespace steun
