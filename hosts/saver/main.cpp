// SPDX-License-Identifier: MIT
// The host adapter: reads its command line, loads the saver module and shows it.
#include <QFile>
#include <QGuiApplication>
#include <cstdio>
#include <optional>

#include "BrixtelSaver/SaverInstellingen.h"
#include "hosts/gedeeld/Signalen.h"
#include "hosts/saver/Aanmelding.h"
#include "hosts/saver/Meting.h"
#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"
#include "hosts/saver/Plaatje.h"
#include "hosts/saver/Verbindingen.h"
#include "hosts/saver/Voorstelling.h"
#include "platform/desktop/DisplayCheck.h"
#include "platform/desktop/Preferences.h"
#include "platform/time/ProcessUsage.h"

namespace {

using brixtel::Opdracht;

constexpr int kFout = 1;
constexpr int kVerkeerdGebruik = 2;

// One line, also where it quotes an argument that is several.
int meld(QString regel, int uitgang) {
    regel.replace(u'\n', u' ');
    std::fprintf(stderr, "%s\n", qUtf8Printable(regel));
    return uitgang;
}

int meldNaam(const QString& wat, int uitgang) {
    return meld(QStringLiteral("brixtel-saver: ") + wat, uitgang);
}

constexpr const char* kGeenScherm =
    "er is geen scherm om op te tekenen; met --plaatje kan het zonder";

// What Qt has to say is for developers; a host would show it to people. After
// its last words it would dump core, most of all where the X server goes away
// just when Qt wants to begin.
void zwijg(QtMsgType soort, const QMessageLogContext&, const QString& regel) {
    if (soort != QtFatalMsg) return;
    const bool erIsScherm = platform::DisplayCheck().isReachable();
    std::_Exit(meldNaam(erIsScherm ? regel.trimmed() : QString::fromUtf8(kGeenScherm), kFout));
}

// Windows are drawn through X11, also where the desktop is another.
void kiesPlatform(const Opdracht& opdracht) {
    const bool plaatje = opdracht.wat == Opdracht::Wat::Plaatje;
    qputenv("QT_QPA_PLATFORM", plaatje ? "offscreen" : "xcb");
    if (plaatje) qputenv("QT_SCALE_FACTOR", QByteArray::number(opdracht.schaal));
}

int verbindingen(bool json) {
    const QString mis = brixtel::toonVerbindingen(json);
    return mis.isEmpty() ? 0 : meldNaam(mis, kFout);
}

int bericht(const brixtel::Bericht& bericht) {
    if (!bericht.gelukt) return meldNaam(bericht.regel, kFout);
    std::puts(qUtf8Printable(bericht.regel));
    return 0;
}

int meldAan(const QString& thuis) {
    const QString eigen = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return bericht(brixtel::meldAan(thuis, brixtel::opdrachtVoorGastheer(eigen)));
}

int plaatje(const Opdracht& opdracht, const brixtel::ModuleLader& module) {
    const QString mis = brixtel::maakPlaatje(opdracht, module);
    return mis.isEmpty() ? 0 : meldNaam(mis, kFout);
}

// Shows the saver until something ends it, and returns by which signal, or 0.
int toon(const Opdracht& opdracht, const brixtel::ModuleLader& module, const QString& bus) {
    platform::SystemClock klok;
    const double begin = klok.now() - platform::secondsSinceProcessStart();
    auto toeval = opdracht.zaad ? platform::RandomSource(*opdracht.zaad)
                                : platform::RandomSource::fromSystem();
    platform::DistributedNotificationCenter berichten(bus);
    platform::WindowServer server(klok, {.drawer = opdracht.tekenaar, .display = {}});
    server.onConnectionLost([] { std::_Exit(0); });

    int doorSignaal = 0;
    const brixtel::Signalen signalen([&](int signaal) {
        doorSignaal = signaal;
        QCoreApplication::quit();
    });
    std::optional<brixtel::Voorstelling> voorstelling(
        std::in_place, opdracht, module, server,
        platform::ScreenSaverContext{.clock = klok, .random = toeval, .notifications = berichten});
    const bool bijGastheer = opdracht.wat == Opdracht::Wat::Gastheer;
    voorstelling->onEinde([bijGastheer] {
        if (bijGastheer) brixtel::Signalen::haast();
        QCoreApplication::quit();
    });

    std::optional<brixtel::Meting> meting;
    if (opdracht.meet) meting.emplace(klok, begin, [&] { return voorstelling->stand(); });
    platform::Timer duur;
    if (opdracht.seconden)
        duur = platform::Timer(klok, {.interval = *opdracht.seconden},
                               [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    if (meting) {
        const QString keuze = ruweWaarde(brixtel::SaverInstellingen::keuze());
        std::fputs(meting->regel(keuze).constData(), stdout);
        std::fflush(stdout);
    }
    return doorSignaal;
}

// Returns the session bus's address, and keeps it from Qt: for the accessibility
// of a window without controls Qt would wait for the bus on the main thread, and
// where there is none start one, which outlives this program.
QString neemBus() {
    const QString adres = platform::DistributedNotificationCenter::sessionBusAddress();
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null");
    return adres;
}

int start(int argc, char** argv, const Opdracht& opdracht) {
    std::optional<platform::DisplayCheck> scherm;
    if (opdracht.wat != Opdracht::Wat::Plaatje) scherm.emplace();
    if (scherm && !scherm->isReachable()) return meldNaam(QString::fromUtf8(kGeenScherm), kFout);
    kiesPlatform(opdracht);
    const QString bus = neemBus();
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) qInstallMessageHandler(zwijg);
    QGuiApplication app(argc, argv);
    scherm.reset();
    QGuiApplication::setApplicationName(QStringLiteral("brixtel-saver"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Brixtel"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (!opdracht.keuze.isEmpty())
        platform::Preferences::setArgument(QStringLiteral("keuze"), opdracht.keuze);
    const brixtel::ModuleLader module;
    if (!module.isGeladen())
        return meldNaam(QStringLiteral("de module BrixtelSaver.so ontbreekt of is onbruikbaar"),
                        kFout);
    if (opdracht.wat == Opdracht::Wat::Plaatje) return plaatje(opdracht, module);
    return -toon(opdracht, module, bus);
}

}  // namespace

int main(int argc, char** argv) {
    QStringList argumenten;
    for (int i = 1; i < argc; ++i)
        argumenten << QString::fromLocal8Bit(argv[i]);
    const auto gelezen =
        brixtel::leesOpdracht(argumenten, qEnvironmentVariable("XSCREENSAVER_WINDOW"));
    if (const auto* fout = std::get_if<brixtel::Fout>(&gelezen))
        return meld(fout->regel, kVerkeerdGebruik);
    const auto& opdracht = std::get<Opdracht>(gelezen);
    switch (opdracht.wat) {
        case Opdracht::Wat::Hulp:
            std::fputs(qUtf8Printable(brixtel::hulpTekst()), stdout);
            return 0;
        case Opdracht::Wat::Versie:
            std::puts("brixtel-saver " BRIXTEL_VERSION);
            return 0;
        case Opdracht::Wat::Instellingen:
            return meldNaam(QStringLiteral("--instellingen kan in deze versie nog niet"),
                            kVerkeerdGebruik);
        case Opdracht::Wat::Verbindingen:
            return verbindingen(opdracht.json);
        case Opdracht::Wat::Aanmelden:
            return meldAan(qEnvironmentVariable("HOME"));
        case Opdracht::Wat::Afmelden:
            return bericht(brixtel::meldAf(qEnvironmentVariable("HOME")));
        default:
            break;
    }
    // Only the arguments that are ours were ours to take: Qt gets none.
    int geen = 1;
    const int uitgang = start(geen, argv, opdracht);
    if (uitgang < 0) brixtel::Signalen::eindigDoor(-uitgang);
    // A host is waiting, and as the libraries are unloaded every font is looked up.
    if (opdracht.wat == Opdracht::Wat::Gastheer) {
        std::fflush(nullptr);
        std::_Exit(uitgang);
    }
    return uitgang;
}
