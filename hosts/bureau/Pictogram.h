// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusServiceWatcher>
#include <QMetaType>
#include <functional>
#include <memory>

#include "hosts/bureau/BureauDienst.h"
#include "hosts/bureau/BusAansluiting.h"
#include "hosts/bureau/Menu.h"
#include "hosts/bureau/ZwartSoort.h"

namespace brixtel {

// A picture as it goes over the bus: (iiay), big-endian ARGB.
struct BusBeeld {
    int breedte = 0;
    int hoogte = 0;
    QByteArray bytes;
    friend bool operator==(const BusBeeld&, const BusBeeld&) = default;
};
QDBusArgument& operator<<(QDBusArgument& uit, const BusBeeld& beeld);
const QDBusArgument& operator>>(const QDBusArgument& in, BusBeeld& beeld);

// The icon in the desktop's tray, an org.kde.StatusNotifierItem, with a menu of the owner's
// actions. It registers with the present tray and with any tray that appears later. It uses
// the owner's connection, and costs nothing where no tray shows it. Main thread; bureau and
// bus must outlive it.
class Pictogram {
  public:
    Pictogram(Bureau& bureau, BusAansluiting& bus, BureauDaden daden);
    Pictogram(const Pictogram&) = delete;
    Pictogram& operator=(const Pictogram&) = delete;

    // Registers with the trays. To be called once the objects can be called.
    void meldAan();

  private:
    [[nodiscard]] std::vector<MenuRegel> regels(const BureauStand& stand);
    [[nodiscard]] MenuRegel zwart(const BureauStand& stand);
    // A menu of the values of one choice, each by its text, the present value marked.
    struct Stappen {
        QString naam;
        double BureauKeuzes::*keuze;
        std::vector<double> stappen;  // from low to high
        QString (*tekst)(double);
    };
    [[nodiscard]] MenuRegel keuze(const BureauStand& stand, Stappen stappen);
    [[nodiscard]] MenuRegel scene(const BureauStand& stand, ZwartSoort soort);

    Bureau& bureau_;
    BusAansluiting& bus_;
    const BureauDaden daden_;
    Menu menu_;
    QDBusServiceWatcher trays_;
    Abonnement stand_;
};

}  // namespace brixtel

Q_DECLARE_METATYPE(brixtel::BusBeeld)
