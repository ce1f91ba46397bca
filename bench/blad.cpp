// SPDX-License-Identifier: MIT
// The time until the configuration sheet shows its title.
//
// Usage: blad [TIMES]
#include "bench/Opening.h"

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const Xvfb server("1280x800x24");
    if (!server.isRunning()) return 1;
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString());
    return meetOpening(server, {.wat = "the sheet",
                                .programma = QStringLiteral("brixtel-saver"),
                                .woorden = {QStringLiteral("--instellingen")},
                                .plek = {20, 20, 120, 22},
                                .omgeving = omgeving});
}
