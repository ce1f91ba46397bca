// SPDX-License-Identifier: MIT
#include "platform/scene/NodeAnimation.h"

#include "platform/scene/Scene.h"
#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

NodeAnimation pulse() {
    return {.property = NodeProperty::Scale,
            .values = {glm::dvec3(0.6), glm::dvec3(1.8)},
            .duration = 1.4,
            .repeatCount = kForever};
}

TEST(NodeAnimation, GoesInEqualSegmentsThroughItsValues) {
    const NodeAnimation animation{.values = {{0, 0, 0}, {1, 0, 0}, {1, 2, 0}}, .duration = 2.0};
    EXPECT_VEC_NEAR(*animation.value(0.0), glm::dvec3(0, 0, 0), 1e-12);
    EXPECT_VEC_NEAR(*animation.value(0.5), glm::dvec3(0.5, 0, 0), 1e-12);
    EXPECT_VEC_NEAR(*animation.value(1.5), glm::dvec3(1, 1, 0), 1e-12);
}

TEST(NodeAnimation, HasNoEffectBeforeItsBeginAndAfterItsEnd) {
    const NodeAnimation animation{.values = {{0, 0, 0}, {1, 0, 0}}, .duration = 2.0};
    EXPECT_FALSE(animation.value(-0.1));
    EXPECT_FALSE(animation.value(2.0));
    EXPECT_FALSE(NodeAnimation{}.value(0.1));
}

TEST(NodeAnimation, ATimeOffsetStartsPartWayInAndWraps) {
    const NodeAnimation animation{.values = {{0, 0, 0}, {1, 0, 0}},
                                  .duration = 2.0,
                                  .repeatCount = kForever,
                                  .timeOffset = 1.5};
    EXPECT_NEAR(animation.value(0.0)->x, 0.75, 1e-12);
    EXPECT_NEAR(animation.value(1.0)->x, 0.25, 1e-12);
}

TEST(NodeAnimation, RepeatsWithoutEndAndWithoutDrift) {
    const NodeAnimation animation = pulse();
    const double year = 1.4 * 22'500'000;
    EXPECT_NEAR(animation.value(year + 0.7)->x, 1.2, 1e-6);
}

TEST(NodeAnimation, ShowsWithoutChangingTheNode) {
    Scene scene;
    const auto node = std::make_shared<Node>();
    scene.root().addChild(node);
    scene.advance(10.0);
    node->addAnimation(pulse(), "klop");
    scene.advance(10.7);
    EXPECT_VEC_NEAR(node->shownPose(scene.time()).scale, glm::dvec3(1.2), 1e-9);
    EXPECT_EQ(node->scale(), glm::dvec3(1.0));
    node->removeAnimation("klop");
    EXPECT_EQ(node->shownPose(scene.time()).scale, glm::dvec3(1.0));
    EXPECT_EQ(node->animation("klop"), nullptr);
}

TEST(NodeAnimation, BeginsWhenItsNodeEntersTheScene) {
    Scene scene;
    scene.advance(5.0);
    const auto node = std::make_shared<Node>();
    node->addAnimation({.values = {{0, 0, 0}, {1, 0, 0}}, .duration = 2.0}, "go");
    EXPECT_EQ(node->shownPose(5.0).position, glm::dvec3(0));
    scene.root().addChild(node);
    scene.advance(6.0);
    EXPECT_NEAR(node->shownPose(scene.time()).position.x, 0.5, 1e-12);
    ASSERT_NE(node->animation("go"), nullptr);
    EXPECT_EQ(node->animation("go")->duration, 2.0);
}

TEST(NodeAnimation, OneUnderTheSameKeyReplacesTheFirst) {
    Node node;
    node.addAnimation(pulse(), "klop");
    node.addAnimation({.duration = 3.0}, "klop");
    EXPECT_EQ(node.animation("klop")->duration, 3.0);
}

}  // namespace
