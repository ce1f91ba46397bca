// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <functional>

namespace brixtel {

// The saver's configuration sheet beside a program at work, in a process of its
// own. Of what a sheet is made, the program itself never loads a byte, and its own
// start takes no longer for it. Main thread.
class InstellingenProces {
  public:
    // What becomes of an open sheet when this ends, or its process in whatever way.
    enum class Einde {
        Mee,     // it goes too
        Blijft,  // it stays until the user is done with it
    };

    // Whoever shows sheets: a path, or a name to be found in the PATH. `bus` is the
    // session bus's address for it; a screen reader listens there.
    InstellingenProces(const QString& programma, QString bus, Einde einde);
    ~InstellingenProces();
    InstellingenProces(const InstellingenProces&) = delete;
    InstellingenProces& operator=(const InstellingenProces&) = delete;

    // How a sheet ended: whether it had been there and came to a good end, and what it
    // printed, without the line's end.
    struct Afloop {
        bool goed = false;
        QString gekozen;
    };
    // One at a time. `klaar` is called once, as it has gone.
    void toon(const QStringList& argumenten, std::function<void(const Afloop&)> klaar);
    [[nodiscard]] bool isOpen() const { return proces_.state() != QProcess::NotRunning; }

  private:
    struct Proces : QProcess {
        // From now on it is nobody's child.
        void laatGaan() { setProcessState(NotRunning); }
    };
    Proces proces_;
    const QString bus_;
    const Einde einde_;
    std::function<void(const Afloop&)> klaar_;
};

}  // namespace brixtel
