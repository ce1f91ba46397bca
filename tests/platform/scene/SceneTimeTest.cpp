// SPDX-License-Identifier: MIT
// When things happen: blocks, late frames, long times.
#include <string>

#include "platform/scene/DrawList.h"
#include "platform/scene/Scene.h"
#include "tests/platform/scene/Near.h"
#include "tests/support/DigitCube.h"

using namespace platform;

namespace {

constexpr double kYear = 365.25 * 86'400.0;

Action ticking(double interval, std::function<void(Node&)> block) {
    return Action::repeatForever(
        Action::sequence({Action::wait(interval), Action::run(std::move(block))}));
}

struct SceneTime : testing::Test {
    SceneTime() { scene.root().addChild(node); }

    Scene scene;
    NodePtr node = std::make_shared<Node>();
};

TEST_F(SceneTime, ABlockRunsOncePerPassing) {
    int ticks = 0;
    node->runAction(ticking(0.08, [&](Node&) { ++ticks; }));
    for (int frame = 0; frame <= 60; ++frame)
        scene.advance(frame / 60.0);
    EXPECT_EQ(ticks, 12);  // 0.08 … 0.96
    scene.advance(1.0);
    EXPECT_EQ(ticks, 12);
}

TEST_F(SceneTime, ALateFrameRunsEveryDueBlockOnce) {
    int ticks = 0;
    node->runAction(ticking(0.08, [&](Node&) { ++ticks; }));
    scene.advance(10.02);
    EXPECT_EQ(ticks, 125);
}

TEST_F(SceneTime, ABlockRunsInTheFrameInWhichItsTimeFalls) {
    int ticks = 0;
    node->runAction(ticking(0.5, [&](Node&) { ++ticks; }));
    scene.advance(0.499);
    EXPECT_EQ(ticks, 0);
    scene.advance(0.5);
    EXPECT_EQ(ticks, 1);
}

TEST_F(SceneTime, TheWholeSceneStandsAtTheBlocksTime) {
    std::vector<double> times, places;
    const auto mover = std::make_shared<Node>();
    scene.root().addChild(mover);
    mover->runAction(Action::moveBy({10, 0, 0}, 10.0));
    node->runAction(ticking(0.25, [&](Node&) {
        times.push_back(scene.time());
        places.push_back(mover->position().x);
    }));
    scene.advance(1.1);
    EXPECT_EQ(times, (std::vector<double>{0.25, 0.5, 0.75, 1.0}));
    EXPECT_EQ(places, times);
    EXPECT_NEAR(mover->position().x, 1.1, 1e-12);
}

TEST_F(SceneTime, BlocksOfManyActionsRunInOrderOfTime) {
    std::string order;
    node->runAction(ticking(0.35, [&](Node&) { order += 'a'; }));
    const auto other = std::make_shared<Node>();
    scene.root().addChild(other);
    other->runAction(ticking(0.2, [&](Node&) { order += 'b'; }));
    scene.advance(0.95);
    EXPECT_EQ(order, "babbab");
}

TEST_F(SceneTime, BlocksInAGroupRunInOrderOfTime) {
    std::string order;
    const auto after = [&](double delay, char c) {
        return Action::sequence(
            {Action::wait(delay), Action::run([&order, c](Node&) { order += c; })});
    };
    node->runAction(Action::group({after(0.3, 'c'), after(0.1, 'a'), after(0.2, 'b')}));
    scene.advance(1.0);
    EXPECT_EQ(order, "abc");
    EXPECT_EQ(node->actionCount(), 0U);
}

TEST_F(SceneTime, BlocksAtTheStartAndBetweenRunInOrder) {
    std::string order;
    const auto say = [&](char c) { return Action::run([&order, c](Node&) { order += c; }); };
    node->runAction(
        Action::repeatForever(Action::sequence({say('a'), Action::wait(1.0), say('b'), say('c')})));
    scene.advance(0.0);
    EXPECT_EQ(order, "a");
    scene.advance(2.0);
    EXPECT_EQ(order, "abcabca");
}

TEST_F(SceneTime, ARepeatedActionOfNoLengthHappensOncePerFrame) {
    int calls = 0;
    node->runAction(Action::repeatForever(Action::run([&](Node&) { ++calls; })));
    for (const double time : {0.1, 0.2, 50.0})
        scene.advance(time);
    EXPECT_EQ(calls, 3);
}

TEST_F(SceneTime, ABlockMayEndItsOwnAction) {
    int ticks = 0;
    node->runAction(ticking(0.1,
                            [&](Node& self) {
                                if (++ticks == 3) self.removeAction("own");
                            }),
                    "own");
    scene.advance(10.0);
    EXPECT_EQ(ticks, 3);
}

TEST_F(SceneTime, ABlockMayRemoveItsOwnNode) {
    int ticks = 0;
    node->runAction(ticking(0.1, [&](Node& self) {
        ++ticks;
        self.removeFromParent();
    }));
    node.reset();
    scene.advance(10.0);
    EXPECT_EQ(ticks, 1);
    EXPECT_TRUE(scene.root().children().empty());
}

TEST_F(SceneTime, WhatABlockAddsRunsFromTheBlocksTime) {
    const auto added = std::make_shared<Node>();
    node->runAction(Action::sequence({Action::wait(1.0), Action::run([&](Node& self) {
                                          added->runAction(Action::moveBy({4, 0, 0}, 4.0));
                                          self.addChild(added);
                                      })}));
    scene.advance(3.0);
    EXPECT_NEAR(added->position().x, 2.0, 1e-12);
}

TEST_F(SceneTime, TimeNeverGoesBack) {
    node->runAction(Action::moveBy({1, 0, 0}, 1.0));
    scene.advance(0.5);
    scene.advance(0.25);
    EXPECT_EQ(scene.time(), 0.5);
    EXPECT_NEAR(node->position().x, 0.5, 1e-12);
}

// Everything that a drawer would see.
void expectSameFrame(const Scene& a, const Scene& b) {
    DrawList first, second;
    extract(a, 1.5, first);
    extract(b, 1.5, second);
    ASSERT_EQ(first.batches.size(), second.batches.size());
    ASSERT_EQ(first.instances.size(), second.instances.size());
    for (std::size_t i = 0; i < first.batches.size(); ++i)
        EXPECT_EQ(first.batches[i].count, second.batches[i].count);
    for (std::size_t i = 0; i < first.instances.size(); ++i)
        EXPECT_EQ(first.instances[i].world, second.instances[i].world) << i;
}

TEST(SceneStill, AtATimeEqualsTheRunningSceneAtThatTime) {
    DigitCube running(1), still(1);
    for (int frame = 0; frame <= 360; ++frame)
        running.scene.advance(frame / 60.0);
    for (const double time : {0.0, 2.0, 4.0, 6.0})
        still.scene.advance(time);
    EXPECT_EQ(running.ticks, 75);
    EXPECT_EQ(still.ticks, 75);
    expectSameFrame(running.scene, still.scene);
}

TEST(SceneStill, AfterAnHourEqualsTheRunningScene) {
    DigitCube running(2), still(2);
    for (int frame = 0; frame <= 3600 * 30; ++frame)
        running.scene.advance(frame / 30.0);
    still.scene.advance(3600.0);
    EXPECT_EQ(still.ticks, 45'000);
    expectSameFrame(running.scene, still.scene);
}

TEST(SceneStill, OtherSeedsGiveOtherScenes) {
    DigitCube a(1), b(2);
    a.scene.advance(1.0);
    b.scene.advance(1.0);
    int different = 0;
    for (std::size_t i = 0; i < a.digits.size(); ++i) {
        const auto index = [i](const DigitCube& cube) {
            return std::find(cube.shapes.begin(), cube.shapes.end(), cube.digits[i]->geometry()) -
                   cube.shapes.begin();
        };
        if (index(a) != index(b)) ++different;
    }
    EXPECT_GT(different, 100);
}

TEST_F(SceneTime, AnHourInStepsDoesNotDrift) {
    node->setPosition({0, 0.5, 0});
    node->setEulerAngles({0.45, 0.65, 0.1});
    const glm::dquat start = node->orientation();
    node->runAction(Action::repeatForever(Action::rotate(2.0 * kPi, {0.4, 1.0, 0.2}, 24.0)));
    node->runAction(Action::repeatForever(
        Action::sequence({Action::moveBy({0, 0.25, 0}, 2.0), Action::moveBy({0, -0.25, 0}, 2.0)})
            .timed(TimingFunction::easeInEaseOut())));
    for (int frame = 0; frame <= 3600 * 60; ++frame)
        scene.advance(frame / 60.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0, 0.5, 0), 1e-12);
    EXPECT_LT(glm::length(node->orientation() - start), 1e-12);
}

TEST_F(SceneTime, AYearInOneStepKeepsEveryMotionInItsPlace) {
    const glm::dvec3 axis(0.4, 1.0, 0.2);
    const auto drifter = std::make_shared<Node>(), swayer = std::make_shared<Node>();
    scene.root().addChild(drifter);
    scene.root().addChild(swayer);
    node->runAction(Action::repeatForever(Action::rotate(1.0, axis, 0.5)));
    drifter->runAction(Action::repeatForever(Action::moveBy({1, 0, 0}, 0.5)));
    swayer->runAction(Action::repeatForever(Action::sequence(
        {Action::rotateTo({0, 0.55, 0}, 0.25), Action::rotateTo({0, -0.55, 0}, 0.25)})));
    scene.advance(kYear + 0.125);
    const double cycles = 2.0 * (kYear + 0.125);
    EXPECT_NEAR(drifter->position().x, cycles, 1e-6);
    EXPECT_TURN_NEAR(node->orientation(), turn(std::fmod(cycles, 2.0 * kPi), axis), 1e-12);
    EXPECT_NEAR(swayer->eulerAngles().y, 0.0, 1e-6);
}

TEST_F(SceneTime, AYearInOneStepDoesNotRunEveryTick) {
    double ticks = 0;
    node->runAction(ticking(0.08, [&](Node&) { ++ticks; }));
    scene.advance(kYear);
    EXPECT_EQ(ticks, kMaxCatchUpCycles);
    scene.advance(kYear + 1.0);
    EXPECT_NEAR(ticks, kMaxCatchUpCycles + 12.5, 0.6);
}

TEST_F(SceneTime, AfterAYearMotionIsAsSmoothAsInTheFirstMinute) {
    node->runAction(Action::repeatForever(Action::rotateBy({0, 2.0 * kPi, 0}, 24.0)));
    scene.advance(kYear);
    glm::dquat last = node->orientation();
    for (int frame = 1; frame <= 240; ++frame) {
        scene.advance(kYear + frame / 240.0);
        const glm::dquat step = glm::conjugate(last) * node->orientation();
        const double angle = 2.0 * std::atan2(std::abs(step.y), std::abs(step.w));
        EXPECT_NEAR(angle, 2.0 * kPi / 24.0 / 240.0, 1e-8);
        last = node->orientation();
    }
}

}  // namespace
