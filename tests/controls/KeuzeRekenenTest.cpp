// SPDX-License-Identifier: MIT
#include "controls/KeuzeRekenen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

using brixtel::keuzeVerdeling;
using brixtel::KeuzeVraag;

namespace {

const QList<KeuzeVraag> kDrie{{40.0, 40.0}, {100.0, 60.0}, {60.0, 40.0}};

TEST(KeuzeVerdeling, InTheRoomAskedForEachHasWhatItAskedFor) {
    EXPECT_EQ(keuzeVerdeling(kDrie, 200.0), (QList<double>{40.0, 100.0, 60.0}));
}

TEST(KeuzeVerdeling, WhatIsLeftOverIsSharedAlike) {
    EXPECT_EQ(keuzeVerdeling(kDrie, 230.0), (QList<double>{50.0, 110.0, 70.0}));
}

TEST(KeuzeVerdeling, TooLittleTakesFromWhatIsBeyondTheLongestWords) {
    EXPECT_EQ(keuzeVerdeling(kDrie, 170.0), (QList<double>{40.0, 80.0, 50.0}));
    EXPECT_EQ(keuzeVerdeling(kDrie, 140.0), (QList<double>{40.0, 60.0, 40.0}));
}

TEST(KeuzeVerdeling, MuchTooLittleTakesFromAllInProportion) {
    EXPECT_EQ(keuzeVerdeling(kDrie, 70.0), (QList<double>{20.0, 30.0, 20.0}));
}

TEST(KeuzeVerdeling, WithoutRoomAllAreNothing) {
    for (const double ruimte : {0.0, -10.0, std::nan("")})
        EXPECT_EQ(keuzeVerdeling(kDrie, ruimte), (QList<double>{0.0, 0.0, 0.0}));
}

TEST(KeuzeVerdeling, WithoutOptionsThereIsNothing) {
    EXPECT_EQ(keuzeVerdeling({}, 100.0), QList<double>());
}

TEST(KeuzeVerdeling, OneOptionHasAllTheRoom) {
    for (const double ruimte : {5.5, 50.0, 500.25})
        EXPECT_EQ(keuzeVerdeling({{60.0, 40.0}}, ruimte), (QList<double>{ruimte}));
}

TEST(KeuzeVerdeling, EdgesLieOnWholePointsAndAllTheRoomIsTaken) {
    for (double ruimte = 1.0; ruimte < 400.0; ruimte += 0.75) {
        const QList<double> breedtes = keuzeVerdeling(kDrie, ruimte);
        double rand = 0.0;
        for (qsizetype i = 0; i + 1 < breedtes.size(); ++i) {
            EXPECT_GE(breedtes[i], 0.0);
            rand += breedtes[i];
            EXPECT_EQ(rand, std::round(rand)) << ruimte;
        }
        EXPECT_DOUBLE_EQ(std::accumulate(breedtes.begin(), breedtes.end(), 0.0), ruimte);
    }
}

}  // namespace
