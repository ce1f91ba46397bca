// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "hosts/bureau/Bureau.h"
#include "hosts/bureau/BusAansluiting.h"
#include "hosts/bureau/BusObject.h"

namespace brixtel {

inline const QString kDienstNaam = QStringLiteral("nl.groenlicht.brixtel.Bureau");
// The error of a choice that holds without being stored.
inline const QString kNietBewaard = QStringLiteral("nl.groenlicht.brixtel.Bureau.NietBewaard");
inline const QString kDienstPad = QStringLiteral("/nl/groenlicht/brixtel/Bureau");

// The raw value of a RegenStand on the bus.
[[nodiscard]] QString ruweWaarde(RegenStand stand);

// The actions of the owner's program that callers on the bus can ask for.
struct BureauDaden {
    std::function<void()> stop;           // ends the program
    std::function<QString()> toonPaneel;  // returns the error as text; empty on success
};

// The desktop effects as an object on the session bus, as its introspection XML describes.
// Every method checks its arguments and then asks the owner; every change of state is
// signalled. Main thread.
class BureauDienst {
  public:
    // Calls `stop` after the method's answer has been sent.
    BureauDienst(Bureau& bureau, BusAansluiting& bus, BureauDaden daden);
    BureauDienst(const BureauDienst&) = delete;
    BureauDienst& operator=(const BureauDienst&) = delete;

    // Carries out a method as if it were called over the bus.
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
