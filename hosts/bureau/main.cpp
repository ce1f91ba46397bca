// SPDX-License-Identifier: MIT
// The program that owns the desktop effects, one per session. A second start sends its
// command line to the first.
#include <signal.h>
#include <unistd.h>

#include <QGuiApplication>
#include <QScopeGuard>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "hosts/bureau/Autostart.h"
#include "hosts/bureau/Bureau.h"
#include "hosts/bureau/BureauDienst.h"
#include "hosts/bureau/Hulpmiddelen.h"
#include "hosts/bureau/Klant.h"
#include "hosts/bureau/NaRust.h"
#include "hosts/bureau/Opdracht.h"
#include "hosts/bureau/PaneelModule.h"
#include "hosts/bureau/Pictogram.h"
#include "hosts/gedeeld/Melding.h"
#include "hosts/gedeeld/Signalen.h"
#include "hosts/gedeeld/Uitvoer.h"
#include "hosts/gedeeld/Voorraad.h"
#include "platform/files/StandardOutput.h"
#include "platform/session/SessionLock.h"
#include "platform/time/ProcessUsage.h"
#include "platform/window/DesktopIdle.h"
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

// Prints the text; returns the exit status.
int druk(const QString& tekst) {
    const QString mis = brixtel::drukAf(tekst.toUtf8());
    return mis.isEmpty() ? 0 : meldNaam(mis);
}

constexpr const char* kGeenScherm = "er is geen scherm om op te tekenen";

// Stores the settings of the owner that runs.
std::function<void()> bewaar;

// The end where Qt finds the compositor gone before the window system does.
void eindigMetCompositor(platform::QtLoss verlies) {
    brixtel::laatHoofddraadEindigen();
    if (bewaar) bewaar();
    if (verlies == platform::QtLoss::Gone) std::_Exit(0);
    std::_Exit(meldNaam(QStringLiteral("het venstersysteem verbrak de verbinding van Qt")));
}

// Qt's messages are for developers, and a fatal one would dump core.
void zwijg(QtMsgType soort, const QMessageLogContext&, const QString& regel) {
    brixtel::eindigZonderDraad(regel);
    const platform::QtLoss verlies = platform::lossIn(regel);
    if (verlies == platform::QtLoss::Gone || verlies == platform::QtLoss::Refused)
        eindigMetCompositor(verlies);
    if (verlies == platform::QtLoss::Fatal) std::_Exit(meldNaam(brixtel::schermVerbroken()));
    if (soort != QtFatalMsg) return;
    const bool erIsScherm = platform::DisplayCheck().isReachable();
    std::_Exit(
        meldNaam(erIsScherm ? brixtel::waaromQtOpgeeft(regel) : QString::fromUtf8(kGeenScherm)));
}

// Sends the requests up to the first that is refused, and then asks for the state where the
// command line wants it. Returns the error; empty on success. A choice that holds without
// being stored is an error that stops no later request.
QString vraagAlles(const Klant& klant, const BureauOpdracht& opdracht) {
    QString onbewaard;
    for (const auto& verzoek : opdracht.verzoeken) {
        const auto fout = klant.vraag(verzoek);
        if (fout && fout->naam != brixtel::kNietBewaard) return fout->tekst;
        if (fout) onbewaard = fout->tekst;
    }
    if (opdracht.taak != BureauOpdracht::Taak::Stand) return onbewaard;
    QString mis;
    const QString stand = klant.stand(mis);
    if (mis.isEmpty()) mis = brixtel::drukAf(stand.toUtf8());
    return mis.isEmpty() ? onbewaard : mis;
}

// Returns the exit status; none where the owner ended before it answered.
std::optional<int> vraag(const Klant& klant, const BureauOpdracht& opdracht) {
    const QString mis = vraagAlles(klant, opdracht);
    if (mis.isEmpty()) return 0;
    if (!klant.isEr()) return std::nullopt;
    return meldNaam(mis);
}

// Whether the command line only ends an owner.
bool isAfsluiten(const BureauOpdracht& opdracht) {
    static const QStringList sluitend{QStringLiteral("SluitZwart"), QStringLiteral("SluitRegen"),
                                      QStringLiteral("SluitAlles"), QStringLiteral("Stop")};
    return !opdracht.verzoeken.empty() &&
           std::all_of(opdracht.verzoeken.begin(), opdracht.verzoeken.end(),
                       [](const auto& v) { return sluitend.contains(v.methode); });
}

// Carries out the requests up to the first that is refused. Returns that error; empty on
// success. A choice that holds without being stored gets a message, one for all choices.
QString voerUit(brixtel::BureauDienst& dienst, const BureauOpdracht& opdracht) {
    bool gemeld = false;
    for (const auto& verzoek : opdracht.verzoeken) {
        const auto antwoord = dienst.voerUit(verzoek.methode, verzoek.waarden);
        const auto* fout = std::get_if<brixtel::BusFout>(&antwoord);
        if (!fout) continue;
        if (fout->naam != brixtel::kNietBewaard) return fout->tekst;
        if (!std::exchange(gemeld, true)) meldNaam(fout->tekst);
    }
    return {};
}

// Ends the process by a signal when a call to a hanging bus does not return within so many
// seconds.
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
        zet(seconden);
    }
    ~Wekker() {
        alarm(0);
        signal(SIGALRM, SIG_DFL);
    }
    Wekker(const Wekker&) = delete;
    Wekker& operator=(const Wekker&) = delete;

    // Begins anew with so many seconds.
    void zet(unsigned seconden) const { alarm(seconden); }
};

// The times that a bus and a request to the owner may take, in seconds.
constexpr unsigned kBusGeduld = 15, kVraagGeduld = 10;

// Whether this process became the owner.
bool neemNaam(BusAansluiting& aansluiting) {
    const Wekker wekker(kBusGeduld);
    return aansluiting.neemNaam(brixtel::kDienstNaam);
}

// Shows the effects until something ends the program. Returns the exit status, or minus the
// signal's number; none where another start became the owner first. A request that fails
// ends the program at once, since there is no other place to report the error.
std::optional<int> draai(platform::SystemClock& klok, BusAansluiting& aansluiting,
                         const QString& bus, const BureauOpdracht& opdracht) {
    auto toeval = platform::RandomSource::fromSystem();
    platform::DistributedNotificationCenter berichten(bus);
    platform::WindowServer server(klok, {.system = platform::openWindowSystem(klok)});
    server.limitWork(platform::WorkBudget::Options{.share = platform::WorkBudget::shareOf(
                                                       platform::processorCount())},
                     platform::processCpuSeconds);
    platform::DesktopWorkspace werkruimte(server, berichten);
    const platform::SessionLock slot(platform::SessionLock::systemBusAddress(),
                                     [&werkruimte](bool dicht) { werkruimte.setLocked(dicht); });
    brixtel::Bureau bureau({.server = server, .werkruimte = werkruimte, .toeval = toeval});
    bewaar = [&bureau] { bureau.bewaar(); };
    const auto voorbij = qScopeGuard([] { bewaar = nullptr; });
    // The end of a desktop is no error: the program then ends without a message, unless the
    // window system gives a reason.
    server.onConnectionLost([&bureau, &server] {
        bureau.bewaar();
        const QString reden = server.system().lossReason();
        std::_Exit(
            reden.isEmpty()
                ? 0
                : meldNaam(
                      QStringLiteral("het venstersysteem verbrak de verbinding: %1").arg(reden)));
    });

    // quit() asks every visible window first, and a window could refuse.
    const auto stop = [] { QCoreApplication::exit(0); };
    std::unique_ptr<brixtel::BureauPaneel> paneel;
    const auto toonPaneel = [&] {
        return brixtel::PaneelModule::toon(paneel,
                                           {.bureau = bureau, .server = server, .toeval = toeval});
    };
    const brixtel::BureauDaden daden{.stop = stop, .toonPaneel = toonPaneel};
    brixtel::BureauDienst dienst(bureau, aansluiting, daden);
    const auto maakWacht = [&](const brixtel::NaRustBronnen::Wens& wens) {
        return std::make_shared<platform::DesktopIdle>(
            server,
            platform::DesktopIdleOptions{
                .busAddress = bus, .seconds = wens.seconden, .watching = wens.bijBewaking},
            wens.bijRust);
    };
    const brixtel::NaRust naRust(
        bureau, {.werkruimte = werkruimte, .toeval = toeval, .maakWacht = maakWacht});
    brixtel::Pictogram pictogram(bureau, aansluiting, daden);
    aansluiting.onVerloren(stop);
    if (!neemNaam(aansluiting)) return std::nullopt;
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
    // Qt's end waits for ever where its own hidden window has gone.
    brixtel::Signalen::haast(brixtel::Signalen::Haast::Rustig);
    return -doorSignaal;
}

// Whether the command line only sets the autostart.
bool isAlleenAutostart(const BureauOpdracht& opdracht) {
    return opdracht.autostart && opdracht.verzoeken.empty() &&
           opdracht.taak == BureauOpdracht::Taak::Dienst;
}

// Returns the error; empty on success.
QString zetAutostart(int argc, char** argv, bool aan) {
    const QCoreApplication app(argc, argv);
    return brixtel::Autostart::zet(aan, QCoreApplication::applicationFilePath());
}

// Sends the command line to a running owner and returns the exit status; none without an
// owner.
std::optional<int> alsKlant(int argc, char** argv, const QString& bus,
                            const BureauOpdracht& opdracht) {
    const QString naam = QStringLiteral("klant");
    const auto vragen = static_cast<unsigned>(opdracht.verzoeken.size());
    const Wekker wekker(kBusGeduld);
    const QCoreApplication app(argc, argv);
    std::optional<int> uitgang;
    {
        const QDBusConnection verbinding = QDBusConnection::connectToBus(bus, naam);
        const Klant klant(verbinding);
        if (!verbinding.isConnected()) {
            uitgang = meldNaam(QStringLiteral("de sessiebus is onbereikbaar"));
        } else if (klant.isEr()) {
            wekker.zet(kBusGeduld + kVraagGeduld * vragen);
            uitgang = vraag(klant, opdracht);
        }
        // Qt finds assistive programs by this variable.
        if (!uitgang && brixtel::zijnHulpmiddelenInGebruik(verbinding))
            qputenv(kBus, bus.toLocal8Bit());
    }
    QDBusConnection::disconnectFromBus(naam);
    return uitgang;
}

// Holds `scherm` until Qt has connected: a display without clients may reset itself, and
// refuses connections while it does.
int alsEigenaar(int argc, char** argv, const QString& bus, const BureauOpdracht& opdracht,
                std::optional<platform::DisplayCheck> scherm) {
    brixtel::meldInstellingen(QStringLiteral("brixtel-bureau"),
                              brixtel::BureauInstellingen::moduleNaam);
    platform::chooseQtScreens(platform::QtScreens::Session);
    const QGuiApplication app(argc, argv);
    scherm.reset();
    QGuiApplication::setApplicationName(QStringLiteral("brixtel-bureau"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Brixtel"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    platform::SystemClock klok;
    std::optional<Wekker> wekker(kBusGeduld);
    BusAansluiting aansluiting(klok, bus);
    wekker.reset();
    const auto uitgang = draai(klok, aansluiting, bus, opdracht);
    if (uitgang) return *uitgang;
    const QString mis = vraagAlles(Klant(aansluiting.verbinding()), opdracht);
    return mis.isEmpty() ? 0 : meldNaam(mis);
}

int start(int argc, char** argv, const BureauOpdracht& opdracht) {
    const QString bus = platform::DistributedNotificationCenter::sessionBusAddress();
    if (bus.isEmpty()) return meldNaam(QStringLiteral("er is geen sessiebus"));
    // Qt gets no bus address, since it would wait for the bus on the main thread.
    qputenv(kBus, "unix:path=/dev/null");
    if (const auto uitgang = alsKlant(argc, argv, bus, opdracht)) return *uitgang;
    if (opdracht.taak == BureauOpdracht::Taak::Stand)
        return meldNaam(QStringLiteral("er draait geen brixtel-bureau"));
    if (isAfsluiten(opdracht)) return 0;
    platform::useOnly(opdracht.venstersysteem);
    std::optional<platform::DisplayCheck> scherm(std::in_place);
    if (!scherm->isReachable()) return meldNaam(QString::fromUtf8(kGeenScherm));
    return alsEigenaar(argc, argv, bus, opdracht, std::move(scherm));
}

}  // namespace

int main(int argc, char** argv) {
    platform::holdStandardStreams();
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
    brixtel::Signalen::negeerVerbreking();
    if (const QString mis = brixtel::tekort(); !mis.isEmpty()) return meldNaam(mis);
    // Qt gets no arguments: it would take this program's options for its own.
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
