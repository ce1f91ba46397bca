// SPDX-License-Identifier: MIT
#include "BrixtelSaver/SaverKeuze.h"

#include <gtest/gtest.h>

#include "tests/BrixtelSaver/Instellingen.h"

using brixtel::alleKeuzes;
using brixtel::EigenInstellingen;
using brixtel::keuzeUitRuw;
using brixtel::SaverInstellingen;
using brixtel::SaverKeuze;

namespace {

TEST(SaverKeuze, SixInOrderTheRotatingOneFirstAndTheLogoLast) {
    ASSERT_EQ(alleKeuzes.size(), 6U);
    EXPECT_EQ(alleKeuzes.front(), SaverKeuze::wisselend);
    EXPECT_EQ(alleKeuzes.back(), SaverKeuze::logo);
    EXPECT_EQ(sizeof(SaverKeuze), 1U);
}

TEST(SaverKeuze, RawValuesAndNames) {
    const std::pair<const char*, const char*> verwacht[] = {
        {"wisselend", "Steeds iets anders (elke minuut)"},
        {"regen", "Matrix-regen"},
        {"bol", "Wereldbol met verbindingen"},
        {"kubus", "Kubus van bits"},
        {"tunnel", "Matrix-tunnel"},
        {"logo", "Brixtel-logo"}};
    for (std::size_t i = 0; i < alleKeuzes.size(); ++i) {
        EXPECT_EQ(ruweWaarde(alleKeuzes[i]), QLatin1String(verwacht[i].first));
        EXPECT_EQ(naam(alleKeuzes[i]), QLatin1String(verwacht[i].second));
        EXPECT_EQ(keuzeUitRuw(ruweWaarde(alleKeuzes[i])), alleKeuzes[i]);
    }
}

TEST(SaverKeuze, OnlyTheWholeRawValueInItsOwnCaseCounts) {
    for (const char16_t* ruw : {u"Regen", u"", u"regen ", u"rege", u"REGEN", u"Matrix-regen"})
        EXPECT_FALSE(keuzeUitRuw(QStringView(ruw)));
}

TEST(SaverInstellingen, AFreshInstallationStartsInTheRotatingMode) {
    const EigenInstellingen eigen;
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    EXPECT_FALSE(QFile::exists(eigen.bestand()));  // reading writes nothing
}

TEST(SaverInstellingen, StoredInTheWrongCaseOrEmptyReadsAsRotating) {
    const EigenInstellingen eigen;
    for (const char* waarde : {"Regen", "", "toekomst", "\xff\xfe"}) {
        eigen.schrijf(QByteArray("[General]\nkeuze=") + waarde + '\n');
        EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend) << waarde;
    }
}

TEST(SaverInstellingen, ABadValueStaysUntilTheNextWriteReplacesIt) {
    const EigenInstellingen eigen;
    eigen.schrijf("[General]\nkeuze=hologram\n");
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    EXPECT_TRUE(eigen.lees().contains("hologram"));
    SaverInstellingen::zetKeuze(SaverKeuze::logo);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::logo);
    EXPECT_FALSE(eigen.lees().contains("hologram"));
}

TEST(SaverInstellingen, AfterSettingKubusAFreshReadGivesItAndTheStoreHoldsTheString) {
    const EigenInstellingen eigen;
    SaverInstellingen::zetKeuze(SaverKeuze::kubus);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::kubus);
    EXPECT_EQ(SaverInstellingen::opslag()->string(QStringLiteral("keuze")),
              QStringLiteral("kubus"));
    EXPECT_TRUE(eigen.lees().contains("keuze=kubus"));
}

TEST(SaverInstellingen, WithoutAStoreReadingIsRotatingAndWritingDoesNothing) {
    const EigenInstellingen eigen;
    // A folder that cannot be: below a file.
    eigen.schrijf("geen map");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(eigen.bestand() + QStringLiteral("/daaronder")));
    SaverInstellingen::zetKeuze(SaverKeuze::kubus);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    EXPECT_EQ(eigen.lees(), "geen map");
}

}  // namespace
