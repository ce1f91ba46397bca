// SPDX-License-Identifier: MIT
// A GPU that is reset while windows are drawn, as told in the driver's place.
#include <gtest/gtest.h>

#include <atomic>

#include "platform/desktop/SceneView.h"
#include "tests/platform/desktop/Client.h"
#include "tests/support/KeepDriver.h"

using platform::DrawerChoice;
using platform::SceneView;

namespace {

constexpr unsigned kUnknownReset = 0x8255;  // GL_UNKNOWN_CONTEXT_RESET
constexpr std::uint32_t kRed = 0xff0000;
constexpr std::uint32_t kBlue = 0x0000ff;

// A window full of one scene that is nothing but a colour.
struct LostContext : testing::TestWithParam<DrawerChoice> {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    std::atomic<int> resets{0};  // still to be told; below 0 always
    platform::SystemClock clock;
    platform::WindowServer server{
        clock, {.drawer = GetParam(), .display = x.display(), .resetStatus = [this] {
                    if (resets == 0) return 0U;
                    if (resets > 0) --resets;
                    return kUnknownReset;
                }}};
    platform::Window window{server, platform::HostWindow{.id = id}};
    std::shared_ptr<platform::Scene> scene = std::make_shared<platform::Scene>();
    int failures = 0;

    void SetUp() override {
        auto eye = std::make_shared<platform::Node>();
        eye->setCamera(platform::Camera{});
        scene->root().addChild(eye);
        scene->setBackground(Qt::red);
        auto view =
            std::make_shared<SceneView>(QRectF(QPointF(0, 0), window.frame().size()), clock);
        view->setScene(scene);
        view->setPlaying(true);
        view->onFailure([this] { ++failures; });
        window.setContentView(view);
        ASSERT_TRUE(until([&] { return x.pixel(id, 50, 50) == kRed; }));
    }
};

INSTANTIATE_TEST_SUITE_P(Drawer, LostContext,
                         testing::Values(DrawerChoice::Cpu, DrawerChoice::OpenGl),
                         [](const auto& of) {
                             return of.param == DrawerChoice::Cpu ? "InMemory" : "InTheWindow";
                         });

TEST_P(LostContext, IsMadeAnewAndTheSceneGoesOn) {
    const QString drawer = window.statistics().drawer;
    resets = 1;
    ASSERT_TRUE(until([&] { return resets == 0; }));
    scene->setBackground(Qt::blue);
    EXPECT_TRUE(until([&] { return x.pixel(id, 50, 50) == kBlue; }));
    EXPECT_EQ(window.statistics().drawer, drawer);
    EXPECT_EQ(failures, 0);
}

TEST_P(LostContext, ThatIsLostAgainAtOnceFailsTheSceneOnce) {
    resets = -1;
    EXPECT_TRUE(until([&] { return failures > 0; }));
    const auto frames = window.statistics().frames;
    EXPECT_TRUE(until([&] { return window.statistics().frames > frames + 3; }));
    EXPECT_EQ(failures, 1);
}

TEST_P(LostContext, ThatStaysLostLeavesThePictureToTheProcessor) {
    resets = -1;
    ASSERT_TRUE(until([&] { return failures > 0; }));
    window.setContentView(makePicture(window.frame().size()));
    EXPECT_TRUE(until([&] { return x.pixel(id, 60, 120) == 0x00ff00U; }));
    EXPECT_TRUE(until([&] { return window.statistics().drawer == QStringLiteral("cpu"); }));
}

}  // namespace
