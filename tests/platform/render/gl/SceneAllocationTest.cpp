// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/support/SceneSnapshot.h"
#include "platform/scene/DrawList.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {
namespace {

class SceneAllocation : public testing::TestWithParam<const char*> {};

// The allocations of twelve steady frames at this quality.
std::size_t steadyFrames(const char* name, const SceneQuality& quality) {
    const auto scene = makeStandIn(QString::fromLatin1(name), 1);
    const auto snapshot = SceneSnapshot::create();
    EXPECT_TRUE(snapshot);
    if (!snapshot) return 0;
    DrawList list;
    std::size_t counted = 0;
    for (int frame = 0; frame < 24; ++frame) {
        scene->advance(6.0 + frame / 60.0);
        extract(*scene, 1.6, list);
        const AllocationCounter counter;
        EXPECT_TRUE(snapshot->render(list, QSize(96, 60), 1.0, quality));
        if (frame >= 12) counted += counter.count();
    }
    return counted;
}

TEST_P(SceneAllocation, ASteadyFrameAllocatesNothing) {
    EXPECT_EQ(steadyFrames(GetParam(), {.anisotropy = 1}), 0U);
}

TEST_P(SceneAllocation, ASteadyFrameOfLowQualityAllocatesNothing) {
    EXPECT_EQ(steadyFrames(GetParam(),
                           {.samples = 1, .resolution = 0.5, .fineBloom = false, .anisotropy = 1}),
              0U);
}

INSTANTIATE_TEST_SUITE_P(Scenes, SceneAllocation,
                         testing::Values("cube", "tunnel", "blocks", "globe"));

}  // namespace
}  // namespace platform::test
