// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <cstdint>
#include <functional>

namespace brixtel {

// The configuration sheet beside a saver at work: this program once more, with
// --instellingen. Of what a sheet is made, the saver itself never loads a byte,
// and its own start takes no longer for it. Ends with this process. Main thread.
class InstellingenProces {
  public:
    // `bus` is the session bus's address for it; a screen reader listens there.
    explicit InstellingenProces(QString bus);
    ~InstellingenProces();
    InstellingenProces(const InstellingenProces&) = delete;
    InstellingenProces& operator=(const InstellingenProces&) = delete;

    // Above the window with this X id. `klaar` is called once, as it has gone, and
    // told whether the user has chosen.
    void toon(std::uint32_t boven, std::function<void(bool gekozen)> klaar);
    [[nodiscard]] bool isOpen() const { return proces_.state() != QProcess::NotRunning; }

  private:
    QProcess proces_;
    const QString bus_;
    std::function<void(bool)> klaar_;
};

}  // namespace brixtel
