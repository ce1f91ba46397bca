// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <functional>

namespace brixtel {

// The configuration sheet beside a running saver, in a process of its own, which ends when
// this object or its process ends in any way. The saver itself loads no part of the sheet's
// libraries, and starts no slower. Main thread.
class InstellingenProces {
  public:
    // `programma` is the path of the program that shows sheets. `bus` is the session bus's
    // address for that program; a screen reader listens there.
    InstellingenProces(const QString& programma, QString bus);
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
    QProcess proces_;
    const QString bus_;
    std::function<void(const Afloop&)> klaar_;
};

}  // namespace brixtel
