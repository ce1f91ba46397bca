// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/render/SceneSnapshot.h"
#include "platform/render/cpu/CpuDrawer.h"
#include "platform/scene/DrawList.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {
namespace {

class SceneAllocation : public testing::TestWithParam<const char*> {};

TEST_P(SceneAllocation, ASteadyFrameAllocatesNothing) {
    const auto scene = makeStandIn(QString::fromLatin1(GetParam()), 1);
    const auto snapshot = SceneSnapshot::create();
    ASSERT_TRUE(snapshot);
    const QSize size(96, 60);
    QImage memory(size, QImage::Format_RGB32);
    const PixelBuffer buffer{reinterpret_cast<std::uint32_t*>(memory.bits()), size.width(), size};
    const SceneQuality low{.samples = 1, .resolution = 0.5, .fineBloom = false, .anisotropy = 1};
    DrawList list;
    std::size_t counted = 0;
    for (int frame = 0; frame < 24; ++frame) {
        scene->advance(6.0 + frame / 60.0);
        extract(*scene, 1.6, list);
        const AllocationCounter counter;
        ASSERT_TRUE(snapshot->render(list, size, 1.0, {.anisotropy = 1}));
        ASSERT_TRUE(snapshot->renderer().draw(list, buffer, 1.0, low));
        if (frame >= 12) counted += counter.count();
    }
    EXPECT_EQ(counted, 0U);
}

INSTANTIATE_TEST_SUITE_P(Scenes, SceneAllocation,
                         testing::Values("cube", "tunnel", "blocks", "globe"));

}  // namespace
}  // namespace platform::test
