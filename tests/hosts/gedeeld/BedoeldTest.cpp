// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Bedoeld.h"

#include <gtest/gtest.h>

using brixtel::afstand;
using brixtel::bedoeld;

namespace {

int ver(const char* een, const char* ander) {
    const int heen = afstand(QString::fromUtf8(een), QString::fromUtf8(ander));
    EXPECT_EQ(heen, afstand(QString::fromUtf8(ander), QString::fromUtf8(een))) << een;
    return heen;
}

TEST(Afstand, IsTheNumberOfLettersThatDiffer) {
    EXPECT_EQ(ver("", ""), 0);
    EXPECT_EQ(ver("regen", "regen"), 0);
    EXPECT_EQ(ver("", "bol"), 3);
    EXPECT_EQ(ver("keuz", "keuze"), 1);
    EXPECT_EQ(ver("keuuze", "keuze"), 1);
    EXPECT_EQ(ver("keure", "keuze"), 1);
    EXPECT_EQ(ver("venster", "zandbak"), 6);
}

TEST(Afstand, OfTwoNeighboursThatChangedPlacesIsOne) {
    EXPECT_EQ(ver("fsp", "fps"), 1);
    EXPECT_EQ(ver("versoin", "version"), 1);
    EXPECT_EQ(ver("abc", "cba"), 2);
}

TEST(Bedoeld, IsTheNearestAndTheFirstOfEquals) {
    const QStringList alle{QStringLiteral("meet"), QStringLiteral("maat"), QStringLiteral("na"),
                           QStringLiteral("venster")};
    EXPECT_EQ(bedoeld(QStringLiteral("venstr"), alle), QStringList{QStringLiteral("venster")});
    EXPECT_EQ(bedoeld(QStringLiteral("maatt"), alle), QStringList{QStringLiteral("maat")});
    EXPECT_EQ(bedoeld(QStringLiteral("meat"), alle), QStringList{QStringLiteral("meet")});
    EXPECT_EQ(bedoeld(QStringLiteral("maat"), alle), QStringList{QStringLiteral("maat")});
}

TEST(Bedoeld, IsWhatBeginsWithTheWordUnlessThatIsMuch) {
    QStringList alle{QStringLiteral("sluit-regen"), QStringLiteral("sluit-zwart"),
                     QStringLiteral("sluit-alles"), QStringLiteral("dichtheid")};
    EXPECT_EQ(bedoeld(QStringLiteral("dich"), alle), QStringList{QStringLiteral("dichtheid")});
    EXPECT_EQ(bedoeld(QStringLiteral("di"), alle), QStringList{QStringLiteral("dichtheid")});
    EXPECT_EQ(bedoeld(QStringLiteral("sluit"), alle), alle.mid(0, 3));
    EXPECT_TRUE(bedoeld(QStringLiteral("d"), alle).isEmpty());
    alle << QStringLiteral("sluit-nog-een");
    EXPECT_TRUE(bedoeld(QStringLiteral("sluit"), alle).isEmpty());
}

TEST(Bedoeld, AllowsTwoEditsInFiveLettersAndNoMore) {
    const QStringList alle{QStringLiteral("keuze"), QStringLiteral("maat")};
    EXPECT_EQ(bedoeld(QStringLiteral("keus"), alle), QStringList{QStringLiteral("keuze")});
    EXPECT_TRUE(bedoeld(QStringLiteral("klas"), alle).isEmpty());
    EXPECT_TRUE(bedoeld(QStringLiteral("moot"), alle).isEmpty());
}

TEST(Bedoeld, IsNothingWhereNothingIsNear) {
    const QStringList alle{QStringLiteral("fps"), QStringLiteral("V")};
    EXPECT_TRUE(bedoeld(QStringLiteral("onzin"), alle).isEmpty());
    EXPECT_TRUE(bedoeld(QStringLiteral("fzz"), alle).isEmpty());
    EXPECT_TRUE(bedoeld(QStringLiteral("x"), alle).isEmpty());
    EXPECT_TRUE(bedoeld({}, alle).isEmpty());
}

}  // namespace
