// SPDX-License-Identifier: MIT
#include "platform/session/BusLink.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <utility>

namespace platform {

BusLink::BusLink(Options options)
    : options_(std::move(options)),
      connectionName_(QStringLiteral("%1-%2")
                          .arg(QLatin1String(options_.name))
                          .arg(reinterpret_cast<quintptr>(this))),
      queue_(std::in_place, options_.name) {
    if (options_.address.isEmpty())
        tellReady();
    else
        queue_->async([this] { connect(); });
}

BusLink::~BusLink() {
    queue_.reset();
    if (options_.address.isEmpty()) return;
    connection_.reset();
    // Qt keeps the name of a connection that failed, and would give it to the next of that name.
    QDBusConnection::disconnectFromBus(connectionName_);
}

void BusLink::connect() {
    QDBusConnection connection = QDBusConnection::connectToBus(options_.address, connectionName_);
    if (connection.isConnected()) {
        connection_ = connection;
        if (options_.prepare) options_.prepare(*connection_);
    }
    tellReady();
}

void BusLink::tellReady() {
    if (options_.ready) onMain([this] { options_.ready(connection()); });
}

void BusLink::async(Task task) {
    if (options_.address.isEmpty()) return;
    queue_->async([this, task = std::move(task)] {
        if (connection_) task(*connection_);
    });
}

void BusLink::asyncAnyway(std::function<void(QDBusConnection*)> task) {
    queue_->async([this, task = std::move(task)] { task(connection()); });
}

void BusLink::onMain(std::function<void()> task) {
    QMetaObject::invokeMethod(&context_, std::move(task), Qt::QueuedConnection);
}

void BusLink::call(QDBusMessage message, std::function<void(const QDBusMessage&)> then,
                   Absent service) {
    message.setAutoStartService(service == Absent::Starts);
    auto* const watcher = new QDBusPendingCallWatcher(connection_->asyncCall(message), &context_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context_,
                     [watcher, then = std::move(then)] {
                         watcher->deleteLater();
                         then(watcher->reply());
                     });
}

}  // namespace platform
