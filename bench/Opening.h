// SPDX-License-Identifier: MIT
// The time to a program's window: from the start of the process to a window
// that shows the theme's bright green at a given place.
#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "platform/time/MediaClock.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

struct Opening {
    const char* wat;  // for the report
    QString programma;
    QStringList woorden;
    QRect plek;  // in the window, in pixels
    QProcessEnvironment omgeving;
};

// Opens the program under that X server, as many times as the command line
// says, prints the times, and returns the exit status.
inline int meetOpening(const Xvfb& server, const Opening& opening) {
    const int keren = std::max(1, QCoreApplication::arguments().value(1).toInt());
    QProcessEnvironment omgeving = opening.omgeving;
    omgeving.insert(QStringLiteral("DISPLAY"), server.display());
    const auto isEr = [&] {
        for (const xcb_window_t venster : server.mappedWindows())
            for (const std::uint32_t pixel : server.pixels(venster, opening.plek))
                if ((pixel & 0xffffff) == 0x00ff41) return true;
        return false;
    };
    const platform::SystemClock klok;
    std::vector<double> tijden;
    for (int i = 0; i < keren; ++i) {
        QProcess proces;
        proces.setProcessEnvironment(omgeving);
        const double begin = klok.now();
        proces.start(
            QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/") + opening.programma,
            opening.woorden);
        if (!until(isEr)) return 1;
        tijden.push_back((klok.now() - begin) * 1000.0);
        proces.kill();
        proces.waitForFinished();
        until([&] { return server.mappedWindows().empty(); });
    }
    std::sort(tijden.begin(), tijden.end());
    std::printf("%s, %d times: median %.0f ms, worst %.0f ms\n", opening.wat, keren,
                tijden[tijden.size() / 2], tijden.back());
    return 0;
}
