// SPDX-License-Identifier: MIT
// Scenes among the layers of a window's frame.
#include <gtest/gtest.h>

#include "platform/view/FrameBuilder.h"
#include "platform/view/SceneView.h"

using platform::Frame;
using platform::FrameBuilder;
using platform::ManualClock;
using platform::SceneView;
using platform::View;

namespace {

// A black view with a scene of half its width in it, and a label over both.
struct SceneFrameTest : testing::Test {
    ManualClock clock{100.0};
    View content{QRectF(0, 0, 200, 100)};
    std::shared_ptr<SceneView> scene = std::make_shared<SceneView>(QRectF(0, 0, 100, 100), clock);
    std::shared_ptr<View> label = std::make_shared<View>(QRectF(20, 20, 30, 10));

    void SetUp() override {
        content.setWantsLayer(true);
        content.layer()->setBackgroundColor(Qt::black);
        label->setWantsLayer(true);
        label->layer()->setBackgroundColor(Qt::green);
        scene->setScene(std::make_shared<platform::Scene>());
        scene->setPlaying(true);
        content.addSubview(scene);
        content.addSubview(label);
    }
    Frame build() {
        Frame frame{.grid = {.scale = 1.0, .size = {200, 100}}, .background = {}, .passes = {}};
        FrameBuilder(frame, clock.now()).add(content);
        return frame;
    }
    static std::vector<QRect> damage(const Frame& a, const Frame& b) {
        std::vector<QRect> rects;
        findFrameDamage(a, b, rects);
        return rects;
    }
};

TEST_F(SceneFrameTest, ASceneLiesOverWhatCameBeforeAndUnderWhatComesAfter) {
    const Frame frame = build();
    ASSERT_EQ(frame.passes.size(), 2U);
    EXPECT_FALSE(frame.passes[0].scene.isShown);
    EXPECT_EQ(frame.passes[0].layers.items.size(), 1U);
    EXPECT_TRUE(frame.passes[1].scene.isShown);
    ASSERT_EQ(frame.passes[1].layers.items.size(), 1U);
    EXPECT_EQ(frame.passes[1].layers.items[0].rect, QRectF(20, 20, 30, 10));
}

TEST_F(SceneFrameTest, APlayingSceneIsDamagedWholeAndNothingBesideIt) {
    const Frame before = build();
    clock.advance(0.1);
    EXPECT_EQ(damage(before, build()), std::vector<QRect>{QRect(0, 0, 100, 100)});
}

TEST_F(SceneFrameTest, AnotherOpacityDamagesAll) {
    scene->setPlaying(false);
    const Frame before = build();
    Frame after = build();
    after.opacity = 0.5;
    EXPECT_EQ(damage(before, after), std::vector<QRect>{QRect(0, 0, 200, 100)});
}

TEST_F(SceneFrameTest, ASceneThatStandsStillIsNotDrawnAgain) {
    scene->setPlaying(false);
    const Frame before = build();
    clock.advance(0.1);
    EXPECT_TRUE(damage(before, build()).empty());
}

TEST_F(SceneFrameTest, WhatLiesOverAStandingSceneIsDrawnWithAllOfIt) {
    scene->setPlaying(false);
    const Frame before = build();
    label->layer()->setBackgroundColor(Qt::red);
    EXPECT_EQ(damage(before, build()), std::vector<QRect>{QRect(0, 0, 100, 100)});
}

TEST_F(SceneFrameTest, AnotherNumberOfPartsIsDrawnWhole) {
    const Frame before = build();
    scene->removeFromSuperview();
    const Frame after = build();
    EXPECT_EQ(after.passes.size(), 1U);
    EXPECT_EQ(damage(before, after), std::vector<QRect>{QRect(0, 0, 200, 100)});
}

TEST_F(SceneFrameTest, WhatASceneHidesNeedNotBeDrawn) {
    EXPECT_EQ(firstVisiblePass(build()), 0U);
    scene->setFrame(QRectF(0, 0, 200, 100));
    EXPECT_EQ(firstVisiblePass(build()), 1U);
}

TEST_F(SceneFrameTest, TheNextChangeIsTheEarliestOfAllParts) {
    scene->setPreferredFramesPerSecond(10);
    Frame frame{.grid = {.scale = 1.0, .size = {200, 100}}, .background = {}, .passes = {}};
    FrameBuilder builder(frame, clock.now());
    builder.add(content);
    EXPECT_EQ(builder.nextChange(), scene->nextChange());
    scene->setPlaying(false);
    FrameBuilder still(frame, clock.now());
    still.add(content);
    EXPECT_EQ(still.nextChange(), std::numeric_limits<double>::infinity());
}

TEST_F(SceneFrameTest, AFailureIsToldOnceToWhoAsked) {
    int told = 0;
    scene->onFailure([&] { ++told; });
    scene->fail();
    EXPECT_EQ(told, 1);
    scene->fail();
    EXPECT_EQ(told, 1);
}

}  // namespace
