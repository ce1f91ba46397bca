// SPDX-License-Identifier: MIT
#include "platform/render/WorkBudget.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace platform {
namespace {

// A program whose work is in proportion to its pixels and frames.
struct Program {
    WorkBudget budget;
    double whole = 1.0;  // share of a processor at full measure
    double time = 100.0;
    double cpuSeconds = 7.0;
    std::vector<WorkMeasure> taken;

    void run(int seconds, double step = 1.0 / 60.0) {
        const double end = time + seconds;
        while (time < end) {
            const WorkMeasure& measure = budget.measure();
            cpuSeconds += step * whole * measure.resolution * measure.resolution / measure.pace;
            time += step;
            if (budget.used(time, cpuSeconds)) taken.push_back(budget.measure());
        }
    }
};

TEST(WorkBudget, IsOneProcessorAndAtMostHalfOfTheMachine) {
    EXPECT_EQ(WorkBudget::shareOf(0), 0.5);
    EXPECT_EQ(WorkBudget::shareOf(1), 0.5);
    EXPECT_EQ(WorkBudget::shareOf(2), 1.0);
    EXPECT_EQ(WorkBudget::shareOf(16), 1.0);
}

TEST(WorkBudget, CoarserMeasuresAreLessWorkPixelsFirst) {
    bool paced = false;
    for (std::size_t i = 1; i < kWorkMeasures.size(); ++i) {
        const WorkMeasure& finer = kWorkMeasures[i - 1];
        const WorkMeasure& coarser = kWorkMeasures[i];
        if (coarser.pace != finer.pace) paced = true;
        EXPECT_EQ(coarser.resolution < finer.resolution, !paced) << i;
        EXPECT_EQ(coarser.pace > finer.pace, paced) << i;
    }
}

TEST(WorkBudget, LeavesAloneWhatFits) {
    Program program{.budget = WorkBudget({.share = 1.0}), .whole = 0.99};
    program.run(600);
    EXPECT_TRUE(program.taken.empty());
    EXPECT_EQ(program.budget.measure(), kWorkMeasures[0]);
}

TEST(WorkBudget, TakesFewerPixelsAndThenFewerFramesUntilItFits) {
    Program program{.budget = WorkBudget({.share = 1.0}), .whole = 7.0};
    program.run(60);
    EXPECT_EQ(program.taken,
              (std::vector<WorkMeasure>(kWorkMeasures.begin() + 1, kWorkMeasures.begin() + 5)));
}

TEST(WorkBudget, IsWithinItsShareAfterFourSecondsAStep) {
    for (const double whole : {1.2, 1.5, 2.2, 3.5, 7.9}) {
        Program program{.budget = WorkBudget({.share = 1.0}), .whole = whole};
        program.run(17);
        const WorkMeasure& measure = program.budget.measure();
        EXPECT_LE(whole * measure.resolution * measure.resolution / measure.pace, 1.0) << whole;
    }
}

TEST(WorkBudget, TakesNoStepMoreThanNeeded) {
    Program program{.budget = WorkBudget({.share = 1.0}), .whole = 1.5};
    program.run(300);
    EXPECT_EQ(program.taken, std::vector<WorkMeasure>{kWorkMeasures[1]});
}

TEST(WorkBudget, EndsAtThirtyFramesUnlessMoreIsAllowed) {
    Program program{.budget = WorkBudget({.share = 1.0}), .whole = 1000.0};
    program.run(120);
    EXPECT_EQ(program.budget.measure(), kWorkMeasures[4]);
    Program preview{.budget = WorkBudget({.share = 0.08, .mostPace = 8}), .whole = 1000.0};
    preview.run(120);
    EXPECT_EQ(preview.budget.measure(), kWorkMeasures[6]);
}

TEST(WorkBudget, ClimbsBackWhenThereIsRoom) {
    Program program{.budget = WorkBudget({.share = 1.0}), .whole = 7.0};
    program.run(60);
    program.taken.clear();
    program.whole = 0.5;
    program.run(60);
    EXPECT_EQ(program.taken, (std::vector<WorkMeasure>{kWorkMeasures[3], kWorkMeasures[2],
                                                       kWorkMeasures[1], kWorkMeasures[0]}));
}

TEST(WorkBudget, DoesNotClimbToWhatWouldNotFit) {
    // At 0.8 of the pixels a side it takes 0.87, at all of them it would take 1.36.
    Program program{.budget = WorkBudget({.share = 1.0}), .whole = 1.36};
    program.run(3600);
    EXPECT_EQ(program.taken.size(), 1U);
}

// Work that reckoning does not foresee: the finest measure alone is dear.
TEST(WorkBudget, WaitsTwiceAsLongAfterEachVainTry) {
    WorkBudget budget({.share = 1.0});
    double cpuSeconds = 0.0;
    std::vector<int> tries;
    for (int second = 0; second < 400; ++second) {
        cpuSeconds += budget.measure() == kWorkMeasures[0] ? 1.5 : 0.2;
        const bool changed = budget.used(second, cpuSeconds);
        if (changed && budget.measure() == kWorkMeasures[0]) tries.push_back(second);
    }
    ASSERT_GE(tries.size(), 6U);
    for (std::size_t i = 2; i < 5; ++i)
        EXPECT_GT(tries[i] - tries[i - 1], 1.5 * (tries[i - 1] - tries[i - 2])) << i;
}

TEST(WorkBudget, OneDearSecondChangesNothing) {
    WorkBudget budget({.share = 1.0});
    double cpuSeconds = 0.0;
    for (int second = 0; second < 300; ++second) {
        cpuSeconds += second % 3 == 0 ? 1.9 : 0.3;
        EXPECT_FALSE(budget.used(second, cpuSeconds)) << second;
    }
}

TEST(WorkBudget, TheFirstSecondIsTheStart) {
    WorkBudget budget({.share = 1.0});
    EXPECT_FALSE(budget.used(0.0, 0.0));
    EXPECT_FALSE(budget.used(1.0, 9.0));
    EXPECT_FALSE(budget.used(2.0, 9.1));
    EXPECT_EQ(budget.measure(), kWorkMeasures[0]);
}

TEST(WorkBudget, TimeWithoutFramesIsNoRoom) {
    Program program{.budget = WorkBudget({.share = 1.0}), .whole = 3.0};
    program.run(30);
    const WorkMeasure coarse = program.budget.measure();
    EXPECT_NE(coarse, kWorkMeasures[0]);
    program.taken.clear();
    // An hour of rest, a frame now and then.
    for (int i = 0; i < 360; ++i)
        EXPECT_FALSE(program.budget.used(program.time += 10.0, program.cpuSeconds));
    program.run(30);
    EXPECT_TRUE(program.taken.empty());
}

TEST(WorkBudget, AClockThatGoesBackBeginsAnew) {
    WorkBudget budget({.share = 1.0});
    double cpuSeconds = 0.0;
    for (const double time : {50.0, 51.0, 52.0, 10.0, 11.0, 12.0})
        EXPECT_FALSE(budget.used(time, cpuSeconds += time == 12.0 ? 5.0 : 0.1)) << time;
    EXPECT_EQ(budget.measure(), kWorkMeasures[0]);
}

}  // namespace
}  // namespace platform
