// SPDX-License-Identifier: MIT
#include "hosts/bureau/BusAansluiting.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include "hosts/bureau/BusOntvanger.h"

namespace brixtel {

namespace {
// The pause after each call gives other work on the main thread its turn.
constexpr double kTussendoor = 0.005;  // seconds
}  // namespace

BusAansluiting::BusAansluiting(platform::MediaClock& klok, const QString& adres)
    : klok_(klok),
      verbindingNaam_(QStringLiteral("bureau-%1").arg(reinterpret_cast<quintptr>(this))),
      verbinding_(QDBusConnection::connectToBus(adres, verbindingNaam_)),
      ontvanger_(std::make_unique<BusOntvanger>(klok, [this] {
          QMetaObject::invokeMethod(
              this,
              [this] {
                  if (!vervolgKlok_.isValid()) haal();
              },
              Qt::QueuedConnection);
      })) {
    verbinding_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"),
                        QStringLiteral("Disconnected"), this, SLOT(verloren()));
}

BusAansluiting::~BusAansluiting() {
    verbinding_.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
    draad_.quit();
    draad_.wait();
    ontvanger_.reset();
    QDBusConnection::disconnectFromBus(verbindingNaam_);
}

bool BusAansluiting::neemNaam(const QString& naam) {
    if (!draad_.isRunning()) {
        // Qt attaches a helper object to the receiver, which must move to the thread with
        // it.
        verbinding_.registerVirtualObject(QStringLiteral("/"), ontvanger_.get(),
                                          QDBusConnection::SubPath);
        ontvanger_->moveToThread(&draad_);
        draad_.start();
    }
    QDBusConnectionInterface* const bus = verbinding_.interface();
    return bus && bus->registerService(naam, QDBusConnectionInterface::DontQueueService,
                                       QDBusConnectionInterface::DontAllowReplacement) ==
                      QDBusConnectionInterface::ServiceRegistered;
}

void BusAansluiting::bied(BusObject object) {
    ontvanger_->bied(std::move(object));
}

void BusAansluiting::zetEigenschappen(const QString& pad, const QVariantMap& eigenschappen) {
    const auto anders = ontvanger_->zetEigenschappen(pad, eigenschappen);
    for (auto interface = anders.begin(); interface != anders.end(); ++interface)
        zend(pad, QStringLiteral("org.freedesktop.DBus.Properties"),
             QStringLiteral("PropertiesChanged"),
             {interface.key(), interface.value(), QStringList()});
}

void BusAansluiting::zend(const QString& pad, const QString& interface, const QString& signaal,
                          const QVariantList& waarden) {
    QDBusMessage bericht = QDBusMessage::createSignal(pad, interface, signaal);
    bericht.setArguments(waarden);
    verbinding_.send(bericht);
}

void BusAansluiting::verloren() {
    if (onVerloren_) onVerloren_();
}

void BusAansluiting::haal() {
    const auto oproep = ontvanger_->neem();
    if (!oproep) return;
    const BusAntwoord antwoord = oproep->doe(oproep->bericht.arguments());
    if (oproep->bericht.isReplyRequired()) {
        if (const auto* fout = std::get_if<BusFout>(&antwoord))
            verbinding_.send(oproep->bericht.createErrorReply(fout->naam, fout->tekst));
        else
            verbinding_.send(oproep->bericht.createReply(std::get<QVariantList>(antwoord)));
    }
    vervolgKlok_ = platform::Timer(klok_, {.interval = kTussendoor}, [this] { haal(); });
}

}  // namespace brixtel
