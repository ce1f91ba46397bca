// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>
#include <functional>

namespace brixtel {

// The running full-screen saver of a display; at most one. An idle daemon starts the saver,
// and ends it by another call of the program. The saver holds a lock on a file in the
// session's folder (XDG_RUNTIME_DIR); the lock ends with the process. The holder of the lock
// removes the file; a file that a killed saver leaves is the next holder's. Without that
// folder no saver is ever found. Any thread, but one object on one thread.
class LopendeSaver {
  public:
    // `map` is the session's folder and `scherm` the display's name; without a name no
    // saver is ever found.
    LopendeSaver(const QString& map, const QString& scherm);
    ~LopendeSaver();
    LopendeSaver(const LopendeSaver&) = delete;
    LopendeSaver& operator=(const LopendeSaver&) = delete;

    // Makes this process the display's saver, until laatLos() or the end of the object. False
    // where another process is the saver, or ends one.
    [[nodiscard]] bool neem();

    // Gives the place back. Does nothing without the place.
    void laatLos();

    // Ends the running saver by SIGTERM, and waits at most `geduld` for its end. Without a
    // running saver it calls `zonder` while no saver can take the place: a saver that is
    // starting meanwhile gives up. Where the running saver has not written its number yet,
    // `zonder` is called once and may wait for it. Returns the error as one line for the user;
    // empty on success.
    [[nodiscard]] QString beeindig(std::chrono::milliseconds geduld,
                                   const std::function<void()>& zonder = {});

  private:
    enum class Greep { Geen, Bezet, Gehad };
    // Takes the lock. Geen where the file cannot be opened.
    [[nodiscard]] Greep grijp();
    [[nodiscard]] bool isOpPad() const;
    void sluit();

    QByteArray pad_;  // empty without a folder or a name
    int bestand_ = -1;
    bool heeft_ = false;  // the lock
};

}  // namespace brixtel
