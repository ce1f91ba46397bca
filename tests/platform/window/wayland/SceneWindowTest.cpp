// SPDX-License-Identifier: MIT
// Scenes in a window's buffers, which the compositor and the program have in turn.
#include "platform/render/cpu/CpuSceneDrawer.h"
#include "tests/platform/window/wayland/WaylandFixture.h"
#include "tests/support/StandInScenes.h"

namespace platform::wayland {
namespace {

constexpr QSize kSize(640, 480);

struct SceneOnWayland : testing::Test {
    SceneOnWayland() {
        window.native->show();
        there.settle();
    }
    // Shows the scene as it is a while later.
    QImage paintNext() {
        scene->advance(scene->time() + 0.1);
        DrawList list;
        extract(*scene, 4.0 / 3.0, list);
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
    std::unique_ptr<Scene> scene = makeStandIn(QStringLiteral("cube"), 1);
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
            EXPECT_FALSE((QRegion(QRect(QPoint(), kSize)) - told).isEmpty()) << i;
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
