// SPDX-License-Identifier: MIT
// The programs that affect the time without input, on a test's bus.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QVariantMap>
#include <map>

#include "tests/support/Until.h"

// GNOME's compositor, as far as it watches the input.
class IdleMonitor final : public QDBusVirtualObject {
  public:
    explicit IdleMonitor(const QString& address)
        : bus_(QDBusConnection::connectToBus(address, QStringLiteral("mutter"))) {}
    ~IdleMonitor() override {
        bus_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(QStringLiteral("mutter"));
    }

    bool appear() {
        return bus_.registerVirtualObject(QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"),
                                          this) &&
               bus_.registerService(name());
    }
    bool vanish() {
        bus_.unregisterObject(QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"));
        return bus_.unregisterService(name());
    }

    // Sends that the watch of that number fired.
    void fire(uint watch) {
        QDBusMessage signal =
            QDBusMessage::createSignal(QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"), name(),
                                       QStringLiteral("WatchFired"));
        signal << watch;
        bus_.send(signal);
    }

    std::map<uint, quint64> idleWatches;  // their milliseconds by number
    std::vector<uint> activeWatches;
    bool refuses = false;
    // Fires a watch on the next input before its number is answered.
    bool firesEarly = false;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        if (refuses) return false;
        const uint number = ++last_;
        if (call.member() == QLatin1String("AddIdleWatch")) {
            idleWatches[number] = call.arguments().value(0).toULongLong();
        } else if (call.member() == QLatin1String("AddUserActiveWatch")) {
            activeWatches.push_back(number);
            if (firesEarly) fire(number);
        } else {
            return false;
        }
        return bus.send(call.createReply(number));
    }

  private:
    static QString name() { return QStringLiteral("org.gnome.Mutter.IdleMonitor"); }
    QDBusConnection bus_;
    uint last_ = 40;
};

// A program that keeps the session awake; it leaves the bus when dropped.
class Inhibitor {
  public:
    explicit Inhibitor(const QString& address)
        : bus_(QDBusConnection::connectToBus(
              address, QStringLiteral("film-%1").arg(reinterpret_cast<quintptr>(this)))) {}
    ~Inhibitor() {
        const QString name = bus_.name();
        bus_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name);
    }
    Inhibitor(const Inhibitor&) = delete;
    Inhibitor& operator=(const Inhibitor&) = delete;

    // Each call's answer, be it an error.
    QDBusMessage holdSaver() {
        return call(saver("Inhibit"), {QStringLiteral("film"), QStringLiteral("speelt")});
    }
    QDBusMessage letGoOfSaver(uint cookie = 1) { return call(saver("UnInhibit"), {cookie}); }
    QDBusMessage holdSession(uint flags) {
        return call(session("Inhibit"),
                    {QStringLiteral("film"), 0U, QStringLiteral("speelt"), flags});
    }
    QDBusMessage letGoOfSession() { return call(session("Uninhibit"), {1U}); }
    QDBusMessage holdPortal(uint flags, const QString& token = {}) {
        QVariantMap options;
        if (!token.isEmpty()) options[QStringLiteral("handle_token")] = token;
        return call(QDBusMessage::createMethodCall(kPortal(), kPortalPath(),
                                                   QStringLiteral("org.freedesktop.portal.Inhibit"),
                                                   QStringLiteral("Inhibit")),
                    {QString(QLatin1String("")), flags, options});
    }
    QDBusMessage closeRequest(const QString& token) {
        return call(QDBusMessage::createMethodCall(
                        kPortal(), kPortalPath() + QStringLiteral("/request/1_5/") + token,
                        QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close")),
                    {});
    }

  private:
    static QString kPortal() { return QStringLiteral("org.freedesktop.portal.Desktop"); }
    static QString kPortalPath() { return QStringLiteral("/org/freedesktop/portal/desktop"); }
    static QDBusMessage saver(const char* method) {
        const QString name = QStringLiteral("org.freedesktop.ScreenSaver");
        return QDBusMessage::createMethodCall(name, QStringLiteral("/ScreenSaver"), name,
                                              QLatin1String(method));
    }
    static QDBusMessage session(const char* method) {
        const QString name = QStringLiteral("org.gnome.SessionManager");
        return QDBusMessage::createMethodCall(name, QStringLiteral("/org/gnome/SessionManager"),
                                              name, QLatin1String(method));
    }
    QDBusMessage call(QDBusMessage message, const QVariantList& arguments) {
        message.setArguments(arguments);
        const QDBusPendingCall pending = bus_.asyncCall(message);
        until([&] { return pending.isFinished(); });
        return pending.reply();
    }

    QDBusConnection bus_;
};
