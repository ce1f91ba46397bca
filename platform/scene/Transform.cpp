// SPDX-License-Identifier: MIT
#include "platform/scene/Transform.h"

#include <algorithm>
#include <cmath>

#include <glm/gtc/matrix_transform.hpp>

namespace platform {

namespace {

constexpr double kNoLength = 1e-12;

// The rotation of least angle that takes one unit vector to another.
glm::dquat leastTurn(const glm::dvec3& from, const glm::dvec3& to) {
    const glm::dvec3 axis = glm::cross(from, to);
    const double cosine = glm::dot(from, to);
    if (glm::length(axis) > kNoLength) return turn(std::atan2(glm::length(axis), cosine), axis);
    return cosine > 0.0 ? turn(0.0, to) : turn(kPi, {0.0, 1.0, 0.0});
}

}  // namespace

glm::dmat4 Pose::matrix() const {
    glm::dmat4 result = glm::mat4_cast(orientation);
    for (int axis = 0; axis < 3; ++axis)
        result[axis] *= scale[axis];
    result[3] = glm::dvec4(position, 1.0);
    return result;
}

glm::dquat fromEuler(const glm::dvec3& angles) {
    return turn(angles.z, {0.0, 0.0, 1.0}) * turn(angles.y, {0.0, 1.0, 0.0}) *
           turn(angles.x, {1.0, 0.0, 0.0});
}

glm::dvec3 toEuler(const glm::dquat& orientation) {
    const glm::dmat3 m = glm::mat3_cast(orientation);
    const double y = std::asin(std::clamp(-m[0][2], -1.0, 1.0));
    // Straight up or down, pitch and roll are the same rotation; the result puts it all in pitch.
    if (std::hypot(m[0][0], m[0][1]) < 1e-9) return {std::atan2(-m[2][1], m[1][1]), y, 0.0};
    return {std::atan2(m[1][2], m[2][2]), y, std::atan2(m[0][1], m[0][0])};
}

glm::dquat turn(double angle, const glm::dvec3& axis) {
    const double length = glm::length(axis);
    if (length == 0.0) return {1.0, 0.0, 0.0, 0.0};
    const double half = 0.5 * std::remainder(angle, 2.0 * kPi);
    return {std::cos(half), axis * (std::sin(half) / length)};
}

glm::dquat power(const glm::dquat& turned, double times) {
    const glm::dvec3 axis(turned.x, turned.y, turned.z);
    return turn(2.0 * std::atan2(glm::length(axis), turned.w) * times, axis);
}

glm::dquat alongShortestArc(const glm::dquat& from, const glm::dquat& to, double progress) {
    const glm::dquat nearest = glm::dot(from, to) < 0.0 ? -to : to;
    if (progress <= 0.0) return from;
    if (progress >= 1.0) return nearest;
    return from * power(glm::conjugate(from) * nearest, progress);
}

glm::dquat facing(const glm::dvec3& direction, const glm::dvec3& up) {
    if (glm::length(direction) < kNoLength) return {1.0, 0.0, 0.0, 0.0};
    const glm::dvec3 back = -glm::normalize(direction);
    const glm::dvec3 right = glm::cross(up, back);
    if (glm::length(right) < kNoLength) return leastTurn({0.0, 0.0, -1.0}, -back);
    const glm::dvec3 unitRight = glm::normalize(right);
    return glm::normalize(glm::quat_cast(glm::dmat3(unitRight, glm::cross(back, unitRight), back)));
}

glm::dvec3 positionOf(const glm::dmat4& matrix) {
    return glm::dvec3(matrix[3]);
}

glm::dvec3 scaleOf(const glm::dmat4& matrix) {
    return {glm::length(glm::dvec3(matrix[0])), glm::length(glm::dvec3(matrix[1])),
            glm::length(glm::dvec3(matrix[2]))};
}

glm::dquat orientationOf(const glm::dmat4& matrix) {
    const glm::dvec3 scale = scaleOf(matrix);
    glm::dmat3 axes(matrix);
    for (int axis = 0; axis < 3; ++axis) {
        if (scale[axis] < kNoLength) return {1.0, 0.0, 0.0, 0.0};
        axes[axis] /= scale[axis];
    }
    return glm::normalize(glm::quat_cast(axes));
}

}  // namespace platform
