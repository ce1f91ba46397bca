// SPDX-License-Identifier: MIT
#include "hosts/bureau/paneel/PaneelStaat.h"

#include <QCoreApplication>
#include <cmath>

#include "BrixtelSaver/SaverInstellingen.h"
#include "hosts/bureau/Autostart.h"
#include "hosts/bureau/ZwartSoort.h"

namespace brixtel {

namespace {

constexpr double kLuisterTijd = 0.05;  // seconds
constexpr double kLampDuur = 0.15;     // seconds that a beat lights the lamp
constexpr double kTeLaat = 0.5;        // seconds, after which a beat lights nothing
constexpr double kStappen = 50.0;      // of the meter; equal steps draw nothing

// The nearest hundredth. A slider's step is a product of its step size and a count, which
// leaves a rest in the last digits.
double opHonderdsten(double waarde) {
    return std::round(waarde * 100.0) / 100.0;
}

QString metHoofdletter(QString tekst) {
    if (!tekst.isEmpty()) tekst[0] = tekst[0].toUpper();
    return tekst;
}

QVariantMap optie(const QString& ruw, const QString& label) {
    return {{QStringLiteral("waarde"), ruw}, {QStringLiteral("label"), label}};
}

}  // namespace

PaneelStaat::PaneelStaat(Bureau& bureau, platform::MediaClock& klok)
    : bureau_(bureau),
      klok_(klok),
      saver_(SaverInstellingen::keuze()),
      autostart_([this] { meldAutostart({}); }) {
    stand_ = bureau_.stand().volg([this](const BureauStand&) {
        volgMuziek();
        Q_EMIT standChanged();
    });
}

PaneelStaat::~PaneelStaat() {
    stand_ = {};
    bureau_.luisterMee(false);
    bureau_.bewaar();
}

QString PaneelStaat::regenStatus() const {
    switch (stand().regenStand) {
        case RegenStand::uit:
            return QStringLiteral("uit");
        case RegenStand::aan:
            return QStringLiteral("aan");
        case RegenStand::geenCompositor:
        case RegenStand::schermbeveiliging:
            return QStringLiteral("wacht");
        case RegenStand::leeg:
            return QStringLiteral("leeg");
        case RegenStand::geenBovenlaag:
        case RegenStand::geenDoorklik:
            return QStringLiteral("kan niet");
    }
    return {};
}

QString PaneelStaat::regenMelding() const {
    const QString tekst = metHoofdletter(uitleg(stand().regenStand));
    return tekst.isEmpty() ? tekst : tekst + u'.';
}

QString PaneelStaat::rustStatus() const {
    const int minuten = stand().keuzes.rust;
    return minuten == 0 ? QStringLiteral("nooit") : QStringLiteral("%1 min").arg(minuten);
}

QString PaneelStaat::rustMelding() const {
    const QString tekst = metHoofdletter(stand().rustUitleg);
    return tekst.isEmpty() ? tekst : tekst + QStringLiteral(", dus er komt niets vanzelf.");
}

QString PaneelStaat::zwartStatus() const {
    return zwart() ? ruweWaarde(stand().soort) : QStringLiteral("uit");
}

QString PaneelStaat::soort() const {
    return ruweWaarde(stand().keuzes.soort);
}

QString PaneelStaat::soortUitleg() const {
    return metHoofdletter(uitleg(stand().keuzes.soort)) + u'.';
}

QVariantList PaneelStaat::soorten() const {
    QVariantList lijst;
    for (const ZwartSoort een : alleZwartSoorten())
        lijst << optie(ruweWaarde(een), naam(een));
    return lijst;
}

QString PaneelStaat::saver() const {
    return ruweWaarde(saver_);
}

QString PaneelStaat::saverNaam() const {
    return naam(saver_);
}

QVariantList PaneelStaat::saverKeuzes() const {
    QVariantList lijst;
    for (const SaverKeuze een : alleKeuzes)
        lijst << optie(ruweWaarde(een), ruweWaarde(een).toUpper());
    return lijst;
}

// --- the user's wishes ---

// Signals the change in any case, since the owner may refuse the wish.
void PaneelStaat::zetRegen(bool aan) {
    aan ? bureau_.toonRegen() : bureau_.sluitRegen();
    Q_EMIT standChanged();
}

void PaneelStaat::zetZwart(bool aan) {
    aan ? bureau_.toonZwart(stand().keuzes.soort) : bureau_.sluitZwart();
    Q_EMIT standChanged();
}

template <typename T>
void PaneelStaat::kies(T BureauKeuzes::*keuze, const T& waarde) {
    BureauKeuzes keuzes = stand().keuzes;
    keuzes.*keuze = waarde;
    bureau_.zetKeuzes(keuzes);
}

void PaneelStaat::zetDichtheid(double dichtheid) {
    kies(&BureauKeuzes::dichtheid, opHonderdsten(dichtheid));
}

void PaneelStaat::zetSnelheid(double snelheid) {
    kies(&BureauKeuzes::snelheid, opHonderdsten(snelheid));
}

void PaneelStaat::zetSoort(const QString& soort) {
    ZwartSoort gekozen;
    if (leesSoort(soort, gekozen)) kies(&BureauKeuzes::soort, gekozen);
}

void PaneelStaat::zetVoorbeeld(bool aan) {
    kies(&BureauKeuzes::voorbeeld, aan);
}

void PaneelStaat::zetMuziek(bool aan) {
    kies(&BureauKeuzes::muziek, aan);
}

QVariantList PaneelStaat::flitsen() const {
    QVariantList lijst;
    lijst << optie(ruweWaarde(Flits::gewoon), QStringLiteral("Gewoon"))
          << optie(ruweWaarde(Flits::zacht), QStringLiteral("Zacht"))
          << optie(ruweWaarde(Flits::uit), QStringLiteral("Uit"));
    return lijst;
}

void PaneelStaat::zetFlits(const QString& flits) {
    if (const auto gekozen = flitsUitRuw(flits)) kies(&BureauKeuzes::flits, *gekozen);
}

void PaneelStaat::zetRust(double minuten) {
    kies(&BureauKeuzes::rust, static_cast<int>(std::lround(minuten)));
}

void PaneelStaat::zetAutostart(bool aan) {
    const QString mis = Autostart::zet(aan, QCoreApplication::applicationFilePath());
    autostart_.kijk();
    meldAutostart(mis.isEmpty() ? mis : QStringLiteral("Dit blijft zoals het was: %1.").arg(mis));
}

// Signals the change in any case, since the entry may not be writable.
void PaneelStaat::meldAutostart(const QString& mis) {
    autostartMelding_ = mis;
    Q_EMIT autostartChanged();
}

void PaneelStaat::zetSaver(const QString& keuze) {
    const auto gekozen = keuzeUitRuw(keuze);
    if (!gekozen || gekozen == saver_) return;
    SaverInstellingen::zetKeuze(*gekozen);
    saver_ = SaverInstellingen::keuze();
    Q_EMIT saverChanged();
}

void PaneelStaat::herlees() {
    autostart_.kijk();
    const SaverKeuze nu = SaverInstellingen::keuze();
    if (nu == saver_) return;
    saver_ = nu;
    Q_EMIT saverChanged();
}

// --- music ---

void PaneelStaat::zetBekeken(bool bekeken) {
    if (bekeken == bekeken_) return;
    bekeken_ = bekeken;
    volgMuziek();
}

void PaneelStaat::volgMuziek() {
    const bool volgt = bekeken_ && muziek();
    if (volgt == luisterKlok_.isValid()) return;
    if (volgt)
        luisterKlok_ = platform::Timer(klok_, {.interval = kLuisterTijd, .repeats = true},
                                       [this] { luister(); });
    else
        luisterKlok_ = platform::Timer();
    bureau_.luisterMee(volgt);
    luister();
}

void PaneelStaat::luister() {
    Geluid nu;
    if (luisterKlok_.isValid()) {
        const auto gehoord = bureau_.muziek().stand();
        nu.zonder = bureau_.muziek().isZonderServer();
        if (gehoord) {
            nu.niveau = std::round(gehoord->level * kStappen) / kStappen;
            // A beat lights the lamp from when it is first seen, so that a late beat shows
            // too.
            if (gehoord->beat != beat_ && gehoord->vertraging < kTeLaat)
                lampTot_ = klok_.now() + kLampDuur;
            beat_ = gehoord->beat;
            nu.slag = klok_.now() < lampTot_;
        }
    }
    if (nu == geluid_) return;
    geluid_ = nu;
    Q_EMIT geluidChanged();
}

}  // namespace brixtel
