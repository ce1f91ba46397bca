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
                          .arg(reinterpret_cast<quintptr>(this))) {
    if (options_.address.isEmpty()) {
        onMain([this] { options_.ready(nullptr); });
        return;
    }
    queue_.emplace(options_.name);
    queue_->async([this] { connect(); });
}

BusLink::~BusLink() {
    if (!queue_) return;
    queue_.reset();
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
    onMain([this] { options_.ready(connection_ ? &*connection_ : nullptr); });
}

void BusLink::async(Task task) {
    if (!queue_) return;
    queue_->async([this, task = std::move(task)] {
        if (connection_) task(*connection_);
    });
}

void BusLink::onMain(std::function<void()> task) {
    QMetaObject::invokeMethod(&context_, std::move(task), Qt::QueuedConnection);
}

void BusLink::call(QDBusMessage message, std::function<void(const QDBusMessage&)> then) {
    message.setAutoStartService(false);
    auto* const watcher = new QDBusPendingCallWatcher(connection_->asyncCall(message), &context_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context_,
                     [watcher, then = std::move(then)] {
                         watcher->deleteLater();
                         then(watcher->reply());
                     });
}

}  // namespace platform
