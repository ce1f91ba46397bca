// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/layers/Damage.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FallingColumns.h"

using namespace platform;

namespace {

TEST(Allocations, ASteadyRebuildAndItsDamageMakeNone) {
    FallingColumns columns({.size = {1920.0, 1080.0}});
    columns.fill(100.0);
    const PixelGrid grid{.scale = 1.0, .size = {1920, 1080}};
    DisplayList lists[2];
    std::vector<QRect> rects;
    std::size_t seen = 0;
    const auto frame = [&](int i) {
        columns.show(100.0 + i / 60.0, lists[i % 2]);
        findDamage(lists[(i + 1) % 2], lists[i % 2], grid, rects);
        seen += rects.size();
    };
    for (int i = 0; i < 120; ++i)
        frame(i);
    seen = 0;
    const AllocationCounter counter;
    for (int i = 120; i < 1200; ++i)
        frame(i);
    EXPECT_EQ(counter.count(), 0U);
    EXPECT_GT(seen, 1080U);
}

TEST(Allocations, AreCounted) {
    const AllocationCounter counter;
    operator delete(operator new(16));
    EXPECT_GE(counter.count(), 1U);
}

}  // namespace
