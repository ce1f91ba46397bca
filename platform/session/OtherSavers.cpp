// SPDX-License-Identifier: MIT
#include "platform/session/OtherSavers.h"

#include <QDBusMessage>
#include <QSet>
#include <QStringList>
#include <utility>

#include "platform/session/BusLink.h"
#include "platform/session/BusNames.h"
#include "platform/session/NotificationNames.h"

namespace platform {

namespace {

QStringList names() {
    QStringList all;
    for (const char* const interface : kSaverInterfaces)
        if (QLatin1String(interface) != QLatin1String(kSharedSaver))
            all << QLatin1String(interface);
    return all;
}

}  // namespace

class OtherSavers::Link final : public QObject {
    Q_OBJECT

  public:
    Link(const QString& address, std::function<void(bool)> action)
        : action_(std::move(action)),
          bus_({.address = address,
                .name = "savers",
                .prepare = [this](QDBusConnection& bus) { subscribe(bus); },
                .ready =
                    [this](QDBusConnection* bus) {
                        if (bus) ask();
                    }}) {}

    Q_SLOT void ownerChanged(const QString& name, const QString&, const QString& now) {
        heard_.insert(name);
        note(name, !now.isEmpty());
    }

  private:
    // On the queue.
    void subscribe(QDBusConnection& bus) {
        for (const QString& name : names())
            bus.connect(kBusName, kBusPath, kBusName, kOwnerChanged, {name}, QStringLiteral("sss"),
                        this, SLOT(ownerChanged(QString, QString, QString)));
    }

    void ask() {
        for (const QString& name : names()) {
            QDBusMessage call = QDBusMessage::createMethodCall(kBusName, kBusPath, kBusName,
                                                               QStringLiteral("NameHasOwner"));
            call << name;
            bus_.call(call, [this, name](const QDBusMessage& answer) {
                // A signal that came meanwhile is newer.
                if (heard_.contains(name) || answer.type() != QDBusMessage::ReplyMessage) return;
                note(name, answer.arguments().value(0).toBool());
            });
        }
    }

    void note(const QString& name, bool there) {
        const bool before = !names_.isEmpty();
        there ? (void)names_.insert(name) : (void)names_.remove(name);
        const bool any = !names_.isEmpty();
        if (any != before) action_(any);
    }

    const std::function<void(bool)> action_;
    QSet<QString> names_;  // that are there
    QSet<QString> heard_;  // of which a signal told
    BusLink bus_;
};

OtherSavers::OtherSavers(const QString& busAddress, std::function<void(bool)> action)
    : link_(std::make_unique<Link>(busAddress, std::move(action))) {}

OtherSavers::~OtherSavers() = default;

}  // namespace platform

#include "OtherSavers.moc"
