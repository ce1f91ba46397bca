// SPDX-License-Identifier: MIT
// The cost of the effects over the desktop, under an X server, a window manager
// and a compositor of the benchmark's own: CPU per second of the program, the
// server and the compositor, beside a floor (a window of the same size, cleared
// and presented sixty times a second); and the time to the first picture on the
// screen. Needs the tests to be built: their program shows the effects.
//
// Usage: bovenop [--maat=1920x1080] [--seconden=10] [EFFECT...]
// Effects: regen, zwart, or the raw value of a DrieSoort.
#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <cstdio>

#include "bench/Kosten.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace {

const Xvfb* server = nullptr;
qint64 compositor = 0;

void begin(QProcess& proces, const QString& programma, const QStringList& argumenten) {
    QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
    omgeving.insert(QStringLiteral("DISPLAY"), server->display());
    proces.setProcessEnvironment(omgeving);
    proces.start(programma, argumenten);
    if (proces.waitForStarted()) return;
    std::fprintf(stderr, "bovenop: %s ontbreekt\n", qPrintable(programma));
    std::exit(1);
}

bool heeftCompositor() {
    xcb_connection_t* const c = server->connection();
    auto* const naam =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, 13, "_NET_WM_CM_S0"), nullptr);
    auto* const eigenaar =
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, naam->atom), nullptr);
    const bool is = eigenaar && eigenaar->owner != XCB_NONE;
    std::free(naam);
    std::free(eigenaar);
    return is;
}

// Runs a program for the given time, prints its line, and returns the total cost.
double meet(const QString& naam, const QString& programma, const QStringList& argumenten,
            double seconden, double vloer) {
    QProcess proces;
    const double serverVoor = cpuVan(server->process()), compositorVoor = cpuVan(compositor);
    double eigen = 0.0;
    begin(proces, programma, argumenten);
    // Waits for the process's last reading: none exists after its end.
    until(
        [&] {
            const double nu = cpuVan(proces.processId());
            if (proces.state() == QProcess::Running && nu > 0.0) eigen = nu;
            return proces.state() == QProcess::NotRunning;
        },
        600'000);
    const QString uitvoer = QString::fromLocal8Bit(proces.readAllStandardOutput());
    const auto eerste = QRegularExpression(QStringLiteral("getoond (\\d+)")).match(uitvoer);
    const auto beelden = QRegularExpression(QStringLiteral("beelden (\\d+)")).match(uitvoer);
    const auto ritme =
        QRegularExpression(QStringLiteral("beelden_per_seconde\":([\\d.]+)")).match(uitvoer);
    const double fps =
        ritme.hasMatch() ? ritme.captured(1).toDouble() : beelden.captured(1).toDouble() / seconden;
    const double serverCpu = cpuVan(server->process()) - serverVoor;
    const double compositorCpu = cpuVan(compositor) - compositorVoor;
    const double totaal = (eigen + serverCpu + compositorCpu) / seconden;
    std::printf("%-8s %7.1f %8.1f%% %8.1f%% %10.1f%% %8.1f%% %8s %9s\n", qPrintable(naam), fps,
                100 * eigen / seconden, 100 * serverCpu / seconden, 100 * compositorCpu / seconden,
                100 * totaal, vloer > 0 ? qPrintable(QString::number(totaal / vloer, 'f', 2)) : "-",
                qPrintable(eerste.captured(1)));
    std::fflush(stdout);
    return totaal;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    QString maat = QStringLiteral("1920x1080");
    double seconden = 10.0;
    QStringList effecten;
    for (const QString& woord : QCoreApplication::arguments().mid(1)) {
        const QString waarde = woord.section(u'=', 1);
        if (woord.startsWith(QLatin1String("--maat=")))
            maat = waarde;
        else if (woord.startsWith(QLatin1String("--seconden=")))
            seconden = waarde.toDouble();
        else
            effecten << woord;
    }
    if (effecten.isEmpty()) effecten = {QStringLiteral("regen"), QStringLiteral("zwart")};
    const Xvfb eigen((maat + QStringLiteral("x24")).toStdString());
    if (!eigen.isRunning()) return 1;
    server = &eigen;
    QProcess beheer, picom;
    begin(beheer, QStringLiteral("openbox"), {});
    begin(picom, QStringLiteral("picom"),
          {QStringLiteral("--backend"), QStringLiteral("xrender"), QStringLiteral("--config"),
           QStringLiteral("/dev/null")});
    compositor = picom.processId();
    if (!until(heeftCompositor)) return 1;
    const QString map = QCoreApplication::applicationDirPath();
    const QString duur = QString::number(seconden);
    std::printf("%s under openbox and picom, %s s\n", qPrintable(maat), qPrintable(duur));
    std::printf("%-8s %7s %9s %9s %11s %9s %8s %9s\n", "effect", "fps", "program", "X server",
                "compositor", "together", "x floor", "first ms");
    const double vloer =
        meet(QStringLiteral("floor"), map + QStringLiteral("/vloer"), {maat, duur}, seconden, 0);
    for (const QString& effect : effecten)
        meet(effect, map + QStringLiteral("/../tests/centrale_programma"), {effect, duur}, seconden,
             vloer);
    for (QProcess* proces : {&picom, &beheer}) {
        proces->terminate();
        proces->waitForFinished();
    }
    return 0;
}
