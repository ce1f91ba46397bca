// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// Whether the session starts the program by itself: an entry in the user's own
// autostart folder, which every desktop reads. Main thread.
class Autostart final {
  public:
    Autostart() = delete;

    [[nodiscard]] static bool isAan();

    // Writes or removes the entry; `programma` is the path to start. Returns what
    // went wrong; empty if nothing did.
    [[nodiscard]] static QString zet(bool aan, const QString& programma);
};

}  // namespace brixtel
