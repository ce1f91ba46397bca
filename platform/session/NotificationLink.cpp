// SPDX-License-Identifier: MIT
#include "platform/session/NotificationLink.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

#include "platform/session/NotificationNames.h"

namespace platform {

NotificationReceiver::NotificationReceiver(std::function<void(const QString&)> deliver)
    : deliver_(std::move(deliver)),
      door_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      notifier_(door_, QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, this, [this] { deliverAll(); });
}

NotificationReceiver::~NotificationReceiver() {
    notifier_.setEnabled(false);
    ::close(door_);
}

void NotificationReceiver::note(const QString& name) {
    if (noted_.isEmpty()) eventfd_write(door_, 1);
    noted_.removeOne(name);
    noted_.append(name);
}

void NotificationReceiver::deliverAll() {
    eventfd_t rings = 0;
    eventfd_read(door_, &rings);
    // Handlers may turn the event loop.
    for (const QString& name : std::exchange(noted_, {}))
        deliver_(name);
}

void NotificationReceiver::notified(const QDBusMessage& message) {
    note(message.interface() + QLatin1Char('.') + message.member());
}

void NotificationReceiver::activeChanged(bool active) {
    note(QLatin1String(active ? kSaverDidStart : kSaverWillStop));
}

NotificationLink::NotificationLink(const QString& busAddress,
                                   std::function<void(const QString&)> deliver)
    : address_(busAddress),
      connectionName_(QStringLiteral("notifications-%1").arg(reinterpret_cast<quintptr>(this))),
      receiver_(std::move(deliver)) {
    if (!address_.isEmpty()) queue_->async([this] { connect(); });
}

NotificationLink::~NotificationLink() {
    queue_.reset();
    if (!connection_) return;
    connection_.reset();
    QDBusConnection::disconnectFromBus(connectionName_);
}

void NotificationLink::connect() {
    const QDBusConnection connection = QDBusConnection::connectToBus(address_, connectionName_);
    if (connection.isConnected()) connection_ = connection;
}

void NotificationLink::listen(const QString& name) {
    if (!names_.insert(name).second) return;
    queue_->async([this, name] { subscribe(name); });
}

void NotificationLink::subscribe(const QString& name) {
    if (!connection_) return;
    const BusName bus = busNameOf(name);
    connection_->connect(QString(), QString(), bus.interface, bus.member, &receiver_,
                         SLOT(notified(QDBusMessage)));
    const bool ofSaver =
        name == QLatin1String(kSaverWillStop) || name == QLatin1String(kSaverDidStart);
    if (!ofSaver || std::exchange(listensToSavers_, true)) return;
    for (const char* interface : kSaverInterfaces)
        connection_->connect(QString(), QString(), QLatin1String(interface),
                             QStringLiteral("ActiveChanged"), &receiver_,
                             SLOT(activeChanged(bool)));
}

void NotificationLink::post(const QString& name) {
    const BusName bus = busNameOf(name);
    queue_->async([this, name, bus] {
        if (connection_ &&
            connection_->send(QDBusMessage::createSignal(bus.path, bus.interface, bus.member)))
            return;
        QMetaObject::invokeMethod(
            &receiver_, [this, name] { receiver_.note(name); }, Qt::QueuedConnection);
    });
}

void NotificationLink::whenReady(std::function<void()> action) {
    queue_->async([this, action = std::move(action)] {
        QMetaObject::invokeMethod(&receiver_, action, Qt::QueuedConnection);
    });
}

}  // namespace platform
