// SPDX-License-Identifier: MIT
#include "connections/Overzicht.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <limits>

using brixtel::alsJson;
using brixtel::alsTabel;
using brixtel::leesJson;
using brixtel::Lijn;

namespace {

std::vector<Lijn> voorbeeld() {
    return {{{"US", 39.75, -98.5}, {"Chrome", "Safari"}, 12},
            {{"DE", 51.03, 10.35}, {"Mijn App"}, 1}};
}

TEST(Overzicht, TheTableGivesCountryProgramsAndNumber) {
    EXPECT_EQ(alsTabel(voorbeeld()).toStdString(),
              "Land              Programma's     Aantal\n"
              "Verenigde Staten  Chrome, Safari      12\n"
              "Duitsland         Mijn App             1\n"
              "Totaal                                13\n");
}

TEST(Overzicht, WithNothingMeasuredTheTableIsEmpty) {
    EXPECT_EQ(alsTabel({}).toStdString(),
              "Land    Programma's  Aantal\n"
              "Totaal                    0\n");
}

TEST(Overzicht, ANameCannotSteerTheTerminal) {
    const QString tabel = alsTabel({{{"NL"}, {"a\x1B[2J\r\x7F\xC2\x9B"}, 1}});
    EXPECT_TRUE(tabel.contains(QStringLiteral("a?[2J???"))) << tabel.toStdString();
}

// A name can neither write backwards, nor hide, nor break the line.
TEST(Overzicht, ANameCannotTurnTheTextAround) {
    QString vreemd;
    for (const char32_t teken :
         {0x202AU, 0x202BU, 0x202CU, 0x202DU, 0x202EU, 0x2066U, 0x2067U,  0x2068U, 0x2069U,
          0x200EU, 0x200FU, 0x061CU, 0x200BU, 0x2028U, 0x2029U, 0xE0001U, 0x3164U, 0xFFA0U,
          0x115FU, 0x1160U, 0x034FU, 0x17B4U, 0x180BU, 0xFE0FU, 0x2800U,  0xE0100U})
        vreemd += QString::fromUcs4(&teken, 1);
    const std::vector<Lijn> lijnen{{{"NL"}, {("a" + vreemd.toStdString() + "é😀")}, 1}};
    const QString tabel = alsTabel(lijnen);
    EXPECT_TRUE(tabel.contains(u'a' + QString(26, u'?') + QStringLiteral("é😀")))
        << tabel.toStdString();
    const QByteArray json = alsJson(lijnen);
    EXPECT_FALSE(json.contains("\u202E"));
    EXPECT_TRUE(json.contains("\\u202e"));
    EXPECT_FALSE(json.contains("\u3164"));
    EXPECT_TRUE(json.contains("\\u3164"));
    EXPECT_TRUE(json.contains("\\udb40\\udc01"));
    EXPECT_EQ(leesJson(json).value().front().programmas, lijnen.front().programmas);
}

TEST(Overzicht, TheJsonSaysAllThereIs) {
    const auto document = QJsonDocument::fromJson(alsJson(voorbeeld()));
    EXPECT_EQ(document, QJsonDocument::fromJson(R"({
        "totaal": 13,
        "lijnen": [
            {"code": "US", "naam": "Verenigde Staten", "breedte": 39.75, "lengte": -98.5,
             "programmas": ["Chrome", "Safari"], "aantal": 12},
            {"code": "DE", "naam": "Duitsland", "breedte": 51.03, "lengte": 10.35,
             "programmas": ["Mijn App"], "aantal": 1}]})"));
}

TEST(Overzicht, WithNothingMeasuredTheJsonHasNoLines) {
    EXPECT_EQ(QJsonDocument::fromJson(alsJson({})),
              QJsonDocument::fromJson(R"({"totaal": 0, "lijnen": []})"));
}

TEST(Overzicht, TheJsonReadsBackAsItWas) {
    auto lijnen = voorbeeld();
    lijnen[0].land.breedte = static_cast<double>(39.89F);  // as the table has them
    lijnen[0].aantal = std::numeric_limits<std::int64_t>::max() - 1;
    lijnen[1].programmas = {"", "\"aan\\halen\"", "één 漢 😀"};
    EXPECT_EQ(leesJson(alsJson(lijnen)), lijnen);
    EXPECT_EQ(leesJson(alsJson({})), std::vector<Lijn>{});
}

TEST(Overzicht, JsonWrittenByHandNeedsNoNameOrTotal) {
    EXPECT_EQ(leesJson(R"({"lijnen": [{"code": "NL", "breedte": 52, "lengte": 5,
                                       "programmas": [], "aantal": 3}]})"),
              (std::vector<Lijn>{{{"NL", 52.0, 5.0}, {}, 3}}));
}

TEST(Overzicht, JsonOfAnotherKindIsNothing) {
    EXPECT_FALSE(leesJson(""));
    EXPECT_FALSE(leesJson("[]"));
    EXPECT_FALSE(leesJson("{}"));
    EXPECT_FALSE(leesJson(R"({"lijnen": 3})"));
    EXPECT_FALSE(leesJson(R"({"lijnen": [3]})"));
    EXPECT_FALSE(leesJson(R"({"lijnen": []} x)"));
}

TEST(Overzicht, AJsonLineThatLacksOrMistakesAFieldIsNothing) {
    const auto lees = [](const QByteArray& velden) {
        return leesJson(R"({"lijnen": [{)" + velden + "}]}");
    };
    const QByteArray code = R"("code": "NL")", breedte = R"(, "breedte": 1)",
                     lengte = R"(, "lengte": 1)", namen = R"(, "programmas": ["a"])",
                     aantal = R"(, "aantal": 1)";
    EXPECT_TRUE(lees(code + breedte + lengte + namen + aantal));
    EXPECT_FALSE(lees(R"("naam": "x")" + breedte + lengte + namen + aantal));
    EXPECT_FALSE(lees(code + lengte + namen + aantal));
    EXPECT_FALSE(lees(code + breedte + namen + aantal));
    EXPECT_FALSE(lees(code + breedte + lengte + aantal));
    EXPECT_FALSE(lees(code + breedte + lengte + namen));
    EXPECT_FALSE(lees(R"("code": 3)" + breedte + lengte + namen + aantal));
    EXPECT_FALSE(lees(code + R"(, "breedte": "1")" + lengte + namen + aantal));
    EXPECT_FALSE(lees(code + R"(, "breedte": 90.1)" + lengte + namen + aantal));
    EXPECT_FALSE(lees(code + breedte + R"(, "lengte": -181)" + namen + aantal));
    EXPECT_FALSE(lees(code + breedte + lengte + R"(, "programmas": [1])" + aantal));
    EXPECT_FALSE(lees(code + breedte + lengte + R"(, "programmas": "a")" + aantal));
    EXPECT_FALSE(lees(code + breedte + lengte + namen + R"(, "aantal": -1)"));
    EXPECT_FALSE(lees(code + breedte + lengte + namen + R"(, "aantal": 1.5)"));
    EXPECT_FALSE(lees(code + breedte + lengte + namen + R"(, "aantal": 1e30)"));
}

}  // namespace
