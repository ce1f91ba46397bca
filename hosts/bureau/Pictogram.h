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

// The tooltip of the icon in a tray: the interface's (sa(iiay)ss).
struct BusHulp {
    QString titel;
    QString tekst;
    friend bool operator==(const BusHulp&, const BusHulp&) = default;
};
QDBusArgument& operator<<(QDBusArgument& uit, const BusHulp& hulp);
const QDBusArgument& operator>>(const QDBusArgument& in, BusHulp& hulp);

// The state as lines for the tooltip.
[[nodiscard]] QString hulpTekstVan(const BureauStand& stand);

// The icon in the desktop's tray, with a menu of the owner's actions: an
// org.kde.StatusNotifierItem, announced to every present and later tray. The icon uses the
// owner's connection, and costs nothing where no tray shows it. Main thread; bureau and bus
// must outlive it.
class Pictogram {
  public:
    Pictogram(Bureau& bureau, BusAansluiting& bus, BureauDaden daden);
    Pictogram(const Pictogram&) = delete;
    Pictogram& operator=(const Pictogram&) = delete;

    // Registers with the trays. To be called after BusAansluiting::neemNaam().
    void meldAan();

  private:
    void volg(const BureauStand& stand);
    [[nodiscard]] std::vector<MenuRegel> regels(const BureauStand& stand);
    [[nodiscard]] MenuRegel zwart(const BureauStand& stand);
    // A menu with the values of one choice, by their texts; the present value is marked.
    struct Stappen {
        QString naam;
        double BureauKeuzes::*keuze;
        std::vector<double> stappen;  // from low to high
        QString (*tekst)(double);
    };
    [[nodiscard]] MenuRegel keuze(const BureauStand& stand, Stappen stappen);
    [[nodiscard]] MenuRegel scene(const BureauStand& stand, ZwartSoort soort);
    // Opens the panel. A failure's reason shows in the menu, and as a notification.
    void toonPaneel();

    Bureau& bureau_;
    BusAansluiting& bus_;
    const BureauDaden daden_;
    Menu menu_;
    BusHulp hulp_;
    QString paneelMis_;  // the reason why the panel did not open; empty if it did
    QDBusServiceWatcher trays_;
    Abonnement stand_;
};

}  // namespace brixtel

Q_DECLARE_METATYPE(brixtel::BusBeeld)
Q_DECLARE_METATYPE(brixtel::BusHulp)
