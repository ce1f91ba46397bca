// SPDX-License-Identifier: MIT
// The list of mutants still fits the sources.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <set>

#include "tests/support/Paden.h"

namespace {

struct Mutant {
    QString naam, breekt, proef, bestand, was, wordt;
};

QString letterlijk(const QString& tekst) {
    QString uit;
    for (qsizetype i = 0; i < tekst.size(); ++i) {
        const bool escape = tekst.at(i) == u'\\' && i + 1 < tekst.size();
        const QChar teken = escape ? tekst.at(++i) : tekst.at(i);
        uit += escape && teken == u'n' ? QChar(u'\n') : teken;
    }
    return uit;
}

QString inhoudVan(const QString& pad) {
    QFile bestand(pad);
    return bestand.open(QIODevice::ReadOnly) ? QString::fromUtf8(bestand.readAll()) : QString();
}

std::vector<Mutant> alleMutanten() {
    const QDir map(QStringLiteral(BRIXTEL_SOURCE_DIR "/tests/mutanten/lijst"));
    std::vector<Mutant> alle;
    for (const QString& naam : map.entryList({QStringLiteral("*.txt")})) {
        Mutant m;
        for (const QString& regel : inhoudVan(map.filePath(naam)).split(u'\n')) {
            const QString woord = regel.section(u' ', 0, 0);
            const QString rest = regel.mid(woord.size() + 1);
            if (woord == u"mutant") m = {.naam = rest};
            if (woord == u"breekt") m.breekt = rest;
            if (woord == u"proef") m.proef = rest;
            if (woord == u"bestand") m.bestand = rest;
            if (woord == u"was") m.was = letterlijk(rest);
            if (woord != u"wordt") continue;
            m.wordt = letterlijk(rest);
            alle.push_back(m);
        }
    }
    return alle;
}

TEST(Mutanten, EachChangesExactlyOnePlaceOfItsFile) {
    const auto alle = alleMutanten();
    EXPECT_GE(alle.size(), 290U);
    std::set<QString> namen;
    for (const Mutant& m : alle) {
        EXPECT_TRUE(namen.insert(m.naam).second) << qPrintable(m.naam);
        EXPECT_FALSE(m.breekt.isEmpty() || m.was.isEmpty()) << qPrintable(m.naam);
        EXPECT_TRUE(m.proef.startsWith(QLatin1String("test_"))) << qPrintable(m.naam);
        EXPECT_NE(m.was, m.wordt) << qPrintable(m.naam);
        const QString tekst = inhoudVan(QStringLiteral(BRIXTEL_SOURCE_DIR "/") + m.bestand);
        EXPECT_EQ(tekst.count(m.was), 1) << qPrintable(m.naam) << " in " << qPrintable(m.bestand);
    }
}

}  // namespace
