// SPDX-License-Identifier: MIT
#include "hosts/bureau/BusOntvanger.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <algorithm>
#include <array>

#include "platform/time/Require.h"

namespace brixtel {

namespace {

const QString kEigenschappen = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr std::size_t kMeesteWachtend = 64;

QDBusMessage fout(const QDBusMessage& bericht, const char* naam, const QString& tekst) {
    return bericht.createErrorReply(
        QStringLiteral("org.freedesktop.DBus.Error.") + QLatin1String(naam), tekst);
}

QDBusMessage onbekend(const QDBusMessage& bericht) {
    return fout(bericht, "UnknownMethod",
                QStringLiteral("er is geen methode '%1' van '%2'")
                    .arg(bericht.member(), bericht.interface()));
}

QDBusMessage andereSoort(const QDBusMessage& bericht, const QString& handtekening) {
    return fout(bericht, "InvalidArgs",
                handtekening.isEmpty()
                    ? QStringLiteral("%1 wil geen waarden, niet '%2'")
                          .arg(bericht.member(), bericht.signature())
                    : QStringLiteral("%1 wil waarden van de soort '%2', niet '%3'")
                          .arg(bericht.member(), handtekening, bericht.signature()));
}

// Whether Qt or the bus itself answers this interface.
bool isVanDeBus(const QString& interface) {
    return interface == u"org.freedesktop.DBus.Introspectable" ||
           interface == u"org.freedesktop.DBus.Peer";
}

}  // namespace

void BusOntvanger::bied(BusObject object) {
    const std::lock_guard houvast(slot_);
    auto methoden = methodenIn(object.beschrijving);
    for (const BusMethode& methode : methoden)
        platform::require(object.doe.contains(methode.interface + u'.' + methode.naam));
    const QString pad = object.pad;
    objecten_.insert_or_assign(pad, Object{std::move(object), std::move(methoden)});
}

QMap<QString, QVariantMap> BusOntvanger::zetEigenschappen(const QString& pad,
                                                          const QVariantMap& eigenschappen) {
    const std::lock_guard houvast(slot_);
    QMap<QString, QVariantMap> anders;
    QVariantMap& nu = objecten_.at(pad).zelf.eigenschappen;
    for (auto nieuw = eigenschappen.begin(); nieuw != eigenschappen.end(); ++nieuw) {
        QVariant& oud = nu[nieuw.key()];
        if (oud == nieuw.value()) continue;
        oud = nieuw.value();
        const qsizetype punt = nieuw.key().lastIndexOf(u'.');
        anders[nieuw.key().left(punt)].insert(nieuw.key().mid(punt + 1), nieuw.value());
    }
    return anders;
}

std::optional<BusOntvanger::Oproep> BusOntvanger::neem() {
    const std::lock_guard houvast(slot_);
    if (wachtend_.empty()) return std::nullopt;
    Oproep eerste = std::move(wachtend_.front());
    wachtend_.pop_front();
    return eerste;
}

QString BusOntvanger::introspect(const QString& pad) const {
    const std::lock_guard houvast(slot_);
    const auto object = objecten_.find(pad);
    if (object != objecten_.end()) return object->second.zelf.beschrijving;
    // The nodes below `pad` are the next words of longer paths.
    const QString begin = pad.endsWith(u'/') ? pad : pad + u'/';
    QStringList kinderen;
    for (const auto& [onder, o] : objecten_)
        if (onder.startsWith(begin)) kinderen << onder.mid(begin.size()).section(u'/', 0, 0);
    kinderen.removeDuplicates();
    QString xml;
    for (const QString& kind : kinderen)
        xml += QStringLiteral("<node name=\"%1\"/>\n").arg(kind);
    return xml;
}

bool BusOntvanger::handleMessage(const QDBusMessage& bericht, const QDBusConnection& verbinding) {
    if (isVanDeBus(bericht.interface())) return false;
    bool later = false;
    const QDBusMessage terug = antwoord(bericht, later);
    if (later) {
        roep_();
        return true;
    }
    if (terug.type() != QDBusMessage::InvalidMessage && bericht.isReplyRequired())
        verbinding.send(terug);
    return true;
}

QDBusMessage BusOntvanger::antwoord(const QDBusMessage& bericht, bool& later) {
    const std::lock_guard houvast(slot_);
    const auto gevonden = objecten_.find(bericht.path());
    if (gevonden == objecten_.end())
        return fout(bericht, "UnknownObject",
                    QStringLiteral("er is hier geen object '%1'").arg(bericht.path()));
    const Object& object = gevonden->second;
    if (bericht.interface() != kEigenschappen) return roepMethode(bericht, object, later);
    return roepEigenschappen(bericht, object);
}

QDBusMessage BusOntvanger::roepEigenschappen(const QDBusMessage& bericht, const Object& object) {
    struct Methode {
        QLatin1String naam, handtekening;
        QDBusMessage (BusOntvanger::*roep)(const QDBusMessage&, const Object&);
    };
    static constexpr std::array kMethoden{
        Methode{QLatin1String("Get"), QLatin1String("ss"), &BusOntvanger::leesEigenschap},
        Methode{QLatin1String("GetAll"), QLatin1String("s"), &BusOntvanger::leesAlle},
        Methode{QLatin1String("Set"), QLatin1String("ssv"), &BusOntvanger::weigerZetten}};
    for (const Methode& methode : kMethoden) {
        if (methode.naam != bericht.member()) continue;
        if (methode.handtekening != bericht.signature())
            return andereSoort(bericht, methode.handtekening);
        return (this->*methode.roep)(bericht, object);
    }
    return onbekend(bericht);
}

QDBusMessage BusOntvanger::leesEigenschap(const QDBusMessage& bericht, const Object& object) {
    const QString interface = bericht.arguments().at(0).toString();
    const QString naam = bericht.arguments().at(1).toString();
    const QVariant waarde = object.zelf.eigenschappen.value(interface + u'.' + naam);
    if (waarde.isValid()) return bericht.createReply(QVariant::fromValue(QDBusVariant(waarde)));
    return fout(bericht, "UnknownProperty",
                QStringLiteral("er is geen eigenschap '%1' van '%2'").arg(naam, interface));
}

QDBusMessage BusOntvanger::weigerZetten(const QDBusMessage& bericht, const Object& object) {
    const QDBusMessage gelezen = leesEigenschap(bericht, object);
    if (gelezen.type() == QDBusMessage::ErrorMessage) return gelezen;
    return fout(bericht, "PropertyReadOnly",
                QStringLiteral("eigenschappen zijn hier alleen te lezen; gebruik een methode"));
}

QDBusMessage BusOntvanger::leesAlle(const QDBusMessage& bericht, const Object& object) {
    const QString begin = bericht.arguments().at(0).toString() + u'.';
    QVariantMap alle;
    const QVariantMap& eigen = object.zelf.eigenschappen;
    for (auto een = eigen.begin(); een != eigen.end(); ++een)
        if (een.key().startsWith(begin)) alle.insert(een.key().mid(begin.size()), een.value());
    return bericht.createReply(QVariant(alle));
}

QDBusMessage BusOntvanger::roepMethode(const QDBusMessage& bericht, const Object& object,
                                       bool& later) {
    const auto methode =
        std::find_if(object.methoden.begin(), object.methoden.end(), [&](const BusMethode& m) {
            return m.naam == bericht.member() &&
                   (bericht.interface().isEmpty() || m.interface == bericht.interface());
        });
    if (methode == object.methoden.end()) return onbekend(bericht);
    if (methode->handtekening != bericht.signature())
        return andereSoort(bericht, methode->handtekening);
    const QString voluit = methode->interface + u'.' + methode->naam;
    const double prijs = object.zelf.prijzen.value(voluit, 1.0);
    if (!limiet_.mag(bericht.service(), klok_.now(), prijs) || wachtend_.size() >= kMeesteWachtend)
        return fout(bericht, "LimitsExceeded",
                    QStringLiteral("dat is te veel tegelijk; probeer het zo weer"));
    later = true;
    wachtend_.push_back({bericht, object.zelf.doe.value(voluit)});
    return {};
}

}  // namespace brixtel
