// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"

namespace brixtel {

// A film's begin and length in seconds, and its number of pictures.
struct FilmLengte {
    double begin = 0.0;
    double duur = 0.0;
    int beelden = 0;
};

// The length of the command's film. A loop lasts as long as its scene's period, and begins
// where the scene has begun to repeat.
[[nodiscard]] FilmLengte filmLengte(const Opdracht& opdracht);

// The arguments of ffmpeg for a film in `bestand`, in the format of the ending of `naam`,
// from raw pictures (BGRx, `maat` pixels) on its standard input.
[[nodiscard]] QStringList ffmpegWoorden(const QString& naam, const QString& bestand, QSize maat,
                                        int tempo);

// Makes the command's film with the system's ffmpeg and writes it, whole or not at all.
// Reports progress on standard error. Needs the application of a Beeldmaker. Returns the
// error as one line for the user; empty on success.
[[nodiscard]] QString maakFilm(const Opdracht& opdracht, const ModuleLader& module);

}  // namespace brixtel
