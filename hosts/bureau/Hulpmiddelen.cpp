// SPDX-License-Identifier: MIT
#include "hosts/bureau/Hulpmiddelen.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

namespace brixtel {

namespace {
constexpr int kGeduld = 250;  // milliseconds
}

bool zijnHulpmiddelenInGebruik(const QDBusConnection& verbinding) {
    const QString dienst = QStringLiteral("org.a11y.Bus");
    if (!verbinding.interface()->isServiceRegistered(dienst).value()) return false;
    // Qt reads the same variable.
    if (qEnvironmentVariableIntValue("QT_LINUX_ACCESSIBILITY_ALWAYS_ON") == 1) return true;
    QDBusMessage bericht = QDBusMessage::createMethodCall(
        dienst, QStringLiteral("/org/a11y/bus"), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    bericht << QStringLiteral("org.a11y.Status") << QStringLiteral("IsEnabled");
    const QDBusReply<QDBusVariant> aan = verbinding.call(bericht, QDBus::Block, kGeduld);
    return aan.isValid() && aan.value().variant().toBool();
}

}  // namespace brixtel
