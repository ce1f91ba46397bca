// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <set>

#include "platform/time/Queue.h"

namespace platform {

// Turns signals of the bus into names of notifications. What comes in is only
// noted; once in each turn of the event loop, however many came, what was noted is
// delivered: each name once, in the order in which they came last. So whoever
// floods the bus with signals holds up nothing. Main thread.
class NotificationReceiver : public QObject {
    Q_OBJECT

  public:
    // Called with the bus's own name of a sender, and whether its end is to come to
    // ownerChanged() from now on.
    using Watch = std::function<void(const QString& sender, bool on)>;

    // A saver counts as active while the sender that said so is on the bus.
    explicit NotificationReceiver(std::function<void(const QString&)> deliver, Watch watch = {});
    ~NotificationReceiver() override;

    // More senders than this are not believed.
    static constexpr qsizetype kMostSavers = 8;

    void note(const QString& name);
    Q_SLOT void notified(const QDBusMessage& message);
    Q_SLOT void activeChanged(const QDBusMessage& message);
    Q_SLOT void ownerChanged(const QString& name, const QString& before, const QString& now);

  private:
    void deliverAll();
    void begins(const QString& sender);
    // Whether it was active.
    bool ends(const QString& sender);

    const std::function<void(const QString&)> deliver_;
    const Watch watch_;
    QStringList noted_;
    QStringList active_;  // senders by whose word a saver is active
    // Readable while there is something to deliver. A posted event would have its
    // turn before those who wait for anything else.
    const int door_;
    QSocketNotifier notifier_;
};

// Owns the notification centre's connection to a bus. Anything that could make
// the caller wait happens on a queue. Main thread.
class NotificationLink {
  public:
    NotificationLink(const QString& busAddress, std::function<void(const QString&)> deliver);
    ~NotificationLink();
    NotificationLink(const NotificationLink&) = delete;
    NotificationLink& operator=(const NotificationLink&) = delete;

    void listen(const QString& name);
    void post(const QString& name);
    void whenReady(std::function<void()> action);

  private:
    void connect();
    void subscribe(const QString& name);
    void watch(const QString& sender);
    void unwatch(const QString& sender);

    const QString address_;
    const QString connectionName_;
    NotificationReceiver receiver_;
    std::set<QString> names_;
    // Both of the queue's thread; no connection without a bus.
    std::optional<QDBusConnection> connection_;
    bool listensToSavers_ = false;
    std::optional<SerialQueue> queue_{"notifications"};
};

}  // namespace platform
