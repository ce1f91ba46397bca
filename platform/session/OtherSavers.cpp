// SPDX-License-Identifier: MIT
#include "platform/session/OtherSavers.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QSet>
#include <utility>

#include "platform/session/BusLink.h"
#include "platform/session/BusNames.h"
#include "platform/session/NotificationNames.h"

namespace platform {

class OtherSavers::Link final : public QObject {
    Q_OBJECT

  public:
    Link(const QString& address, std::function<void(bool)> action)
        : action_(std::move(action)),
          bus_({.address = address,
                .name = "savers",
                .prepare = [this](QDBusConnection& bus) { subscribe(bus); },
                .ready = [](QDBusConnection*) {}}) {}

    Q_SLOT void ownerChanged(const QString& name, const QString&, const QString& now) {
        note(name, !now.isEmpty());
    }

  private:
    // On the queue.
    void subscribe(QDBusConnection& bus) {
        for (const char* const interface : kSaverInterfaces) {
            const QString name = QLatin1String(interface);
            if (name == QLatin1String(kSharedSaver)) continue;
            bus.connect(kBusName, kBusPath, kBusName, kOwnerChanged, {name}, QStringLiteral("sss"),
                        this, SLOT(ownerChanged(QString, QString, QString)));
            if (bus.interface()->isServiceRegistered(name).value())
                bus_.onMain([this, name] { note(name, true); });
        }
    }

    void note(const QString& name, bool there) {
        const bool before = !names_.isEmpty();
        there ? (void)names_.insert(name) : (void)names_.remove(name);
        const bool any = !names_.isEmpty();
        if (any != before) action_(any);
    }

    const std::function<void(bool)> action_;
    QSet<QString> names_;
    BusLink bus_;
};

OtherSavers::OtherSavers(const QString& busAddress, std::function<void(bool)> action)
    : link_(std::make_unique<Link>(busAddress, std::move(action))) {}

OtherSavers::~OtherSavers() = default;

}  // namespace platform

#include "OtherSavers.moc"
