// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace brixtel {

// How it went, as one line for the user.
struct Bericht {
    bool gelukt;
    QString regel;
};

// Puts this program into the list of programs that xscreensaver keeps in
// `thuis`/.xscreensaver, or takes it out. Doing it twice is doing it once. The
// file is replaced as a whole or not at all, keeps its rights and its owner,
// and stays a link where it is one; as it was just before, it is kept beside it
// as .xscreensaver.voor-brixtel. A file that cannot be read as the host's is
// left alone. One that aanmelden() made and that holds nothing else goes again.
// Any thread; two at once wait for each other.
[[nodiscard]] Bericht meldAan(const QString& thuis, const QByteArray& opdracht);
[[nodiscard]] Bericht meldAf(const QString& thuis);

// The command by which xscreensaver can start the program file `programma`, as
// its settings file spells it: the bare name where the host looks for programs
// by itself, else the whole path. Empty when the path cannot be spelled there.
[[nodiscard]] QByteArray opdrachtVoorGastheer(const QString& programma);

}  // namespace brixtel
