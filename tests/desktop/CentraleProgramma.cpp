// SPDX-License-Identifier: MIT
// A program that owns the effects, for tests to end and benchmarks to measure. Its
// argument is what it shows: regen, zwart or a kind of scene. Says on standard
// output when all of it is on the screen, after how many milliseconds and how many
// of the processor's; ends after the seconds of a second argument, and then prints
// what it cost.
#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "desktop/MatrixCentrale.h"
#include "platform/time/ProcessUsage.h"
#include "platform/window/DesktopWorkspace.h"
#include "tests/support/WindowSystems.h"

namespace {

using brixtel::MatrixCentrale;

platform::WindowStatistics stand(const MatrixCentrale& centrale) {
    if (centrale.regenAan()) return centrale.regen().front().venster->statistics();
    return centrale.zwart().front().venster->statistics();
}

}  // namespace

int main(int argc, char** argv) {
    const QGuiApplication app(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    platform::SystemClock klok;
    platform::RandomSource toeval(1);
    platform::DistributedNotificationCenter berichten;
    platform::WindowServer server(klok, {.system = systemOn(klok)});
    server.onConnectionLost([] { std::_Exit(0); });
    platform::DesktopWorkspace werkruimte(server, berichten);
    MatrixCentrale centrale({.server = server, .werkruimte = werkruimte, .toeval = toeval});
    const QString wat = QString::fromLocal8Bit(argv[1]);

    double begin = 0.0, rekenBegin = 0.0;
    bool gezegd = false;
    const auto toon = [&] {
        rekenBegin = platform::processUsage().cpuSeconds;
        begin = klok.now();
        if (wat == QLatin1String("regen"))
            centrale.toonRegen();
        else
            centrale.toonZwart(brixtel::soortUitRuw(wat));
    };
    const platform::Timer start(klok, {.interval = 0.5}, toon);
    const platform::Timer kijk(klok, {.interval = 0.005, .repeats = true}, [&] {
        if (gezegd || (!centrale.regenAan() && !centrale.zwartAan())) return;
        const auto eerste = stand(centrale).firstFrameTime;
        if (!eerste) return;
        gezegd = true;
        std::printf("getoond %.0f rekentijd %.0f\n", 1000.0 * (*eerste - begin),
                    1000.0 * (platform::processUsage().cpuSeconds - rekenBegin));
        std::fflush(stdout);
    });
    // The timer calls exit(): quit() would ask every window first.
    platform::Timer einde;
    const double seconden = argc > 2 ? std::atof(argv[2]) : 0.0;
    if (seconden > 0.0)
        einde =
            platform::Timer(klok, {.interval = seconden + 0.5}, [] { QCoreApplication::exit(0); });
    const double voor = platform::processUsage().cpuSeconds;
    QCoreApplication::exec();
    std::printf("cpu %.3f beelden %llu tekenaar %s geheugen %.1f\n",
                platform::processUsage().cpuSeconds - voor,
                static_cast<unsigned long long>(stand(centrale).frames),
                qPrintable(stand(centrale).drawer), platform::processUsage().peakMemoryMb);
    return 0;
}
