// SPDX-License-Identifier: MIT
// The rotation's choices, by their numbers over fixed seeds. Each bound is four standard
// deviations of an even choice.
#include <map>

#include "tests/BrixtelSaver/SaverOpstelling.h"

using brixtel::alleScenes;
using brixtel::SaverKeuze;

namespace {

class Lot : public steun::SaverView {};

TEST_F(Lot, TheFirstSceneIsEachOfTheFiveEvenly) {
    brixtel::SaverInstellingen::zetKeuze(SaverKeuze::wisselend);
    const auto view = maak();
    std::map<SaverKeuze, int> eerste;
    constexpr int kZaden = 1000;
    for (int zaad = 0; zaad < kZaden; ++zaad) {
        toeval = platform::RandomSource(static_cast<std::uint64_t>(zaad));
        view->startAnimation();
        ASSERT_TRUE(view->huidige());
        ++eerste[*view->huidige()];
    }
    ASSERT_EQ(eerste.size(), alleScenes.size());
    for (const auto& [keuze, aantal] : eerste)
        EXPECT_NEAR(aantal, kZaden / 5, 50) << qPrintable(ruweWaarde(keuze));
}

// A start may show what the start before it showed: of each scene a fifth of the times.
TEST_F(Lot, TheFirstSceneDoesNotDependOnTheOneBefore) {
    const auto view = gestart(SaverKeuze::wisselend);
    std::map<std::pair<SaverKeuze, SaverKeuze>, int> paren;
    constexpr int kStarts = 1250;
    for (int keer = 0; keer < kStarts; ++keer) {
        const auto voor = *view->huidige();
        view->startAnimation();
        ++paren[{voor, *view->huidige()}];
    }
    ASSERT_EQ(paren.size(), 25U);
    for (const auto& [paar, aantal] : paren)
        EXPECT_NEAR(aantal, kStarts / 25, 28)
            << qPrintable(ruweWaarde(paar.first)) << ", " << qPrintable(ruweWaarde(paar.second));
}

TEST_F(Lot, TicksPickEachOfTheFourOthersEvenly) {
    const auto view = maak();
    view->startAnimation();
    std::map<std::pair<SaverKeuze, SaverKeuze>, int> wissels;
    constexpr int kMinuten = 4000;
    for (int minuut = 0; minuut < kMinuten; ++minuut) {
        const auto van = *view->huidige();
        klok.leap(60.0);
        ASSERT_NE(*view->huidige(), van);
        ++wissels[{van, *view->huidige()}];
    }
    ASSERT_EQ(wissels.size(), 20U);
    for (const auto& [paar, aantal] : wissels)
        EXPECT_NEAR(aantal, kMinuten / 20, 55)
            << qPrintable(ruweWaarde(paar.first)) << ", " << qPrintable(ruweWaarde(paar.second));
}

}  // namespace
