// SPDX-License-Identifier: MIT
// How soon the configuration sheet is there: from the start of the process to a
// window with its title in it, under an X server of its own.
//
// Usage: blad [TIMES]
#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "platform/time/MediaClock.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace {

// Whether the window shows the bright green of the sheet's title.
bool toontTitel(const Xvfb& server) {
    for (const xcb_window_t venster : server.mappedWindows())
        for (const std::uint32_t pixel : server.pixels(venster, {20, 20, 120, 22}))
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
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString());
    const platform::SystemClock klok;
    std::vector<double> tijden;
    for (int i = 0; i < keren; ++i) {
        QProcess proces;
        proces.setProcessEnvironment(omgeving);
        const double begin = klok.now();
        proces.start(
            QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/brixtel-saver"),
            {QStringLiteral("--instellingen")});
        if (!until([&] { return toontTitel(server); })) return 1;
        tijden.push_back((klok.now() - begin) * 1000.0);
        proces.kill();
        proces.waitForFinished();
        until([&] { return server.mappedWindows().empty(); });
    }
    std::sort(tijden.begin(), tijden.end());
    std::printf("the sheet, %d times: median %.0f ms, worst %.0f ms\n", keren,
                tijden[tijden.size() / 2], tijden.back());
    return 0;
}
