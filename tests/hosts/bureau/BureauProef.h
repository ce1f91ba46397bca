// SPDX-License-Identifier: MIT
// The owner on a desktop of the test's own, on a clock moved by hand, offered on a
// bus of the test's own.
#pragma once

#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QTemporaryDir>

#include "hosts/bureau/Bureau.h"
#include "hosts/bureau/BureauDienst.h"
#include "tests/desktop/Werkruimte.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"

namespace brixtel {

class BureauProef : public testing::Test {
  protected:
    QTemporaryDir map;
    platform::ManualClock klok{100.0};
    platform::RandomSource toeval{3};
    Werkruimte werkruimte;
    platform::WindowServer server;
    std::vector<platform::Screen> schermen{
        {.name = QStringLiteral("een"), .frame = {0, 0, 400, 300}, .scale = 1.0}};
    std::optional<Bureau> bureau;
    std::vector<BureauStand> gemeld;
    Abonnement stand;

    // Without a display unless told of one; empty is the environment's.
    explicit BureauProef(const QString& display = QStringLiteral(":none"))
        : server(klok, {.drawer = {}, .system = systemOn(klok, display)}) {}
    void SetUp() override {
        qputenv("XDG_CONFIG_HOME", map.path().toLocal8Bit());
        begin();
    }
    void begin() {
        stand = {};
        bureau.emplace(
            MatrixCentraleBronnen{.server = server,
                                  .werkruimte = werkruimte,
                                  .toeval = toeval,
                                  .schermen = [this] { return schermen; }},
            platform::MonitorRecorderOptions{.server = QStringLiteral("unix:/nonexistent/native")});
        stand = bureau->stand().volg([this](const BureauStand& s) { gemeld.push_back(s); });
        gemeld.clear();
    }
    [[nodiscard]] const BureauStand& nu() const { return bureau->stand().waarde(); }
};

// Another program on the bus.
class Beller {
  public:
    explicit Beller(const QString& adres)
        : naam_(QStringLiteral("beller-%1").arg(reinterpret_cast<quintptr>(this))),
          verbinding(QDBusConnection::connectToBus(adres, naam_)) {}
    ~Beller() { QDBusConnection::disconnectFromBus(naam_); }
    Beller(const Beller&) = delete;
    Beller& operator=(const Beller&) = delete;

    // Calls, and turns the event loop until there is an answer.
    QDBusMessage roep(const QString& pad, const QString& interface, const char* methode,
                      const QVariantList& waarden = {}) {
        QDBusMessage bericht =
            QDBusMessage::createMethodCall(kDienstNaam, pad, interface, QLatin1String(methode));
        bericht.setArguments(waarden);
        const QDBusPendingCall antwoord = verbinding.asyncCall(bericht);
        until([&] { return antwoord.isFinished(); });
        return antwoord.reply();
    }
    QDBusMessage roep(const char* methode, const QVariantList& waarden = {}) {
        return roep(kDienstPad, kDienstNaam, methode, waarden);
    }
    // A property of the service.
    QVariant lees(const char* naam) {
        const auto antwoord = roep(kDienstPad, QStringLiteral("org.freedesktop.DBus.Properties"),
                                   "Get", {kDienstNaam, QString::fromLatin1(naam)});
        return qvariant_cast<QDBusVariant>(antwoord.arguments().value(0)).variant();
    }

  private:
    const QString naam_;

  public:
    QDBusConnection verbinding;
};

// The owner, offered on a bus of the test's own.
class BureauOpDeBus : public BureauProef {
  protected:
    DBusDaemon bus;
    platform::SystemClock echteKlok;
    int gestopt = 0;
    int getoond = 0;
    QString paneelMis;
    std::optional<BusAansluiting> aansluiting;
    std::optional<Beller> beller;

    // Puts what is tested on the bus, before it has its name.
    virtual void bied(const BureauDaden& daden) = 0;

    void SetUp() override {
        BureauProef::SetUp();
        ASSERT_FALSE(bus.address().isEmpty());
        aansluiting.emplace(echteKlok, bus.address());
        bied({.stop = [this] { ++gestopt; },
              .toonPaneel =
                  [this] {
                      ++getoond;
                      return paneelMis;
                  }});
        ASSERT_TRUE(aansluiting->neemNaam(kDienstNaam));
        beller.emplace(bus.address());
    }
};

}  // namespace brixtel
