// SPDX-License-Identifier: MIT
#include "worlds/DrieSoort.h"

#include <gtest/gtest.h>

#include <QStringList>

using brixtel::alleSoorten;
using brixtel::DrieSoort;
using brixtel::soortUitRuw;

namespace {

QString tekst(const char* utf8) {
    return QString::fromUtf8(utf8);
}

TEST(DrieSoort, HasFourKindsInOrder) {
    QStringList namen;
    for (const DrieSoort soort : alleSoorten)
        namen << ruweWaarde(soort);
    EXPECT_EQ(namen.join(u' '), tekst("bol kubus tunnel logo"));
}

TEST(DrieSoort, DecodesExactlyTheFourRawValues) {
    EXPECT_EQ(soortUitRuw(u"logo"), DrieSoort::logo);
    for (const DrieSoort soort : alleSoorten)
        EXPECT_EQ(soortUitRuw(ruweWaarde(soort)), soort);
}

TEST(DrieSoort, ACapitalisedOrEmptyRawValueFails) {
    for (const char* fout : {"Bol", "", "BOL", " bol", "bol ", "wisselend", "regen"})
        EXPECT_EQ(soortUitRuw(tekst(fout)), std::nullopt) << fout;
}

TEST(DrieSoort, EncodesAsTheBareRawString) {
    EXPECT_EQ(ruweWaarde(DrieSoort::logo), tekst("logo"));
    for (const DrieSoort soort : alleSoorten)
        EXPECT_EQ(id(soort), ruweWaarde(soort));
}

TEST(DrieSoort, NameIsTheRawValueInUpperCase) {
    EXPECT_EQ(naam(DrieSoort::kubus), tekst("KUBUS"));
    EXPECT_EQ(naam(DrieSoort::bol), tekst("BOL"));
    EXPECT_EQ(naam(DrieSoort::tunnel), tekst("TUNNEL"));
    EXPECT_EQ(naam(DrieSoort::logo), tekst("LOGO"));
}

TEST(DrieSoort, ExplainsItselfInOneLine) {
    EXPECT_EQ(uitleg(DrieSoort::bol),
              tekst("de aarde van groene puntjes; de lijnen gaan naar de landen waar je Mac nu mee "
                    "praat"));
    EXPECT_EQ(uitleg(DrieSoort::kubus),
              tekst("een kubus van 343 nullen en enen die omspringen en golven"));
    EXPECT_EQ(uitleg(DrieSoort::tunnel), tekst("vlieg door een tunnel van matrix-cijfers"));
    EXPECT_EQ(uitleg(DrieSoort::logo), tekst("BRIXTEL in 3D-blokjes op een spiegelende vloer"));
}

}  // namespace
