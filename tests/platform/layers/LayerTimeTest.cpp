// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/layers/Layer.h"

using namespace platform;

namespace {

constexpr QRectF kWindow(0.0, 0.0, 1000.0, 1000.0);

DisplayList shown(Layer& root, double time) {
    DisplayList list;
    DisplayListBuilder(list, time).add(root, {}, kWindow);
    return list;
}

// Re-times without a jump: from `clock` on at another speed.
void retime(Layer& layer, double clock, double speed) {
    const double local = layer.localTime(clock);
    layer.setTime({.beginTime = clock, .timeOffset = local, .speed = speed});
}

KeyframeAnimation steps(int count, double slot) {
    KeyframeAnimation animation{.keyPath = KeyPath::PositionY,
                                .calculationMode = CalculationMode::Discrete,
                                .timing = {.duration = count * slot, .repeatCount = kForever}};
    for (int i = 0; i < count; ++i)
        animation.values.push_back(10.0 * i);
    return animation;
}

class LayerTime : public testing::Test {
  protected:
    LayerTime() {
        root->addSublayer(middle);
        middle->addSublayer(leaf);
        for (Layer* layer : {root.get(), middle.get(), leaf.get()})
            layer->setFrame({0.0, 0.0, 100.0, 100.0});
        leaf->setBackgroundColor(Qt::white);
    }

    [[nodiscard]] double leafY(double time) { return shown(*root, time).items.at(0).rect.top(); }

    std::shared_ptr<Layer> root = std::make_shared<Layer>();
    std::shared_ptr<Layer> middle = std::make_shared<Layer>();
    std::shared_ptr<Layer> leaf = std::make_shared<Layer>();
};

TEST_F(LayerTime, ByDefaultIsTheClocks) {
    EXPECT_EQ(root->time(), (LocalTime{0.0, 0.0, 1.0}));
    EXPECT_EQ(leaf->localTime(1234.5), 1234.5);
}

TEST_F(LayerTime, AppliesTheFormulaOncePerLayerFromTheRootDown) {
    root->setTime({.beginTime = 100.0, .timeOffset = 5.0, .speed = 2.0});
    middle->setTime({.beginTime = 3.0, .timeOffset = 1.0, .speed = 0.5});
    leaf->setTime({.beginTime = 0.0, .timeOffset = -2.0, .speed = 4.0});
    EXPECT_DOUBLE_EQ(root->localTime(110.0), 25.0);
    EXPECT_DOUBLE_EQ(middle->localTime(110.0), 12.0);
    EXPECT_DOUBLE_EQ(leaf->localTime(110.0), 46.0);
}

TEST_F(LayerTime, AMasksParentIsItsLayer) {
    const auto mask = std::make_shared<Layer>();
    leaf->setMask(mask);
    leaf->setTime({.beginTime = 10.0, .timeOffset = 0.0, .speed = 2.0});
    EXPECT_DOUBLE_EQ(mask->localTime(15.0), 10.0);
}

TEST_F(LayerTime, RetimingMakesNoJump) {
    root->setTime({.beginTime = 0.5, .timeOffset = 7.0, .speed = 1.5});
    leaf->addAnimation(
        "fall",
        BasicAnimation{.keyPath = KeyPath::PositionY, .to = 1000.0, .timing = {.duration = 100.0}},
        20.0);
    for (const double speed : {0.25, 3.0, 1.0}) {
        const double before = leafY(30.0);
        retime(*root, 30.0, speed);
        EXPECT_DOUBLE_EQ(leafY(30.0), before);
        EXPECT_NEAR(leafY(31.0) - before, 10.0 * speed, 1e-9);
    }
}

TEST_F(LayerTime, SpeedZeroFreezesAndSpeedOneResumesFromTheSamePicture) {
    leaf->addAnimation("fall", steps(50, 0.1), 20.0);
    const double frozen = leafY(21.23);
    retime(*root, 21.23, 0.0);
    EXPECT_EQ(leafY(21.23), frozen);
    EXPECT_EQ(leafY(500.0), frozen);
    EXPECT_EQ(shown(*root, 500.0).nextChange, kForever);
    retime(*root, 600.0, 1.0);
    EXPECT_EQ(leafY(600.0), frozen);
    EXPECT_NEAR(shown(*root, 600.0).nextChange, 600.07, 1e-9);
    EXPECT_EQ(leafY(600.08), frozen + 10.0);
}

TEST_F(LayerTime, AnAnimationAddedWithoutABeginStartsAtTheLayersNow) {
    root->setTime({.beginTime = 100.0, .timeOffset = 5.0, .speed = 2.0});
    leaf->addAnimation("fall", steps(5, 1.0), 110.0);
    EXPECT_DOUBLE_EQ(leaf->animation("fall")->data().timing.time.beginTime, 25.0);
    // Two seconds of the root in one of the clock.
    EXPECT_DOUBLE_EQ(shown(*root, 110.0).nextChange, 110.5);
}

TEST_F(LayerTime, NextChangeGoesThroughEveryLayersTime) {
    root->setTime({.beginTime = 100.0, .timeOffset = 5.0, .speed = 2.0});
    middle->setTime({.beginTime = 3.0, .timeOffset = 1.0, .speed = 0.2});
    leaf->addAnimation("fall", steps(5, 0.3), 110.0);
    double time = 110.0;
    for (int i = 0; i < 200; ++i) {
        const double next = shown(*root, time).nextChange;
        EXPECT_NEAR(next - time, 0.3 / 0.4, 1e-5);
        EXPECT_EQ(leafY(next - 1e-4), leafY(time));
        EXPECT_NE(leafY(next), leafY(time));
        time = next;
    }
}

TEST_F(LayerTime, NextChangeIsTheEarliestOfAll) {
    middle->addAnimation("fall", steps(5, 0.5), 20.0);
    leaf->addAnimation("fall", steps(5, 0.3), 20.0);
    EXPECT_NEAR(shown(*root, 20.1).nextChange, 20.3, 1e-9);
    EXPECT_NEAR(shown(*root, 20.4).nextChange, 20.5, 1e-9);
}

TEST_F(LayerTime, WithoutAnimationsNothingEverChanges) {
    EXPECT_EQ(shown(*root, 20.0).nextChange, kForever);
}

TEST_F(LayerTime, RunningBackwardsItIsTakenAsMoving) {
    leaf->addAnimation("fall", steps(5, 0.5), 20.0);
    retime(*root, 21.2, -1.0);
    EXPECT_EQ(leafY(21.9), leafY(21.2) - 10.0);
    EXPECT_EQ(shown(*root, 21.9).nextChange, 21.9);
}

TEST_F(LayerTime, AnimationsNeverChangeTheModel) {
    leaf->addAnimation("fade", BasicAnimation{.from = 0.25, .to = 0.75}, 20.0);
    EXPECT_FLOAT_EQ(shown(*root, 20.125).items.at(0).opacity, 0.5F);
    EXPECT_EQ(leaf->opacity(), 1.0);
    EXPECT_EQ(shown(*root, 20.5).items.at(0).opacity, 1.0F);
}

TEST_F(LayerTime, FinishedAnimationsAreDroppedUnlessTheyStay) {
    leaf->addAnimation("short", BasicAnimation{.to = 1.0}, 20.0);
    leaf->addAnimation(
        "kept",
        BasicAnimation{
            .keyPath = KeyPath::PositionX, .to = 1.0, .timing = {.removedOnCompletion = false}},
        20.0);
    EXPECT_NE(leaf->animation("short"), nullptr);
    shown(*root, 20.2);
    EXPECT_NE(leaf->animation("short"), nullptr);
    shown(*root, 20.3);
    EXPECT_EQ(leaf->animation("short"), nullptr);
    EXPECT_NE(leaf->animation("kept"), nullptr);
}

TEST_F(LayerTime, TheSameKeyReplacesAndTheLastAddedWins) {
    leaf->addAnimation("a", BasicAnimation{.from = 0.1, .to = 0.1}, 20.0);
    leaf->addAnimation("a", BasicAnimation{.from = 0.2, .to = 0.2}, 20.0);
    EXPECT_DOUBLE_EQ(leaf->shownOpacity(20.1), 0.2);
    leaf->addAnimation("b", BasicAnimation{.from = 0.3, .to = 0.3}, 20.0);
    EXPECT_DOUBLE_EQ(leaf->shownOpacity(20.1), 0.3);
    leaf->removeAnimation("b");
    EXPECT_DOUBLE_EQ(leaf->shownOpacity(20.1), 0.2);
    leaf->removeAnimation("a");
    EXPECT_DOUBLE_EQ(leaf->shownOpacity(20.1), 1.0);
}

TEST_F(LayerTime, AWeekAndAYearOfClockTimeKeepThePrecision) {
    leaf->addAnimation("fall", steps(61, 0.0625), 1000.0);
    // Whole cycles later, a power of two's fraction each, so exactly the same.
    const double cycle = 61 * 0.0625;
    for (const double seconds : {7.0 * 86400.0, 365.25 * 86400.0}) {
        const double later = std::floor(seconds / cycle) * cycle;
        for (double t = 1000.001; t < 1004.0; t += 0.0625) {
            EXPECT_EQ(leafY(t + later), leafY(t));
            EXPECT_NEAR(shown(*root, t + later).nextChange - later, shown(*root, t).nextChange,
                        1e-6);
        }
    }
}

}  // namespace
