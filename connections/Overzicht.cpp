// SPDX-License-Identifier: MIT
#include "connections/Overzicht.h"

#include <unicode/uchar.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>

#include "connections/LsofTekst.h"

namespace brixtel {

namespace {

using namespace Qt::StringLiterals;
using Rij = std::array<QString, 3>;

// Whether a character in a name could control a terminal, reverse its writing direction, or
// take no ink. A space is none of these.
bool stuurt(char32_t teken) {
    constexpr char32_t kLegeBraille = 0x2800;
    if (teken == kLegeBraille ||
        u_hasBinaryProperty(static_cast<UChar32>(teken), UCHAR_DEFAULT_IGNORABLE_CODE_POINT))
        return true;
    switch (QChar::category(teken)) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return true;
        default:
            return false;
    }
}

QString leesbaar(const QString& tekst) {
    QList<uint> tekens = tekst.toUcs4();
    for (uint& teken : tekens)
        if (stuurt(teken)) teken = U'?';
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(tekens.constData()), tekens.size());
}

// Writes such characters in JSON as numeric escapes, so that names stay whole.
QByteArray metNummers(const QByteArray& json) {
    QString tekst;
    for (const char32_t teken : QString::fromUtf8(json).toUcs4()) {
        const QString een = QString::fromUcs4(&teken, 1);
        if (teken == U'\n' || !stuurt(teken)) {
            tekst += een;
            continue;
        }
        for (const QChar deel : een)
            tekst += QStringLiteral("\\u%1").arg(deel.unicode(), 4, 16, QLatin1Char('0'));
    }
    return tekst.toUtf8();
}

Rij rijVan(const Lijn& lijn) {
    QStringList programmas;
    for (const auto& programma : lijn.programmas)
        programmas << QString::fromStdString(programma);
    return {leesbaar(lijn.land.naam()), leesbaar(programmas.join(u", "_s)),
            QString::number(lijn.aantal)};
}

QJsonObject objectVan(const Lijn& lijn) {
    QJsonArray programmas;
    for (const auto& programma : lijn.programmas)
        programmas.append(QString::fromStdString(programma));
    return {{u"code"_s, QString::fromStdString(lijn.land.code)},
            {u"naam"_s, lijn.land.naam()},
            {u"breedte"_s, lijn.land.breedte},
            {u"lengte"_s, lijn.land.lengte},
            {u"programmas"_s, programmas},
            {u"aantal"_s, static_cast<qint64>(lijn.aantal)}};
}

// A number of degrees within plus or minus `grens`.
std::optional<double> graden(const QJsonValue& waarde, double grens) {
    if (!waarde.isDouble() || std::abs(waarde.toDouble()) > grens) return std::nullopt;
    return waarde.toDouble();
}

std::optional<std::vector<std::string>> teksten(const QJsonValue& waarde) {
    if (!waarde.isArray()) return std::nullopt;
    std::vector<std::string> lijst;
    for (const QJsonValue tekst : waarde.toArray()) {
        if (!tekst.isString()) return std::nullopt;
        lijst.push_back(tekst.toString().toStdString());
    }
    return lijst;
}

std::optional<Lijn> lijnVan(const QJsonObject& object) {
    const QJsonValue code = object[u"code"_s];
    const auto breedte = graden(object[u"breedte"_s], 90.0);
    const auto lengte = graden(object[u"lengte"_s], 180.0);
    auto programmas = teksten(object[u"programmas"_s]);
    // An `aantal` that is no whole number, or exceeds 64 bits, gives the default, which is
    // refused.
    const qint64 aantal = object[u"aantal"_s].toInteger(-1);
    if (!code.isString() || !breedte || !lengte || !programmas || aantal < 0) return std::nullopt;
    return Lijn{
        .land = {.code = code.toString().toStdString(), .breedte = *breedte, .lengte = *lengte},
        .programmas = std::move(*programmas),
        .aantal = aantal};
}

}  // namespace

QString alsTabel(const std::vector<Lijn>& lijnen) {
    std::vector<Rij> rijen{{u"Land"_s, u"Programma's"_s, u"Aantal"_s}};
    for (const Lijn& lijn : lijnen)
        rijen.push_back(rijVan(lijn));
    rijen.push_back({u"Totaal"_s, QString(), QString::number(totaalVan(lijnen))});

    std::array<qsizetype, 3> breedte{};
    for (const Rij& rij : rijen)
        for (std::size_t i = 0; i < rij.size(); ++i)
            breedte[i] = std::max(breedte[i], rij[i].size());
    QString tekst;
    for (const Rij& rij : rijen)
        tekst += rij[0].leftJustified(breedte[0]) + u"  "_s + rij[1].leftJustified(breedte[1]) +
                 u"  "_s + rij[2].rightJustified(breedte[2]) + u'\n';
    return tekst;
}

QByteArray alsJson(const std::vector<Lijn>& lijnen) {
    QJsonArray lijst;
    for (const Lijn& lijn : lijnen)
        lijst.append(objectVan(lijn));
    const QJsonObject alles{{u"totaal"_s, static_cast<qint64>(totaalVan(lijnen))},
                            {u"lijnen"_s, lijst}};
    return metNummers(QJsonDocument(alles).toJson(QJsonDocument::Indented));
}

std::optional<std::vector<Lijn>> leesJson(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    const QJsonValue lijst = document.object()[u"lijnen"_s];
    if (!lijst.isArray()) return std::nullopt;
    std::vector<Lijn> lijnen;
    for (const QJsonValue waarde : lijst.toArray()) {
        auto lijn = lijnVan(waarde.toObject());
        if (!lijn) return std::nullopt;
        lijnen.push_back(std::move(*lijn));
    }
    return lijnen;
}

}  // namespace brixtel
