// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QStringList>
#include <functional>
#include <set>

#include "platform/session/BusLink.h"

namespace platform {

// Turns signals of the bus into names of notifications. An arriving signal is only noted.
// Each turn of the event loop delivers every noted name once, in the order of last arrival.
// A flood of signals thus delays nothing else. Owned by its link. Main
// thread.
class NotificationReceiver : public QObject {
    Q_OBJECT

  public:
    // Starts (true) or stops (false) the calls of ownerChanged() for a sender, given by the
    // bus's own name for it.
    using Watch = std::function<void(const QString& sender, bool on)>;

    // A saver counts as active while the sender of its start is on the bus.
    explicit NotificationReceiver(std::function<void(const QString&)> deliver, Watch watch = {});
    ~NotificationReceiver() override;

    // The most senders that are believed at once.
    static constexpr qsizetype kMostSavers = 8;

    void note(const QString& name);
    Q_SLOT void notified(const QDBusMessage& message);
    Q_SLOT void activeChanged(const QDBusMessage& message);
    Q_SLOT void ownerChanged(const QString& name, const QString& before, const QString& now);

  private:
    void deliverAll();
    void begins(const QString& sender);
    // Returns whether the sender was active.
    bool ends(const QString& sender);

    const std::function<void(const QString&)> deliver_;
    const Watch watch_;
    QStringList noted_;
    QStringList active_;  // senders whose saver is active
    // Readable while a name waits for delivery. A posted event would be handled before all
    // sockets and timers.
    const int waiting_;
    QSocketNotifier notifier_;
};

// Owns the notification centre's link to a bus. Main thread.
class NotificationLink {
  public:
    NotificationLink(const QString& busAddress, std::function<void(const QString&)> deliver);
    NotificationLink(const NotificationLink&) = delete;
    NotificationLink& operator=(const NotificationLink&) = delete;

    void listen(const QString& name);
    void post(const QString& name);
    void whenReady(std::function<void()> action);

  private:
    // On the queue.
    void subscribe(QDBusConnection& bus, const QString& name);
    void watch(QDBusConnection& bus, const QString& sender);
    void unwatch(QDBusConnection& bus, const QString& sender);

    NotificationReceiver receiver_;
    std::set<QString> names_;
    bool listensToSavers_ = false;  // of the queue's thread
    BusLink bus_;
};

}  // namespace platform
