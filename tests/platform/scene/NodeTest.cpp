// SPDX-License-Identifier: MIT
#include "platform/scene/Node.h"

#include "platform/scene/Scene.h"
#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

constexpr double kTiny = 1e-12;

NodePtr node() {
    return std::make_shared<Node>();
}

TEST(Node, AChildLeavesItsOldParent) {
    const NodePtr a = node(), b = node(), child = node();
    a->addChild(child);
    b->addChild(child);
    EXPECT_TRUE(a->children().empty());
    EXPECT_EQ(child->parent(), b.get());
    b->removeAllChildren();
    EXPECT_EQ(child->parent(), nullptr);
    EXPECT_TRUE(b->children().empty());
}

TEST(Node, ChildrenKeepTheirOrder) {
    const NodePtr parent = node(), a = node(), b = node(), c = node();
    for (const NodePtr& child : {a, b, c})
        parent->addChild(child);
    b->removeFromParent();
    EXPECT_EQ(parent->children(), (std::vector<NodePtr>{a, c}));
    parent->addChild(b);
    EXPECT_EQ(parent->children(), (std::vector<NodePtr>{a, c, b}));
}

TEST(Node, AChildHeldByItsParentAloneCanRemoveItself) {
    const NodePtr parent = node();
    parent->addChild(node());
    parent->children().front()->removeFromParent();
    EXPECT_TRUE(parent->children().empty());
}

TEST(Node, OutlivesItsParentOnlyWithoutAPlace) {
    const NodePtr child = node();
    {
        const NodePtr parent = node();
        parent->addChild(child);
    }
    EXPECT_EQ(child->parent(), nullptr);
}

TEST(Node, OutlivesItsScene) {
    const NodePtr child = node();
    {
        Scene scene;
        scene.root().addChild(child);
        child->runAction(Action::wait(1.0));
    }
    child->runAction(Action::wait(1.0), "outside");
    EXPECT_EQ(child->actionCount(), 2U);
    child->removeAction("outside");
    EXPECT_EQ(child->actionCount(), 1U);
}

TEST(Node, IsFoundByNameAtAnyDepth) {
    const NodePtr root = node(), middle = node(), leaf = node();
    leaf->setName("leaf");
    root->addChild(middle);
    middle->addChild(leaf);
    EXPECT_EQ(root->find("leaf"), leaf);
    EXPECT_EQ(root->find("other"), nullptr);
}

TEST(Node, TheLastWrittenOfRotationAndOrientationWins) {
    Node n;
    n.setEulerAngles({0.1, 4.0, 0.3});
    EXPECT_EQ(n.eulerAngles(), glm::dvec3(0.1, 4.0, 0.3));  // as written, not wrapped
    n.setOrientation(turn(0.5, {0, 1, 0}));
    EXPECT_VEC_NEAR(n.eulerAngles(), glm::dvec3(0, 0.5, 0), kTiny);
    n.setEulerAngles({0.2, 0, 0});
    EXPECT_TURN_NEAR(n.orientation(), turn(0.2, {1, 0, 0}), kTiny);
}

TEST(Node, RotateTurnsAboutTheNodesOwnAxis) {
    Node n;
    n.setEulerAngles({0, 0, kPi / 2});  // its own x is the parent's y
    n.rotate(kPi / 2, {1, 0, 0});
    EXPECT_VEC_NEAR(n.orientation() * glm::dvec3(0, 0, 1), glm::dvec3(1, 0, 0), kTiny);
}

TEST(Node, AChildLiesInItsParentsSpace) {
    const NodePtr parent = node(), child = node();
    parent->addChild(child);
    parent->setPosition({0, 1, 0});
    parent->setScale({2, 2, 2});
    parent->setEulerAngles({0, kPi / 2, 0});
    child->setPosition({1, 0, 0});
    EXPECT_VEC_NEAR(child->worldPosition(), glm::dvec3(0, 1, -2), kTiny);
}

TEST(Node, LookAtPointsMinusZAtTheTarget) {
    Node n;
    n.setPosition({0, 2.2, 15});
    n.lookAt({0, 0, 0});
    EXPECT_VEC_NEAR(n.orientation() * glm::dvec3(0, 0, -1), -glm::normalize(n.position()), kTiny);
    EXPECT_NEAR((n.orientation() * glm::dvec3(1, 0, 0)).y, 0.0, kTiny);
}

TEST(Node, LookAtKeepsTheNodesOwnUp) {
    Node n;
    n.setEulerAngles({0, 0, kPi / 2});  // its up is −x
    n.lookAt({0, 0, -5});
    EXPECT_VEC_NEAR(n.orientation() * glm::dvec3(0, 1, 0), glm::dvec3(-1, 0, 0), kTiny);
}

TEST(Node, LookAtTakesAPointOfTheScene) {
    const NodePtr parent = node(), child = node();
    parent->addChild(child);
    parent->setPosition({1, 2, 3});
    parent->setEulerAngles({0.4, 1.2, -0.3});
    child->setPosition({1, 0, 2});
    child->lookAt({5, 5, 5});
    const glm::dvec3 front = orientationOf(child->worldTransform()) * glm::dvec3(0, 0, -1);
    EXPECT_VEC_NEAR(front, glm::normalize(glm::dvec3(5, 5, 5) - child->worldPosition()), kTiny);
}

TEST(Node, LookAtItsOwnPlaceChangesNothing) {
    Node n;
    n.setEulerAngles({0.1, 0.2, 0.3});
    n.lookAt({0, 0, 0});
    EXPECT_EQ(n.eulerAngles(), glm::dvec3(0.1, 0.2, 0.3));
}

TEST(Node, ARingTurnedToFaceOutwardsLiesFlatAfterAQuarterOfPitch) {
    Node ring;
    const glm::dvec3 place = glm::normalize(glm::dvec3(0.3, 0.8, 0.5));
    ring.setPosition(place);
    ring.lookAt(2.0 * place);
    ring.rotate(kPi / 2, {1, 0, 0});
    const glm::dvec3 axis = ring.orientation() * glm::dvec3(0, 1, 0);
    EXPECT_NEAR(std::abs(glm::dot(axis, place)), 1.0, kTiny);
}

TEST(NodeDeathTest, NeverBecomesItsOwnAncestor) {
    const NodePtr a = node(), b = node();
    a->addChild(b);
    EXPECT_DEATH(b->addChild(a), "");
    EXPECT_DEATH(a->addChild(a), "");
}

TEST(Scene, ThePointOfViewIsTheFirstCamera) {
    Scene scene;
    EXPECT_EQ(scene.pointOfView(), nullptr);
    const NodePtr first = node(), second = node();
    scene.root().addChild(node());
    scene.root().addChild(first);
    scene.root().addChild(second);
    first->setCamera(Camera{});
    second->setCamera(Camera{});
    EXPECT_EQ(scene.pointOfView(), first.get());
    first->removeFromParent();
    EXPECT_EQ(scene.pointOfView(), second.get());
}

}  // namespace
