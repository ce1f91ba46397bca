// SPDX-License-Identifier: MIT
// The cost of whole programs on a Wayland compositor of the benchmark's own (sway without a
// screen, drawn by the processor): user and system time of the program and of the
// compositor, per second and per picture. Pictures that a busy machine drops change the
// former, and hardly the latter. There is a keyboard, as on any desktop: on a seat without one
// the windows lie below a possible lock, and sway draws the wallpaper under them too.
//
// Usage: opwayland [--maat=1920x1080] [--seconden=10] [SCENE...]
// "bureaublad" is the desktop rain over a terminal.
#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <cstdio>

#include "bench/Kosten.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/VirtualKeyboard.h"

namespace {

struct Opties {
    QString maat = QStringLiteral("1920x1080");
    double seconden = 10.0;
    QStringList scenes;
};

Opties lees(const QStringList& woorden) {
    Opties opties;
    for (const QString& woord : woorden) {
        const QString waarde = woord.section(u'=', 1);
        if (woord.startsWith(QLatin1String("--maat=")))
            opties.maat = waarde;
        else if (woord.startsWith(QLatin1String("--seconden=")))
            opties.seconden = waarde.toDouble();
        else
            opties.scenes << woord;
    }
    if (opties.scenes.isEmpty())
        opties.scenes << QStringLiteral("regen") << QStringLiteral("bureaublad");
    return opties;
}

void druk(const QString& naam, double programma, double compositor, double seconden,
          double beelden) {
    const double samen = programma + compositor;
    std::printf("%-12s %8.1f%% %10.1f%% %9.1f%%", qPrintable(naam), 100 * programma / seconden,
                100 * compositor / seconden, 100 * samen / seconden);
    if (beelden > 0)
        std::printf(" %9.1f %9.2f %9.2f\n", beelden / seconden, 1000 * programma / beelden,
                    1000 * compositor / beelden);
    else
        std::printf("\n");
    std::fflush(stdout);
}

QString programma(const char* naam) {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/") +
           QLatin1String(naam);
}

bool meetSaver(const wltest::Sway& sway, const QString& scene, double seconden) {
    QProcess saver;
    saver.setProcessEnvironment(sway.environment());
    saver.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const double voor = cpuVan(sway.process());
    saver.start(programma("brixtel-saver"),
                {QStringLiteral("--keuze=") + scene, QStringLiteral("--seconden=%1").arg(seconden),
                 QStringLiteral("--meet")});
    if (!saver.waitForFinished(-1) || saver.exitCode() != 0) return false;
    const double compositor = cpuVan(sway.process()) - voor;
    const QJsonObject meting = QJsonDocument::fromJson(saver.readAllStandardOutput()).object();
    druk(scene, meting.value(QLatin1String("cpu_seconden")).toDouble(), compositor, seconden,
         meting.value(QLatin1String("beelden")).toDouble());
    return true;
}

// Turns the event loop for that long.
void wacht(double seconden) {
    until([] { return false; }, static_cast<int>(seconden * 1000));
}

bool meetBureaublad(const wltest::Sway& sway, double seconden) {
    const DBusDaemon bus;
    QProcessEnvironment omgeving = sway.environment();
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    QProcess terminal, bureau;
    for (QProcess* proces : {&terminal, &bureau}) {
        proces->setProcessEnvironment(omgeving);
        proces->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    terminal.start(QStringLiteral("foot"), {});
    if (!terminal.waitForStarted()) return false;
    wacht(2.0);
    bureau.start(programma("brixtel-bureau"), {QStringLiteral("--toon-regen")});
    wacht(3.0);
    const double bureauVoor = cpuVan(bureau.processId()), swayVoor = cpuVan(sway.process());
    wacht(seconden);
    const bool loopt = bureau.state() == QProcess::Running;
    druk(QStringLiteral("bureaublad"), cpuVan(bureau.processId()) - bureauVoor,
         cpuVan(sway.process()) - swayVoor, seconden, 0.0);
    for (QProcess* proces : {&bureau, &terminal}) {
        proces->kill();
        proces->waitForFinished();
    }
    return loopt;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const Opties opties = lees(QCoreApplication::arguments().mid(1));
    const wltest::Sway sway(1, "output HEADLESS-1 mode " + opties.maat.toLatin1() + "@60Hz\n");
    if (!sway.isRunning()) {
        std::fprintf(stderr, "opwayland: %s\n", sway.reason().c_str());
        return 1;
    }
    const wltest::VirtualKeyboard toetsenbord(sway.address());
    if (!toetsenbord.isThere()) {
        std::fprintf(stderr, "opwayland: sway has no virtual keyboards\n");
        return 1;
    }
    std::printf("%s, %g s, sway, of one core\n", qPrintable(opties.maat), opties.seconden);
    std::printf("%-12s %9s %11s %10s %9s %9s %9s\n", "scene", "program", "compositor", "together",
                "fps", "ms/frame", "sway ms");
    for (const QString& scene : opties.scenes) {
        const bool goed = scene == u"bureaublad" ? meetBureaublad(sway, opties.seconden)
                                                 : meetSaver(sway, scene, opties.seconden);
        if (goed) continue;
        std::fprintf(stderr, "opwayland: %s lukte niet\n", qPrintable(scene));
        return 1;
    }
    return 0;
}
