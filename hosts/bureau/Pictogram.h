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

// How things stand, in lines.
[[nodiscard]] QString hulpTekstVan(const BureauStand& stand);

// The icon in the desktop's tray, with a menu of what the owner can do: an
// org.kde.StatusNotifierItem, announced to whatever tray there is now or comes
// later. All of it lives on the connection that is there anyhow; where nobody shows
// it, it costs nothing. Main thread; bureau and bus must outlive it.
class Pictogram {
  public:
    Pictogram(Bureau& bureau, BusAansluiting& bus, BureauDaden daden);
    Pictogram(const Pictogram&) = delete;
    Pictogram& operator=(const Pictogram&) = delete;

    // Registers with the trays. To be called once the objects can be called.
    void meldAan();

  private:
    void volg(const BureauStand& stand);
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
    // Where nothing opens, says why: in the menu from then on, and as a notification.
    void toonPaneel();

    Bureau& bureau_;
    BusAansluiting& bus_;
    const BureauDaden daden_;
    Menu menu_;
    BusHulp hulp_;
    QString paneelMis_;  // why the panel did not open; empty if it did
    QDBusServiceWatcher trays_;
    Abonnement stand_;
};

}  // namespace brixtel

Q_DECLARE_METATYPE(brixtel::BusBeeld)
Q_DECLARE_METATYPE(brixtel::BusHulp)
