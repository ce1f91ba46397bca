// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QThread>
#include <memory>

#include "hosts/bureau/BusObject.h"
#include "platform/time/Timer.h"

namespace brixtel {

class BusOntvanger;

// This program's place on a message bus: its objects, their properties, its name.
//
// Calls come in on a thread of its own, which answers by itself what can be
// answered from what it knows: properties, introspection, and calls that are
// wrong, each with a Dutch error. What is left goes to the main thread, one at
// a time, and not more from one caller than OproepLimiet allows, so that whoever
// floods the bus with calls holds up nothing but his own answers. Main thread; the
// clock must outlive it, and its now() must be for any thread to call.
class BusAansluiting : public QObject {
    Q_OBJECT

  public:
    // Waits for the bus at that address.
    BusAansluiting(platform::MediaClock& klok, const QString& adres);
    ~BusAansluiting() override;

    [[nodiscard]] const QDBusConnection& verbinding() const { return verbinding_; }

    // Whether the name is this program's now. Calls are only answered from then on
    // that came after.
    [[nodiscard]] bool neemNaam(const QString& naam);

    // Before the name is taken.
    void bied(BusObject object);

    // Tells whoever follows them of those properties that are not as they were. By
    // interface.Property.
    void zetEigenschappen(const QString& pad, const QVariantMap& eigenschappen);
    void zend(const QString& pad, const QString& interface, const QString& signaal,
              const QVariantList& waarden);

    // Called when the bus is gone.
    void onVerloren(std::function<void()> actie) { onVerloren_ = std::move(actie); }

  private:
    Q_SLOT void verloren();
    void haal();

    platform::MediaClock& klok_;
    const QString verbindingNaam_;
    QDBusConnection verbinding_;
    QThread draad_;
    std::unique_ptr<BusOntvanger> ontvanger_;  // lives on that thread
    platform::Timer verder_;
    std::function<void()> onVerloren_;
};

}  // namespace brixtel
