// SPDX-License-Identifier: MIT
#include "platform/session/DistributedNotificationCenter.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

#include "platform/session/NotificationLink.h"
#include "platform/session/NotificationNames.h"
#include "platform/time/Require.h"

namespace platform {

BusName busNameOf(const QString& notification) {
    static const QRegularExpression form(
        QStringLiteral("\\A[A-Za-z_]\\w*(\\.[A-Za-z_]\\w*){2,}\\z"));
    require(form.match(notification).hasMatch());
    const qsizetype dot = notification.lastIndexOf(QLatin1Char('.'));
    const QString interface = notification.left(dot);
    return {
        .interface = interface,
        .member = notification.mid(dot + 1),
        .path = QLatin1Char('/') + QString(interface).replace(QLatin1Char('.'), QLatin1Char('/'))};
}

QString DistributedNotificationCenter::sessionBusAddress() {
    QString named = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!named.isEmpty()) return named;
    // The bus library looks at the same place next. Where it finds no bus it starts one, which
    // would outlive this program.
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (folder.isEmpty() || !QFileInfo::exists(folder + QStringLiteral("/bus"))) return {};
    return QStringLiteral("unix:path=") + folder + QStringLiteral("/bus");
}

DistributedNotificationCenter::DistributedNotificationCenter(const QString& busAddress)
    : link_(std::make_unique<NotificationLink>(busAddress,
                                               [this](const QString& name) { deliver(name); })) {}

DistributedNotificationCenter::~DistributedNotificationCenter() = default;

void DistributedNotificationCenter::addObserver(const void* observer, const QString& name,
                                                std::function<void()> handler) {
    link_->listen(name);
    observers_.push_back(std::make_shared<Observer>(Observer{observer, name, std::move(handler)}));
}

void DistributedNotificationCenter::removeObserver(const void* observer) {
    for (const auto& entry : observers_)
        if (entry->key == observer) entry->removed = true;
    std::erase_if(observers_, [](const auto& entry) { return entry->removed; });
}

void DistributedNotificationCenter::deliver(const QString& name) {
    // Handlers may add and remove observers.
    const std::vector<std::shared_ptr<Observer>> now = observers_;
    for (const auto& entry : now)
        if (!entry->removed && entry->name == name) entry->handler();
}

void DistributedNotificationCenter::post(const QString& name) {
    link_->post(name);
}

void DistributedNotificationCenter::whenReady(std::function<void()> action) {
    link_->whenReady(std::move(action));
}

}  // namespace platform
