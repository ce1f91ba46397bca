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
// A thread of its own receives calls. It answers properties, introspection and wrong calls
// by itself; each wrong call gets a Dutch error. The other calls go to the main thread, one
// at a time, and no more from one caller than OproepLimiet allows, so that a caller that
// floods the bus delays only its own answers. Main thread; the clock must outlive it, and
// any thread must be able to call the clock's now().
class BusAansluiting : public QObject {
    Q_OBJECT

  public:
    // Connects to the bus at that address, and waits for it.
    BusAansluiting(platform::MediaClock& klok, const QString& adres);
    ~BusAansluiting() override;

    [[nodiscard]] const QDBusConnection& verbinding() const { return verbinding_; }

    // Takes the name; true when it is this program's now. Calls that arrive from then on
    // are answered.
    [[nodiscard]] bool neemNaam(const QString& naam);

    // Offers an object. To be called before neemNaam().
    void bied(BusObject object);

    // Sets properties, named interface.Property, and signals those that changed.
    void zetEigenschappen(const QString& pad, const QVariantMap& eigenschappen);
    void zend(const QString& pad, const QString& interface, const QString& signaal,
              const QVariantList& waarden);

    // Called when the connection to the bus is lost.
    void onVerloren(std::function<void()> actie) { onVerloren_ = std::move(actie); }

  private:
    Q_SLOT void verloren();
    void haal();

    platform::MediaClock& klok_;
    const QString verbindingNaam_;
    QDBusConnection verbinding_;
    QThread draad_;
    std::unique_ptr<BusOntvanger> ontvanger_;  // lives on the bus thread
    platform::Timer vervolgKlok_;
    std::function<void()> onVerloren_;
};

}  // namespace brixtel
