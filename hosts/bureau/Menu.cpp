// SPDX-License-Identifier: MIT
#include "hosts/bureau/Menu.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <numeric>
#include <utility>

namespace brixtel {

namespace {

const QString kInterface = QStringLiteral("com.canonical.dbusmenu");

constexpr const char* kXml = R"xml(<interface name="com.canonical.dbusmenu">
  <property name="Version" type="u" access="read"/>
  <property name="TextDirection" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="IconThemePath" type="as" access="read"/>
  <method name="GetLayout">
    <arg name="parentId" type="i" direction="in"/>
    <arg name="recursionDepth" type="i" direction="in"/>
    <arg name="propertyNames" type="as" direction="in"/>
    <arg name="revision" type="u" direction="out"/>
    <arg name="layout" type="(ia{sv}av)" direction="out"/>
  </method>
  <method name="GetGroupProperties">
    <arg name="ids" type="ai" direction="in"/>
    <arg name="propertyNames" type="as" direction="in"/>
    <arg name="properties" type="a(ia{sv})" direction="out"/>
  </method>
  <method name="GetProperty">
    <arg name="id" type="i" direction="in"/>
    <arg name="name" type="s" direction="in"/>
    <arg name="value" type="v" direction="out"/>
  </method>
  <method name="Event">
    <arg name="id" type="i" direction="in"/>
    <arg name="eventId" type="s" direction="in"/>
    <arg name="data" type="v" direction="in"/>
    <arg name="timestamp" type="u" direction="in"/>
  </method>
  <method name="AboutToShow">
    <arg name="id" type="i" direction="in"/>
    <arg name="needUpdate" type="b" direction="out"/>
  </method>
  <signal name="LayoutUpdated">
    <arg name="revision" type="u"/>
    <arg name="parent" type="i"/>
  </signal>
</interface>
)xml";

QString voluit(const char* naam) {
    return kInterface + u'.' + QLatin1String(naam);
}

const BusMenuRegel* vind(const BusMenuRegel& regel, int nummer) {
    if (regel.nummer == nummer) return &regel;
    for (const BusMenuRegel& onder : regel.onder)
        if (const auto* gevonden = vind(onder, nummer)) return gevonden;
    return nullptr;
}

// The line with at most `diepte` levels below it; below 0 means all levels.
BusMenuRegel totDiepte(const BusMenuRegel& regel, int diepte) {
    BusMenuRegel deel{regel.nummer, regel.kenmerken, {}};
    if (diepte == 0) return deel;
    for (const BusMenuRegel& onder : regel.onder)
        deel.onder.push_back(totDiepte(onder, diepte - 1));
    return deel;
}

QVariantMap kenmerkenVan(const MenuRegel& regel) {
    using Soort = MenuRegel::Soort;
    if (regel.soort == Soort::Streep)
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    // A single underscore would mark the next letter as a shortcut key.
    QVariantMap kenmerken{
        {QStringLiteral("label"), QString(regel.tekst).replace(u'_', QStringLiteral("__"))}};
    if (regel.soort != Soort::Gewoon) {
        kenmerken.insert(QStringLiteral("toggle-type"), regel.soort == Soort::Rondje
                                                            ? QStringLiteral("radio")
                                                            : QStringLiteral("checkmark"));
        kenmerken.insert(QStringLiteral("toggle-state"), regel.aan ? 1 : 0);
    }
    if (!regel.onder.empty())
        kenmerken.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    return kenmerken;
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& uit, const BusMenuRegel& regel) {
    uit.beginStructure();
    uit << regel.nummer << regel.kenmerken;
    uit.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const BusMenuRegel& onder : regel.onder)
        uit << QDBusVariant(QVariant::fromValue(onder));
    uit.endArray();
    uit.endStructure();
    return uit;
}

const QDBusArgument& operator>>(const QDBusArgument& in, BusMenuRegel& regel) {
    in.beginStructure();
    in >> regel.nummer >> regel.kenmerken;
    regel.onder.clear();
    in.beginArray();
    while (!in.atEnd()) {
        QDBusVariant onder;
        in >> onder;
        regel.onder.push_back(qdbus_cast<BusMenuRegel>(onder.variant()));
    }
    in.endArray();
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& uit, const BusMenuKenmerken& regel) {
    uit.beginStructure();
    uit << regel.nummer << regel.kenmerken;
    uit.endStructure();
    return uit;
}

const QDBusArgument& operator>>(const QDBusArgument& in, BusMenuKenmerken& regel) {
    in.beginStructure();
    in >> regel.nummer >> regel.kenmerken;
    in.endStructure();
    return in;
}

Menu::Menu(BusAansluiting& bus, const QString& pad) : bus_(bus), pad_(pad) {
    qDBusRegisterMetaType<BusMenuRegel>();
    qDBusRegisterMetaType<BusMenuKenmerken>();
    qDBusRegisterMetaType<QList<BusMenuKenmerken>>();
    qDBusRegisterMetaType<QList<int>>();
    bus_.bied({.pad = pad_,
               .beschrijving = QLatin1String(kXml),
               .doe = methoden(),
               .eigenschappen = {{voluit("Version"), 3U},
                                 {voluit("TextDirection"), QStringLiteral("ltr")},
                                 {voluit("Status"), QStringLiteral("normal")},
                                 {voluit("IconThemePath"), QStringList()}},
               // A panel asks for layouts often, and reports every movement of the mouse.
               .prijzen = {{voluit("GetLayout"), 0.1},
                           {voluit("GetGroupProperties"), 0.1},
                           {voluit("GetProperty"), 0.1},
                           {voluit("Event"), 0.25},
                           {voluit("AboutToShow"), 0.1}}});
}

void Menu::zet(std::vector<MenuRegel> regels) {
    daden_.clear();
    int volgende = 0;
    boven_ = bouw({.onder = std::move(regels)}, volgende);
    bus_.zend(pad_, kInterface, QStringLiteral("LayoutUpdated"), {++uitgave_, 0});
}

BusMenuRegel Menu::bouw(const MenuRegel& regel, int& volgende) {
    BusMenuRegel klaar{.nummer = volgende++, .kenmerken = kenmerkenVan(regel)};
    daden_.push_back(regel.doe);
    for (const MenuRegel& onder : regel.onder)
        klaar.onder.push_back(bouw(onder, volgende));
    return klaar;
}

BusObject::Doe Menu::metRegel(MetRegel doe) const {
    return [this, doe = std::move(doe)](const QVariantList& waarden) -> BusAntwoord {
        const int nummer = waarden.at(0).toInt();
        if (const auto* regel = vind(boven_, nummer)) return doe(*regel, waarden);
        return verkeerdeWaarde(QStringLiteral("het menu heeft geen regel %1").arg(nummer));
    };
}

QHash<QString, BusObject::Doe> Menu::methoden() {
    const auto indeling = [this](const BusMenuRegel& regel, const QVariantList& waarden) {
        return QVariantList{uitgave_, QVariant::fromValue(totDiepte(regel, waarden.at(1).toInt()))};
    };
    const auto groep = [this](const QVariantList& waarden) -> BusAntwoord {
        QList<BusMenuKenmerken> lijst;
        QList<int> nummers = qdbus_cast<QList<int>>(waarden.at(0));
        // An empty list asks for all lines.
        if (nummers.isEmpty()) {
            nummers.resize(static_cast<qsizetype>(daden_.size()));
            std::iota(nummers.begin(), nummers.end(), 0);
        }
        for (const int nummer : nummers)
            if (const auto* regel = vind(boven_, nummer)) lijst.append({nummer, regel->kenmerken});
        return QVariantList{QVariant::fromValue(lijst)};
    };
    const auto kenmerk = [](const BusMenuRegel& regel, const QVariantList& waarden) {
        return QVariantList{QVariant::fromValue(
            QDBusVariant(regel.kenmerken.value(waarden.at(1).toString(), QString())))};
    };
    const auto gebeurtenis = [this](const BusMenuRegel& regel, const QVariantList& waarden) {
        // The action may build the menu anew.
        const auto doe = daden_[static_cast<std::size_t>(regel.nummer)];
        if (doe && waarden.at(1).toString() == u"clicked") doe();
        return QVariantList();
    };
    const auto straks = [](const BusMenuRegel&, const QVariantList&) {
        return QVariantList{false};
    };
    return {{voluit("GetLayout"), metRegel(indeling)},
            {voluit("GetGroupProperties"), groep},
            {voluit("GetProperty"), metRegel(kenmerk)},
            {voluit("Event"), metRegel(gebeurtenis)},
            {voluit("AboutToShow"), metRegel(straks)}};
}

}  // namespace brixtel
