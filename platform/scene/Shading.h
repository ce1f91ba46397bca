// SPDX-License-Identifier: MIT
// The formulas of drawing as pure functions on the CPU: what the shaders compute
// is checked against them. Colours are linear light unless a name says sRGB.
#pragma once

#include <QColor>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include "platform/scene/Material.h"

namespace platform {

// One component, within [0, 1].
[[nodiscard]] double srgbDecode(double encoded);
[[nodiscard]] double srgbEncode(double linear);

// Linear light, alpha as it is.
[[nodiscard]] glm::dvec4 linearColour(const QColor& colour);

// 0 up to `start`, 1 from `end` on, linear in between; the distance to the
// camera is Euclidean. 0 where end is not beyond start.
[[nodiscard]] double fogFactor(double distance, double start, double end);

// What the fog leaves of a colour. Additive light is only taken away.
[[nodiscard]] glm::dvec3 fogged(const glm::dvec3& colour, const glm::dvec3& fog, double factor,
                                BlendMode blend);

// What of a colour, before it is clamped, blooms.
[[nodiscard]] glm::dvec3 brightPass(const glm::dvec3& colour, double threshold);

// The blur's standard deviation in pixels, at `scale` pixels per point.
[[nodiscard]] double bloomSigma(double blurRadius, double scale);

// The Gaussian's weight at `distance` from its middle, 1 in the middle.
[[nodiscard]] double gaussian(double distance, double sigma);

// Scene and bloom together as they are shown: added, clamped, encoded.
[[nodiscard]] glm::dvec3 composite(const glm::dvec3& scene, const glm::dvec3& bloom,
                                   double bloomIntensity);

// What a light adds; normal and direction to the light of unit length.
[[nodiscard]] glm::dvec3 lambertLight(const glm::dvec3& light, const glm::dvec3& normal,
                                      const glm::dvec3& toLight);

// diffuse × (light + ambient) + emission.
[[nodiscard]] glm::dvec3 lambert(const glm::dvec3& diffuse, const glm::dvec3& light,
                                 const glm::dvec3& ambient, const glm::dvec3& emission);

// uv' = M · (u, v, 0, 1).
[[nodiscard]] glm::dvec2 transformTexcoord(const glm::dmat4& transform, const glm::dvec2& uv);

// The same transform for single precision: along a direction that repeats, the
// translation's whole repeats are taken off.
[[nodiscard]] glm::mat4 wrappedContentsTransform(const glm::dmat4& transform, WrapMode wrapS,
                                                 WrapMode wrapT);

// How many pixels across something of `size` units is, `depth` units before the
// camera, in a view of `viewportHeight` pixels: a particle's side.
[[nodiscard]] double projectedSize(double size, double depth, double fieldOfView,
                                   double viewportHeight);

// A point primitive's diameter in pixels; never thinner than one.
[[nodiscard]] double pointDiameter(double pointSize, double scale);

// The mirror's share of a reflected thing `height` units from the floor.
[[nodiscard]] double reflectionFactor(double height, double reflectivity, double falloffEnd);

}  // namespace platform
