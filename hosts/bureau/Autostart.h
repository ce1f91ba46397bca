// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// Starts the program with the session, by an entry in the user's own autostart folder,
// which every desktop reads. Main thread.
class Autostart final {
  public:
    Autostart() = delete;

    [[nodiscard]] static bool isAan();

    // Writes or removes the entry; `programma` is the path to start. Returns the error as
    // text for the user; empty on success.
    [[nodiscard]] static QString zet(bool aan, const QString& programma);
};

}  // namespace brixtel
