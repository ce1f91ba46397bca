// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace brixtel {

// The result of the registration, as one line for the user.
struct Bericht {
    bool gelukt;
    QString regel;
};

// Puts this program into the list of programs that xscreensaver keeps in
// `thuis`/.xscreensaver, or removes it. A second call changes nothing. The file is replaced
// as a whole or not at all, keeps its mode and its owner, and stays a link if it is one.
// Its former content is kept beside it as .xscreensaver.voor-brixtel. A file that cannot be
// read as the host's is left alone. Removal deletes a file that meldAan() made and that
// holds nothing else. Any thread; two calls at once wait for each other.
[[nodiscard]] Bericht meldAan(const QString& thuis, const QByteArray& opdracht);
[[nodiscard]] Bericht meldAf(const QString& thuis);

// The command by which xscreensaver can start the program file `programma`, as its settings
// file spells it: the bare name where the host itself searches, else the whole path. Empty
// when the settings file cannot spell the path.
[[nodiscard]] QByteArray opdrachtVoorGastheer(const QString& programma);

}  // namespace brixtel
