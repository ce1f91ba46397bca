// SPDX-License-Identifier: MIT
// Runs whole programs under an X server of the benchmark's own, and prints
// their cost: CPU per second of the program and of the X server, beside two
// floors: the same window, presented sixty times a second. OpenGL clears the first; the
// second's picture lies in shared memory, and nobody draws it. Other programs that
// draw on the root window are measured in the same run: --naast='/path/program -root'.
//
// Usage: geheel [--maat=1920x1080] [--seconden=10] [--tekenaar=auto] [--naast=COMMAND]...
//               [SCENE...]
#include <unistd.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <cstdio>

#include "bench/Kosten.h"
#include "tests/support/Xvfb.h"

namespace {

struct Opties {
    QString maat = QStringLiteral("1920x1080");
    QString seconden = QStringLiteral("10");
    QString tekenaar = QStringLiteral("auto");
    QStringList naast;
    QStringList scenes;
};

// The cost of presenting a window that nobody draws, of one core; 0 where it is not known.
struct Vloeren {
    double openGl = 0;
    double gedeeld = 0;
};

QString keerVloer(double totaal, double vloer) {
    return vloer > 0 ? QString::number(totaal / vloer, 'f', 2) : QStringLiteral("-");
}

void zetServer(QProcess& proces, const Xvfb& server) {
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    omgeving.insert(QStringLiteral("DISPLAY"), server.display());
    proces.setProcessEnvironment(omgeving);
    proces.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

// Runs another program for the seconds, ends it, and prints its line. Such a program does not
// tell how many pictures it shows.
void meetNaast(const QString& opdracht, const Xvfb& server, double seconden,
               const Vloeren& vloeren) {
    QStringList woorden = QProcess::splitCommand(opdracht);
    QProcess proces;
    zetServer(proces, server);
    const double serverVoor = cpuVan(server.process());
    proces.start(woorden.value(0), woorden.mid(1));
    if (!proces.waitForStarted() || proces.waitForFinished(static_cast<int>(1000 * seconden))) {
        std::fprintf(stderr, "geheel: %s lukte niet\n", qPrintable(opdracht));
        std::exit(1);
    }
    const double programma = cpuVan(proces.processId()) / seconden;
    const double aandeel = (cpuVan(server.process()) - serverVoor) / seconden;
    proces.terminate();
    proces.waitForFinished();
    const double totaal = programma + aandeel;
    std::printf("%-10s %8s %9.1f%% %9.1f%% %9.1f%% %8s %8s\n",
                qPrintable(woorden.first().section(u'/', -1)), "-", 100 * programma, 100 * aandeel,
                100 * totaal, qPrintable(keerVloer(totaal, vloeren.openGl)),
                qPrintable(keerVloer(totaal, vloeren.gedeeld)));
    std::fflush(stdout);
}

// Runs a program to its end and prints its line; the program writes JSON to stdout.
double meet(const QString& naam, const QString& programma, const QStringList& argumenten,
            const Xvfb& server, double seconden, const Vloeren& vloeren) {
    QProcess proces;
    zetServer(proces, server);
    const double serverVoor = cpuVan(server.process());
    proces.start(programma, argumenten);
    if (!proces.waitForFinished(-1) || proces.exitCode() != 0) {
        std::fprintf(stderr, "geheel: %s lukte niet\n", qPrintable(naam));
        std::exit(1);
    }
    const double serverCpu = cpuVan(server.process()) - serverVoor;
    const QJsonObject meting = QJsonDocument::fromJson(proces.readAllStandardOutput()).object();
    const auto getal = [&](const char* sleutel) {
        return meting.value(QLatin1String(sleutel)).toDouble();
    };
    const double totaal = (getal("cpu_seconden") + serverCpu) / seconden;
    std::printf("%-10s %8.1f %9.1f%% %9.1f%% %9.1f%% %8s %8s %10.0f %8.1f %5.0f  %s\n",
                qPrintable(naam), getal("beelden_per_seconde"),
                100 * getal("cpu_seconden") / seconden, 100 * serverCpu / seconden, 100 * totaal,
                qPrintable(keerVloer(totaal, vloeren.openGl)),
                qPrintable(keerVloer(totaal, vloeren.gedeeld)), getal("eerste_beeld_ms"),
                getal("geheugen_mb"), getal("sport"),
                qPrintable(meting.value(QLatin1String("tekenaar")).toString()));
    std::fflush(stdout);
    return totaal;
}

Opties lees(const QStringList& woorden) {
    Opties opties;
    for (const QString& woord : woorden) {
        const QString waarde = woord.section(u'=', 1);
        if (woord.startsWith(QLatin1String("--maat=")))
            opties.maat = waarde;
        else if (woord.startsWith(QLatin1String("--seconden=")))
            opties.seconden = waarde;
        else if (woord.startsWith(QLatin1String("--tekenaar=")))
            opties.tekenaar = waarde;
        else if (woord.startsWith(QLatin1String("--naast=")))
            opties.naast << waarde;
        else
            opties.scenes << woord;
    }
    if (opties.scenes.isEmpty()) opties.scenes << QStringLiteral("regen");
    return opties;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const Opties opties = lees(QCoreApplication::arguments().mid(1));
    const Xvfb server((opties.maat + QStringLiteral("x24")).toStdString());
    if (!server.isRunning()) return 1;
    const QString map = QCoreApplication::applicationDirPath();
    const double seconden = opties.seconden.toDouble();
    std::printf("%s, %s s, %ld cores\n", qPrintable(opties.maat), qPrintable(opties.seconden),
                sysconf(_SC_NPROCESSORS_ONLN));
    std::printf("%-10s %8s %10s %10s %10s %8s %8s %10s %8s %5s  %s\n", "scene", "fps", "program",
                "X server", "together", "x floor", "x shared", "first ms", "MiB", "rung", "drawer");
    const QString vloer = map + QStringLiteral("/vloer");
    Vloeren vloeren;
    vloeren.openGl = meet(QStringLiteral("floor"), vloer, {opties.maat, opties.seconden}, server,
                          seconden, vloeren);
    vloeren.gedeeld =
        meet(QStringLiteral("shared"), vloer,
             {opties.maat, opties.seconden, QStringLiteral("gedeeld")}, server, seconden, vloeren);
    for (const QString& scene : opties.scenes)
        meet(scene, map + QStringLiteral("/../bin/brixtel-saver"),
             {QStringLiteral("--venster=") + opties.maat, QStringLiteral("--keuze=") + scene,
              QStringLiteral("--seconden=") + opties.seconden,
              QStringLiteral("--tekenaar=") + opties.tekenaar, QStringLiteral("--meet"),
              QStringLiteral("--volle-snelheid")},
             server, seconden, vloeren);
    for (const QString& opdracht : opties.naast)
        meetNaast(opdracht, server, seconden, vloeren);
    return 0;
}
