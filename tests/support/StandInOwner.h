// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

// Answers on a bus in the place of the desktop effects' owner: each request at once, and a
// question for its properties with plausible ones. Works while the event loop turns.
class StandInOwner : public QDBusVirtualObject {
  public:
    explicit StandInOwner(const QString& address)
        : connection_(QDBusConnection::connectToBus(
              address, QStringLiteral("owner-%1").arg(reinterpret_cast<quintptr>(this)))),
          owns_(connection_.registerVirtualObject(QStringLiteral("/"), this,
                                                  QDBusConnection::SubPath) &&
                connection_.registerService(QStringLiteral("nl.groenlicht.brixtel.Bureau"))) {}
    ~StandInOwner() override {
        connection_.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
        const QString own = connection_.name();
        connection_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(own);
    }

    // Whether it has the owner's name.
    [[nodiscard]] bool owns() const { return owns_; }
    // Requests so far.
    [[nodiscard]] int requests() const { return requests_; }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& request, const QDBusConnection& bus) override {
        ++requests_;
        if (request.member() != u"GetAll") return bus.send(request.createReply());
        return bus.send(request.createReply(QVariantMap{
            {QStringLiteral("ZwartAan"), true},
            {QStringLiteral("ZwartSoort"), QStringLiteral("regen")},
            {QStringLiteral("RegenAan"), false},
            {QStringLiteral("RegenUitleg"), QString()},
            {QStringLiteral("Dichtheid"), 0.7},
            {QStringLiteral("Snelheid"), 1.0},
            {QStringLiteral("Muziek"), false},
            {QStringLiteral("Rust"), 0},
        }));
    }

  private:
    QDBusConnection connection_;
    bool owns_;
    int requests_ = 0;
};
