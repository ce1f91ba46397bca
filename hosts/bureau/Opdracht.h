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

// One thing that the program is asked to do: a method of the bus's object and what
// it is given.
struct Verzoek {
    QString methode;
    QVariantList waarden;
    friend bool operator==(const Verzoek&, const Verzoek&) = default;
};

// What the user asked this start of the program to do.
struct BureauOpdracht {
    enum class Taak { Dienst, Stand, Versie, Hulp };
    Taak taak = Taak::Dienst;
    std::vector<Verzoek> verzoeken;  // in the order in which they were asked
    std::optional<bool> autostart;
    QString venstersysteem;  // its name; empty for the session's
};

// `argumenten` without the program's own name. Without any it is to show the panel.
[[nodiscard]] std::variant<BureauOpdracht, Fout> leesBureauOpdracht(const QStringList& argumenten);

// The text of --help.
[[nodiscard]] QString bureauHulpTekst();

}  // namespace brixtel
