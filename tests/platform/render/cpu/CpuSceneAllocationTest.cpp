// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QImage>
#include <new>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {

namespace {

constexpr std::uint32_t kUnwritten = 0x12345678U;

// A picture, and its memory as drawers see it.
class Canvas {
  public:
    explicit Canvas(QSize size) : image_(size, QImage::Format_RGB32) { image_.fill(kUnwritten); }
    [[nodiscard]] PixelBuffer buffer() {
        return {reinterpret_cast<std::uint32_t*>(image_.bits()),
                static_cast<int>(image_.bytesPerLine() / 4), image_.size()};
    }
    [[nodiscard]] const QImage& image() const { return image_; }

  private:
    QImage image_;
};

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

// A refusal takes far longer under a sanitizer, which tries the first ones and a sample of the
// others.
constexpr std::size_t nextRefusal(std::size_t refused) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return refused + (refused < 40 ? 1 : 31);
#else
    return refused + 1;
#endif
}

// A drawer that a lack of memory ended within a picture draws the next ones as a new drawer does.
TEST_P(CpuSceneAllocation, ADrawerThatWasRefusedMemoryDrawsAsBefore) {
    const auto scene = makeStandIn(QLatin1String(GetParam()), 1);
    scene->advance(6.0);
    DrawList list;
    extract(*scene, 1.6, list);
    constexpr CpuSceneDrawer::Frame kFrame{.resolution = 0.7, .isKept = true};
    constexpr QSize kSmall(40, 20), kLarge(100, 50);
    Canvas small(kSmall), large(kLarge);
    CpuSceneDrawer(CpuSceneDrawer::Options{.threads = 1}).draw(list, small.buffer(), kFrame);
    CpuSceneDrawer(CpuSceneDrawer::Options{.threads = 1}).draw(list, large.buffer(), kFrame);
    std::size_t refused = 0;
    for (bool isRefused = true; isRefused; refused = nextRefusal(refused)) {
        CpuSceneDrawer drawer(CpuSceneDrawer::Options{.threads = 1});
        Canvas first(kSmall), then(kLarge);
        // Every second drawer has drawn before.
        if (refused % 2 == 0) drawer.draw(list, first.buffer(), kFrame);
        try {
            const RefusedAllocation refusal(refused / 2);
            drawer.draw(list, then.buffer(), kFrame);
            isRefused = refused % 2 == 0;
        } catch (const std::bad_alloc&) {
        }
        drawer.draw(list, first.buffer(), kFrame);
        drawer.draw(list, then.buffer(), kFrame);
        ASSERT_EQ(first.image(), small.image()) << refused;
        ASSERT_EQ(then.image(), large.image()) << refused;
    }
    EXPECT_GT(refused, 40U);
}

}  // namespace platform::test
