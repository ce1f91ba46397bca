// SPDX-License-Identifier: MIT
#include "hosts/bureau/BureauInstellingen.h"

#include <cerrno>

#include "hosts/bureau/ZwartSoort.h"
#include "hosts/gedeeld/Opties.h"
#include "platform/session/Preferences.h"

namespace brixtel {

namespace {
const QLatin1String kDichtheid("dichtheid");
const QLatin1String kSnelheid("snelheid");
const QLatin1String kMuziek("muziek");
const QLatin1String kFlits("flits");
const QLatin1String kSoort("soort");
const QLatin1String kVoorbeeld("voorbeeld");
const QLatin1String kRust("rust");
const QLatin1String kAan("aan");
const QLatin1String kUit("uit");
constexpr double kZacht = 0.35;
constexpr Flits kFlitsen[] = {Flits::gewoon, Flits::zacht, Flits::uit};
}  // namespace

QString ruweWaarde(Flits flits) {
    switch (flits) {
        case Flits::gewoon:
            return QStringLiteral("gewoon");
        case Flits::zacht:
            return QStringLiteral("zacht");
        case Flits::uit:
            return QStringLiteral("uit");
    }
    return {};
}

std::optional<Flits> flitsUitRuw(const QString& ruw) {
    for (const Flits flits : kFlitsen)
        if (ruweWaarde(flits) == ruw) return flits;
    return std::nullopt;
}

double flitsDeel(Flits flits) {
    if (flits == Flits::uit) return 0.0;
    return flits == Flits::zacht ? kZacht : 1.0;
}

BureauKeuzes BureauInstellingen::lees() {
    BureauKeuzes keuzes;
    const auto winkel = platform::Preferences::forModule(moduleNaam);
    if (!winkel) return keuzes;
    const auto getal = [&](QLatin1String sleutel, double laag, double hoog, double anders) {
        return leesGetal(winkel->string(sleutel).value_or(QString()), laag, hoog).value_or(anders);
    };
    keuzes.dichtheid = getal(kDichtheid, 0.0, 1.0, keuzes.dichtheid);
    keuzes.snelheid = getal(kSnelheid, kLangzaamst, kSnelst, keuzes.snelheid);
    keuzes.muziek = winkel->string(kMuziek) == kAan;
    keuzes.flits = flitsUitRuw(winkel->string(kFlits).value_or(QString())).value_or(keuzes.flits);
    keuzes.soort = soortUitRuw(winkel->string(kSoort).value_or(QString()));
    keuzes.voorbeeld = winkel->string(kVoorbeeld) != kUit;
    keuzes.rust = leesHeelGetal(winkel->string(kRust).value_or(QString()), 0, kLangsteRust)
                      .value_or(keuzes.rust);
    return keuzes;
}

int BureauInstellingen::bewaar(const BureauKeuzes& keuzes) {
    const auto winkel = platform::Preferences::forModule(moduleNaam);
    if (!winkel) return ENOENT;
    winkel->setString(kDichtheid, QString::number(keuzes.dichtheid));
    winkel->setString(kSnelheid, QString::number(keuzes.snelheid));
    winkel->setString(kMuziek, keuzes.muziek ? kAan : kUit);
    winkel->setString(kFlits, ruweWaarde(keuzes.flits));
    winkel->setString(kSoort, ruweWaarde(keuzes.soort));
    winkel->setString(kVoorbeeld, keuzes.voorbeeld ? kAan : kUit);
    winkel->setString(kRust, QString::number(keuzes.rust));
    return winkel->synchronize();
}

}  // namespace brixtel
