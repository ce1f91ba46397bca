// SPDX-License-Identifier: MIT
#include "hosts/bureau/Pictogram.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QtEndian>
#include <algorithm>
#include <utility>

#include "drawing/BlokCijfer.h"
#include "drawing/Thema.h"
#include "hosts/bureau/GetalTekst.h"

namespace brixtel {

namespace {

const QString kPad = QStringLiteral("/StatusNotifierItem");
const QString kMenuPad = QStringLiteral("/StatusNotifierItem/Menu");
const QString kInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString kTrays = QStringLiteral("org.kde.StatusNotifierWatcher");

constexpr const char* kXml = R"xml(<interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/>
  <property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconPixmap" type="a(iiay)" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <property name="Menu" type="o" access="read"/>
  <method name="Activate">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <method name="SecondaryActivate">
    <arg name="x" type="i" direction="in"/>
    <arg name="y" type="i" direction="in"/>
  </method>
  <signal name="NewToolTip"/>
</interface>
)xml";

QString voluit(const char* naam) {
    return kInterface + u'.' + QLatin1String(naam);
}

// A one and a zero, green on a black tile.
BusBeeld teken(int maat) {
    const double blok = maat / 13.0;
    const auto beeld = Thema::beeld(
        QSizeF(maat, maat),
        {.schaal = 1.0, .teken = [=](Tekenvlak& vlak) {
             vlak.painter().setRenderHint(QPainter::Antialiasing);
             vlak.painter().setPen(Qt::NoPen);
             vlak.painter().setBrush(Thema::zwart());
             vlak.painter().drawRoundedRect(QRectF(0, 0, maat, maat), blok, blok);
             for (const bool een : {true, false})
                 BlokCijfer::teken(een,
                                   {.linksonder = {blok * (een ? 1.0 : 7.0), blok * 3.0},
                                    .blok = blok,
                                    .kleur = een ? Thema::groen() : Thema::middel()},
                                   vlak);
         }});
    BusBeeld klaar{.breedte = maat, .hoogte = maat, .bytes = {}};
    const QImage argb = beeld->convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < maat; ++y)
        for (int x = 0; x < maat; ++x) {
            const quint32 pixel = qToBigEndian<quint32>(argb.pixel(x, y));
            klaar.bytes.append(reinterpret_cast<const char*>(&pixel), sizeof pixel);
        }
    return klaar;
}

QVariantMap eigenschappen() {
    const QList<BusBeeld> beelden{teken(22), teken(32), teken(48)};
    return {{voluit("Category"), QStringLiteral("ApplicationStatus")},
            {voluit("Id"), QStringLiteral("brixtel-bureau")},
            {voluit("Title"), QStringLiteral("Brixtel")},
            {voluit("Status"), QStringLiteral("Active")},
            {voluit("WindowId"), 0},
            {voluit("IconName"), QStringLiteral("")},
            {voluit("IconPixmap"), QVariant::fromValue(beelden)},
            // A click calls Activate; the other button opens the menu.
            {voluit("ItemIsMenu"), false},
            {voluit("ToolTip"), QVariant::fromValue(BusHulp())},
            {voluit("Menu"), QVariant::fromValue(QDBusObjectPath(kMenuPad))}};
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& uit, const BusBeeld& beeld) {
    uit.beginStructure();
    uit << beeld.breedte << beeld.hoogte << beeld.bytes;
    uit.endStructure();
    return uit;
}

const QDBusArgument& operator>>(const QDBusArgument& in, BusBeeld& beeld) {
    in.beginStructure();
    in >> beeld.breedte >> beeld.hoogte >> beeld.bytes;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& uit, const BusHulp& hulp) {
    uit.beginStructure();
    uit << QString() << QList<BusBeeld>() << hulp.titel << hulp.tekst;
    uit.endStructure();
    return uit;
}

const QDBusArgument& operator>>(const QDBusArgument& in, BusHulp& hulp) {
    QString pictogram;
    QList<BusBeeld> beelden;
    in.beginStructure();
    in >> pictogram >> beelden >> hulp.titel >> hulp.tekst;
    in.endStructure();
    return in;
}

QString hulpTekstVan(const BureauStand& stand) {
    QString regen = stand.regen ? QStringLiteral("aan") : QStringLiteral("uit");
    if (const QString waarom = uitleg(stand.regenStand); !waarom.isEmpty())
        regen += QStringLiteral(", maar niet te zien: ") + waarom;
    const QString zwart = stand.zwart ? ruweWaarde(stand.soort) : QStringLiteral("uit");
    return QStringLiteral("Regen over het bureaublad: %1\nZwart scherm: %2").arg(regen, zwart);
}

Pictogram::Pictogram(Bureau& bureau, BusAansluiting& bus, BureauDaden daden)
    : bureau_(bureau), bus_(bus), daden_(std::move(daden)), menu_(bus, kMenuPad) {
    qDBusRegisterMetaType<BusBeeld>();
    qDBusRegisterMetaType<QList<BusBeeld>>();
    qDBusRegisterMetaType<BusHulp>();
    const auto wissel = [this](const QVariantList&) -> BusAntwoord {
        bureau_.wisselRegen();
        return QVariantList();
    };
    bus_.bied({.pad = kPad,
               .beschrijving = QLatin1String(kXml),
               .doe = {{voluit("Activate"), wissel}, {voluit("SecondaryActivate"), wissel}},
               .eigenschappen = eigenschappen()});
    stand_ = bureau.stand().volg([this](const BureauStand& stand) { volg(stand); });
}

void Pictogram::volg(const BureauStand& stand) {
    menu_.zet(regels(stand));
    const BusHulp hulp{.titel = QStringLiteral("Brixtel"), .tekst = hulpTekstVan(stand)};
    if (hulp == hulp_) return;
    hulp_ = hulp;
    bus_.zetEigenschappen(kPad, {{voluit("ToolTip"), QVariant::fromValue(hulp)}});
    // Trays listen to this signal, not to changed properties.
    bus_.zend(kPad, kInterface, QStringLiteral("NewToolTip"), {});
}

void Pictogram::meldAan() {
    const auto meld = [this] {
        QDBusMessage bericht =
            QDBusMessage::createMethodCall(kTrays, QStringLiteral("/StatusNotifierWatcher"), kTrays,
                                           QStringLiteral("RegisterStatusNotifierItem"));
        bericht << bus_.verbinding().baseService();
        // The message starts no tray and waits for none.
        bericht.setAutoStartService(false);
        bus_.verbinding().send(bericht);
    };
    trays_.setConnection(bus_.verbinding());
    trays_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    trays_.addWatchedService(kTrays);
    QObject::connect(&trays_, &QDBusServiceWatcher::serviceRegistered, meld);
    meld();
}

MenuRegel Pictogram::scene(const BureauStand& stand, ZwartSoort soort) {
    return {.soort = MenuRegel::Soort::Vink,
            .tekst = naam(soort) + QStringLiteral(": ") + uitleg(soort),
            .aan = stand.zwart && stand.soort == soort,
            .doe = [this, soort] { bureau_.wisselZwart(soort); }};
}

MenuRegel Pictogram::zwart(const BureauStand& stand) {
    MenuRegel menu{.tekst = QStringLiteral("Zwart scherm")};
    for (const ZwartSoort soort : alleZwartSoorten())
        menu.onder.push_back(scene(stand, soort));
    return menu;
}

MenuRegel Pictogram::keuze(const BureauStand& stand, Stappen stappen) {
    const double nu = stand.keuzes.*stappen.keuze;
    const auto isNu = [&](double stap) { return stappen.tekst(stap) == stappen.tekst(nu); };
    std::vector<double>& alle = stappen.stappen;
    // The panel's slider or the command line may have set a value between the steps.
    if (std::none_of(alle.begin(), alle.end(), isNu))
        alle.insert(std::upper_bound(alle.begin(), alle.end(), nu), nu);
    MenuRegel menu{.tekst = stappen.naam};
    for (const double stap : alle)
        menu.onder.push_back(
            {.soort = MenuRegel::Soort::Rondje,
             .tekst = stappen.tekst(stap),
             .aan = isNu(stap),
             .doe = [this, wat = stappen.keuze, stap] { bureau_.kies(wat, stap); }});
    return menu;
}

void Pictogram::toonPaneel() {
    paneelMis_ = daden_.toonPaneel();
    menu_.zet(regels(bureau_.stand().waarde()));
    if (paneelMis_.isEmpty()) return;
    const QString dienst = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage bericht = QDBusMessage::createMethodCall(
        dienst, QStringLiteral("/org/freedesktop/Notifications"), dienst, QStringLiteral("Notify"));
    constexpr int kZoLangAlsGebruikelijk = -1;
    bericht << QStringLiteral("Brixtel") << 0U << QStringLiteral("brixtel-saver")
            << QStringLiteral("De instellingen gaan niet open") << paneelMis_ << QStringList()
            << QVariantMap() << kZoLangAlsGebruikelijk;
    bus_.verbinding().send(bericht);
}

std::vector<MenuRegel> Pictogram::regels(const BureauStand& stand) {
    const bool verhinderd = stand.regenStand == RegenStand::geenCompositor;
    return {
        {.soort = MenuRegel::Soort::Vink,
         .tekst = verhinderd ? QStringLiteral("Regen over het bureaublad (wacht op een compositor)")
                             : QStringLiteral("Regen over het bureaublad"),
         .aan = stand.regen,
         .doe = [this] { bureau_.wisselRegen(); }},
        zwart(stand),
        keuze(stand, {.naam = QStringLiteral("Dichtheid"),
                      .keuze = &BureauKeuzes::dichtheid,
                      .stappen = {0.1, 0.3, 0.5, 0.7, 0.9, 1.0},
                      .tekst = procentTekst}),
        keuze(stand, {.naam = QStringLiteral("Snelheid"),
                      .keuze = &BureauKeuzes::snelheid,
                      .stappen = {BureauInstellingen::kLangzaamst, 0.5, 1.0, 1.5, 2.0, 3.0,
                                  BureauInstellingen::kSnelst},
                      .tekst = keerTekst}),
        {.soort = MenuRegel::Soort::Vink,
         .tekst = QStringLiteral("Zwart scherm volgt de muziek"),
         .aan = stand.keuzes.muziek,
         .doe = [this, om = !stand.keuzes.muziek] { bureau_.kies(&BureauKeuzes::muziek, om); }},
        {.soort = MenuRegel::Soort::Streep},
        {.tekst = paneelMis_.isEmpty() ? QStringLiteral("Instellingen…")
                                       : QStringLiteral("Instellingen… (%1)").arg(paneelMis_),
         .doe = [this] { toonPaneel(); }},
        {.tekst = QStringLiteral("Alles sluiten"), .doe = [this] { bureau_.sluitAlles(); }},
        {.tekst = QStringLiteral("Stoppen"), .doe = daden_.stop}};
}

}  // namespace brixtel
