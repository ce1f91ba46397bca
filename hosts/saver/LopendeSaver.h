// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>

namespace brixtel {

// The full-screen saver of a display, one at a time: an idle daemon starts it and ends
// it by another call. Known by a file that it locks in the session's own folder
// (XDG_RUNTIME_DIR); where there is none, nobody is known. The lock goes with the
// process, however it ends. Any thread.
class LopendeSaver {
  public:
    // `map` is the session's folder and `scherm` the display's name.
    LopendeSaver(const QString& map, const QString& scherm);
    ~LopendeSaver();
    LopendeSaver(const LopendeSaver&) = delete;
    LopendeSaver& operator=(const LopendeSaver&) = delete;

    // Becomes the display's saver until this is dropped. False where another is.
    [[nodiscard]] bool neem();

    // Ends the one that runs by SIGTERM and waits until it is gone; does nothing where
    // none runs. Returns what went wrong; empty if nothing did.
    [[nodiscard]] QString beeindig(std::chrono::milliseconds geduld);

  private:
    [[nodiscard]] bool open();

    QByteArray pad_;  // empty without a folder
    int bestand_ = -1;
};

}  // namespace brixtel
