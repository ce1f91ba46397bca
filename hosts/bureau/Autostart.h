// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstddef>

namespace brixtel {

// Starts the program with the session, by an entry in the user's own autostart folder,
// which every desktop reads. Main thread.
class Autostart final {
  public:
    Autostart() = delete;

    // The largest entry that isAan() reads, in bytes.
    static constexpr std::size_t kGrootste = std::size_t{64} << 10;

    // The path of the entry, which need not exist; empty for a user without a home.
    [[nodiscard]] static QString bestand();

    // Whether the entry is there and starts the program: no desktop has switched it off. An
    // entry larger than kGrootste counts as on; one that cannot be read counts as off.
    [[nodiscard]] static bool isAan();

    // Writes or removes the entry; `programma` is the path to start. Returns the error as
    // text for the user; empty on success.
    [[nodiscard]] static QString zet(bool aan, const QString& programma);
};

}  // namespace brixtel
