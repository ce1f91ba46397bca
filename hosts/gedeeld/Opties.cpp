// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Opties.h"

#include <QLocale>
#include <cmath>

#include "hosts/gedeeld/Bedoeld.h"
#include "hosts/gedeeld/Melding.h"
#include "hosts/gedeeld/Opsomming.h"

namespace brixtel {

Fout foutVan(QLatin1String programma, const QString& wat) {
    return {QStringLiteral("%1: %2 (--help toont wat er kan)").arg(programma, eenRegel(wat))};
}

QString optieNaam(const QString& woord) {
    if (!woord.startsWith(u'-')) return {};
    const qsizetype streepjes = woord.startsWith(QLatin1String("--")) ? 2 : 1;
    return woord.section(u'=', 0, 0).mid(streepjes);
}

QString bedoeldVraag(const QString& woord, const QStringList& woorden, QLatin1String voor) {
    QStringList dichtbij = bedoeld(woord, woorden);
    for (QString& een : dichtbij)
        een.prepend(voor);
    if (dichtbij.isEmpty()) return {};
    return QStringLiteral("; bedoelt u %1?").arg(opsomming(dichtbij, QLatin1String("of")));
}

QString onbekend(const QString& woord, const QStringList& namen) {
    // A word without dashes may be a mistyped option too.
    const bool isOptie = woord.size() > 1 && woord.startsWith(u'-');
    return (isOptie ? QStringLiteral("onbekende optie '%1'") : QStringLiteral("'%1' is geen optie"))
               .arg(woord) +
           bedoeldVraag(isOptie ? optieNaam(woord) : woord, namen, QLatin1String("--"));
}

QString kentNiet(QLatin1String naam, const QStringList& woorden, const QString& waarde) {
    return QStringLiteral("--%1 kent %2, niet '%3'")
               .arg(naam, opsomming(woorden, QLatin1String("en")), waarde) +
           bedoeldVraag(waarde, woorden);
}

std::optional<double> leesGetal(const QString& tekst, double laag, double hoog) {
    bool goed = false;
    const double getal = QString(tekst).replace(u',', u'.').toDouble(&goed);
    if (!goed || !std::isfinite(getal) || getal < laag || getal > hoog) return std::nullopt;
    return getal;
}

std::optional<int> leesHeelGetal(const QString& tekst, int laag, int hoog) {
    static const QRegularExpression cijfers(QStringLiteral("\\A[0-9]+\\z"));
    bool goed = false;
    const int getal = tekst.toInt(&goed);
    if (!goed || !cijfers.match(tekst).hasMatch() || getal < laag || getal > hoog)
        return std::nullopt;
    return getal;
}

QString zetGetal(std::optional<double>& doel, const QString& waarde, QLatin1String naam,
                 double laag, double hoog) {
    doel = leesGetal(waarde, laag, hoog);
    if (doel) return {};
    // Numbers are written out: a year of seconds as a power of ten is hard to read.
    const auto voluit = [](double grens) {
        return QString::number(grens, 'f', QLocale::FloatingPointShortest).replace(u'.', u',');
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

QString zetNaam(QString& doel, const QString& waarde, QLatin1String naam,
                const QStringList& namen) {
    const QString automatisch = QStringLiteral("auto");
    doel = waarde == automatisch ? QString() : waarde;
    if (doel.isEmpty() ? waarde == automatisch : namen.contains(waarde)) return {};
    return kentNiet(naam, namen + QStringList(automatisch), waarde);
}

}  // namespace brixtel
