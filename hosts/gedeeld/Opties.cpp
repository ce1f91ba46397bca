// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Opties.h"

#include <QLocale>
#include <cmath>

#include "hosts/gedeeld/Melding.h"

namespace brixtel {

Fout foutVan(QLatin1String programma, const QString& wat) {
    return {QStringLiteral("%1: %2 (--help toont wat er kan)").arg(programma, eenRegel(wat))};
}

std::optional<double> leesGetal(const QString& tekst, double laag, double hoog) {
    bool goed = false;
    const double getal = tekst.toDouble(&goed);
    if (!goed || !std::isfinite(getal) || getal < laag || getal > hoog) return std::nullopt;
    return getal;
}

QString zetGetal(std::optional<double>& doel, const QString& waarde, QLatin1String naam,
                 double laag, double hoog) {
    doel = leesGetal(waarde, laag, hoog);
    if (doel) return {};
    // Numbers are written out: a year of seconds as a power of ten is hard to read.
    const auto voluit = [](double grens) {
        return QString::number(grens, 'f', QLocale::FloatingPointShortest);
    };
    return QStringLiteral("--%1 wil een getal van %2 tot en met %3, niet '%4'")
        .arg(naam, voluit(laag), voluit(hoog), waarde);
}

QString zetGetal(double& doel, const QString& waarde, QLatin1String naam, double laag,
                 double hoog) {
    std::optional<double> getal;
    QString fout = zetGetal(getal, waarde, naam, laag, hoog);
    doel = getal.value_or(doel);
    return fout;
}

}  // namespace brixtel
