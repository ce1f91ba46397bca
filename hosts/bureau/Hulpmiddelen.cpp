// SPDX-License-Identifier: MIT
#include "hosts/bureau/Hulpmiddelen.h"

#include <QAccessible>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QGuiApplication>

namespace brixtel {

namespace {

const QString kDienst = QStringLiteral("org.a11y.Bus");
constexpr int kGeduld = 250;  // milliseconds
constexpr const char* kAdres = "AT_SPI_BUS_ADDRESS";

QDBusMessage vraag(const QDBusConnection& verbinding, const QString& interface,
                   const char* methode, const QVariantList& waarden = {}) {
    QDBusMessage bericht = QDBusMessage::createMethodCall(
        kDienst, QStringLiteral("/org/a11y/bus"), interface, QLatin1String(methode));
    bericht.setArguments(waarden);
    bericht.setAutoStartService(false);
    return verbinding.call(bericht, QDBus::Block, kGeduld);
}

bool isInGebruik(const QDBusConnection& verbinding) {
    // As in Qt itself.
    if (qEnvironmentVariableIntValue("QT_LINUX_ACCESSIBILITY_ALWAYS_ON") == 1) return true;
    const QDBusReply<QDBusVariant> aan =
        vraag(verbinding, QStringLiteral("org.freedesktop.DBus.Properties"), "Get",
              {QStringLiteral("org.a11y.Status"), QStringLiteral("IsEnabled")});
    return aan.isValid() && aan.value().variant().toBool();
}

}  // namespace

void zoekHulpmiddelen(const QDBusConnection& verbinding) {
    if (qEnvironmentVariableIsSet(kAdres) || !verbinding.interface() ||
        !verbinding.interface()->isServiceRegistered(kDienst).value() || !isInGebruik(verbinding))
        return;
    const QDBusReply<QString> adres = vraag(verbinding, kDienst, "GetAddress");
    if (!adres.isValid() || adres.value().isEmpty()) return;
    qputenv(kAdres, adres.value().toLocal8Bit());
    // Qt's bridge begins with this.
    QAccessible::setRootObject(qGuiApp);
}

}  // namespace brixtel
