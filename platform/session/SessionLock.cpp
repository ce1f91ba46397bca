// SPDX-License-Identifier: MIT
#include "platform/session/SessionLock.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFileInfo>
#include <QVariantMap>
#include <utility>

#include "platform/session/BusLink.h"

namespace platform {

namespace {

const QString kService = QStringLiteral("org.freedesktop.login1");
const QString kSession = QStringLiteral("org.freedesktop.login1.Session");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kHint = QStringLiteral("LockedHint");
// The path that stands for the caller's own session.
const QString kOwnPath = QStringLiteral("/org/freedesktop/login1/session/auto");

QDBusMessage propertyCall(const QString& path, const QString& property) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(kService, path, kProperties, QStringLiteral("Get"));
    call << kSession << property;
    return call;
}

QDBusMessage sessionCall(const QString& id) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        kService, QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("GetSession"));
    call << id;
    return call;
}

// The property in the answer; invalid in an error.
QVariant propertyIn(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != QLatin1String("v"))
        return {};
    return qvariant_cast<QDBusVariant>(answer.arguments().first()).variant();
}

}  // namespace

class SessionLock::Link final : public QObject {
    Q_OBJECT

  public:
    Link(const QString& address, std::function<void(bool)> action)
        : action_(std::move(action)),
          bus_({.address = address,
                .name = "lock",
                .prepare = {},
                .ready = [this](QDBusConnection* bus) {
                    if (bus) findSession();
                }}) {}

    Q_SLOT void changed(const QString& interface, const QVariantMap& properties,
                        const QStringList&) {
        const auto found = properties.find(kHint);
        if (interface != kSession || found == properties.end()) return;
        heard_ = true;
        setLocked(found->toBool());
    }

  private:
    void findSession() {
        const QString id = qEnvironmentVariable("XDG_SESSION_ID");
        if (!id.isEmpty()) return findPath(id);
        bus_.call(propertyCall(kOwnPath, QStringLiteral("Id")), [this](const QDBusMessage& answer) {
            const QString found = propertyIn(answer).toString();
            if (!found.isEmpty()) findPath(found);
        });
    }

    void findPath(const QString& id) {
        bus_.call(sessionCall(id), [this](const QDBusMessage& answer) {
            if (answer.type() != QDBusMessage::ReplyMessage ||
                answer.signature() != QLatin1String("o"))
                return;
            const QString path = qvariant_cast<QDBusObjectPath>(answer.arguments().first()).path();
            bus_.async([this, path](QDBusConnection& bus) {
                bus.connect(kService, path, kProperties, QStringLiteral("PropertiesChanged"), this,
                            SLOT(changed(QString, QVariantMap, QStringList)));
                bus_.onMain([this, path] { ask(path); });
            });
        });
    }

    void ask(const QString& path) {
        bus_.call(propertyCall(path, kHint), [this](const QDBusMessage& answer) {
            // A signal that came meanwhile is newer.
            if (!heard_) setLocked(propertyIn(answer).toBool());
        });
    }

    void setLocked(bool locked) {
        if (std::exchange(locked_, locked) != locked) action_(locked);
    }

    const std::function<void(bool)> action_;
    bool heard_ = false;
    bool locked_ = false;
    BusLink bus_;
};

SessionLock::SessionLock(const QString& systemBusAddress, std::function<void(bool)> action)
    : link_(std::make_unique<Link>(systemBusAddress, std::move(action))) {}

SessionLock::~SessionLock() = default;

QString SessionLock::systemBusAddress() {
    QString named = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    if (!named.isEmpty()) return named;
    const QString usual = QStringLiteral("/run/dbus/system_bus_socket");
    return QFileInfo::exists(usual) ? QStringLiteral("unix:path=") + usual : QString();
}

}  // namespace platform

#include "SessionLock.moc"
