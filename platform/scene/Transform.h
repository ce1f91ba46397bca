// SPDX-License-Identifier: MIT
// Maths of placing things in space. Right-handed, y up, column vectors, radians, double
// precision; only drawers use single precision. Values only, nothing owned. Any thread.
#pragma once

#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

namespace platform {

inline constexpr double kPi = 3.14159265358979323846;

[[nodiscard]] constexpr double radians(double degrees) {
    return degrees * kPi / 180.0;
}

// Position, orientation and scale; the matrix is T · R · S.
struct Pose {
    glm::dvec3 position{0.0};
    glm::dquat orientation{1.0, 0.0, 0.0, 0.0};
    glm::dvec3 scale{1.0};

    [[nodiscard]] glm::dmat4 matrix() const;
};

// R = Rz · Ry · Rx: pitch (x) acts first on the vertex, then yaw (y), then roll.
[[nodiscard]] glm::dquat fromEuler(const glm::dvec3& angles);
[[nodiscard]] glm::dvec3 toEuler(const glm::dquat& orientation);

// The rotation by `angle` about `axis`, of any length. Whole turns are taken
// off first, so a full turn gives exactly the identity. An axis of zero length
// gives the identity.
[[nodiscard]] glm::dquat turn(double angle, const glm::dvec3& axis);

// The rotation repeated `times` times (any real number), at full precision.
[[nodiscard]] glm::dquat power(const glm::dquat& turn, double times);

// The rotation along the shortest arc; exactly `from` at 0, and an orientation
// equal to `to` at 1.
[[nodiscard]] glm::dquat alongShortestArc(const glm::dquat& from, const glm::dquat& to,
                                          double progress);

// The orientation whose −z points along `direction` and whose y lies as near as
// possible to `up`. For parallel directions, the rotation of least angle from
// −z.
[[nodiscard]] glm::dquat facing(const glm::dvec3& direction, const glm::dvec3& up);

// The parts of a matrix without shear.
[[nodiscard]] glm::dvec3 positionOf(const glm::dmat4& matrix);
[[nodiscard]] glm::dvec3 scaleOf(const glm::dmat4& matrix);
[[nodiscard]] glm::dquat orientationOf(const glm::dmat4& matrix);

}  // namespace platform
