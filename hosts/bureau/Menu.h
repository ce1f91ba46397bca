// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

#include "hosts/bureau/BusAansluiting.h"

namespace brixtel {

// One line of a menu.
struct MenuRegel {
    // Of the Rondjes beside each other one is on.
    enum class Soort { Gewoon, Vink, Rondje, Streep };
    Soort soort = Soort::Gewoon;
    QString tekst;
    bool aan = false;  // of a Vink or Rondje
    std::function<void()> doe;
    std::vector<MenuRegel> onder;  // a menu of its own
};

// A line as it goes over the bus, with those below it: (ia{sv}av).
struct BusMenuRegel {
    int nummer = 0;
    QVariantMap kenmerken;
    std::vector<BusMenuRegel> onder;
};
QDBusArgument& operator<<(QDBusArgument& uit, const BusMenuRegel& regel);
const QDBusArgument& operator>>(const QDBusArgument& in, BusMenuRegel& regel);

// What a line is without those below it: (ia{sv}).
struct BusMenuKenmerken {
    int nummer = 0;
    QVariantMap kenmerken;
};
QDBusArgument& operator<<(QDBusArgument& uit, const BusMenuKenmerken& regel);
const QDBusArgument& operator>>(const QDBusArgument& in, BusMenuKenmerken& regel);

// A menu that the desktop's panel shows, over the bus: com.canonical.dbusmenu.
// Main thread; the bus must outlive it.
class Menu {
  public:
    Menu(BusAansluiting& bus, const QString& pad);
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    // In the place of what it had; told to whoever shows it.
    void zet(std::vector<MenuRegel> regels);

  private:
    [[nodiscard]] QHash<QString, BusObject::Doe> methoden();
    // What is done for a line, whose number is the first of the values.
    using MetRegel = std::function<BusAntwoord(const BusMenuRegel&, const QVariantList&)>;
    [[nodiscard]] BusObject::Doe metRegel(MetRegel doe) const;
    // Gives every line its number, from `volgende` on.
    [[nodiscard]] BusMenuRegel bouw(const MenuRegel& regel, int& volgende);

    BusAansluiting& bus_;
    const QString pad_;
    unsigned uitgave_ = 1;
    BusMenuRegel boven_;
    std::vector<std::function<void()>> daden_;  // by number
};

}  // namespace brixtel

Q_DECLARE_METATYPE(brixtel::BusMenuRegel)
Q_DECLARE_METATYPE(brixtel::BusMenuKenmerken)
