// SPDX-License-Identifier: MIT
#include "platform/session/NotificationLink.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <cstdint>
#include <utility>

#include "platform/session/BusNames.h"
#include "platform/session/NotificationNames.h"

namespace platform {

NotificationReceiver::NotificationReceiver(std::function<void(const QString&)> deliver, Watch watch)
    : deliver_(std::move(deliver)),
      watch_(std::move(watch)),
      waiting_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      notifier_(waiting_, QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, this, [this] { deliverAll(); });
}

NotificationReceiver::~NotificationReceiver() {
    notifier_.setEnabled(false);
    ::close(waiting_);
}

void NotificationReceiver::note(const QString& name) {
    if (noted_.isEmpty()) eventfd_write(waiting_, 1);
    noted_.removeOne(name);
    noted_.append(name);
}

void NotificationReceiver::deliverAll() {
    eventfd_t rings = 0;
    eventfd_read(waiting_, &rings);
    // Handlers may turn the event loop.
    for (const QString& name : std::exchange(noted_, {}))
        deliver_(name);
}

void NotificationReceiver::notified(const QDBusMessage& message) {
    const QString name = message.interface() + QLatin1Char('.') + message.member();
    if (name == QLatin1String(kSaverDidStart))
        begins(message.service());
    else
        note(name);
}

void NotificationReceiver::activeChanged(const QDBusMessage& message) {
    if (message.signature() != QLatin1String("b")) return;
    if (message.arguments().at(0).toBool()) return begins(message.service());
    (void)ends(message.service());
    note(QLatin1String(kSaverWillStop));
}

void NotificationReceiver::begins(const QString& sender) {
    if (!active_.contains(sender)) {
        if (active_.size() == kMostSavers) return;
        active_.append(sender);
        if (watch_) watch_(sender, true);
    }
    note(QLatin1String(kSaverDidStart));
}

bool NotificationReceiver::ends(const QString& sender) {
    if (!active_.removeOne(sender)) return false;
    if (watch_) watch_(sender, false);
    return true;
}

void NotificationReceiver::ownerChanged(const QString& name, const QString&, const QString& now) {
    if (!now.isEmpty() || !ends(name) || !active_.isEmpty()) return;
    note(QLatin1String(kSaverWillStop));
}

NotificationLink::NotificationLink(const QString& busAddress,
                                   std::function<void(const QString&)> deliver)
    : receiver_(std::move(deliver),
                [this](const QString& sender, bool on) {
                    bus_.async([this, sender, on](QDBusConnection& bus) {
                        on ? watch(bus, sender) : unwatch(bus, sender);
                    });
                }),
      bus_({.address = busAddress, .name = "notifications", .prepare = {}, .ready = {}}) {}

void NotificationLink::listen(const QString& name) {
    if (!names_.insert(name).second) return;
    bus_.async([this, name](QDBusConnection& bus) { subscribe(bus, name); });
}

void NotificationLink::subscribe(QDBusConnection& bus, const QString& name) {
    const BusName onBus = busNameOf(name);
    bus.connect(QString(), QString(), onBus.interface, onBus.member, &receiver_,
                SLOT(notified(QDBusMessage)));
    const bool ofSaver =
        name == QLatin1String(kSaverWillStop) || name == QLatin1String(kSaverDidStart);
    if (!ofSaver || std::exchange(listensToSavers_, true)) return;
    for (const char* interface : kSaverInterfaces)
        // Only the owner of the interface's bus name is believed.
        bus.connect(QLatin1String(interface), QString(), QLatin1String(interface),
                    QStringLiteral("ActiveChanged"), &receiver_, SLOT(activeChanged(QDBusMessage)));
}

// The bus is asked whether the sender left before the watch began.
void NotificationLink::watch(QDBusConnection& bus, const QString& sender) {
    bus.connect(kBusName, kBusPath, kBusName, kOwnerChanged, {sender}, QStringLiteral("sss"),
                &receiver_, SLOT(ownerChanged(QString, QString, QString)));
    if (bus.interface()->isServiceRegistered(sender).value()) return;
    bus_.onMain([this, sender] { receiver_.ownerChanged(sender, sender, {}); });
}

void NotificationLink::unwatch(QDBusConnection& bus, const QString& sender) {
    bus.disconnect(kBusName, kBusPath, kBusName, kOwnerChanged, {sender}, QStringLiteral("sss"),
                   &receiver_, SLOT(ownerChanged(QString, QString, QString)));
}

void NotificationLink::post(const QString& name) {
    const BusName onBus = busNameOf(name);
    bus_.asyncAnyway([this, name, onBus](QDBusConnection* bus) {
        if (bus && bus->send(QDBusMessage::createSignal(onBus.path, onBus.interface, onBus.member)))
            return;
        bus_.onMain([this, name] { receiver_.note(name); });
    });
}

void NotificationLink::whenReady(std::function<void()> action) {
    bus_.asyncAnyway([this, action = std::move(action)](QDBusConnection*) { bus_.onMain(action); });
}

}  // namespace platform
