// SPDX-License-Identifier: MIT
#include "hosts/bureau/BureauDienst.h"

#include <cmath>
#include <utility>

#include "hosts/bureau/BureauXml.h"
#include "hosts/bureau/ZwartSoort.h"
#include "hosts/gedeeld/Opsomming.h"
#include "platform/time/Queue.h"

namespace brixtel {

namespace {

// An answer for the error `mis`; empty is success.
BusAntwoord afloop(const QString& mis) {
    if (mis.isEmpty()) return QVariantList();
    return BusFout{QStringLiteral("org.freedesktop.DBus.Error.Failed"), mis};
}

// An answer for a choice that holds; `mis` says why it is not stored, and is empty where it
// is.
BusAntwoord naKeuze(const QString& mis) {
    if (mis.isEmpty()) return QVariantList();
    return BusFout{kNietBewaard, mis};
}

QString voluit(const QString& naam) {
    return kDienstNaam + u'.' + naam;
}

QVariantMap eigenschappenVan(const BureauStand& stand) {
    return {
        {voluit(QStringLiteral("ZwartAan")), stand.zwart},
        {voluit(QStringLiteral("ZwartSoort")), stand.zwart ? ruweWaarde(stand.soort) : QString()},
        {voluit(QStringLiteral("RegenAan")), stand.regen},
        {voluit(QStringLiteral("RegenStand")), ruweWaarde(stand.regenStand)},
        {voluit(QStringLiteral("RegenUitleg")), uitleg(stand.regenStand)},
        {voluit(QStringLiteral("Dichtheid")), stand.keuzes.dichtheid},
        {voluit(QStringLiteral("Snelheid")), stand.keuzes.snelheid},
        {voluit(QStringLiteral("Muziek")), stand.keuzes.muziek},
        {voluit(QStringLiteral("Rust")), stand.keuzes.rust},
        {voluit(QStringLiteral("RustUitleg")), stand.rustUitleg},
        {voluit(QStringLiteral("Versie")), QStringLiteral(BRIXTEL_VERSION)}};
}

}  // namespace

QString ruweWaarde(RegenStand stand) {
    switch (stand) {
        case RegenStand::uit:
            return QStringLiteral("uit");
        case RegenStand::aan:
            return QStringLiteral("aan");
        case RegenStand::geenCompositor:
            return QStringLiteral("geen-compositor");
        case RegenStand::schermbeveiliging:
            return QStringLiteral("schermbeveiliging");
        case RegenStand::leeg:
            return QStringLiteral("leeg");
        case RegenStand::geenBovenlaag:
            return QStringLiteral("geen-bovenlaag");
        case RegenStand::geenDoorklik:
            return QStringLiteral("geen-doorklik");
    }
    return {};
}

BureauDienst::BureauDienst(Bureau& bureau, BusAansluiting& bus, BureauDaden daden)
    : bureau_(bureau), bus_(bus), daden_(std::move(daden)), methoden_(methoden()) {
    bus_.bied({.pad = kDienstPad,
               .beschrijving = QString::fromUtf8(kBureauXml),
               .doe = methoden_,
               .eigenschappen = eigenschappenVan(bureau.stand().waarde())});
    stand_ = bureau.stand().volg([this](const BureauStand& stand) {
        bus_.zetEigenschappen(kDienstPad, eigenschappenVan(stand));
    });
}

BusAntwoord BureauDienst::voerUit(const QString& methode, const QVariantList& waarden) {
    return methoden_.value(voluit(methode))(waarden);
}

QHash<QString, BusObject::Doe> BureauDienst::methoden() {
    const auto muziek = [this](const QVariantList& waarden) -> BusAntwoord {
        bureau_.kies(&BureauKeuzes::muziek, waarden.at(0).toBool());
        return naKeuze(bureau_.bewaarMis());
    };
    const auto rust = [this](const QVariantList& waarden) -> BusAntwoord {
        const int minuten = waarden.at(0).toInt();
        if (minuten < 0 || minuten > BureauInstellingen::kLangsteRust)
            return verkeerdeWaarde(
                QStringLiteral("de rust is een aantal minuten van 0 tot en met %1, niet %2")
                    .arg(BureauInstellingen::kLangsteRust)
                    .arg(minuten));
        bureau_.kies(&BureauKeuzes::rust, minuten);
        return naKeuze(bureau_.bewaarMis());
    };
    const auto stop = [this](const QVariantList&) -> BusAntwoord {
        platform::runOnMainQueue(daden_.stop);
        return QVariantList();
    };
    const auto paneel = [this](const QVariantList&) { return afloop(daden_.toonPaneel()); };
    return {
        {voluit(QStringLiteral("ToonPaneel")), paneel},
        {voluit(QStringLiteral("ToonZwart")), metSoort(&Bureau::toonZwart)},
        {voluit(QStringLiteral("SluitZwart")), zonder(&Bureau::sluitZwart)},
        {voluit(QStringLiteral("WisselZwart")), metSoort(&Bureau::wisselZwart)},
        {voluit(QStringLiteral("ToonRegen")), regen(&Bureau::toonRegen)},
        {voluit(QStringLiteral("SluitRegen")), zonder(&Bureau::sluitRegen)},
        {voluit(QStringLiteral("WisselRegen")), regen(&Bureau::wisselRegen)},
        {voluit(QStringLiteral("SluitAlles")), zonder(&Bureau::sluitAlles)},
        {voluit(QStringLiteral("ZetDichtheid")),
         metGetal(&BureauKeuzes::dichtheid, 0.0, 1.0, QStringLiteral("de dichtheid"))},
        {voluit(QStringLiteral("ZetSnelheid")),
         metGetal(&BureauKeuzes::snelheid, BureauInstellingen::kLangzaamst,
                  BureauInstellingen::kSnelst, QStringLiteral("de snelheid"))},
        {voluit(QStringLiteral("ZetMuziek")), muziek},
        {voluit(QStringLiteral("ZetRust")), rust},
        {voluit(QStringLiteral("Stop")), stop},
    };
}

BusObject::Doe BureauDienst::zonder(void (Bureau::*doe)()) {
    return [this, doe](const QVariantList&) -> BusAntwoord {
        (bureau_.*doe)();
        return QVariantList();
    };
}

BusObject::Doe BureauDienst::regen(void (Bureau::*doe)()) {
    return [this, doe](const QVariantList&) -> BusAntwoord {
        (bureau_.*doe)();
        return afloop(bureau_.regenWeigering());
    };
}

BusObject::Doe BureauDienst::metSoort(void (Bureau::*doe)(std::optional<DrieSoort>)) {
    return [this, doe](const QVariantList& waarden) -> BusAntwoord {
        std::optional<DrieSoort> soort;
        if (!leesSoort(waarden.at(0).toString(), soort))
            return verkeerdeWaarde(
                QStringLiteral("het zwarte scherm kent %1, niet '%2'")
                    .arg(opsomming(zwartWoorden(), QLatin1String("en")), waarden.at(0).toString()));
        const QString beletsel = bureau_.zwartBeletsel();
        (bureau_.*doe)(soort);
        return afloop(beletsel);
    };
}

BusObject::Doe BureauDienst::metGetal(double BureauKeuzes::*keuze, double laag, double hoog,
                                      const QString& wat) {
    return [=, this](const QVariantList& waarden) -> BusAntwoord {
        const double getal = waarden.at(0).toDouble();
        // A NaN lies in no range.
        if (!(getal >= laag && getal <= hoog))
            return verkeerdeWaarde(QStringLiteral("%1 is een getal van %2 tot en met %3, niet %4")
                                       .arg(wat)
                                       .arg(laag)
                                       .arg(hoog)
                                       .arg(getal));
        bureau_.kies(keuze, getal);
        return naKeuze(bureau_.bewaarMis());
    };
}

}  // namespace brixtel
