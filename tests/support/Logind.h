// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QVariantMap>
#include <map>

// The system's sessions on a test's bus; the one who asks is in session 7.
class Logind final : public QDBusVirtualObject {
  public:
    explicit Logind(const QString& address)
        : bus_(QDBusConnection::connectToBus(
              address, QStringLiteral("logind-%1").arg(reinterpret_cast<quintptr>(this)))) {}
    ~Logind() override {
        const QString name = bus_.name();
        bus_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name);
    }

    bool appear() {
        return bus_.registerVirtualObject(kRoot(), this, QDBusConnection::SubPath) &&
               bus_.registerService(QStringLiteral("org.freedesktop.login1"));
    }
    void put(const char* session, bool locked) { locked_[QLatin1String(session)] = locked; }
    // Sets the hint and sends the signal.
    void change(const char* session, bool locked) {
        put(session, locked);
        QDBusMessage signal = QDBusMessage::createSignal(
            kRoot() + QStringLiteral("/session/_3") + QLatin1String(session),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
        signal << kSession() << QVariantMap{{QStringLiteral("LockedHint"), locked}}
               << QStringList();
        bus_.send(signal);
    }
    // Whether the bus has passed on all that was sent.
    [[nodiscard]] bool isPassedOn() const {
        return bus_.interface()->isServiceRegistered(bus_.baseService()).value();
    }
    // The number of times that the property was read.
    [[nodiscard]] int asked(const char* property) { return asked_[QLatin1String(property)]; }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        if (call.member() == QLatin1String("GetSession")) {
            const QString path =
                kRoot() + QStringLiteral("/session/_3") + call.arguments().value(0).toString();
            return bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        }
        if (call.member() != QLatin1String("Get")) return false;
        const QString property = call.arguments().value(1).toString();
        ++asked_[property];
        if (property == QLatin1String("Id")) return answer(call, bus, QStringLiteral("7"));
        return answer(call, bus, locked_[call.path().right(1)]);
    }

  private:
    static QString kRoot() { return QStringLiteral("/org/freedesktop/login1"); }
    static QString kSession() { return QStringLiteral("org.freedesktop.login1.Session"); }
    static bool answer(const QDBusMessage& call, const QDBusConnection& bus,
                       const QVariant& value) {
        return bus.send(call.createReply(QVariant::fromValue(QDBusVariant(value))));
    }

    QDBusConnection bus_;
    std::map<QString, bool> locked_;
    std::map<QString, int> asked_;
};
