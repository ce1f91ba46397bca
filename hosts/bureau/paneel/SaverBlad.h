// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <functional>

namespace brixtel {

// The saver's own sheet with its settings, in the saver's program. It ends with
// this object. Main thread.
class SaverBlad {
  public:
    // `bus` is the session bus's address. The program lies beside this one, or in
    // the PATH.
    explicit SaverBlad(QString bus);
    ~SaverBlad();
    SaverBlad(const SaverBlad&) = delete;
    SaverBlad& operator=(const SaverBlad&) = delete;

    // One at a time. `klaar` is told whether it was shown, once it has been closed.
    void toon(std::function<void(bool)> klaar);
    [[nodiscard]] bool isOpen() const { return proces_.state() != QProcess::NotRunning; }

  private:
    const QString bus_;
    QProcess proces_;
    std::function<void(bool)> klaar_;
};

}  // namespace brixtel
