// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QString>

// A desktop's saver or lock on a bus, under its name; gone from it when dropped.
class BusSaver {
  public:
    explicit BusSaver(const QString& address,
                      const QString& name = QStringLiteral("org.gnome.ScreenSaver"))
        : name_(name),
          connection_(QDBusConnection::connectToBus(
              address, QStringLiteral("saver-%1").arg(reinterpret_cast<quintptr>(this)))),
          owns_(connection_.registerService(name)) {}
    ~BusSaver() {
        const QString own = connection_.name();
        connection_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(own);
    }
    BusSaver(const BusSaver&) = delete;
    BusSaver& operator=(const BusSaver&) = delete;

    [[nodiscard]] bool owns() const { return owns_; }

    [[nodiscard]] bool send(bool active) const {
        auto signal = QDBusMessage::createSignal(QStringLiteral("/ScreenSaver"), name_,
                                                 QStringLiteral("ActiveChanged"));
        signal << active;
        return connection_.send(signal);
    }
    // Sends it, and waits until the bus has passed it on.
    [[nodiscard]] bool say(bool active) const {
        return send(active) &&
               connection_.interface()->isServiceRegistered(connection_.baseService()).value();
    }

  private:
    const QString name_;
    QDBusConnection connection_;
    const bool owns_;
};
