// SPDX-License-Identifier: MIT
#include "platform/session/IdleInhibitors.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVirtualObject>
#include <utility>

#include "platform/session/BusLink.h"
#include "platform/session/BusNames.h"
#include "platform/session/InhibitorTally.h"
#include "platform/session/NotificationNames.h"
#include "platform/time/Timer.h"

namespace platform {

namespace {

// The calls that the monitor reads.
QStringList rules() {
    const auto calls = [](const char* interface, const char* member) {
        return QStringLiteral("type='method_call',interface='%1',member='%2'")
            .arg(QLatin1String(interface), QLatin1String(member));
    };
    return {calls(kSharedSaver, "Inhibit"),
            calls(kSharedSaver, "UnInhibit"),
            calls("org.freedesktop.portal.Inhibit", "Inhibit"),
            calls("org.freedesktop.portal.Request", "Close"),
            calls("org.gnome.SessionManager", "Inhibit"),
            calls("org.gnome.SessionManager", "Uninhibit")};
}

// Hands on every call that comes in.
class Calls final : public QDBusVirtualObject {
  public:
    using Take = std::function<bool(const QDBusMessage&, const QDBusConnection&)>;
    explicit Calls(Take take) : take_(std::move(take)) {}

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        return take_(call, bus);
    }

  private:
    const Take take_;
};

}  // namespace

class IdleInhibitors::Link final : public QObject {
    Q_OBJECT

  public:
    Link(MediaClock& clock, const QString& address, std::function<void(bool)> action)
        : action_(std::move(action)),
          seen_([this](const QDBusMessage& call, const QDBusConnection&) {
              note(call);
              return true;  // an answer would end the monitor
          }),
          served_([this](const QDBusMessage& call, const QDBusConnection& bus) {
              return serve(call, bus);
          }),
          monitor_({.address = address,
                    .name = "inhibitors",
                    .prepare = {},
                    .ready =
                        [this](QDBusConnection* bus) {
                            if (bus) readAlong(*bus);
                        }}),
          own_({.address = address,
                .name = "inhibiting",
                .prepare = {},
                .ready =
                    [this](QDBusConnection* bus) {
                        if (bus) offer(*bus);
                    }}),
          takeName_(clock, {.interval = kPatience},
                    [this] { own_.async([](QDBusConnection& bus) { takeName(bus); }); }) {}

    Q_SLOT void ownerChanged(const QString& name, const QString&, const QString& now) {
        if (!now.isEmpty()) return;
        const bool before = tally_.any();
        if (!tally_.left(name)) return;
        unwatch(name);
        tell(before);
    }

  private:
    void readAlong(QDBusConnection& bus) {
        bus.registerVirtualObject(QStringLiteral("/"), &seen_, QDBusConnection::SubPath);
        monitor_.async([this](QDBusConnection& same) { becomeMonitor(same); });
    }

    void offer(QDBusConnection& bus) {
        for (const char* const path : {"/ScreenSaver", "/org/freedesktop/ScreenSaver"})
            bus.registerVirtualObject(QLatin1String(path), &served_, QDBusConnection::SingleNode);
    }

    // On the queue.
    void becomeMonitor(QDBusConnection& bus) {
        QDBusMessage become = QDBusMessage::createMethodCall(
            kBusName, kBusPath, QStringLiteral("org.freedesktop.DBus.Monitoring"),
            QStringLiteral("BecomeMonitor"));
        become << rules() << 0U;
        const bool reads = bus.call(become).type() == QDBusMessage::ReplyMessage;
        monitor_.onMain([this, reads] { reads_ = reads; });
    }

    // On the queue.
    static void takeName(QDBusConnection& bus) {
        bus.interface()->registerService(QLatin1String(kSharedSaver),
                                         QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::AllowReplacement);
    }

    bool serve(const QDBusMessage& call, const QDBusConnection& bus) {
        if (call.interface() != QLatin1String(kSharedSaver)) return false;
        const bool begins =
            call.member() == QLatin1String("Inhibit") && call.signature() == QLatin1String("ss");
        const bool ends =
            call.member() == QLatin1String("UnInhibit") && call.signature() == QLatin1String("u");
        if (!begins && !ends) return false;
        if (!reads_) note(call);
        return bus.send(begins ? call.createReply(++lastCookie_) : call.createReply());
    }

    void note(const QDBusMessage& call) {
        const bool before = tally_.any();
        if (!tally_.note(call)) return;
        const QString caller = call.service();
        tally_.has(caller) ? watch(caller) : unwatch(caller);
        tell(before);
    }

    void watch(const QString& caller) {
        own_.async([this, caller](QDBusConnection& bus) {
            bus.connect(kBusName, kBusPath, kBusName, kOwnerChanged, {caller},
                        QStringLiteral("sss"), this, SLOT(ownerChanged(QString, QString, QString)));
            // A caller that went before it was watched.
            if (!bus.interface()->isServiceRegistered(caller).value())
                own_.onMain([this, caller] { ownerChanged(caller, caller, {}); });
        });
    }

    void unwatch(const QString& caller) {
        own_.async([this, caller](QDBusConnection& bus) {
            bus.disconnect(kBusName, kBusPath, kBusName, kOwnerChanged, {caller},
                           QStringLiteral("sss"), this,
                           SLOT(ownerChanged(QString, QString, QString)));
        });
    }

    void tell(bool before) {
        if (tally_.any() != before) action_(tally_.any());
    }

    const std::function<void(bool)> action_;
    InhibitorTally tally_;
    bool reads_ = false;  // the monitor reads the calls
    uint lastCookie_ = 0;
    Calls seen_, served_;
    BusLink monitor_, own_;
    Timer takeName_;
};

IdleInhibitors::IdleInhibitors(MediaClock& clock, const QString& busAddress,
                               std::function<void(bool)> action)
    : link_(std::make_unique<Link>(clock, busAddress, std::move(action))) {}

IdleInhibitors::~IdleInhibitors() = default;

}  // namespace platform

#include "IdleInhibitors.moc"
