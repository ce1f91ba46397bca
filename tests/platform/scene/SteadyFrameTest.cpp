// SPDX-License-Identifier: MIT
// A steady frame takes nothing from the heap.
#include <gtest/gtest.h>

#include "platform/scene/DrawList.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/DigitCube.h"

using namespace platform;

namespace {

// Frames until everything has found its size, then frames that are counted.
std::size_t allocationsOf(Scene& scene, DrawList& list) {
    int frame = 0;
    for (; frame < 600; ++frame) {
        scene.advance(frame / 60.0);
        extract(scene, 1.6, list);
    }
    const AllocationCounter counter;
    for (; frame < 1200; ++frame) {
        scene.advance(frame / 60.0);
        extract(scene, 1.6, list);
    }
    return counter.count();
}

TEST(SteadyFrame, TheCounterCounts) {
    const AllocationCounter counter;
    const auto something = std::make_unique<std::vector<int>>(1000);
    EXPECT_EQ(counter.count(), 2U);
}

TEST(SteadyFrame, TickingDigitsTakeNothingFromTheHeap) {
    DigitCube cube(1);
    DrawList list;
    EXPECT_EQ(allocationsOf(cube.scene, list), 0U);
    EXPECT_EQ(list.instances.size(), 343U);
}

TEST(SteadyFrame, ParticlesAndAScrollingPictureTakeNothingFromTheHeap) {
    Scene scene;
    RandomSource random(1);
    const auto emitter = std::make_shared<Node>(), wall = std::make_shared<Node>();
    emitter->setParticles(std::make_shared<ParticleSystem>(
        ParticleSettings{.image = QImage(8, 8, QImage::Format_ARGB32_Premultiplied),
                         .birthRate = 90.0,
                         .lifeSpan = 4.0,
                         .velocity = 9.0,
                         .size = 0.06,
                         .colour = QColor(0, 255, 80),
                         .colourVariation = {0, 0, 0.3, 0},
                         .blendMode = BlendMode::Additive},
        random));
    auto paper = std::make_shared<Material>(Contents(QImage(8, 8, QImage::Format_RGB32)));
    paper->setWrapT(WrapMode::Repeat);
    wall->setGeometry(makeTube({}, paper));
    wall->runAction(Action::repeatForever(Action::rotateBy({0, 2.0 * kPi, 0}, 40.0)));
    wall->runAction(Action::custom(1e6, [paper](Node&, double elapsed) {
        glm::dmat4 transform(1.0);
        transform[3].y = -0.55 * elapsed;
        paper->setContentsTransform(transform);
    }));
    scene.root().addChild(emitter);
    scene.root().addChild(wall);
    DrawList list;
    EXPECT_EQ(allocationsOf(scene, list), 0U);
    EXPECT_GE(list.instances.size(), 360U);
}

TEST(SteadyFrame, SwayingSequencesAnimationsAndCoveringThingsTakeNothingFromTheHeap) {
    Scene scene;
    const GeometryPtr glass = makePlane({}, std::make_shared<Material>(QColor(0, 255, 0, 128)));
    for (int i = 0; i < 20; ++i) {
        const auto node = std::make_shared<Node>(glass);
        node->runAction(
            Action::repeatForever(Action::sequence({Action::rotateTo({0, 0.55, 0}, 0.4),
                                                    Action::moveBy({0, 0.1 * i, 0}, 0.2),
                                                    Action::moveBy({0, -0.1 * i, 0}, 0.2)})
                                      .timed(TimingFunction::easeInEaseOut())));
        node->addAnimation({.property = NodeProperty::Scale,
                            .values = {glm::dvec3(0.6), glm::dvec3(1.8)},
                            .duration = 1.4,
                            .repeatCount = kForever},
                           "klop");
        scene.root().addChild(node);
    }
    DrawList list;
    EXPECT_EQ(allocationsOf(scene, list), 0U);
    EXPECT_EQ(list.instances.size(), 20U);
}

}  // namespace
