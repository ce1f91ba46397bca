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
    // One of several adjacent lines of kind Rondje is on.
    enum class Soort { Gewoon, Vink, Rondje, Streep };
    Soort soort = Soort::Gewoon;
    QString tekst;
    bool aan = false;  // of a Vink or Rondje
    std::function<void()> doe;
    std::vector<MenuRegel> onder;  // a submenu
};

// A line as it goes over the bus, with its submenu: (ia{sv}av).
struct BusMenuRegel {
    int nummer = 0;
    QVariantMap kenmerken;
    std::vector<BusMenuRegel> onder;
};
QDBusArgument& operator<<(QDBusArgument& uit, const BusMenuRegel& regel);
const QDBusArgument& operator>>(const QDBusArgument& in, BusMenuRegel& regel);

// A line without its submenu: (ia{sv}).
struct BusMenuKenmerken {
    int nummer = 0;
    QVariantMap kenmerken;
};
QDBusArgument& operator<<(QDBusArgument& uit, const BusMenuKenmerken& regel);
const QDBusArgument& operator>>(const QDBusArgument& in, BusMenuKenmerken& regel);

// A menu on the bus, com.canonical.dbusmenu, which the desktop's panel shows. Main thread;
// the bus must outlive it.
class Menu {
  public:
    Menu(BusAansluiting& bus, const QString& pad);
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    // Replaces the menu's lines and signals the change.
    void zet(std::vector<MenuRegel> regels);

  private:
    [[nodiscard]] QHash<QString, BusObject::Doe> methoden();
    // Carries out a call for the line whose number is the first of the values.
    using MetRegel = std::function<BusAntwoord(const BusMenuRegel&, const QVariantList&)>;
    [[nodiscard]] BusObject::Doe metRegel(MetRegel doe) const;
    // Gives every line its number, from `volgende` upwards.
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
