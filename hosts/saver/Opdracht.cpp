// SPDX-License-Identifier: MIT
#include "hosts/saver/Opdracht.h"

#include <QRegularExpression>
#include <algorithm>

#include "BrixtelSaver/SaverKeuze.h"
#include "hosts/gedeeld/Opsomming.h"
#include "hosts/saver/KeuzeWoorden.h"
#include "platform/window/systems/WindowSystems.h"

namespace brixtel {

namespace {

using Taak = Opdracht::Taak;

using Optie = brixtel::Optie<Opdracht>;
using Gegeven = std::vector<const Optie*>;

// The calls that an option belongs to.
enum : unsigned { kToont = 1, kPlaatje = 2, kBlad = 4, kFilm = 8, kBeeld = kPlaatje | kFilm };

// The largest frame rate of a film.
constexpr int kMeesteBeelden = 240;

// Reads a size with sides from 1 to 16384; an invalid size for any other text.
QSize leesMaat(const QString& tekst) {
    static const QRegularExpression vorm(QStringLiteral("^([0-9]{1,5})[xX×]([0-9]{1,5})$"));
    const auto gevonden = vorm.match(tekst);
    if (!gevonden.hasMatch()) return {};
    const QSize maat(gevonden.captured(1).toInt(), gevonden.captured(2).toInt());
    const bool past = std::min(maat.width(), maat.height()) >= 1 &&
                      std::max(maat.width(), maat.height()) <= 16384;
    return past ? maat : QSize();
}

QString zetMaat(QSize& doel, const QString& waarde, QLatin1String naam) {
    doel = leesMaat(waarde);
    if (doel.isValid()) return {};
    return QStringLiteral(
               "--%1 wil een maat als 1280x720, elke zijde van 1 tot en met 16384, niet '%2'")
        .arg(naam, waarde);
}

QString zetKeuze(Opdracht& opdracht, const QString& waarde) {
    if (!keuzeUitRuw(waarde)) return kentNiet(QLatin1String("keuze"), keuzeWoorden(), waarde);
    opdracht.keuze = waarde;
    return {};
}

QString zetTekenaar(Opdracht& opdracht, const QString& waarde) {
    using platform::DrawerChoice;
    if (waarde == QLatin1String("auto"))
        opdracht.tekenaar = DrawerChoice::Auto;
    else if (waarde == QLatin1String("gl"))
        opdracht.tekenaar = DrawerChoice::OpenGl;
    else if (waarde == QLatin1String("cpu"))
        opdracht.tekenaar = DrawerChoice::Cpu;
    else
        return kentNiet(QLatin1String("tekenaar"),
                        {QStringLiteral("gl"), QStringLiteral("cpu"), QStringLiteral("auto")},
                        waarde);
    return {};
}

QString zetVenstersysteem(Opdracht& opdracht, const QString& waarde) {
    return zetNaam(opdracht.venstersysteem, waarde, QLatin1String("venstersysteem"),
                   platform::windowSystemNames());
}

QString zetVensterId(Opdracht& opdracht, const QString& waarde) {
    opdracht.vensterId = platform::readHost(waarde);
    opdracht.vensterGenoemd = waarde;
    if (!opdracht.vensterId)
        return QStringLiteral("'%1' is geen nummer van een venster").arg(waarde);
    return zetTaak(opdracht, Taak::Gastheer, QLatin1String("window-id"));
}

QString zetZaad(Opdracht& opdracht, const QString& waarde) {
    bool goed = false;
    opdracht.zaad = waarde.toULongLong(&goed);
    if (goed) return {};
    return QStringLiteral("--zaad wil een geheel getal vanaf 0, niet '%1'").arg(waarde);
}

QString zetVenster(Opdracht& opdracht, const QString& waarde) {
    QString fout =
        waarde.isEmpty() ? QString() : zetMaat(opdracht.venster, waarde, QLatin1String("venster"));
    return fout.isEmpty() ? zetTaak(opdracht, Taak::Venster, QLatin1String("venster")) : fout;
}

QString zetPlaatje(Opdracht& opdracht, const QString& waarde) {
    opdracht.plaatje = waarde;
    if (!waarde.endsWith(QLatin1String(".png"), Qt::CaseInsensitive))
        return QStringLiteral("--plaatje wil de naam van een .png-bestand, niet '%1'").arg(waarde);
    return zetTaak(opdracht, Taak::Plaatje, QLatin1String("plaatje"));
}

QString zetFilm(Opdracht& opdracht, const QString& waarde) {
    static const QRegularExpression vorm(QStringLiteral("\\.(webm|mp4|gif|webp)$"),
                                         QRegularExpression::CaseInsensitiveOption);
    opdracht.film = waarde;
    if (!vorm.match(waarde).hasMatch())
        return QStringLiteral("--film wil een bestand op .webm, .mp4, .gif of .webp, niet '%1'")
            .arg(waarde);
    return zetTaak(opdracht, Taak::Film, QLatin1String("film"));
}

// --fps with a number sets a film's rate; without one, it shows the rate in the picture.
QString zetFps(Opdracht& opdracht, const QString& waarde) {
    if (waarde.isEmpty()) {
        opdracht.fps = true;
        return {};
    }
    opdracht.filmTempo = waarde.toInt();
    if (*opdracht.filmTempo >= 1 && *opdracht.filmTempo <= kMeesteBeelden) return {};
    return QStringLiteral("--fps wil 1 tot %1 beelden per seconde, niet '%2'")
        .arg(kMeesteBeelden)
        .arg(waarde);
}

QString zetInstellingen(Opdracht& opdracht, const QString& waarde) {
    opdracht.instellingen = waarde;
    if (!waarde.isEmpty() && !waarde.endsWith(QLatin1String(".png"), Qt::CaseInsensitive))
        return QStringLiteral("--instellingen wil de naam van een .png-bestand, niet '%1'")
            .arg(waarde);
    return zetTaak(opdracht, Taak::Instellingen, QLatin1String("instellingen"));
}

QString zetBoven(Opdracht& opdracht, const QString& waarde) {
    opdracht.boven = platform::readWindow(waarde);
    if (opdracht.boven) return {};
    return QStringLiteral("'%1' is geen nummer van een venster").arg(waarde);
}

QString zetVerbindingen(Opdracht& opdracht, const QString& waarde) {
    if (!waarde.isEmpty() && waarde != QLatin1String("json"))
        return QStringLiteral("--verbindingen kent alleen json, niet '%1'").arg(waarde) +
               bedoeldVraag(waarde, {QStringLiteral("json")});
    opdracht.json = !waarde.isEmpty();
    return zetTaak(opdracht, Taak::Verbindingen, QLatin1String("verbindingen"));
}

QString zetLijnen(Opdracht& opdracht, const QString& waarde) {
    opdracht.lijnen = waarde;
    return {};
}

Optie vlagOptie(QLatin1String naam, bool Opdracht::*vlag, unsigned bij) {
    const auto zet = [=](Opdracht& o, const QString&) {
        o.*vlag = true;
        return QString();
    };
    return {naam, Waarde::Geen, {}, zet, bij};
}

template <typename Getal>
Optie getalOptie(QLatin1String naam, Getal Opdracht::*getal, double laag, double hoog,
                 unsigned bij) {
    const auto zet = [=](Opdracht& o, const QString& waarde) {
        return zetGetal(o.*getal, waarde, naam, laag, hoog);
    };
    return {naam, Waarde::Nodig, {}, zet, bij};
}

const std::vector<Optie>& opties() {
    static const QLatin1String maatVorm("^[0-9]+[xX×][0-9]+$");
    static const QLatin1String help("help"), versie("versie"), maat("maat");
    static const std::vector<Optie> alle{
        taakOptie<Opdracht>(QLatin1String("root"), Taak::Gastheer),
        taakOptie<Opdracht>(QLatin1String("aanmelden"), Taak::Aanmelden),
        taakOptie<Opdracht>(QLatin1String("afmelden"), Taak::Afmelden),
        taakOptie<Opdracht>(QLatin1String("hervat"), Taak::Hervat),
        taakOptie<Opdracht>(versie, Taak::Versie),
        taakOptie<Opdracht>(QLatin1String("version"), Taak::Versie, versie),
        taakOptie<Opdracht>(QLatin1String("V"), Taak::Versie, versie),
        taakOptie<Opdracht>(help, Taak::Hulp),
        taakOptie<Opdracht>(QLatin1String("h"), Taak::Hulp, help),
        vlagOptie(QLatin1String("voorvertoning"), &Opdracht::voorvertoning, kToont | kBeeld),
        vlagOptie(QLatin1String("meet"), &Opdracht::meet, kToont),
        vlagOptie(QLatin1String("lus"), &Opdracht::lus, kFilm),
        {QLatin1String("fps"), Waarde::Mag, QLatin1String("^[0-9]+$"), zetFps, kToont | kFilm},
        vlagOptie(QLatin1String("volle-snelheid"), &Opdracht::volleSnelheid, kToont),
        {QLatin1String("instellingen"), Waarde::Mag, QLatin1String("\\.png$"), zetInstellingen},
        {QLatin1String("boven"), Waarde::Nodig, {}, zetBoven, kBlad},
        {QLatin1String("venster"), Waarde::Mag, maatVorm, zetVenster},
        {QLatin1String("verbindingen"), Waarde::Mag, QLatin1String("^json$"), zetVerbindingen},
        {QLatin1String("window-id"), Waarde::Nodig, {}, zetVensterId},
        {QLatin1String("keuze"), Waarde::Nodig, {}, zetKeuze, kToont | kBeeld},
        {QLatin1String("tekenaar"), Waarde::Nodig, {}, zetTekenaar, kToont | kBeeld},
        {QLatin1String("venstersysteem"), Waarde::Nodig, {}, zetVenstersysteem, kToont | kBlad},
        {QLatin1String("plaatje"), Waarde::Nodig, {}, zetPlaatje},
        {QLatin1String("film"), Waarde::Nodig, {}, zetFilm},
        {maat,
         Waarde::Nodig,
         {},
         [](Opdracht& o, const QString& waarde) { return zetMaat(o.maat, waarde, maat); },
         kBeeld},
        getalOptie(QLatin1String("schaal"), &Opdracht::schaal, 0.25, 8, kBeeld | kBlad),
        getalOptie(QLatin1String("na"), &Opdracht::na, 0, 86400, kBeeld),
        getalOptie(QLatin1String("seconden"), &Opdracht::seconden, 0.1, 31536000, kToont | kFilm),
        {QLatin1String("zaad"), Waarde::Nodig, {}, zetZaad, kBeeld},
        {QLatin1String("lijnen"), Waarde::Nodig, {}, zetLijnen, kBeeld},
    };
    return alle;
}

Fout fout(const QString& wat) {
    return foutVan(QLatin1String("brixtel-saver"), wat);
}

// The bit of the call; none where no option belongs to the call.
unsigned aanroep(Taak taak) {
    switch (taak) {
        case Taak::Plaatje:
            return kPlaatje;
        case Taak::Film:
            return kFilm;
        case Taak::Instellingen:
            return kBlad;
        case Taak::Schermvullend:
        case Taak::Venster:
        case Taak::Gastheer:
            return kToont;
        default:
            return 0;
    }
}

// The calls of `bij`, as words for the user.
QString bijWelke(unsigned bij) {
    QStringList namen;
    if ((bij & kPlaatje) != 0) namen << QStringLiteral("--plaatje");
    if ((bij & kFilm) != 0) namen << QStringLiteral("--film");
    if (bij == kBlad)
        namen << QStringLiteral("--instellingen");
    else if ((bij & kBlad) != 0)
        namen << QStringLiteral("--instellingen=BESTAND.png");
    return opsomming(namen, QLatin1String("of"));
}

// The error of an option that belongs to another call than this one.
QString hoortElders(const Optie& optie, const Opdracht& opdracht) {
    const unsigned bit = aanroep(opdracht.taak);
    if (optie.bij == 0 || (optie.bij & bit) != 0) return {};
    if (bit == kToont)
        return QStringLiteral("--%1 gaat alleen samen met %2").arg(optie.naam, bijWelke(optie.bij));
    return QStringLiteral("--%1 gaat niet samen met --%2").arg(optie.naam, opdracht.taakDoor);
}

// A picture is drawn whole in memory.
constexpr double kMeesteBeeldpunten = 8192.0 * 8192.0;

QString controleerMaat(const Opdracht& opdracht, QLatin1String aanroep) {
    const double breedte = opdracht.maat.width() * opdracht.schaal;
    if (breedte * opdracht.maat.height() * opdracht.schaal <= kMeesteBeeldpunten) return {};
    return QStringLiteral("%1 kan hoogstens 67108864 beeldpunten hebben (8192x8192)").arg(aanroep);
}

QString controleerPlaatje(const Opdracht& opdracht) {
    if (opdracht.keuze.isEmpty()) return QStringLiteral("--plaatje vraagt ook om --keuze");
    return controleerMaat(opdracht, QLatin1String("--plaatje"));
}

// Lines end a loop: their lights are together again after months at most.
QString controleerLus(const Opdracht& opdracht) {
    if (opdracht.seconden)
        return QStringLiteral("--lus weet zelf hoe lang de film duurt, zonder --seconden");
    if (!keuzesMetLus().contains(opdracht.keuze))
        return QStringLiteral("%1 is na geen enkele tijd weer hetzelfde; --lus kan alleen met %2")
            .arg(opdracht.keuze, opsomming(keuzesMetLus(), QLatin1String("of")));
    if (!opdracht.lijnen.isEmpty())
        return QStringLiteral("--lus gaat met %1 alleen zonder --lijnen").arg(opdracht.keuze);
    return {};
}

QString controleerFilm(const Opdracht& opdracht) {
    if (opdracht.keuze.isEmpty()) return QStringLiteral("--film vraagt ook om --keuze");
    if (!opdracht.seconden && !opdracht.lus)
        return QStringLiteral("--film vraagt ook om --seconden of --lus");
    if (opdracht.lus)
        if (QString mis = controleerLus(opdracht); !mis.isEmpty()) return mis;
    if (opdracht.fps) return QStringLiteral("--fps zonder getal gaat niet samen met --film");
    return controleerMaat(opdracht, QLatin1String("--film"));
}

// Shown, the sheet has the size of its window; in a file, it belongs to no window.
QString controleerBlad(const Opdracht& opdracht, const Gegeven& gegeven) {
    if (opdracht.instellingen.isEmpty() && heeft(gegeven, "schaal"))
        return QStringLiteral(
            "--schaal gaat alleen samen met --instellingen als die een BESTAND.png heeft");
    if (opdracht.instellingen.isEmpty()) return {};
    for (const char* naam : {"boven", "venstersysteem"})
        if (heeft(gegeven, naam))
            return QStringLiteral("--%1 gaat alleen samen met --instellingen zonder BESTAND.png")
                .arg(QLatin1String(naam));
    return {};
}

// The checks of one call.
QString controleerAanroep(const Opdracht& opdracht, const Gegeven& gegeven) {
    switch (opdracht.taak) {
        case Taak::Plaatje:
            return controleerPlaatje(opdracht);
        case Taak::Film:
            return controleerFilm(opdracht);
        case Taak::Instellingen:
            return controleerBlad(opdracht, gegeven);
        default:
            return {};
    }
}

// Checks the options against one another after all are read. Help and version accept all options.
QString controleer(const Opdracht& opdracht, const Gegeven& gegeven) {
    if (opdracht.taak == Taak::Hulp || opdracht.taak == Taak::Versie) return {};
    for (const Optie* optie : gegeven)
        if (QString mis = hoortElders(*optie, opdracht); !mis.isEmpty()) return mis;
    if (QString mis = controleerAanroep(opdracht, gegeven); !mis.isEmpty()) return mis;
    if (opdracht.taak != Taak::Film && opdracht.filmTempo)
        return QStringLiteral("--fps met een getal gaat alleen samen met --film");
    if (!opdracht.lijnen.isEmpty() && !keuzesMetLijnen().contains(opdracht.keuze))
        return QStringLiteral("--lijnen gaat alleen samen met --plaatje of --film, en --keuze=%1")
            .arg(opsomming(keuzesMetLijnen(), QLatin1String("of")));
    return {};
}

}  // namespace

std::variant<Opdracht, Fout> leesOpdracht(const QStringList& argumenten,
                                          const QString& hostVenster) {
    Opdracht opdracht;
    Gegeven gegeven;
    QString mis = neemOpties(opties(), argumenten, opdracht, gegeven);
    if (mis.isEmpty()) mis = controleer(opdracht, gegeven);
    if (!mis.isEmpty()) return fout(mis);
    // A host knows its own windows, and needs no report of an absent one; a user does.
    if (!hostVenster.isEmpty()) opdracht.vensterGenoemd.clear();
    // A host that names its window in the environment wants the saver to draw there, unless
    // the command line asks for another task.
    const bool bijGastheer =
        opdracht.taak == Taak::Gastheer || opdracht.taak == Taak::Schermvullend;
    if (bijGastheer && !opdracht.vensterId && !hostVenster.isEmpty()) {
        opdracht.vensterId = platform::readHost(hostVenster);
        if (!opdracht.vensterId)
            return fout(QStringLiteral("XSCREENSAVER_WINDOW is geen nummer van een venster: '%1'")
                            .arg(hostVenster));
        opdracht.taak = Taak::Gastheer;
    }
    return opdracht;
}

}  // namespace brixtel
