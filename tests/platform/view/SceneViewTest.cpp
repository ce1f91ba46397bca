// SPDX-License-Identifier: MIT
#include "platform/view/SceneView.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/view/FrameBuilder.h"

using platform::Action;
using platform::ManualClock;
using platform::Node;
using platform::Scene;
using platform::SceneFrame;
using platform::SceneView;

namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();

struct SceneViewTest : testing::Test {
    ManualClock clock{1000.0};
    std::shared_ptr<Scene> scene = std::make_shared<Scene>();
    SceneView view{QRectF(10, 20, 300, 200), clock};
    SceneFrame pass;
};

TEST_F(SceneViewTest, HasItsDefaults) {
    EXPECT_FALSE(view.scene());
    EXPECT_FALSE(view.isPlaying());
    EXPECT_FALSE(view.loops());
    EXPECT_EQ(view.preferredFramesPerSecond(), 0);
    EXPECT_EQ(view.sampleCount(), 1);
    EXPECT_EQ(view.backgroundColor(), QColor(Qt::white));
    EXPECT_FALSE(view.allowsCameraControl());
    EXPECT_EQ(view.sceneTime(), 0.0);
    EXPECT_EQ(view.nextChange(), kNever);
}

TEST_F(SceneViewTest, PlayingMovesTheSceneByTheClock) {
    view.setScene(scene);
    view.setPlaying(true);
    for (int i = 1; i <= 10; ++i) {
        clock.advance(0.25);
        view.fill(pass, {});
        EXPECT_DOUBLE_EQ(scene->time(), 0.25 * i);
        EXPECT_DOUBLE_EQ(pass.list.sceneTime, 0.25 * i);
    }
}

TEST_F(SceneViewTest, TheTimeBeforePlayingDoesNotCount) {
    view.setScene(scene);
    clock.advance(100.0);
    view.setPlaying(true);
    clock.advance(2.0);
    view.fill(pass, {});
    EXPECT_DOUBLE_EQ(scene->time(), 2.0);
}

TEST_F(SceneViewTest, StandsStillWhilePausedAndGoesOnFromThere) {
    view.setScene(scene);
    view.setPlaying(true);
    clock.advance(2.0);
    view.setPlaying(false);
    clock.advance(50.0);
    view.fill(pass, {});
    EXPECT_DOUBLE_EQ(scene->time(), 2.0);
    view.setPlaying(true);
    clock.advance(1.0);
    view.fill(pass, {});
    EXPECT_DOUBLE_EQ(scene->time(), 3.0);
}

TEST_F(SceneViewTest, ASceneThatIsUnderWayGoesOnFromItsOwnTime) {
    scene->advance(40.0);
    view.setPlaying(true);
    view.setScene(scene);
    clock.advance(1.5);
    view.fill(pass, {});
    EXPECT_DOUBLE_EQ(scene->time(), 41.5);
}

TEST_F(SceneViewTest, ADetachedSceneStandsStillAndIsLetGo) {
    view.setScene(scene);
    view.setPlaying(true);
    clock.advance(1.0);
    view.fill(pass, {});
    view.setScene(nullptr);
    EXPECT_EQ(scene.use_count(), 1);
    clock.advance(1.0);
    view.fill(pass, {});
    EXPECT_FALSE(pass.hasScene);
    EXPECT_DOUBLE_EQ(scene->time(), 1.0);
    EXPECT_EQ(view.nextChange(), kNever);
}

TEST_F(SceneViewTest, AWeekOfTimeLeavesFramesAsExactAsEver) {
    view.setScene(scene);
    view.setPlaying(true);
    clock.leap(7.0 * 86'400.0);
    view.fill(pass, {});
    const double before = scene->time();
    clock.advance(1.0 / 60.0);
    view.fill(pass, {});
    EXPECT_NEAR(scene->time() - before, 1.0 / 60.0, 1e-9);
}

TEST_F(SceneViewTest, FillsThePassWithWhereItIsAndHowItIsWanted) {
    view.setScene(scene);
    view.setSampleCount(4);
    view.setPreferredFramesPerSecond(30);
    view.setBackgroundColor(Qt::black);
    view.fill(pass, {15, 25});
    EXPECT_EQ(pass.frame, QRectF(15, 25, 300, 200));
    EXPECT_EQ(pass.background, (platform::Rgba{0, 0, 0, 1}));
    EXPECT_EQ(pass.sampleCount, 4);
    EXPECT_DOUBLE_EQ(pass.interval, 1.0 / 30.0);
    EXPECT_TRUE(pass.hasScene);
    EXPECT_DOUBLE_EQ(pass.list.aspect, 1.5);
}

TEST_F(SceneViewTest, AnEmptyViewShowsNoScene) {
    view.setScene(scene);
    view.setFrame({0, 0, 0, 200});
    view.fill(pass, {});
    EXPECT_FALSE(pass.hasScene);
}

TEST_F(SceneViewTest, ANewSizeChangesWhatIsSeenOfTheScene) {
    view.setScene(scene);
    view.setFrame({0, 0, 400, 100});
    view.fill(pass, {});
    EXPECT_DOUBLE_EQ(pass.list.aspect, 4.0);
}

TEST_F(SceneViewTest, AWindowsFrameFillsItsOwnPass) {
    view.setScene(scene);
    view.setPlaying(true);
    clock.advance(3.0);
    platform::Frame frame{
        .grid = {.scale = 1.0, .size = {400, 300}}, .background = {}, .passes = {}};
    platform::FrameBuilder(frame, clock.now()).add(view);
    ASSERT_EQ(frame.passes.size(), 2U);
    EXPECT_FALSE(frame.passes[0].scene.isShown);
    EXPECT_TRUE(frame.passes[1].scene.isShown);
    EXPECT_EQ(frame.passes[1].scene.frame, QRectF(10, 20, 300, 200));
    EXPECT_DOUBLE_EQ(frame.passes[1].scene.list.sceneTime, 3.0);
}

TEST_F(SceneViewTest, WithoutAPreferenceEveryBeatOfTheDisplayShowsAnother) {
    view.setScene(scene);
    view.setPlaying(true);
    clock.advance(0.1);
    EXPECT_EQ(view.nextChange(), clock.now());
    view.setPlaying(false);
    EXPECT_EQ(view.nextChange(), kNever);
}

// Frames shown in ten seconds on a display with this rhythm.
int framesOn(double displayRate, int preferred) {
    ManualClock clock(1000.0);
    SceneView view({0, 0, 30, 20}, clock);
    view.setScene(std::make_shared<Scene>());
    view.setPreferredFramesPerSecond(preferred);
    view.setPlaying(true);
    int frames = 0;
    double next = clock.now();
    for (int beat = 1; beat <= static_cast<int>(10.0 * displayRate); ++beat) {
        clock.advance(1.0 / displayRate);
        if (clock.now() < next) continue;
        ++frames;
        next = view.nextChange();
    }
    return frames;
}

TEST_F(SceneViewTest, KeepsItsRhythmOnAnyDisplay) {
    EXPECT_NEAR(framesOn(60.0, 60), 600, 1);
    EXPECT_NEAR(framesOn(60.0, 30), 300, 1);
    EXPECT_NEAR(framesOn(59.94, 60), 599, 1);
    EXPECT_NEAR(framesOn(60.06, 60), 600, 1);
    EXPECT_NEAR(framesOn(144.0, 60), 600, 1);
    EXPECT_NEAR(framesOn(240.0, 30), 300, 1);
    EXPECT_NEAR(framesOn(50.0, 60), 500, 1);
}

}  // namespace
