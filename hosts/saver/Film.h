// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"

namespace brixtel {

// How a film begins and how long it is, in seconds, and of how many pictures it is made.
struct FilmLengte {
    double begin = 0.0;
    double duur = 0.0;
    int beelden = 0;
};

// That of the film that the command asks for. None where it asks for a seamless loop of what
// never is again as it was.
[[nodiscard]] std::optional<FilmLengte> filmLengte(const Opdracht& opdracht);

// The arguments for ffmpeg that make a film in `bestand`, in the format that the ending of
// `naam` says, of raw pictures (BGRx, `maat` pixels) on its standard input.
[[nodiscard]] QStringList ffmpegWoorden(const QString& naam, const QString& bestand, QSize maat,
                                        int beeldenPerSeconde);

// Makes the film that the command asks for and writes it, whole or not at all, by the system's
// ffmpeg. Tells on standard error how far it is. Needs what a Beeldmaker needs. Returns what
// went wrong, as one line for the user; empty if nothing did.
[[nodiscard]] QString maakFilm(const Opdracht& opdracht, const ModuleLader& module);

}  // namespace brixtel
