// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {

namespace {

class CpuSceneAllocation : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Scene, CpuSceneAllocation,
                         testing::Values("cube", "tunnel", "blocks", "globe"),
                         [](const auto& of) { return std::string(of.param); });

}  // namespace

// The list is the same, so that nothing grows that has not yet.
TEST_P(CpuSceneAllocation, ASteadyFrameAllocatesNothing) {
    const auto scene = makeStandIn(QLatin1String(GetParam()), 1);
    scene->advance(6.0);
    DrawList list;
    extract(*scene, 1.6, list);
    QImage image(960, 600, QImage::Format_RGB32);
    const PixelBuffer picture{reinterpret_cast<std::uint32_t*>(image.bits()), 960, image.size()};
    // Chance says which thread draws which tile: all of them have what they need.
    CpuSceneDrawer drawer(CpuSceneDrawer::Options{.threads = 3});
    for (const double resolution : {1.0, 0.65}) {
        const CpuSceneDrawer::Frame frame{.resolution = resolution, .isKept = true};
        for (int i = 0; i < 3; ++i)
            drawer.draw(list, picture, frame);
        const std::size_t before = AllocationCounter::total();
        for (int i = 0; i < 5; ++i)
            drawer.draw(list, picture, frame);
        EXPECT_EQ(AllocationCounter::total() - before, 0U) << resolution;
    }
    EXPECT_GT(drawer.counts().encoded, 0);
}

}  // namespace platform::test
