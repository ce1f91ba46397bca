// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>
#include <optional>
#include <variant>
#include <vector>

#include "hosts/gedeeld/Opties.h"

namespace brixtel {

// One request to the owner: a method of the object on the bus, and its arguments.
struct Verzoek {
    QString methode;
    QVariantList waarden;
    friend bool operator==(const Verzoek&, const Verzoek&) = default;
};

// The command line of this start of the program, read.
struct BureauOpdracht {
    enum class Taak { Dienst, Stand, Versie, Hulp };
    Taak taak = Taak::Dienst;
    QLatin1String taakDoor;          // the option that chose the task; empty where none did
    std::vector<Verzoek> verzoeken;  // in the order of the command line
    std::optional<bool> autostart;
    QString venstersysteem;  // its name; empty for the session's
};

// Reads `argumenten`, which lack the program's own name. Without any, the panel is shown.
[[nodiscard]] std::variant<BureauOpdracht, Fout> leesBureauOpdracht(const QStringList& argumenten);

// The text of --help.
[[nodiscard]] QString bureauHulpTekst();

}  // namespace brixtel
