// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantMap>
#include <optional>

#include "hosts/bureau/BusObject.h"
#include "hosts/bureau/Opdracht.h"

namespace brixtel {

// The client side of a second start: sends requests to the running owner and waits for the
// answers.
class Klant {
  public:
    explicit Klant(const QDBusConnection& verbinding) : verbinding_(verbinding) {}

    // Whether an owner runs.
    [[nodiscard]] bool isEr() const;

    // Sends one request. Returns the error, with its text for the user; none on success.
    [[nodiscard]] std::optional<BusFout> vraag(const Verzoek& verzoek) const;

    // The state, line by line, for --stand. Leaves an error in `mis`.
    [[nodiscard]] QString stand(QString& mis) const;

  private:
    // Makes the call and waits for its answer.
    [[nodiscard]] QDBusMessage roep(const QDBusMessage& bericht) const;

    QDBusConnection verbinding_;
};

// A call that changes something, or one that only reads the state.
enum class Vraagt { Daad, Stand };

// The text for the user of an error from the bus or the owner. The bus's own texts are
// English.
[[nodiscard]] QString foutTekst(const QDBusMessage& antwoord, Vraagt vraagt);

// The lines of --stand for the properties of the bus's object. `autostart` says whether the
// session starts the program.
[[nodiscard]] QString standTekst(const QVariantMap& eigenschappen, bool autostart);

}  // namespace brixtel
