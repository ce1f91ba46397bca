// SPDX-License-Identifier: MIT
// The host adapter: reads the command line, loads the saver module and shows it.
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <optional>

#include "BrixtelSaver/InstellingenModule.h"
#include "BrixtelSaver/SaverInstellingen.h"
#include "hosts/gedeeld/Melding.h"
#include "hosts/gedeeld/Signalen.h"
#include "hosts/gedeeld/Uitvoer.h"
#include "hosts/gedeeld/Voorraad.h"
#include "hosts/saver/Aanmelding.h"
#include "hosts/saver/Film.h"
#include "hosts/saver/Instellingen.h"
#include "hosts/saver/LopendeSaver.h"
#include "hosts/saver/Meting.h"
#include "hosts/saver/ModuleLader.h"
#include "hosts/saver/Opdracht.h"
#include "hosts/saver/Plaatje.h"
#include "hosts/saver/StilleBeelden.h"
#include "hosts/saver/Verbindingen.h"
#include "hosts/saver/Voorstelling.h"
#include "platform/files/StandardOutput.h"
#include "platform/session/PowerSupply.h"
#include "platform/session/Preferences.h"
#include "platform/session/SessionLock.h"
#include "platform/time/ProcessUsage.h"
#include "platform/time/Timer.h"
#include "platform/window/DesktopWorkspace.h"
#include "platform/window/systems/WindowSystems.h"
#include "worlds/BolVoorraad.h"

namespace {

using brixtel::Opdracht;

constexpr int kFout = 1;
constexpr int kVerkeerdGebruik = 2;

int meldNaam(const QString& wat, int uitgang) {
    return brixtel::meld(QStringLiteral("brixtel-saver: ") + wat, uitgang);
}

constexpr const char* kGeenScherm =
    "er is geen scherm om op te tekenen; met --plaatje kan het zonder";

// Whether what is asked for needs no display.
bool zonderScherm = false;

// Qt's messages are for developers, and a host would show them to people. A fatal one would
// dump core, as when the display goes away while Qt starts.
void zwijg(QtMsgType soort, const QMessageLogContext&, const QString& regel) {
    brixtel::eindigZonderDraad(regel);
    using platform::QtLoss;
    const QtLoss verlies = platform::lossIn(regel);
    if (verlies == QtLoss::Gone || verlies == QtLoss::Refused) brixtel::laatHoofddraadEindigen();
    if (verlies == QtLoss::Gone) std::_Exit(0);
    if (verlies == QtLoss::Refused)
        std::_Exit(
            meldNaam(QStringLiteral("het venstersysteem verbrak de verbinding van Qt"), kFout));
    if (verlies == QtLoss::Fatal) std::_Exit(meldNaam(brixtel::schermVerbroken(), kFout));
    if (soort != QtFatalMsg) return;
    if (!zonderScherm && !platform::DisplayCheck().isReachable())
        std::_Exit(meldNaam(QString::fromUtf8(kGeenScherm), kFout));
    std::_Exit(meldNaam(brixtel::waaromQtOpgeeft(regel), kFout));
}

bool isPlaatje(const Opdracht& opdracht) {
    return opdracht.taak == Opdracht::Taak::Plaatje || opdracht.taak == Opdracht::Taak::Film ||
           !opdracht.instellingen.isEmpty();
}

void kiesPlatform(const Opdracht& opdracht) {
    using platform::QtScreens;
    const bool plaatje = zonderScherm = isPlaatje(opdracht);
    const bool blad = opdracht.taak == Opdracht::Taak::Instellingen;
    platform::chooseQtScreens(plaatje ? QtScreens::None
                              : blad  ? QtScreens::Session
                                      : QtScreens::Windows);
    if (plaatje) qputenv("QT_SCALE_FACTOR", QByteArray::number(opdracht.schaal));
}

int verbindingen(bool json) {
    const QString mis = brixtel::toonVerbindingen(json);
    return mis.isEmpty() ? 0 : meldNaam(mis, kFout);
}

// Prints the text; returns the exit status.
int druk(const QString& tekst) {
    const QString mis = brixtel::drukAf(tekst.toUtf8());
    return mis.isEmpty() ? 0 : meldNaam(mis, kFout);
}

int bericht(const brixtel::Bericht& bericht) {
    if (!bericht.gelukt) return meldNaam(bericht.regel, kFout);
    return druk(bericht.regel + u'\n');
}

int meldAan(const QString& thuis) {
    const QString eigen = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return bericht(brixtel::meldAan(thuis, brixtel::opdrachtVoorGastheer(eigen)));
}

int hervat(int argc, char** argv) {
    constexpr std::chrono::seconds kGeduld{5};
    // Seconds in which a saver that was started just before comes to its lock.
    constexpr double kAanloop = 0.3;
    const QCoreApplication app(argc, argv);
    platform::SystemClock klok;
    brixtel::LopendeSaver saver(qEnvironmentVariable("XDG_RUNTIME_DIR"),
                                platform::sessionAddress());
    const QString mis = saver.beeindig(kGeduld, [&klok] {
        QEventLoop lus;
        const platform::Timer straks(klok, {.interval = kAanloop}, [&lus] { lus.quit(); });
        lus.exec();
    });
    return mis.isEmpty() ? 0 : meldNaam(mis, kFout);
}

// Whether the command begins with this choice's scene.
bool begintMet(brixtel::SaverKeuze keuze, const Opdracht& opdracht) {
    if (opdracht.taak == Opdracht::Taak::Instellingen) return false;
    return ruweWaarde(keuze) == (opdracht.keuze.isEmpty()
                                     ? ruweWaarde(brixtel::SaverInstellingen::keuze())
                                     : opdracht.keuze);
}

// The address space that the command needs.
std::size_t ruimteVoor(const Opdracht& opdracht) {
    const bool zonderScene = opdracht.taak == Opdracht::Taak::Instellingen ||
                             begintMet(brixtel::SaverKeuze::regen, opdracht);
    return zonderScene ? brixtel::kRuimteRegen : brixtel::kRuimteScene;
}

int plaatje(const Opdracht& opdracht, const brixtel::ModuleLader& module) {
    const QString mis = brixtel::maakPlaatje(opdracht, module);
    return mis.isEmpty() ? 0 : meldNaam(mis, kFout);
}

// The exit status after the loss of the window system. The end of a desktop is no error.
int uitgangNaVerlies(const platform::WindowServer& server) {
    const QString reden = server.system().lossReason();
    if (reden.isEmpty()) return 0;
    return meldNaam(QStringLiteral("het venstersysteem verbrak de verbinding: %1").arg(reden),
                    kFout);
}

int film(const Opdracht& opdracht, const brixtel::ModuleLader& module) {
    const QString mis = brixtel::maakFilm(opdracht, module);
    return mis.isEmpty() ? 0 : meldNaam(mis, kFout);
}

// Tells once, whatever the number of windows, that OpenGL was asked for in vain.
void meldGeenOpenGl() {
    static std::atomic_flag gemeld;
    if (!gemeld.test_and_set())
        meldNaam(QStringLiteral("OpenGL is er niet; de processor tekent"), 0);
}

// Shows the saver until something ends it. Returns the signal that did, or 0; a value below
// 0 is an exit status.
int toon(const Opdracht& opdracht, const brixtel::ModuleLader& module, const QString& bus,
         brixtel::LopendeSaver& lopend) {
    platform::SystemClock klok;
    const double begin = klok.now() - platform::secondsSinceProcessStart();
    auto toeval = opdracht.zaad ? platform::RandomSource(*opdracht.zaad)
                                : platform::RandomSource::fromSystem();
    platform::DistributedNotificationCenter berichten(bus);
    // Reduced motion gives stills in a window that the user opened, never in a saver.
    std::optional<platform::RestableClock> beelden;
    if (opdracht.taak == Opdracht::Taak::Venster) beelden.emplace(klok);
    platform::WindowServer server(klok, {.drawer = opdracht.tekenaar,
                                         .system = platform::openWindowSystem(klok),
                                         .withoutOpenGl = meldGeenOpenGl,
                                         .pictures = beelden ? &*beelden : nullptr});
    if (!server.isConnected()) return -meldNaam(QString::fromUtf8(kGeenScherm), kFout);
    server.onConnectionLost([&] {
        lopend.laatLos();
        std::_Exit(uitgangNaVerlies(server));
    });

    // A host keeps its windows under its own lock.
    std::optional<platform::DesktopWorkspace> werkruimte;
    std::optional<platform::SessionLock> slot;
    if (opdracht.taak == Opdracht::Taak::Schermvullend) {
        werkruimte.emplace(server, berichten);
        slot.emplace(platform::SessionLock::systemBusAddress(),
                     [&werkruimte](bool dicht) { werkruimte->setLocked(dicht); });
    }

    int doorSignaal = 0;
    std::optional<brixtel::Voorstelling> voorstelling;
    const brixtel::Signalen signalen(
        [&](int signaal) {
            doorSignaal = signaal;
            QCoreApplication::quit();
        },
        [&] {
            if (voorstelling) voorstelling->begin();
        });
    platform::MediaClock& beeldKlok = beelden ? static_cast<platform::MediaClock&>(*beelden) : klok;
    voorstelling.emplace(opdracht, module, server,
                         platform::ScreenSaverContext{
                             .clock = beeldKlok, .random = toeval, .notifications = berichten},
                         bus);
    const bool bijGastheer = opdracht.taak == Opdracht::Taak::Gastheer;
    voorstelling->onEinde([&] {
        if (!opdracht.vensterGenoemd.isEmpty() && voorstelling->zonderVenster())
            std::_Exit(meldNaam(
                QStringLiteral("er is geen venster %1").arg(opdracht.vensterGenoemd), kFout));
        if (bijGastheer) brixtel::Signalen::haast(brixtel::Signalen::Haast::Gastheer);
        QCoreApplication::quit();
    });

    std::optional<brixtel::StilleBeelden> stilleBeelden;
    if (beelden) stilleBeelden.emplace(*beelden, server, bus);
    std::optional<platform::PowerWatch> accu;
    if (!opdracht.volleSnelheid)
        accu.emplace(klok, [&server](bool opAccu) { server.setPace(opAccu ? 2 : 1); });

    std::optional<brixtel::Meting> meting;
    if (opdracht.meet) meting.emplace(klok, begin, [&] { return voorstelling->stand(); });
    platform::Timer duur;
    if (opdracht.seconden)
        duur = platform::Timer(klok, {.interval = *opdracht.seconden},
                               [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    if (meting) {
        const QString keuze = ruweWaarde(brixtel::SaverInstellingen::keuze());
        const QString mis = brixtel::drukAf(meting->regel(keuze));
        if (!mis.isEmpty()) return -meldNaam(mis, kFout);
    }
    // Qt's end waits for ever where its own hidden window has gone.
    if (!bijGastheer) brixtel::Signalen::haast(brixtel::Signalen::Haast::Rustig);
    return doorSignaal;
}

// Returns the session bus's address, and hides it from Qt. For the accessibility of a
// window without controls, Qt would wait for the bus on the main thread, and without a bus
// start one that outlives this program. The sheet has controls, which a screen reader reads
// over the bus, so the sheet's process keeps the address.
QString neemBus(const Opdracht& opdracht) {
    const QString adres = platform::DistributedNotificationCenter::sessionBusAddress();
    if (opdracht.taak != Opdracht::Taak::Instellingen || adres.isEmpty())
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null");
    return adres;
}

// Makes the application object; null where the sheet's module is missing.
std::unique_ptr<QCoreApplication> maakToepassing(int& argc, char** argv, const Opdracht& opdracht) {
    if (opdracht.taak != Opdracht::Taak::Instellingen)
        return std::make_unique<QGuiApplication>(argc, argv);
    brixtel::InstellingenModule* const blad = brixtel::InstellingenModule::laad();
    return blad ? blad->maakToepassing(argc, argv) : nullptr;
}

int instellingen(const Opdracht& opdracht, const brixtel::ModuleLader& module) {
    int doorSignaal = 0;
    const QString mis = brixtel::toonInstellingen(opdracht, module, doorSignaal);
    if (!mis.isEmpty()) return meldNaam(mis, kFout);
    return -doorSignaal;
}

int start(int argc, char** argv, const Opdracht& opdracht, brixtel::LopendeSaver& lopend) {
    platform::useOnly(opdracht.venstersysteem);
    if (opdracht.taak == Opdracht::Taak::Gastheer) platform::useOnlyForHosts();
    std::optional<platform::DisplayCheck> scherm;
    if (!isPlaatje(opdracht)) scherm.emplace();
    if (scherm && !scherm->isReachable()) return meldNaam(QString::fromUtf8(kGeenScherm), kFout);
    kiesPlatform(opdracht);
    const QString bus = neemBus(opdracht);
    // The globe's files are read while Qt starts.
    std::optional<brixtel::BolVoorraad> voorraad;
    if (begintMet(brixtel::SaverKeuze::bol, opdracht)) voorraad.emplace();
    const auto toepassing = maakToepassing(argc, argv, opdracht);
    if (!toepassing)
        return meldNaam(QStringLiteral("de module BrixtelInstellingen.so ontbreekt"), kFout);
    if (voorraad) voorraad->leesKaart();
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
    if (opdracht.taak == Opdracht::Taak::Plaatje) return plaatje(opdracht, module);
    if (opdracht.taak == Opdracht::Taak::Film) return film(opdracht, module);
    if (opdracht.taak == Opdracht::Taak::Instellingen) return instellingen(opdracht, module);
    return -toon(opdracht, module, bus, lopend);
}

}  // namespace

int main(int argc, char** argv) {
    platform::holdStandardStreams();
    brixtel::eindigMetEenRegel("brixtel-saver");
    QStringList argumenten;
    for (int i = 1; i < argc; ++i)
        argumenten << QString::fromLocal8Bit(argv[i]);
    const auto gelezen =
        brixtel::leesOpdracht(argumenten, qEnvironmentVariable("XSCREENSAVER_WINDOW"));
    if (const auto* fout = std::get_if<brixtel::Fout>(&gelezen))
        return brixtel::meld(fout->regel, kVerkeerdGebruik);
    const auto& opdracht = std::get<Opdracht>(gelezen);
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) qInstallMessageHandler(zwijg);
    switch (opdracht.taak) {
        case Opdracht::Taak::Hulp:
            return druk(brixtel::hulpTekst());
        case Opdracht::Taak::Versie:
            return druk(QStringLiteral("brixtel-saver " BRIXTEL_VERSION "\n"));
        case Opdracht::Taak::Verbindingen:
            return verbindingen(opdracht.json);
        case Opdracht::Taak::Aanmelden:
            return meldAan(qEnvironmentVariable("HOME"));
        case Opdracht::Taak::Hervat:
            return hervat(argc, argv);
        case Opdracht::Taak::Afmelden:
            return bericht(brixtel::meldAf(qEnvironmentVariable("HOME")));
        default:
            break;
    }
    brixtel::LopendeSaver lopend(qEnvironmentVariable("XDG_RUNTIME_DIR"),
                                 platform::sessionAddress());
    if (opdracht.taak == Opdracht::Taak::Schermvullend && !lopend.neem())
        return meldNaam(QStringLiteral("er loopt er al een op dit scherm"), 0);
    brixtel::Signalen::negeerOpnieuw();
    brixtel::Signalen::negeerVerbreking();
    const QString mis = brixtel::tekort(ruimteVoor(opdracht));
    if (!mis.isEmpty()) return meldNaam(mis, kFout);
    if (opdracht.keuze.isEmpty())
        brixtel::meldInstellingen(QStringLiteral("brixtel-saver"),
                                  brixtel::SaverInstellingen::moduleNaam);
    // Qt gets no arguments: it would take this program's options for its own.
    int geen = 1;
    const int uitgang = start(geen, argv, opdracht, lopend);
    lopend.laatLos();
    if (uitgang < 0) brixtel::Signalen::eindigDoor(-uitgang);
    // The host waits for the end, and unloading the libraries looks up every font.
    if (opdracht.taak == Opdracht::Taak::Gastheer) {
        std::fflush(nullptr);
        std::_Exit(uitgang);
    }
    return uitgang;
}
