// SPDX-License-Identifier: MIT
// Private to BusAansluiting.
#pragma once

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <deque>
#include <map>
#include <mutex>
#include <optional>

#include "hosts/bureau/BusObject.h"
#include "hosts/bureau/OproepLimiet.h"
#include "platform/time/MediaClock.h"

namespace brixtel {

// Receives the calls on every path of the connection, on a thread of its own.
class BusOntvanger final : public QDBusVirtualObject {
  public:
    // A call that the main thread is to carry out.
    struct Oproep {
        QDBusMessage bericht;
        BusObject::Doe doe;
    };

    // Calls `roep`, on the receiver's thread, after each call that is queued.
    BusOntvanger(const platform::MediaClock& klok, std::function<void()> roep)
        : klok_(klok), roep_(std::move(roep)) {}

    // --- from any thread ---

    void bied(BusObject object);
    // Sets properties of one interface and returns those that changed.
    QMap<QString, QVariantMap> zetEigenschappen(const QString& pad,
                                                const QVariantMap& eigenschappen);
    [[nodiscard]] std::optional<Oproep> neem();

    // --- the bus's ---

    [[nodiscard]] QString introspect(const QString& pad) const override;
    bool handleMessage(const QDBusMessage& bericht, const QDBusConnection& verbinding) override;

  private:
    struct Object {
        BusObject zelf;
        std::vector<BusMethode> methoden;
    };
    [[nodiscard]] QDBusMessage antwoord(const QDBusMessage& bericht, bool& later);
    [[nodiscard]] QDBusMessage roepEigenschappen(const QDBusMessage& bericht, const Object& object);
    [[nodiscard]] QDBusMessage leesEigenschap(const QDBusMessage& bericht, const Object& object);
    [[nodiscard]] QDBusMessage leesAlle(const QDBusMessage& bericht, const Object& object);
    [[nodiscard]] QDBusMessage weigerZetten(const QDBusMessage& bericht, const Object& object);
    [[nodiscard]] QDBusMessage roepMethode(const QDBusMessage& bericht, const Object& object,
                                           bool& later);

    const platform::MediaClock& klok_;
    const std::function<void()> roep_;
    OproepLimiet limiet_;  // the receiver's thread only
    mutable std::mutex slot_;
    std::map<QString, Object> objecten_;
    std::deque<Oproep> wachtend_;
};

}  // namespace brixtel
