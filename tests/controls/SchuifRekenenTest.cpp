// SPDX-License-Identifier: MIT
#include "controls/SchuifRekenen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using brixtel::SchuifRekenen;

namespace {

constexpr double kGrootste = std::numeric_limits<double>::max();
constexpr double kOneindig = std::numeric_limits<double>::infinity();
const double kGeenGetal = std::nan("");

TEST(SchuifRekenen, ThereIsABarForEveryFourPointsOfTrackAndOne) {
    EXPECT_EQ(SchuifRekenen::balken(3.0), 1);
    EXPECT_EQ(SchuifRekenen::balken(6.9), 1);
    EXPECT_EQ(SchuifRekenen::balken(7.0), 2);
    EXPECT_EQ(SchuifRekenen::balken(199.0), 50);
}

TEST(SchuifRekenen, ABarMoreComesAtThePointWhereItFitsAndNotBefore) {
    for (int aantal = 1; aantal <= 200; ++aantal) {
        // The width of the bars with a point between each two.
        const double past = 4.0 * aantal - 1.0;
        EXPECT_EQ(SchuifRekenen::balken(std::nextafter(past, 0.0)), aantal - 1) << past;
        EXPECT_EQ(SchuifRekenen::balken(past), aantal) << past;
        EXPECT_EQ(SchuifRekenen::balken(past + 0.01), aantal) << past;
        EXPECT_EQ(SchuifRekenen::balken(past + 3.99), aantal) << past;
    }
    EXPECT_EQ(SchuifRekenen::balken(54.0), 13);
    EXPECT_EQ(SchuifRekenen::balken(55.0), 14);
    EXPECT_EQ(SchuifRekenen::balken(56.0), 14);
    EXPECT_EQ(SchuifRekenen::balken(58.0), 14);
    EXPECT_EQ(SchuifRekenen::balken(59.0), 15);
}

TEST(SchuifRekenen, ATrackWithoutRoomHasNoBars) {
    for (const double breedte : {0.0, 2.9, -100.0, kGeenGetal})
        EXPECT_EQ(SchuifRekenen::balken(breedte), 0) << breedte;
}

TEST(SchuifRekenen, AnEndlessTrackDoesNotOverflow) {
    EXPECT_GT(SchuifRekenen::balken(kOneindig), 1000);
}

TEST(SchuifRekenen, AtTheLowerBoundNoBarIsLit) {
    EXPECT_EQ(SchuifRekenen({.onder = 2.0, .boven = 4.0}).gevuld(2.0, 50), 0);
}

TEST(SchuifRekenen, AtTheUpperBoundAllBarsAreLit) {
    EXPECT_EQ(SchuifRekenen({.onder = 2.0, .boven = 4.0}).gevuld(4.0, 50), 50);
}

TEST(SchuifRekenen, BarsAreLitToTheNearest) {
    const SchuifRekenen reken({.onder = 0.0, .boven = 1.0});
    EXPECT_EQ(reken.gevuld(0.256, 50), 13);
    EXPECT_EQ(reken.gevuld(0.5, 5), 3);
    EXPECT_EQ(reken.gevuld(0.009, 50), 0);
}

TEST(SchuifRekenen, AValueOutsideStandsAtTheNearestEnd) {
    const SchuifRekenen reken({.onder = 2.0, .boven = 4.0});
    EXPECT_EQ(reken.fractie(-10.0), 0.0);
    EXPECT_EQ(reken.fractie(10.0), 1.0);
    EXPECT_EQ(reken.fractie(kOneindig), 1.0);
    EXPECT_EQ(reken.verzet(10.0, -1), 4.0);
    EXPECT_EQ(reken.verzet(-10.0, 1), 2.0);
}

TEST(SchuifRekenen, WithoutAStepItIsOneHundredthOfTheRange) {
    EXPECT_DOUBLE_EQ(SchuifRekenen({.onder = 1.0, .boven = 3.0}).stap(), 0.02);
    EXPECT_DOUBLE_EQ(SchuifRekenen({.onder = 1.0, .boven = 3.0, .stap = -1.0}).stap(), 0.02);
    EXPECT_DOUBLE_EQ(SchuifRekenen({.boven = 50.0}).verzet(10.0, 1), 10.5);
}

TEST(SchuifRekenen, AssistiveTechnologyGoesFiveSteps) {
    const SchuifRekenen reken({.boven = 10.0, .stap = 0.5});
    EXPECT_DOUBLE_EQ(reken.verhoogd(4.0), 6.5);
    EXPECT_DOUBLE_EQ(reken.verlaagd(4.0), 1.5);
}

TEST(SchuifRekenen, AStepSnapsToItsMultiples) {
    const SchuifRekenen reken({.boven = 10.0, .stap = 0.5});
    EXPECT_DOUBLE_EQ(reken.verzet(4.2, 1), 4.5);
    EXPECT_DOUBLE_EQ(reken.verzet(4.2, -1), 3.5);
    EXPECT_DOUBLE_EQ(reken.verhoogd(4.2), 6.5);
}

TEST(SchuifRekenen, AnIncrementAtTheUpperBoundStaysThere) {
    EXPECT_EQ(SchuifRekenen({.boven = 1.0}).verhoogd(1.0), 1.0);
    EXPECT_EQ(SchuifRekenen({.boven = 1.0, .stap = 0.3}).verhoogd(1.0), 1.0);
}

TEST(SchuifRekenen, ADecrementAtTheLowerBoundStaysThere) {
    EXPECT_EQ(SchuifRekenen({.onder = 0.1, .boven = 1.0, .stap = 0.3}).verlaagd(0.1), 0.1);
}

TEST(SchuifRekenen, AStepLargerThanTheRangeGoesFromEndToEnd) {
    const SchuifRekenen reken({.onder = 2.0, .boven = 3.0, .stap = 100.0});
    EXPECT_EQ(reken.verzet(2.0, 1), 3.0);
    EXPECT_EQ(reken.verzet(3.0, -1), 2.0);
}

TEST(SchuifRekenen, AnEmptyRangeHasOneValue) {
    const SchuifRekenen reken({.onder = 5.0, .boven = 5.0});
    EXPECT_EQ(reken.fractie(5.0), 0.0);
    EXPECT_EQ(reken.fractie(9.0), 0.0);
    EXPECT_EQ(reken.gevuld(5.0, 50), 0);
    for (const int stappen : {-10, -1, 0, 1, 10})
        EXPECT_EQ(reken.verzet(5.0, stappen), 5.0);
    EXPECT_EQ(reken.opFractie(0.7), 5.0);
}

TEST(SchuifRekenen, AReversedRangeIsTurnedRound) {
    const SchuifRekenen reken({.onder = 4.0, .boven = 2.0});
    EXPECT_EQ(reken.onder(), 2.0);
    EXPECT_EQ(reken.boven(), 4.0);
    EXPECT_EQ(reken.fractie(4.0), 1.0);
}

TEST(SchuifRekenen, ARangeThatIsNoneIsEmpty) {
    for (const double rand : {kGeenGetal, kOneindig}) {
        const SchuifRekenen reken({.onder = 1.0, .boven = rand});
        EXPECT_EQ(reken.onder(), 0.0);
        EXPECT_EQ(reken.boven(), 0.0);
        EXPECT_EQ(reken.verzet(3.0, 1), 0.0);
    }
}

TEST(SchuifRekenen, AStepThatIsNoNumberIsNone) {
    for (const double stap : {kGeenGetal, kOneindig})
        EXPECT_DOUBLE_EQ(SchuifRekenen({.boven = 2.0, .stap = stap}).stap(), 0.02);
}

TEST(SchuifRekenen, AValueThatIsNoNumberCountsAsTheLowerBound) {
    const SchuifRekenen reken({.onder = 2.0, .boven = 4.0});
    EXPECT_EQ(reken.fractie(kGeenGetal), 0.0);
    EXPECT_DOUBLE_EQ(reken.verzet(kGeenGetal, 1), 2.02);
}

TEST(SchuifRekenen, TheWidestRangeStillMoves) {
    const SchuifRekenen reken({.onder = -kGrootste, .boven = kGrootste});
    EXPECT_DOUBLE_EQ(reken.fractie(0.0), 0.5);
    EXPECT_EQ(reken.fractie(kGrootste), 1.0);
    EXPECT_GT(reken.verzet(0.0, 1), 0.0);
    EXPECT_EQ(reken.verzet(kGrootste, 10), kGrootste);
    EXPECT_DOUBLE_EQ(reken.opFractie(0.75), kGrootste / 2.0);
}

TEST(SchuifRekenen, TheSmallestStepDoesNotOverflow) {
    const SchuifRekenen reken({.boven = 1e300, .stap = 1e-300});
    EXPECT_EQ(reken.verzet(1e299, 1), 1e299);
}

TEST(SchuifRekenen, EveryStepMovesAKnobThatIsNotAtTheEnd) {
    for (const double stap : {0.0, 0.01, 0.3, 1.0, 7.0}) {
        const SchuifRekenen reken({.onder = -1.3, .boven = 2.9, .stap = stap});
        for (double waarde = -1.3; waarde < 2.9; waarde += 0.17) {
            EXPECT_GT(reken.verzet(waarde, 1), waarde) << stap;
            if (waarde > -1.3) {
                EXPECT_LT(reken.verzet(waarde, -1), waarde) << stap;
            }
        }
    }
}

TEST(SchuifRekenen, APlaceOnTheTrackIsAValue) {
    const SchuifRekenen reken({.onder = 2.0, .boven = 4.0, .stap = 0.5});
    EXPECT_DOUBLE_EQ(reken.opFractie(0.3), 2.6);
    EXPECT_EQ(reken.opFractie(0.0), 2.0);
    EXPECT_EQ(reken.opFractie(1.0), 4.0);
    EXPECT_EQ(reken.opFractie(-3.0), 2.0);
    EXPECT_EQ(reken.opFractie(3.0), 4.0);
    EXPECT_EQ(reken.opFractie(kGeenGetal), 2.0);
}

}  // namespace
