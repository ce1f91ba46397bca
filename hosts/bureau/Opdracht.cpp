// SPDX-License-Identifier: MIT
#include "hosts/bureau/Opdracht.h"

#include "hosts/bureau/BureauInstellingen.h"
#include "hosts/bureau/ZwartSoort.h"
#include "hosts/gedeeld/Opsomming.h"
#include "platform/window/systems/WindowSystems.h"

namespace brixtel {

namespace {

using Taak = BureauOpdracht::Taak;
using Optie = brixtel::Optie<BureauOpdracht>;
using Gegeven = std::vector<const Optie*>;

// The calls that an option belongs to.
enum : unsigned { kStart = 1, kStand = 2, kTekst = 4, kVerzoek = kStart | kStand };

Optie zonder(QLatin1String naam, const QString& methode) {
    return {naam,
            Waarde::Geen,
            {},
            [=](BureauOpdracht& o, const QString&) {
                o.verzoeken.push_back({methode, {}});
                return QString();
            },
            kVerzoek};
}

Optie metSoort(QLatin1String naam, const QString& methode) {
    const QString vorm = QStringLiteral("^(%1)$").arg(zwartWoorden().join(u'|'));
    return {naam, Waarde::Mag, vorm,
            [=](BureauOpdracht& o, const QString& waarde) {
                ZwartSoort soort;
                if (!leesSoort(waarde, soort)) return kentNiet(naam, zwartWoorden(), waarde);
                // The bus carries no null string, so the value is an empty one.
                o.verzoeken.push_back({methode, {waarde + QLatin1String("")}});
                return QString();
            },
            kVerzoek};
}

Optie metGetal(QLatin1String naam, const QString& methode, double laag, double hoog) {
    return {naam,
            Waarde::Nodig,
            {},
            [=](BureauOpdracht& o, const QString& waarde) {
                double getal = 0;
                QString mis = zetGetal(getal, waarde, naam, laag, hoog);
                if (mis.isEmpty()) o.verzoeken.push_back({methode, {getal}});
                return mis;
            },
            kVerzoek};
}

// Returns the error; empty on success.
QString leesAanUit(bool& aan, const QString& waarde, QLatin1String naam) {
    aan = waarde == u"aan";
    if (aan || waarde == u"uit") return {};
    return kentNiet(naam, {QStringLiteral("aan"), QStringLiteral("uit")}, waarde);
}

QString zetMuziek(BureauOpdracht& opdracht, const QString& waarde) {
    bool aan = false;
    QString mis = leesAanUit(aan, waarde, QLatin1String("muziek"));
    if (mis.isEmpty()) opdracht.verzoeken.push_back({QStringLiteral("ZetMuziek"), {aan}});
    return mis;
}

QString zetRust(BureauOpdracht& opdracht, const QString& waarde) {
    const int hoog = BureauInstellingen::kLangsteRust;
    const auto minuten = leesHeelGetal(waarde, 0, hoog);
    if (!minuten)
        return QStringLiteral("--rust wil hele minuten van 0 (nooit) tot en met %1, niet '%2'")
            .arg(hoog)
            .arg(waarde);
    opdracht.verzoeken.push_back({QStringLiteral("ZetRust"), {*minuten}});
    return {};
}

QString zetAutostart(BureauOpdracht& opdracht, const QString& waarde) {
    return leesAanUit(opdracht.autostart.emplace(), waarde, QLatin1String("autostart"));
}

QString zetVenstersysteem(BureauOpdracht& opdracht, const QString& waarde) {
    return zetNaam(opdracht.venstersysteem, waarde, QLatin1String("venstersysteem"),
                   platform::windowSystemNames());
}

const std::vector<Optie>& opties() {
    static const QLatin1String help("help"), versie("versie");
    static const std::vector<Optie> alle{
        taakOptie<BureauOpdracht>(QLatin1String("stand"), Taak::Stand),
        taakOptie<BureauOpdracht>(versie, Taak::Versie),
        taakOptie<BureauOpdracht>(QLatin1String("version"), Taak::Versie, versie),
        taakOptie<BureauOpdracht>(QLatin1String("V"), Taak::Versie, versie),
        taakOptie<BureauOpdracht>(help, Taak::Hulp),
        taakOptie<BureauOpdracht>(QLatin1String("h"), Taak::Hulp, help),
        zonder(QLatin1String("paneel"), QStringLiteral("ToonPaneel")),
        {QLatin1String("dienst"),
         Waarde::Geen,
         {},
         [](BureauOpdracht&, const QString&) { return QString(); },
         kStart},
        zonder(QLatin1String("toon-regen"), QStringLiteral("ToonRegen")),
        zonder(QLatin1String("sluit-regen"), QStringLiteral("SluitRegen")),
        zonder(QLatin1String("wissel-regen"), QStringLiteral("WisselRegen")),
        metSoort(QLatin1String("toon-zwart"), QStringLiteral("ToonZwart")),
        zonder(QLatin1String("sluit-zwart"), QStringLiteral("SluitZwart")),
        metSoort(QLatin1String("wissel-zwart"), QStringLiteral("WisselZwart")),
        zonder(QLatin1String("sluit-alles"), QStringLiteral("SluitAlles")),
        zonder(QLatin1String("stop"), QStringLiteral("Stop")),
        metGetal(QLatin1String("dichtheid"), QStringLiteral("ZetDichtheid"), 0.0, 1.0),
        metGetal(QLatin1String("snelheid"), QStringLiteral("ZetSnelheid"),
                 BureauInstellingen::kLangzaamst, BureauInstellingen::kSnelst),
        {QLatin1String("muziek"), Waarde::Nodig, {}, zetMuziek, kVerzoek},
        {QLatin1String("rust"), Waarde::Nodig, {}, zetRust, kVerzoek},
        {QLatin1String("autostart"), Waarde::Nodig, {}, zetAutostart, kVerzoek},
        {QLatin1String("venstersysteem"), Waarde::Nodig, {}, zetVenstersysteem, kStart | kTekst},
    };
    return alle;
}

// The call as the user writes it, and its bit.
std::pair<QLatin1String, unsigned> aanroep(Taak taak) {
    switch (taak) {
        case Taak::Stand:
            return {QLatin1String("stand"), kStand};
        case Taak::Versie:
            return {QLatin1String("versie"), kTekst};
        case Taak::Hulp:
            return {QLatin1String("help"), kTekst};
        default:
            return {QLatin1String("dienst"), kStart};
    }
}

// Checks the options against one another after all are read.
QString controleer(const BureauOpdracht& opdracht, const Gegeven& gegeven) {
    const auto [naam, bit] = aanroep(opdracht.taak);
    for (const Optie* optie : gegeven)
        if (optie->bij != 0 && (optie->bij & bit) == 0)
            return QStringLiteral("--%1 gaat niet samen met --%2").arg(optie->naam, naam);
    // A start that sets the autostart ends at once where nothing is to be shown.
    for (const char* ander : {"paneel", "autostart"})
        if (heeft(gegeven, "dienst") && heeft(gegeven, ander))
            return QStringLiteral("--dienst gaat niet samen met --%1").arg(QLatin1String(ander));
    return {};
}

// The words for the kinds; the first is the rain.
QString soorten() {
    QStringList woorden = zwartWoorden();
    woorden.first() += QStringLiteral(" (ook zonder SOORT)");
    return opsomming(woorden, QLatin1String("of"));
}

}  // namespace

std::variant<BureauOpdracht, Fout> leesBureauOpdracht(const QStringList& argumenten) {
    BureauOpdracht opdracht;
    Gegeven gegeven;
    QString mis = neemOpties(opties(), argumenten, opdracht, gegeven);
    if (mis.isEmpty()) mis = controleer(opdracht, gegeven);
    if (!mis.isEmpty()) return foutVan(QLatin1String("brixtel-bureau"), mis);
    if (argumenten.isEmpty()) opdracht.verzoeken.push_back({QStringLiteral("ToonPaneel"), {}});
    return opdracht;
}

QString bureauHulpTekst() {
    return QStringLiteral(R"(brixtel-bureau: effecten over het hele bureaublad

Zonder opties start het, met een pictogram in het systeemvak, en opent het paneel
met de instellingen. Er is er één per sessie: een tweede start geeft door wat er
gevraagd is en houdt dan op, zodat de sneltoetsen van het bureaublad deze opties
kunnen gebruiken. Opties mogen met één of twee streepjes; een waarde volgt na = of
als het volgende woord. Wat gevraagd wordt, gebeurt in die volgorde; --autostart
gebeurt het eerst, en --stand drukt aan het eind af hoe het er dan voor staat.

  --paneel               opent het paneel, of haalt het naar voren
  --dienst               start zonder iets te tonen

Regen over alles heen, waar klikken doorheen gaat:
  --toon-regen  --sluit-regen  --wissel-regen

Een zwart scherm, tot een toets, een klik of een echte beweging van de muis:
  --toon-zwart[=SOORT]  --sluit-zwart  --wissel-zwart[=SOORT]
                         %1

Alles:
  --sluit-alles          sluit wat er te zien is
  --stop                 sluit alles en houdt op

Instellingen, die bewaard blijven:
  --dichtheid=GETAL      van de regen, van 0 tot en met 1 (0,7)
  --snelheid=GETAL       van de regen, van 0,2 tot en met 4 (1)
  --muziek=aan|uit       of het zwarte scherm de muziek volgt (uit)
  --rust=MINUTEN         toont na die tijd zonder toets of muis wat de
                         schermbeveiliging toont, als zwart scherm (0: nooit)
  --autostart=aan|uit    of het bij het aanmelden vanzelf start (uit)

Verder:
  --venstersysteem=WELK  %2 of auto (auto: het eerste
                         dat er is); voor wie start, niet voor wie doorgeeft
  --stand                hoe het ervoor staat
  --versie, -V           het versienummer
  --help, -h             deze tekst
)")
        .arg(vouw(soorten(), kHulpKolom), platform::windowSystemNames().join(QStringLiteral(", ")));
}

}  // namespace brixtel
