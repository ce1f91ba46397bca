// SPDX-License-Identifier: MIT
// The maths of placing things in space. Right-handed, y up, column vectors,
// radians, double precision: only what is handed to a drawer becomes single.
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

// The turn by `angle` about `axis`, which need not be of unit length. Whole
// turns are taken off first, so that a full turn is exactly none. No turn when
// the axis has no length.
[[nodiscard]] glm::dquat turn(double angle, const glm::dvec3& axis);

// The turn repeated `times` times (any real number), at full precision.
[[nodiscard]] glm::dquat power(const glm::dquat& turn, double times);

// Along the shortest arc; exactly `from` at 0 and an orientation equal to `to`
// at 1.
[[nodiscard]] glm::dquat alongShortestArc(const glm::dquat& from, const glm::dquat& to,
                                          double progress);

// The orientation whose −z points along `direction` and whose y lies as near to
// `up` as that allows. Where the two are parallel, the turn of least angle from
// −z.
[[nodiscard]] glm::dquat facing(const glm::dvec3& direction, const glm::dvec3& up);

// What a matrix without shear is made of.
[[nodiscard]] glm::dvec3 positionOf(const glm::dmat4& matrix);
[[nodiscard]] glm::dvec3 scaleOf(const glm::dmat4& matrix);
[[nodiscard]] glm::dquat orientationOf(const glm::dmat4& matrix);

}  // namespace platform
