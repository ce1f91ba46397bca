// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <functional>
#include <variant>
#include <vector>

namespace brixtel {

// What a caller gets in the place of an answer.
struct BusFout {
    QString naam;   // in the bus's manner
    QString tekst;  // for people
};
using BusAntwoord = std::variant<QVariantList, BusFout>;

// A value that is not among those that a method takes.
[[nodiscard]] BusFout verkeerdeWaarde(const QString& tekst);

// An object that others can call over the bus: what its introspection XML (one or
// more interfaces) says it has, and what is done for each method. Methods run on
// the main thread.
struct BusObject {
    using Doe = std::function<BusAntwoord(const QVariantList&)>;

    QString pad;
    QString beschrijving;       // XML
    QHash<QString, Doe> doe;    // by interface.Method
    QVariantMap eigenschappen;  // as they are at first, by interface.Property
    // What a call of a method counts for in OproepLimiet, by interface.Method; 1 where
    // nothing is said.
    QHash<QString, double> prijzen;
};

// What a description says of one method.
struct BusMethode {
    QString interface;
    QString naam;
    QString handtekening;  // of what goes in
};

// All methods in a description, in order.
[[nodiscard]] std::vector<BusMethode> methodenIn(const QString& beschrijving);

}  // namespace brixtel
