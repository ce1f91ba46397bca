// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <variant>

#include "hosts/gedeeld/Opties.h"
#include "platform/window/WindowOptions.h"
#include "platform/window/WindowServer.h"

namespace brixtel {

// The user's request: the command line and the environment, read and checked. A plain
// value.
struct Opdracht {
    enum class Taak {
        Schermvullend,
        Venster,
        Gastheer,  // in a host's window
        Plaatje,
        Film,
        Instellingen,
        Verbindingen,
        Aanmelden,
        Afmelden,
        Hervat,
        Versie,
        Hulp,
    };
    Taak taak = Taak::Schermvullend;
    QLatin1String taakDoor;  // the option that chose the task; empty where none did

    QSize venster{1280, 720};                    // points
    std::optional<platform::HostRef> vensterId;  // the host's; none means the whole screen
    QString vensterGenoemd;                      // the typed name; empty when a host starts us
    bool voorvertoning = false;                  // a host's small window is a preview anyway
    QString keuze;                               // a raw value; empty for the stored one

    QString instellingen;  // the file for a picture of the sheet; empty to show it
    std::optional<platform::WindowRef> boven;  // the window that the sheet belongs to

    QString plaatje;               // the file
    QString film;                  // the file
    std::optional<int> filmTempo;  // a film's pictures a second; none for the usual rate
    bool lus = false;              // the film's end continues into its begin
    QSize maat{1920, 1080};        // points
    double schaal = 1.0;
    double na = 6.0;  // seconds after the start
    QString lijnen;   // file with the globe's lines; empty for this machine's connections
    std::optional<std::uint64_t> zaad;

    std::optional<double> seconden;
    bool meet = false;
    bool fps = false;
    bool volleSnelheid = false;  // on battery too, whatever the processor takes
    bool json = false;
    platform::DrawerChoice tekenaar = platform::DrawerChoice::Auto;
    QString venstersysteem;  // its name; empty for the session's
};

// Reads `argumenten`, which lack the program's own name. `hostVenster` is the value of
// XSCREENSAVER_WINDOW in the environment, empty for none.
[[nodiscard]] std::variant<Opdracht, Fout> leesOpdracht(const QStringList& argumenten,
                                                        const QString& hostVenster);

// The text of --help.
[[nodiscard]] QString hulpTekst();

}  // namespace brixtel
