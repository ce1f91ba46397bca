// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/layers/Damage.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/CpuPicture.h"
#include "tests/support/FallingColumns.h"

using namespace platform;

namespace {

TEST(CpuDrawerAllocations, ASteadyFrameMakesNone) {
    FallingColumns columns({.size = {960.0, 540.0}});
    columns.fill(100.0);
    const PixelGrid grid{.scale = 1.0, .size = {960, 540}};
    QImage picture(grid.size, QImage::Format_ARGB32_Premultiplied);
    const PixelBuffer target = bufferOf(picture);
    DisplayList lists[2];
    std::vector<QRect> damage;
    CpuDrawer drawer;
    const auto frame = [&](int i) {
        columns.show(100.0 + i / 60.0, lists[i % 2]);
        findDamage(lists[(i + 1) % 2], lists[i % 2], grid, damage);
        drawer.draw(lists[i % 2], grid, damage, kBlack, target);
    };
    for (int i = 0; i < 60; ++i)
        frame(i);
    const AllocationCounter counter;
    for (int i = 60; i < 600; ++i)
        frame(i);
    EXPECT_EQ(counter.count(), 0U);
    EXPECT_FALSE(damage.empty());
}

}  // namespace
