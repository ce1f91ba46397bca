// SPDX-License-Identifier: MIT
#include "hosts/bureau/BusPoort.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include "hosts/bureau/BusDeur.h"

namespace brixtel {

namespace {
// After each call everything else has its turn, so long at least.
constexpr double kTussendoor = 0.005;  // seconds
}  // namespace

BusPoort::BusPoort(platform::MediaClock& klok, const QString& adres)
    : klok_(klok),
      verbindingNaam_(QStringLiteral("bureau-%1").arg(reinterpret_cast<quintptr>(this))),
      verbinding_(QDBusConnection::connectToBus(adres, verbindingNaam_)),
      deur_(std::make_unique<BusDeur>(klok, [this] {
          QMetaObject::invokeMethod(
              this,
              [this] {
                  if (!verder_.isValid()) haal();
              },
              Qt::QueuedConnection);
      })) {
    verbinding_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"),
                        QStringLiteral("Disconnected"), this, SLOT(verloren()));
}

BusPoort::~BusPoort() {
    verbinding_.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
    draad_.quit();
    draad_.wait();
    deur_.reset();
    QDBusConnection::disconnectFromBus(verbindingNaam_);
}

bool BusPoort::neemNaam(const QString& naam) {
    if (!draad_.isRunning()) {
        // Qt hangs something of its own on it, which must come along.
        verbinding_.registerVirtualObject(QStringLiteral("/"), deur_.get(),
                                          QDBusConnection::SubPath);
        deur_->moveToThread(&draad_);
        draad_.start();
    }
    QDBusConnectionInterface* const bus = verbinding_.interface();
    return bus && bus->registerService(naam, QDBusConnectionInterface::DontQueueService,
                                       QDBusConnectionInterface::DontAllowReplacement) ==
                      QDBusConnectionInterface::ServiceRegistered;
}

void BusPoort::bied(BusObject object) {
    deur_->bied(std::move(object));
}

void BusPoort::zetEigenschappen(const QString& pad, const QVariantMap& eigenschappen) {
    const auto anders = deur_->zetEigenschappen(pad, eigenschappen);
    for (auto interface = anders.begin(); interface != anders.end(); ++interface)
        zend(pad, QStringLiteral("org.freedesktop.DBus.Properties"),
             QStringLiteral("PropertiesChanged"),
             {interface.key(), interface.value(), QStringList()});
}

void BusPoort::zend(const QString& pad, const QString& interface, const QString& signaal,
                    const QVariantList& waarden) {
    QDBusMessage bericht = QDBusMessage::createSignal(pad, interface, signaal);
    bericht.setArguments(waarden);
    verbinding_.send(bericht);
}

void BusPoort::verloren() {
    if (onVerloren_) onVerloren_();
}

void BusPoort::haal() {
    const auto oproep = deur_->neem();
    if (!oproep) return;
    const BusAntwoord antwoord = oproep->doe(oproep->bericht.arguments());
    if (oproep->bericht.isReplyRequired()) {
        if (const auto* fout = std::get_if<BusFout>(&antwoord))
            verbinding_.send(oproep->bericht.createErrorReply(fout->naam, fout->tekst));
        else
            verbinding_.send(oproep->bericht.createReply(std::get<QVariantList>(antwoord)));
    }
    verder_ = platform::Timer(klok_, {.interval = kTussendoor}, [this] { haal(); });
}

}  // namespace brixtel
