// SPDX-License-Identifier: MIT
// Watches with the tool of its first argument until its input ends, then
// returns from main with the watcher still there, as the program's own is.
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>

#include "connections/VerbindingWacht.h"

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc < 2) return 2;
    static brixtel::LandenTabel tabel;
    static platform::SystemClock klok;
    static brixtel::VerbindingWacht wacht(klok, {.tabel = tabel, .lsof = argv[1]});
    wacht.gebruik("proef", true, 0.01);
    QSocketNotifier invoer(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&invoer, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
