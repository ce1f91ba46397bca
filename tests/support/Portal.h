// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>

// A desktop's settings portal on a test's bus.
class Portal final : public QDBusVirtualObject {
  public:
    explicit Portal(const QString& address)
        : bus_(QDBusConnection::connectToBus(address, QStringLiteral("portal"))) {}
    ~Portal() override { QDBusConnection::disconnectFromBus(QStringLiteral("portal")); }

    // Appears on the bus, as when the desktop starts a portal.
    bool appear() {
        return bus_.registerVirtualObject(kPath(), this) &&
               bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    // Sets a value without a signal.
    void put(const QString& space, const QString& key, const QVariant& value) {
        all_[space][key] = value;
    }
    // Sets a value and sends the signal of a user's change.
    void change(const QString& space, const QString& key, const QVariant& value) {
        put(space, key, value);
        QDBusMessage signal =
            QDBusMessage::createSignal(kPath(), kInterface(), QStringLiteral("SettingChanged"));
        signal << space << key << QVariant::fromValue(QDBusVariant(value));
        bus_.send(signal);
    }
    [[nodiscard]] int asked() const { return asked_; }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        if (message.member() != QLatin1String("ReadAll")) return false;
        ++asked_;
        const QStringList spaces = message.arguments().value(0).toStringList();
        QDBusArgument reply;
        reply.beginMap(QMetaType::fromType<QString>(), QMetaType::fromType<QVariantMap>());
        for (auto at = all_.cbegin(); at != all_.cend(); ++at) {
            if (!spaces.contains(at.key())) continue;
            reply.beginMapEntry();
            reply << at.key() << at.value();
            reply.endMapEntry();
        }
        reply.endMap();
        return bus.send(message.createReply(QVariant::fromValue(reply)));
    }

  private:
    static QString kPath() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    static QString kInterface() { return QStringLiteral("org.freedesktop.portal.Settings"); }
    QDBusConnection bus_;
    QMap<QString, QVariantMap> all_;
    int asked_ = 0;
};
