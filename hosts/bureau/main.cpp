// SPDX-License-Identifier: MIT
// The owner of the desktop effects: one per session. A second start asks the first
// for what its command line says.
#include <signal.h>
#include <unistd.h>

#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <optional>
#include <string_view>

#include "hosts/bureau/Autostart.h"
#include "hosts/bureau/Bureau.h"
#include "hosts/bureau/BureauDienst.h"
#include "hosts/bureau/Hulpmiddelen.h"
#include "hosts/bureau/Klant.h"
#include "hosts/bureau/Opdracht.h"
#include "hosts/bureau/PaneelModule.h"
#include "hosts/bureau/Pictogram.h"
#include "hosts/gedeeld/Melding.h"
#include "hosts/gedeeld/Signalen.h"
#include "hosts/gedeeld/Uitvoer.h"
#include "hosts/gedeeld/Voorraad.h"
#include "platform/window/DesktopWorkspace.h"
#include "platform/window/systems/WindowSystems.h"

namespace {

using brixtel::BureauOpdracht;
using brixtel::BusAansluiting;
using brixtel::Klant;

constexpr const char* kBus = "DBUS_SESSION_BUS_ADDRESS";
constexpr int kFout = 1;
constexpr int kVerkeerdGebruik = 2;

int meldNaam(const QString& wat) {
    return brixtel::meld(QStringLiteral("brixtel-bureau: ") + wat, kFout);
}

// Prints it; returns the exit status.
int druk(const QString& tekst) {
    const QString mis = brixtel::drukAf(tekst.toUtf8());
    return mis.isEmpty() ? 0 : meldNaam(mis);
}

constexpr const char* kGeenScherm = "er is geen scherm om op te tekenen";

// Qt's messages are for developers, and a fatal one would dump core.
void zwijg(QtMsgType soort, const QMessageLogContext&, const QString& regel) {
    if (soort != QtFatalMsg) return;
    const bool erIsScherm = platform::DisplayCheck().isReachable();
    std::_Exit(meldNaam(erIsScherm ? regel : QString::fromUtf8(kGeenScherm)));
}

// Asks for it, and for how things stand if that is wanted; returns what went wrong.
QString vraagAlles(const Klant& klant, const BureauOpdracht& opdracht) {
    QString mis;
    for (const auto& verzoek : opdracht.verzoeken)
        if (mis = klant.vraag(verzoek); !mis.isEmpty()) return mis;
    if (opdracht.taak != BureauOpdracht::Taak::Stand) return {};
    const QString stand = klant.stand(mis);
    return mis.isEmpty() ? brixtel::drukAf(stand.toUtf8()) : mis;
}

// Returns the exit status; none where the owner was about to end, and did.
std::optional<int> vraag(const Klant& klant, const BureauOpdracht& opdracht) {
    const QString mis = vraagAlles(klant, opdracht);
    if (mis.isEmpty()) return 0;
    if (!klant.isEr()) return std::nullopt;
    return meldNaam(mis);
}

// Whether there is nothing to start for.
bool isAfsluiten(const BureauOpdracht& opdracht) {
    static const QStringList sluitend{QStringLiteral("SluitZwart"), QStringLiteral("SluitRegen"),
                                      QStringLiteral("SluitAlles"), QStringLiteral("Stop")};
    return !opdracht.verzoeken.empty() &&
           std::all_of(opdracht.verzoeken.begin(), opdracht.verzoeken.end(),
                       [](const auto& v) { return sluitend.contains(v.methode); });
}

// Returns what went wrong with the first that did; empty if nothing did.
QString voerUit(brixtel::BureauDienst& dienst, const BureauOpdracht& opdracht) {
    for (const auto& verzoek : opdracht.verzoeken) {
        const auto antwoord = dienst.voerUit(verzoek.methode, verzoek.waarden);
        if (const auto* fout = std::get_if<brixtel::BusFout>(&antwoord)) return fout->tekst;
    }
    return {};
}

// Shows the effects until something ends the program, and returns the exit status,
// below 0 for a signal; none where another start was first after all. What was
// asked and cannot be ends it at once: there is nobody else to tell.
std::optional<int> draai(platform::SystemClock& klok, BusAansluiting& aansluiting,
                         const QString& bus, const BureauOpdracht& opdracht) {
    auto toeval = platform::RandomSource::fromSystem();
    platform::DistributedNotificationCenter berichten(bus);
    platform::WindowServer server(klok, {.system = platform::openWindowSystem(klok)});
    platform::DesktopWorkspace werkruimte(server, berichten);
    brixtel::Bureau bureau({.server = server, .werkruimte = werkruimte, .toeval = toeval});
    // A desktop that ends takes the window system along; the program ends without a
    // word, unless the system has one to say.
    server.onConnectionLost([&bureau, &server] {
        bureau.bewaar();
        const QString reden = server.system().lossReason();
        std::_Exit(
            reden.isEmpty()
                ? 0
                : meldNaam(
                      QStringLiteral("het venstersysteem verbrak de verbinding: %1").arg(reden)));
    });

    // quit() asks every window that shows, and one could refuse.
    const auto stop = [] { QCoreApplication::exit(0); };
    std::unique_ptr<brixtel::BureauPaneel> paneel;
    const auto toonPaneel = [&] {
        return brixtel::PaneelModule::toon(
            paneel, {.bureau = bureau, .server = server, .toeval = toeval, .bus = bus});
    };
    const brixtel::BureauDaden daden{.stop = stop, .toonPaneel = toonPaneel};
    brixtel::BureauDienst dienst(bureau, aansluiting, daden);
    brixtel::Pictogram pictogram(bureau, aansluiting, daden);
    aansluiting.onVerloren(stop);
    if (!aansluiting.neemNaam(brixtel::kDienstNaam)) return std::nullopt;
    pictogram.meldAan();

    int doorSignaal = 0;
    const brixtel::Signalen signalen([&](int signaal) {
        doorSignaal = signaal;
        // The process may be killed before everything is closed in order.
        bureau.bewaar();
        QCoreApplication::exit(0);
    });
    if (const QString mis = voerUit(dienst, opdracht); !mis.isEmpty()) return meldNaam(mis);
    QCoreApplication::exec();
    return -doorSignaal;
}

// Whether nothing was asked but what is written down.
bool isAlleenAutostart(const BureauOpdracht& opdracht) {
    return opdracht.autostart && opdracht.verzoeken.empty() &&
           opdracht.taak == BureauOpdracht::Taak::Dienst;
}

// Returns what went wrong; empty if nothing did.
QString zetAutostart(int argc, char** argv, bool aan) {
    const QCoreApplication app(argc, argv);
    return brixtel::Autostart::zet(aan, QCoreApplication::applicationFilePath());
}

// A call to a bus that hangs never returns; a signal ends the process all the same.
class Wekker {
  public:
    explicit Wekker(unsigned seconden) {
        signal(SIGALRM, [](int) {
            constexpr std::string_view kRegel = "brixtel-bureau: de sessiebus antwoordt niet\n";
            [[maybe_unused]] const auto n = write(STDERR_FILENO, kRegel.data(), kRegel.size());
            _exit(kFout);
        });
        // The signal may be blocked, inherited from the starting process.
        sigset_t alleen;
        sigemptyset(&alleen);
        sigaddset(&alleen, SIGALRM);
        pthread_sigmask(SIG_UNBLOCK, &alleen, nullptr);
        alarm(seconden);
    }
    ~Wekker() {
        alarm(0);
        signal(SIGALRM, SIG_DFL);
    }
    Wekker(const Wekker&) = delete;
    Wekker& operator=(const Wekker&) = delete;
};

// Seconds for a bus to answer, and more than a request to the owner may take.
constexpr unsigned kBusGeduld = 15, kVraagGeduld = 10;

// Asks the owner that runs, if one does, and returns the exit status.
std::optional<int> alsKlant(int argc, char** argv, const QString& bus,
                            const BureauOpdracht& opdracht) {
    const QString naam = QStringLiteral("klant");
    const auto vragen = static_cast<unsigned>(opdracht.verzoeken.size());
    const Wekker wekker(kBusGeduld + kVraagGeduld * vragen);
    const QCoreApplication app(argc, argv);
    std::optional<int> uitgang;
    {
        const QDBusConnection verbinding = QDBusConnection::connectToBus(bus, naam);
        const Klant klant(verbinding);
        if (!verbinding.isConnected())
            uitgang = meldNaam(QStringLiteral("de sessiebus is onbereikbaar"));
        else if (klant.isEr())
            uitgang = vraag(klant, opdracht);
        // Qt finds them by it.
        if (!uitgang && brixtel::zijnHulpmiddelenInGebruik(verbinding))
            qputenv(kBus, bus.toLocal8Bit());
    }
    QDBusConnection::disconnectFromBus(naam);
    return uitgang;
}

int alsEigenaar(int argc, char** argv, const QString& bus, const BureauOpdracht& opdracht) {
    brixtel::meldInstellingen(QStringLiteral("brixtel-bureau"),
                              brixtel::BureauInstellingen::moduleNaam);
    platform::chooseQtScreens(platform::QtScreens::Session);
    const QGuiApplication app(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("brixtel-bureau"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Brixtel"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    platform::SystemClock klok;
    BusAansluiting aansluiting(klok, bus);
    const auto uitgang = draai(klok, aansluiting, bus, opdracht);
    if (uitgang) return *uitgang;
    const QString mis = vraagAlles(Klant(aansluiting.verbinding()), opdracht);
    return mis.isEmpty() ? 0 : meldNaam(mis);
}

int start(int argc, char** argv, const BureauOpdracht& opdracht) {
    const QString bus = platform::DistributedNotificationCenter::sessionBusAddress();
    if (bus.isEmpty()) return meldNaam(QStringLiteral("er is geen sessiebus"));
    // Qt does not see the bus: it would wait for it on the main thread.
    qputenv(kBus, "unix:path=/dev/null");
    if (const auto uitgang = alsKlant(argc, argv, bus, opdracht)) return *uitgang;
    if (opdracht.taak == BureauOpdracht::Taak::Stand)
        return meldNaam(QStringLiteral("er draait geen brixtel-bureau"));
    if (isAfsluiten(opdracht)) return 0;
    platform::useOnly(opdracht.venstersysteem);
    if (!platform::DisplayCheck().isReachable()) return meldNaam(QString::fromUtf8(kGeenScherm));
    return alsEigenaar(argc, argv, bus, opdracht);
}

}  // namespace

int main(int argc, char** argv) {
    brixtel::eindigMetEenRegel("brixtel-bureau");
    QStringList argumenten;
    for (int i = 1; i < argc; ++i)
        argumenten << QString::fromLocal8Bit(argv[i]);
    const auto gelezen = brixtel::leesBureauOpdracht(argumenten);
    if (const auto* fout = std::get_if<brixtel::Fout>(&gelezen))
        return brixtel::meld(fout->regel, kVerkeerdGebruik);
    const auto& opdracht = std::get<BureauOpdracht>(gelezen);
    if (opdracht.taak == BureauOpdracht::Taak::Hulp) return druk(brixtel::bureauHulpTekst());
    if (opdracht.taak == BureauOpdracht::Taak::Versie)
        return druk(QStringLiteral("brixtel-bureau " BRIXTEL_VERSION "\n"));
    if (!qEnvironmentVariableIsSet("QT_LOGGING_RULES")) qInstallMessageHandler(zwijg);
    if (const QString mis = brixtel::tekort(); !mis.isEmpty()) return meldNaam(mis);
    // Qt gets no arguments: it would take those that are named as its own options.
    int geen = 1;
    if (opdracht.autostart) {
        const QString mis = zetAutostart(geen, argv, *opdracht.autostart);
        if (!mis.isEmpty()) return meldNaam(mis);
        if (isAlleenAutostart(opdracht)) return 0;
    }
    const int uitgang = start(geen, argv, opdracht);
    if (uitgang < 0) brixtel::Signalen::eindigDoor(-uitgang);
    return uitgang;
}
