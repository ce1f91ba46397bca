// SPDX-License-Identifier: MIT
// The time until the desktop effects' panel shows its first rows, from the
// start of the owner, on a session bus of the benchmark's own.
//
// Usage: paneel [TIMES]
#include <QTemporaryDir>

#include "bench/Opening.h"
#include "tests/support/DBusDaemon.h"

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const Xvfb server("1280x800x24");
    if (!server.isRunning()) return 1;
    const DBusDaemon bus;
    const QTemporaryDir thuis;
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    omgeving.insert(QStringLiteral("HOME"), thuis.path());
    omgeving.insert(QStringLiteral("XDG_CONFIG_HOME"), thuis.path());
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    omgeving.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
    return meetOpening(server, {.wat = "the panel",
                                .programma = QStringLiteral("brixtel-bureau"),
                                .woorden = {},
                                // A place below the running picture, which is green too.
                                .plek = {10, 210, 380, 200},
                                .omgeving = omgeving});
}
