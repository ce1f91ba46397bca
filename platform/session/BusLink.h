// SPDX-License-Identifier: MIT
// Private to platform/session.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

#include "platform/time/Queue.h"

namespace platform {

// One user's own connection to a message bus, with a queue for every call that may wait. Owned
// by its user. Main thread.
class BusLink {
  public:
    using Task = std::function<void(QDBusConnection&)>;
    struct Options {
        QString address;     // empty for no bus
        const char* name{};  // of the queue; part of the connection's name
        Task prepare;        // on the queue, once connected
        // On the main thread, in a later turn of the event loop; null without a bus.
        std::function<void(QDBusConnection*)> ready;
    };
    // The fate of a called service that does not run.
    enum class Absent { Stays, Starts };
    explicit BusLink(Options options);
    ~BusLink();
    BusLink(const BusLink&) = delete;
    BusLink& operator=(const BusLink&) = delete;

    // Runs the task on the queue; never without a bus.
    void async(Task task);
    // Runs the task on the queue; with null without a bus.
    void asyncAnyway(std::function<void(QDBusConnection*)> task);
    // Runs the task on the main thread, unless the link is dropped first. Any thread.
    void onMain(std::function<void()> task);
    // Calls a method; the answer, or the error, goes to `then` on the main thread. Only once
    // ready with a bus.
    void call(QDBusMessage message, std::function<void(const QDBusMessage&)> then,
              Absent service = Absent::Stays);

  private:
    void connect();
    void tellReady();
    [[nodiscard]] QDBusConnection* connection() { return connection_ ? &*connection_ : nullptr; }

    const Options options_;
    const QString connectionName_;
    QObject context_;
    std::optional<QDBusConnection> connection_;  // set on the queue, before ready()
    std::optional<SerialQueue> queue_;           // starts its thread with its first task
};

}  // namespace platform
