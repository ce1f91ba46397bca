// SPDX-License-Identifier: MIT
// How soon the panel of the desktop effects is there: from the start of the owner's
// process to a window with its first row in it, under an X server and a session
// bus of its own.
//
// Usage: paneel [TIMES]
#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "platform/time/MediaClock.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace {

// Whether the window shows the bright green of the panel's controls, below the
// running picture.
bool toontRijen(const Xvfb& server) {
    for (const xcb_window_t venster : server.mappedWindows())
        for (const std::uint32_t pixel : server.pixels(venster, {10, 240, 380, 200}))
            if ((pixel & 0xffffff) == 0x00ff41) return true;
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const int keren = std::max(1, QCoreApplication::arguments().value(1).toInt());
    const Xvfb server("1280x800x24");
    if (!server.isRunning()) return 1;
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    omgeving.insert(QStringLiteral("DISPLAY"), server.display());
    const DBusDaemon bus;
    const QTemporaryDir thuis;
    omgeving.insert(QStringLiteral("HOME"), thuis.path());
    omgeving.insert(QStringLiteral("XDG_CONFIG_HOME"), thuis.path());
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    omgeving.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
    const platform::SystemClock klok;
    std::vector<double> tijden;
    for (int i = 0; i < keren; ++i) {
        QProcess proces;
        proces.setProcessEnvironment(omgeving);
        const double begin = klok.now();
        proces.start(
            QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/brixtel-bureau"),
            QStringList());
        if (!until([&] { return toontRijen(server); })) return 1;
        tijden.push_back((klok.now() - begin) * 1000.0);
        proces.kill();
        proces.waitForFinished();
        until([&] { return server.mappedWindows().empty(); });
    }
    std::sort(tijden.begin(), tijden.end());
    std::printf("the panel, %d times: median %.0f ms, worst %.0f ms\n", keren,
                tijden[tijden.size() / 2], tijden.back());
    return 0;
}
