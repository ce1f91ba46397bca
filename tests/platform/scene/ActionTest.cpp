// SPDX-License-Identifier: MIT
#include "platform/scene/Action.h"

#include <cmath>

#include "platform/scene/Scene.h"
#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

constexpr double kTiny = 1e-12;

// One node in a scene that stands at 0.
struct Stage {
    Stage() { scene.root().addChild(node); }

    Scene scene;
    NodePtr node = std::make_shared<Node>();
};

struct ActionTest : testing::Test, Stage {};

TEST_F(ActionTest, MoveByMovesInTheParentsSpace) {
    node->setEulerAngles({1, 1, 1});
    node->setPosition({0, 0.5, 0});
    node->runAction(Action::moveBy({0, 0.25, 0}, 2.0));
    scene.advance(1.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0, 0.625, 0), kTiny);
    scene.advance(9.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0, 0.75, 0), kTiny);
    EXPECT_EQ(node->actionCount(), 0U);
}

TEST_F(ActionTest, RotateByFromRestIsASteadyTurnAboutItsVector) {
    const glm::dvec3 angles(0.6, 1.2, -0.4);
    node->runAction(Action::rotateBy(angles, 4.0));
    scene.advance(1.0);
    EXPECT_TURN_NEAR(node->orientation(), turn(0.25 * glm::length(angles), angles), kTiny);
}

TEST_F(ActionTest, RotateByTurnsAboutTheNodesOwnAxes) {
    node->setEulerAngles({kPi / 2, 0, 0});  // its own y lies along the scene's z
    node->runAction(Action::rotateBy({0, 2.0 * kPi, 0}, 40.0));
    scene.advance(10.0);
    EXPECT_VEC_NEAR(node->orientation() * glm::dvec3(0, 1, 0), glm::dvec3(0, 0, 1), kTiny);
    EXPECT_VEC_NEAR(node->orientation() * glm::dvec3(1, 0, 0), glm::dvec3(0, 1, 0), kTiny);
}

TEST_F(ActionTest, RotateTurnsAboutAnAxisOfTheNodesOwnFrame) {
    const glm::dvec3 axis(0.4, 1.0, 0.2);
    const glm::dquat start = fromEuler({0.45, 0.65, 0.1});
    node->setOrientation(start);
    node->runAction(Action::repeatForever(Action::rotate(2.0 * kPi, axis, 24.0)));
    scene.advance(30.0);
    EXPECT_TURN_NEAR(node->orientation(), start * turn(kPi / 2, axis), kTiny);
}

TEST_F(ActionTest, AFullTurnEndsExactlyWhereItBegan) {
    node->setEulerAngles({0.45, 0.65, 0.1});
    const glm::dquat start = node->orientation();
    node->runAction(Action::rotate(2.0 * kPi, {0.4, 1.0, 0.2}, 24.0));
    scene.advance(24.0);
    EXPECT_LT(glm::length(node->orientation() - start), 1e-15);
}

TEST_F(ActionTest, RotateToGoesAlongTheShortestArc) {
    node->setEulerAngles({0, radians(170.0), 0});
    node->runAction(Action::rotateTo({0, radians(-170.0), 0}, 2.0));
    scene.advance(0.5);
    EXPECT_TURN_NEAR(node->orientation(), turn(radians(175.0), {0, 1, 0}), kTiny);
    scene.advance(2.0);
    EXPECT_TURN_NEAR(node->orientation(), turn(radians(-170.0), {0, 1, 0}), kTiny);
}

TEST_F(ActionTest, AnActionOfNoDurationIsDoneAtOnce) {
    node->runAction(Action::moveBy({1, 0, 0}, 0.0));
    scene.advance(0.0);
    EXPECT_EQ(node->position(), glm::dvec3(1, 0, 0));
}

TEST_F(ActionTest, ASequenceGoesOneAfterTheOther) {
    node->runAction(Action::sequence(
        {Action::moveBy({1, 0, 0}, 1.0), Action::wait(0.5), Action::moveBy({0, 2, 0}, 2.0)}));
    scene.advance(0.5);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0.5, 0, 0), kTiny);
    scene.advance(1.25);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(1, 0, 0), kTiny);
    scene.advance(2.5);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(1, 1, 0), kTiny);
}

TEST_F(ActionTest, AGroupGoesAllAtOnce) {
    const Action group =
        Action::group({Action::moveBy({1, 0, 0}, 1.0), Action::rotateBy({0, 1, 0}, 2.0)});
    EXPECT_EQ(group.duration(), 2.0);
    node->runAction(group);
    scene.advance(1.5);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(1, 0, 0), kTiny);
    EXPECT_TURN_NEAR(node->orientation(), turn(0.75, {0, 1, 0}), kTiny);
}

TEST_F(ActionTest, ATimingOfASequenceEasesEachOfItsSteps) {
    const Action bob =
        Action::sequence({Action::moveBy({0, 0.25, 0}, 2.0), Action::moveBy({0, -0.25, 0}, 2.0)});
    const TimingFunction ease = TimingFunction::easeInEaseOut();
    node->runAction(bob.timed(ease));
    scene.advance(0.5);
    EXPECT_NEAR(node->position().y, 0.25 * ease(0.25), 1e-9);
    scene.advance(2.0);
    EXPECT_NEAR(node->position().y, 0.25, 1e-9);
    scene.advance(2.5);
    EXPECT_NEAR(node->position().y, 0.25 - 0.25 * ease(0.25), 1e-9);
    scene.advance(4.0);
    EXPECT_NEAR(node->position().y, 0.0, 1e-9);
}

TEST_F(ActionTest, AStepOfASequenceKeepsATimingOfItsOwn) {
    const TimingFunction own = TimingFunction::easeIn();
    node->runAction(Action::sequence(
                        {Action::moveBy({1, 0, 0}, 2.0).timed(own), Action::moveBy({1, 0, 0}, 2.0)})
                        .timed(TimingFunction::easeOut()));
    scene.advance(0.5);
    EXPECT_NEAR(node->position().x, own(0.25), 1e-9);
    scene.advance(2.5);
    EXPECT_NEAR(node->position().x, 1.0 + TimingFunction::easeOut()(0.25), 1e-9);
}

TEST_F(ActionTest, ARepeatedSequenceIsEasedInEachStepOfEachCycle) {
    const TimingFunction ease = TimingFunction::easeInEaseOut();
    const Action sway = Action::sequence({Action::rotateTo({0, 0.55, 0}, 4.0),
                                          Action::rotateTo({0, -0.55, 0}, 4.0)})
                            .timed(ease);
    node->runAction(Action::repeatForever(sway));
    scene.advance(4.0);
    EXPECT_NEAR(node->eulerAngles().y, 0.55, 1e-9);
    scene.advance(9.0);  // one second into the second cycle
    EXPECT_NEAR(node->eulerAngles().y, -0.55 + 1.1 * ease(0.25), 1e-9);
}

TEST_F(ActionTest, ATimingOfASingleActionWarpsItsProgress) {
    const TimingFunction ease = TimingFunction::easeIn();
    node->runAction(Action::moveBy({1, 0, 0}, 2.0).timed(ease));
    scene.advance(0.5);
    EXPECT_NEAR(node->position().x, ease(0.25), 1e-9);
}

TEST_F(ActionTest, ABlockInAnEasedSequenceFallsWhereItsStepBegins) {
    double at = -1.0;
    node->runAction(
        Action::sequence(
            {Action::wait(1.0), Action::run([&](Node&) { at = scene.time(); }), Action::wait(1.0)})
            .timed(TimingFunction::easeIn()));
    scene.advance(10.0);
    EXPECT_NEAR(at, 1.0, 1e-9);
}

TEST_F(ActionTest, CustomActionsGetTheSecondsSinceTheyBegan) {
    std::vector<double> seen;
    scene.advance(3.0);
    node->runAction(Action::custom(2.0, [&](Node& n, double elapsed) {
        EXPECT_EQ(&n, node.get());
        seen.push_back(elapsed);
    }));
    for (const double time : {3.0, 3.5, 4.5, 7.0, 8.0})
        scene.advance(time);
    EXPECT_EQ(seen, (std::vector<double>{0.0, 0.5, 1.5, 2.0}));
}

TEST_F(ActionTest, TwoMotionsOfOnePropertyAddUp) {
    node->runAction(Action::moveBy({1, 0, 0}, 2.0));
    node->runAction(Action::moveBy({0, 1, 0}, 1.0));
    for (int i = 1; i <= 40; ++i)
        scene.advance(0.05 * i);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(1, 1, 0), 1e-9);
}

TEST_F(ActionTest, AMotionGoesOnFromWhatElseWasWritten) {
    node->runAction(Action::moveBy({1, 0, 0}, 2.0));
    node->runAction(Action::rotateBy({0, 1, 0}, 2.0));
    scene.advance(1.0);
    node->setPosition({0, 5, 0});
    node->setOrientation(turn(0.3, {1, 0, 0}));
    scene.advance(2.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0.5, 5, 0), kTiny);
    EXPECT_TURN_NEAR(node->orientation(), turn(0.3, {1, 0, 0}) * turn(0.5, {0, 1, 0}), kTiny);
}

TEST_F(ActionTest, BeginsWhenItsNodeEntersTheScene) {
    const auto late = std::make_shared<Node>();
    late->runAction(Action::moveBy({1, 0, 0}, 2.0));
    scene.advance(100.0);
    scene.root().addChild(late);
    scene.advance(101.0);
    EXPECT_VEC_NEAR(late->position(), glm::dvec3(0.5, 0, 0), kTiny);
}

TEST_F(ActionTest, ARemovedNodesActionsStandStill) {
    node->runAction(Action::moveBy({1, 0, 0}, 4.0));
    scene.advance(1.0);
    node->removeFromParent();
    scene.advance(2.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0.25, 0, 0), kTiny);
    scene.root().addChild(node);
    scene.advance(3.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0.75, 0, 0), kTiny);
}

TEST_F(ActionTest, AnActionUnderAKeyReplacesTheOneBefore) {
    node->runAction(Action::moveBy({1, 0, 0}, 1.0), "go");
    node->runAction(Action::moveBy({0, 1, 0}, 1.0), "go");
    EXPECT_EQ(node->actionCount(), 1U);
    scene.advance(1.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0, 1, 0), kTiny);
    EXPECT_FALSE(node->hasAction("go"));
}

TEST_F(ActionTest, RemovedActionsStopWhereTheyAre) {
    node->runAction(Action::moveBy({1, 0, 0}, 1.0), "a");
    node->runAction(Action::moveBy({0, 1, 0}, 1.0), "b");
    scene.advance(0.5);
    EXPECT_TRUE(node->hasAction("a"));
    node->removeAction("a");
    scene.advance(0.75);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0.5, 0.75, 0), kTiny);
    node->removeAction("b");
    scene.advance(1.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(0.5, 0.75, 0), kTiny);
}

TEST_F(ActionTest, OneDescriptionRunsOnManyNodes) {
    const Action move = Action::repeatForever(Action::moveBy({1, 0, 0}, 1.0));
    const auto other = std::make_shared<Node>();
    scene.root().addChild(other);
    node->runAction(move);
    scene.advance(0.5);
    other->runAction(move);
    scene.advance(1.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(1, 0, 0), kTiny);
    EXPECT_VEC_NEAR(other->position(), glm::dvec3(0.5, 0, 0), kTiny);
}

TEST_F(ActionTest, RepeatingWhatNeverEndsIsTheSame) {
    const Action forever = Action::repeatForever(Action::moveBy({1, 0, 0}, 1.0));
    EXPECT_TRUE(std::isinf(forever.duration()));
    node->runAction(Action::repeatForever(forever));
    scene.advance(2.5);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(2.5, 0, 0), kTiny);
}

TEST_F(ActionTest, NothingAfterWhatNeverEnds) {
    node->runAction(Action::sequence({Action::repeatForever(Action::moveBy({1, 0, 0}, 1.0)),
                                      Action::run([](Node&) { FAIL(); })}));
    scene.advance(3.0);
    EXPECT_VEC_NEAR(node->position(), glm::dvec3(3, 0, 0), kTiny);
}

TEST_F(ActionTest, EmptySequencesAndGroupsAreDoneAtOnce) {
    node->runAction(Action::sequence({}));
    node->runAction(Action::group({}));
    node->runAction(Action::repeatForever(Action::sequence({})));
    scene.advance(1.0);
    EXPECT_EQ(node->actionCount(), 1U);
}

}  // namespace
