// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <functional>

namespace brixtel {

// The saver's configuration sheet beside a running program, in a process of its own. The
// program itself loads no part of the sheet's libraries, and starts no slower. Main thread.
class InstellingenProces {
  public:
    // The fate of an open sheet when this object or its process ends in any way.
    enum class Einde {
        Mee,     // the sheet ends too
        Blijft,  // the sheet stays until the user closes it
    };

    // `programma` is the program that shows sheets: a path, or a name in the PATH. `bus` is
    // the session bus's address for that program; a screen reader listens there.
    InstellingenProces(const QString& programma, QString bus, Einde einde);
    ~InstellingenProces();
    InstellingenProces(const InstellingenProces&) = delete;
    InstellingenProces& operator=(const InstellingenProces&) = delete;

    // The end of a sheet: whether the sheet was shown and ended well, and its output
    // without the last line feed.
    struct Afloop {
        bool goed = false;
        QString gekozen;
    };
    // Shows a sheet; one at a time. Calls `klaar` once, when the sheet has gone.
    void toon(const QStringList& argumenten, std::function<void(const Afloop&)> klaar);
    [[nodiscard]] bool isOpen() const { return proces_.state() != QProcess::NotRunning; }

  private:
    struct Proces : QProcess {
        // Detaches the process, which then outlives this object.
        void laatGaan() { setProcessState(NotRunning); }
    };
    Proces proces_;
    const QString bus_;
    const Einde einde_;
    std::function<void(const Afloop&)> klaar_;
};

}  // namespace brixtel
