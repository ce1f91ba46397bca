// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantMap>

#include "hosts/bureau/Opdracht.h"

namespace brixtel {

// A second start of the program, which asks the first. Waits for its answers.
class Klant {
  public:
    explicit Klant(const QDBusConnection& verbinding) : verbinding_(verbinding) {}

    // Whether there is a first.
    [[nodiscard]] bool isEr() const;

    // Returns what went wrong; empty if nothing did.
    [[nodiscard]] QString vraag(const Verzoek& verzoek) const;

    // How things stand, line by line, for --stand; what went wrong is left in `mis`.
    [[nodiscard]] QString stand(QString& mis) const;

  private:
    // Waits for the answer.
    [[nodiscard]] QDBusMessage roep(const QDBusMessage& bericht) const;

    QDBusConnection verbinding_;
};

// What an error from the bus or the owner says, for the user: the bus's own words are
// English.
[[nodiscard]] QString foutTekst(const QDBusMessage& antwoord);

// The lines of --stand for the properties of the bus's object.
[[nodiscard]] QString standTekst(const QVariantMap& eigenschappen);

}  // namespace brixtel
