// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <functional>
#include <variant>
#include <vector>

namespace brixtel {

// The error that a caller gets instead of an answer.
struct BusFout {
    QString naam;   // a D-Bus error name
    QString tekst;  // for people
};
using BusAntwoord = std::variant<QVariantList, BusFout>;

// The error for a value that a method does not take.
[[nodiscard]] BusFout verkeerdeWaarde(const QString& tekst);

// An object that others can call over the bus. Its introspection XML describes one or more
// interfaces; `doe` holds an action for each method. Methods run on the main thread.
struct BusObject {
    using Doe = std::function<BusAntwoord(const QVariantList&)>;

    QString pad;
    QString beschrijving;       // XML
    QHash<QString, Doe> doe;    // by interface.Method
    QVariantMap eigenschappen;  // the first values, by interface.Property
    // The cost of one call in OproepLimiet, by interface.Method; 1 for a method that is
    // absent.
    QHash<QString, double> prijzen;
};

// One method of a description.
struct BusMethode {
    QString interface;
    QString naam;
    QString handtekening;  // of the arguments
};

// All methods in a description, in order.
[[nodiscard]] std::vector<BusMethode> methodenIn(const QString& beschrijving);

}  // namespace brixtel
