// SPDX-License-Identifier: MIT
// The heap allocations of a world's steady frame: none.
#include "tests/support/AllocationCounter.h"
#include "tests/worlds/Opstelling.h"

using brixtel::alleSoorten;
using brixtel::DrieSoort;

namespace {

class StilstandTest : public steun::WereldOpstelling {};

TEST_F(StilstandTest, AFrameOfAWorldTakesNothingFromTheHeap) {
    for (const DrieSoort soort : alleSoorten) {
        const auto wereld = maak(soort, {.eigenLijnen = true});
        std::vector<brixtel::Lijn> lijnen;
        for (int i = 0; i < 24; ++i)
            lijnen.push_back({{"NL", 2.0 * i, 5.0 * i}, {"Proef"}, 24 - i});
        wereld->zetLijnen(lijnen);
        const auto view = wereld->maakView({0, 0, 160, 100});
        platform::SceneFrame beeld;
        // Long enough for a wave to have swept and every particle to have died once.
        for (int i = 0; i < 1200; ++i) {
            klok_.advance(1.0 / 60.0);
            view->fill(beeld, {});
        }
        const AllocationCounter teller;
        for (int i = 0; i < 600; ++i) {
            klok_.advance(1.0 / 60.0);
            view->fill(beeld, {});
        }
        EXPECT_EQ(teller.count(), 0U) << qPrintable(ruweWaarde(soort));
    }
}

}  // namespace
