// SPDX-License-Identifier: MIT
// Scenes in a window's buffers, which the compositor and the program have in turn.
#include "platform/render/cpu/CpuSceneDrawer.h"
#include "tests/platform/window/wayland/WaylandFixture.h"
#include "tests/support/DotList.h"

namespace platform::wayland {
namespace {

constexpr QSize kSize(640, 480);

struct SceneOnWayland : testing::Test {
    SceneOnWayland() {
        window.native->show();
        there.settle();
    }
    // Shows the scene, in which one dot has moved on.
    QImage paintNext() {
        DrawList list = test::dotList(x_ += 0.05F, 4.0 / 3.0);
        const QImage expected = CpuSceneDrawer().picture(list, kSize);
        window.paintScene(std::move(list));
        there.settle();
        return expected;
    }
    [[nodiscard]] wltest::Surface shown() {
        auto surface = there.only();
        surface.picture = surface.picture.convertToFormat(QImage::Format_RGB32);
        return surface;
    }
    static QRegion toldBy(const wltest::Surface& surface) {
        QRegion told;
        for (const QRect& box : surface.commits.back().damage)
            told += box;
        return told;
    }

    WaylandFixture there;
    TestWindow window{there.system, saver(), DrawerChoice::Cpu};

  private:
    float x_ = -0.6F;
};

TEST_F(SceneOnWayland, EachPictureIsWholeAndTellsOfWhatChanged) {
    constexpr int kBuffers = 3;
    QImage before;
    for (int i = 0; i < 20; ++i) {
        const QImage expected = paintNext();
        const wltest::Surface surface = shown();
        ASSERT_EQ(surface.picture, expected) << i;
        const QRegion told = toldBy(surface);
        // Once every buffer has been painted, what stays black is not told.
        if (i >= kBuffers) {
            std::int64_t area = 0;
            for (const QRect& rect : told)
                area += std::int64_t{rect.width()} * rect.height();
            EXPECT_LT(area, kSize.width() * kSize.height() / 5) << i;
            for (int y = 0; y < kSize.height(); ++y)
                for (int x = 0; x < kSize.width(); ++x)
                    if (before.pixel(x, y) != expected.pixel(x, y)) {
                        ASSERT_TRUE(told.contains(QPoint(x, y))) << i;
                    }
        }
        before = expected;
        there.compositor.frame();
        there.settle();
    }
}

TEST_F(SceneOnWayland, AfterAFadeThePictureIsWholeAgain) {
    for (int i = 0; i < 4; ++i) {
        (void)paintNext();
        there.compositor.frame();
        there.settle();
    }
    window.paintAll({1.0F, 0.0F, 0.0F, 1.0F}, 0.5);
    there.settle();
    there.compositor.frame();
    there.settle();
    for (int i = 0; i < 4; ++i) {
        const QImage expected = paintNext();
        ASSERT_EQ(shown().picture, expected) << i;
        there.compositor.frame();
        there.settle();
    }
}

}  // namespace
}  // namespace platform::wayland
