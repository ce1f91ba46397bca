// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "hosts/bureau/Bureau.h"
#include "hosts/bureau/BusAansluiting.h"
#include "hosts/bureau/BusObject.h"

namespace brixtel {

inline const QString kDienstNaam = QStringLiteral("nl.groenlicht.brixtel.Bureau");
inline const QString kDienstPad = QStringLiteral("/nl/groenlicht/brixtel/Bureau");

// The raw value of a RegenStand on the bus.
[[nodiscard]] QString ruweWaarde(RegenStand stand);

// What the owner's program does for those who ask.
struct BureauDaden {
    std::function<void()> stop;           // ends the program
    std::function<QString()> toonPaneel;  // returns what went wrong; empty if nothing did
};

// The desktop effects as an object on the session bus, as its introspection XML
// tells: every method checks what it is given and then asks the owner; every
// change of how things stand is told. Main thread.
class BureauDienst {
  public:
    // `stop` is called after the method's answer is on its way.
    BureauDienst(Bureau& bureau, BusAansluiting& bus, BureauDaden daden);
    BureauDienst(const BureauDienst&) = delete;
    BureauDienst& operator=(const BureauDienst&) = delete;

    // As if it were called over the bus.
    [[nodiscard]] BusAntwoord voerUit(const QString& methode, const QVariantList& waarden);

  private:
    [[nodiscard]] QHash<QString, BusObject::Doe> methoden();
    [[nodiscard]] BusObject::Doe metSoort(void (Bureau::*doe)(std::optional<DrieSoort>));
    [[nodiscard]] BusObject::Doe zonder(void (Bureau::*doe)());
    [[nodiscard]] BusObject::Doe regen(void (Bureau::*doe)());
    [[nodiscard]] BusObject::Doe metGetal(double BureauKeuzes::*keuze, double laag, double hoog,
                                          const QString& wat);

    Bureau& bureau_;
    BusAansluiting& bus_;
    const BureauDaden daden_;
    const QHash<QString, BusObject::Doe> methoden_;
    Abonnement stand_;
};

}  // namespace brixtel
