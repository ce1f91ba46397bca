// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>

namespace brixtel {

// The running full-screen saver of a display; at most one. An idle daemon starts the saver,
// and ends it by another call of the program. The saver holds a lock on a file in the
// session's folder (XDG_RUNTIME_DIR); the lock ends with the process. Without that folder
// no saver is ever found. Any thread.
class LopendeSaver {
  public:
    // `map` is the session's folder and `scherm` the display's name.
    LopendeSaver(const QString& map, const QString& scherm);
    ~LopendeSaver();
    LopendeSaver(const LopendeSaver&) = delete;
    LopendeSaver& operator=(const LopendeSaver&) = delete;

    // Makes this process the display's saver, until the object is dropped. False where another
    // process is the saver.
    [[nodiscard]] bool neem();

    // Ends the running saver by SIGTERM, and waits at most `geduld` for its end. Does nothing
    // without a running saver. Returns the error as one line for the user; empty on success.
    [[nodiscard]] QString beeindig(std::chrono::milliseconds geduld);

  private:
    [[nodiscard]] bool open();

    QByteArray pad_;  // empty without a folder
    int bestand_ = -1;
};

}  // namespace brixtel
