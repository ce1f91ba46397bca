// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>

#include "tests/support/DBusDaemon.h"
#include "tests/support/Until.h"

// Listens to messages on a bus that meet a match rule, with dbus-monitor.
class BusMonitor {
  public:
    BusMonitor(const DBusDaemon& bus, const QString& rule) {
        process_.start(QStringLiteral("dbus-monitor"),
                       {QStringLiteral("--address"), bus.address(), rule});
    }
    ~BusMonitor() {
        process_.kill();
        process_.waitForFinished();
    }
    BusMonitor(const BusMonitor&) = delete;
    BusMonitor& operator=(const BusMonitor&) = delete;

    // Waits until the monitor hears everything: the bus then takes away its name.
    [[nodiscard]] bool isReady() { return hears("member=NameLost"); }
    // Waits until the text was heard since the last forget().
    [[nodiscard]] bool hears(const char* text) {
        return until([&] {
            heard_ += process_.readAll();
            return heard_.contains(text);
        });
    }
    [[nodiscard]] bool hasHeard(const char* text) const { return heard_.contains(text); }
    void forget() { heard_.clear(); }

  private:
    QProcess process_;
    QByteArray heard_;
};
