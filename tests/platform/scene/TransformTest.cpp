// SPDX-License-Identifier: MIT
#include "platform/scene/Transform.h"

#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

constexpr double kTiny = 1e-12;

TEST(Transform, EulerAnglesPitchFirstThenYawThenRoll) {
    const glm::dquat q = fromEuler({0.3, 0.7, -0.4});
    const auto separate = glm::angleAxis(-0.4, glm::dvec3(0, 0, 1)) *
                          glm::angleAxis(0.7, glm::dvec3(0, 1, 0)) *
                          glm::angleAxis(0.3, glm::dvec3(1, 0, 0));
    EXPECT_TURN_NEAR(q, separate, kTiny);
    // A quarter of pitch takes y to z, which a quarter of yaw then takes to x.
    EXPECT_VEC_NEAR(fromEuler({kPi / 2, kPi / 2, 0}) * glm::dvec3(0, 1, 0), glm::dvec3(1, 0, 0),
                    kTiny);
}

TEST(Transform, EulerAnglesReadBack) {
    EXPECT_VEC_NEAR(toEuler(fromEuler({0.45, 0.65, 0.1})), glm::dvec3(0.45, 0.65, 0.1), kTiny);
}

TEST(Transform, EulerAnglesStraightUpGiveTheSameTurn) {
    for (const double yaw : {kPi / 2, -kPi / 2}) {
        const glm::dquat q = fromEuler({0.3, yaw, 0.5});
        EXPECT_TURN_NEAR(fromEuler(toEuler(q)), q, 1e-9);
    }
}

TEST(Transform, ThePosesMatrixIsTranslationRotationScale) {
    const Pose pose{{1, 2, 3}, turn(kPi / 2, {0, 0, 1}), {2, 3, 4}};
    EXPECT_VEC_NEAR(pose.matrix() * glm::dvec4(1, 0, 0, 1), glm::dvec3(1, 4, 3), kTiny);
    EXPECT_VEC_NEAR(pose.matrix() * glm::dvec4(0, 1, 0, 1), glm::dvec3(-2, 2, 3), kTiny);
    EXPECT_VEC_NEAR(pose.matrix() * glm::dvec4(0, 0, 1, 1), glm::dvec3(1, 2, 7), kTiny);
}

TEST(Transform, AMatrixGivesItsPartsBack) {
    const Pose pose{{1, -2, 3}, fromEuler({0.1, 0.2, 0.3}), {2, 3, 0.25}};
    EXPECT_VEC_NEAR(positionOf(pose.matrix()), pose.position, kTiny);
    EXPECT_VEC_NEAR(scaleOf(pose.matrix()), pose.scale, kTiny);
    EXPECT_TURN_NEAR(orientationOf(pose.matrix()), pose.orientation, kTiny);
}

TEST(Transform, AFullTurnIsExactlyNone) {
    const glm::dquat full = turn(2.0 * kPi, {0.4, 1.0, 0.2});
    EXPECT_EQ(full, glm::dquat(1.0, 0.0, 0.0, 0.0));
}

TEST(Transform, ATurnAboutAnAxisWithoutLengthIsNone) {
    EXPECT_EQ(turn(1.0, {0, 0, 0}), glm::dquat(1.0, 0.0, 0.0, 0.0));
}

TEST(Transform, APowerIsTheTurnRepeated) {
    const glm::dquat once = turn(0.3, {1, 2, 3});
    EXPECT_TURN_NEAR(power(once, 5.0), turn(1.5, {1, 2, 3}), kTiny);
    EXPECT_TURN_NEAR(power(once, 0.5), turn(0.15, {1, 2, 3}), kTiny);
}

TEST(Transform, TheShortestArcCrossesHalfATurnBackwards) {
    const glm::dquat from = turn(radians(170.0), {0, 1, 0});
    const glm::dquat to = turn(radians(-170.0), {0, 1, 0});
    EXPECT_TURN_NEAR(alongShortestArc(from, to, 0.5), turn(kPi, {0, 1, 0}), kTiny);
    EXPECT_TURN_NEAR(alongShortestArc(from, to, 0.25), turn(radians(175.0), {0, 1, 0}), kTiny);
    EXPECT_EQ(alongShortestArc(from, to, 0.0), from);
}

TEST(Transform, FacingPointsMinusZAndKeepsUp) {
    const glm::dvec3 direction(1, 2, -3);
    const glm::dquat q = facing(direction, {0, 1, 0});
    EXPECT_VEC_NEAR(q * glm::dvec3(0, 0, -1), glm::normalize(direction), kTiny);
    EXPECT_NEAR((q * glm::dvec3(1, 0, 0)).y, 0.0, kTiny);
    EXPECT_GT((q * glm::dvec3(0, 1, 0)).y, 0.0);
}

TEST(Transform, FacingAlongUpStillFaces) {
    for (const double y : {1.0, -1.0}) {
        const glm::dquat q = facing({0, y, 0}, {0, 1, 0});
        EXPECT_VEC_NEAR(q * glm::dvec3(0, 0, -1), glm::dvec3(0, y, 0), kTiny);
    }
    EXPECT_VEC_NEAR(facing({0, 0, 2}, {0, 0, 1}) * glm::dvec3(0, 0, -1), glm::dvec3(0, 0, 1),
                    kTiny);
}

}  // namespace
