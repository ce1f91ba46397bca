// SPDX-License-Identifier: MIT
#include "platform/render/QualityLadder.h"

#include <gtest/gtest.h>

#include <functional>

namespace platform::test {
namespace {

constexpr double kBudget = 1.0 / 50.0;
constexpr int kLast = static_cast<int>(kQualityRungs.size()) - 1;

// The number of changes of the rung over so many frames, each at the cost that `cost` gives.
int run(QualityLadder& ladder, int frames, const std::function<double(int rung)>& cost) {
    int changes = 0;
    for (int i = 0; i < frames; ++i)
        if (ladder.frameCost(cost(ladder.rung()))) ++changes;
    return changes;
}

double samplesOf(const SceneQuality& quality) {
    return quality.resolution * quality.resolution * quality.samples;
}

TEST(QualityLadder, EveryRungIsLessWorkThanTheOneAbove) {
    for (std::size_t i = 1; i < kQualityRungs.size(); ++i) {
        const SceneQuality& above = kQualityRungs[i - 1];
        const SceneQuality& here = kQualityRungs[i];
        EXPECT_LE(samplesOf(here), samplesOf(above));
        EXPECT_LE(here.anisotropy, above.anisotropy);
        EXPECT_LE(here.fineBloom, above.fineBloom);
        EXPECT_NE(here, above);
    }
    EXPECT_EQ(kQualityRungs.front(), SceneQuality{}) << "the top is the quality of stills";
}

TEST(QualityLadder, StaysAtTheTopWhileFramesAreCheap) {
    QualityLadder ladder({.budget = kBudget});
    EXPECT_EQ(run(ladder, 1000, [](int) { return 0.004; }), 0);
    EXPECT_EQ(ladder.rung(), 0);
}

TEST(QualityLadder, StepsDownOneRungAtATimeUntilFramesFit) {
    QualityLadder ladder({.budget = kBudget});
    int last = 0;
    for (int i = 0; i < 1000; ++i) {
        ladder.frameCost(ladder.rung() < 3 ? 0.030 : 0.015);
        EXPECT_LE(ladder.rung() - last, 1);
        last = ladder.rung();
    }
    EXPECT_EQ(ladder.rung(), 3);
}

TEST(QualityLadder, IsDownWithinASecondOfFrames) {
    QualityLadder ladder({.budget = kBudget});
    run(ladder, 60, [](int rung) { return rung < 3 ? 0.030 : 0.015; });
    EXPECT_EQ(ladder.rung(), 3);
}

TEST(QualityLadder, TheFirstThreeFramesOfARungDoNotCount) {
    const auto slow = [](int) { return 2.0 * kBudget; };
    const auto fitting = [](int) { return 0.8 * kBudget; };
    QualityLadder ladder({.budget = kBudget, .firstRung = 2});
    for (int rung : {2, 3}) {
        // Half of the sixteen that count are too slow, and more than half of all.
        EXPECT_EQ(run(ladder, 3 + 8, slow), 0);
        EXPECT_EQ(run(ladder, 8, fitting), 0);
        // One more than half.
        EXPECT_EQ(run(ladder, 9, slow), 0);
        EXPECT_EQ(run(ladder, 7, fitting), 1);
        EXPECT_EQ(ladder.rung(), rung + 1);
    }
}

TEST(QualityLadder, EndsAtTheLastRungHoweverSlow) {
    QualityLadder ladder({.budget = kBudget});
    EXPECT_EQ(run(ladder, 5000, [](int) { return 1.0; }), kLast);
    EXPECT_EQ(ladder.rung(), kLast);
}

TEST(QualityLadder, StepsUpAgainWhenThereIsRoom) {
    QualityLadder ladder({.budget = kBudget, .firstRung = kLast});
    run(ladder, 2000, [](int) { return 0.003; });
    EXPECT_EQ(ladder.rung(), 0);
}

TEST(QualityLadder, NeverGoesAboveTheBestRungAskedFor) {
    QualityLadder ladder({.budget = kBudget, .firstRung = 5, .bestRung = 3});
    run(ladder, 100'000, [](int) { return 0.0001; });
    EXPECT_EQ(ladder.rung(), 3);
    EXPECT_EQ(QualityLadder({.budget = kBudget, .firstRung = 0, .bestRung = 3}).rung(), 3);
}

TEST(QualityLadder, DoesNotStepUpWithoutMuchRoom) {
    QualityLadder ladder({.budget = kBudget, .firstRung = 4});
    EXPECT_EQ(run(ladder, 5000, [](int) { return 0.8 * kBudget; }), 0);
}

TEST(QualityLadder, TriesSeldomerWhatProvedTooMuch) {
    // The rung looks roomy, but the one above is too much.
    const auto cost = [](int rung) { return rung >= 4 ? 0.5 * kBudget : 1.2 * kBudget; };
    QualityLadder ladder({.budget = kBudget, .firstRung = 4});
    const int early = run(ladder, 2000, cost);
    run(ladder, 10'000, cost);
    const int late = run(ladder, 2000, cost);
    EXPECT_GT(early, 2);
    EXPECT_LE(late, 2);
}

TEST(QualityLadder, AnHourIsNotSpentGoingUpAndDown) {
    const auto cost = [](int rung) { return rung >= 4 ? 0.5 * kBudget : 1.2 * kBudget; };
    QualityLadder ladder({.budget = kBudget, .firstRung = 4});
    int high = 0;
    for (int i = 0; i < 50 * 3600; ++i) {
        ladder.frameCost(cost(ladder.rung()));
        if (ladder.rung() < 4) ++high;
    }
    EXPECT_LT(high, 50 * 3600 / 100);
}

TEST(QualityLadder, ASingleLateFrameChangesNothing) {
    QualityLadder ladder({.budget = kBudget, .firstRung = 2});
    int frame = 0;
    EXPECT_EQ(run(ladder, 3000, [&](int) { return ++frame % 10 == 0 ? 0.5 : 0.8 * kBudget; }), 0);
}

TEST(QualityLadder, TheFirstFramesAfterAChangeDoNotCount) {
    QualityLadder ladder({.budget = kBudget});
    int since = 0;
    const int changes = run(ladder, 400, [&](int rung) {
        if (rung == 0) return 0.030;
        return since++ < 3 ? 0.3 : 0.9 * kBudget;
    });
    EXPECT_EQ(changes, 1);
}

TEST(QualityLadder, ANewSizeIsTriedAfresh) {
    const auto small = [](int) { return 0.3 * kBudget; };
    QualityLadder ladder({.budget = kBudget, .firstRung = kLast});
    run(ladder, 20'000, [](int rung) { return rung == kLast ? 0.5 * kBudget : 1.2 * kBudget; });
    const int stuck = ladder.rung();
    EXPECT_EQ(stuck, kLast);
    ladder.sizeChanged();
    EXPECT_EQ(ladder.rung(), stuck);
    run(ladder, 800, small);
    EXPECT_EQ(ladder.rung(), 0);
}

TEST(QualityLadder, AFirstRungOutsideIsTheNearest) {
    EXPECT_EQ(QualityLadder({.firstRung = 99}).rung(), kLast);
    EXPECT_EQ(QualityLadder({.firstRung = -3}).rung(), 0);
}

}  // namespace
}  // namespace platform::test
