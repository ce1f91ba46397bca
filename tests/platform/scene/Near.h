// SPDX-License-Identifier: MIT
// Comparing vectors and turns in tests.
#pragma once

#include <gtest/gtest.h>

#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>

#define EXPECT_VEC_NEAR(actual, expected, tolerance)              \
    do {                                                          \
        const glm::dvec3 a_{actual}, e_{expected};                \
        EXPECT_NEAR(a_.x, e_.x, tolerance) << "x of " << #actual; \
        EXPECT_NEAR(a_.y, e_.y, tolerance) << "y of " << #actual; \
        EXPECT_NEAR(a_.z, e_.z, tolerance) << "z of " << #actual; \
    } while (false)

// The same turn, whichever of its two quaternions.
#define EXPECT_TURN_NEAR(actual, expected, tolerance) \
    EXPECT_NEAR(std::abs(glm::dot(glm::dquat(actual), glm::dquat(expected))), 1.0, tolerance)
