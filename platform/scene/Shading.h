// SPDX-License-Identifier: MIT
// The formulas of drawing as pure functions on the CPU; tests check the shaders against them.
// Colours are linear light unless a name says sRGB. Values only, nothing owned. Any thread.
#pragma once

#include <QColor>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include "platform/scene/Material.h"

namespace platform {

// Converts one component in [0, 1]; formulas of IEC 61966-2-1 (sRGB).
[[nodiscard]] double srgbDecode(double encoded);
[[nodiscard]] double srgbEncode(double linear);

// Linear light; alpha unchanged.
[[nodiscard]] glm::dvec4 linearColour(const QColor& colour);

// The fog's share: 0 up to `start`, 1 from `end` on, linear in between; the
// distance to the camera is Euclidean. 0 where end is not beyond start.
[[nodiscard]] double fogFactor(double distance, double start, double end);

// Applies fog to a colour. Additive light only fades.
[[nodiscard]] glm::dvec3 fogged(const glm::dvec3& colour, const glm::dvec3& fog, double factor,
                                BlendMode blend);

// The part of an unclamped colour that blooms: max(0, colour - threshold).
[[nodiscard]] glm::dvec3 brightPass(const glm::dvec3& colour, double threshold);

// The blur's standard deviation in pixels: half the radius, at `scale` pixels per point.
[[nodiscard]] double bloomSigma(double blurRadius, double scale);

// The Gaussian's weight at `distance` from its middle, where the weight is 1.
[[nodiscard]] double gaussian(double distance, double sigma);

// The final picture of scene and bloom: added, clamped, encoded.
[[nodiscard]] glm::dvec3 composite(const glm::dvec3& scene, const glm::dvec3& bloom,
                                   double bloomIntensity);

// The diffuse light of one source (Lambert's cosine law); both directions of unit length.
[[nodiscard]] glm::dvec3 lambertLight(const glm::dvec3& light, const glm::dvec3& normal,
                                      const glm::dvec3& toLight);

// diffuse × (light + ambient) + emission.
[[nodiscard]] glm::dvec3 lambert(const glm::dvec3& diffuse, const glm::dvec3& light,
                                 const glm::dvec3& ambient, const glm::dvec3& emission);

// uv' = M · (u, v, 0, 1).
[[nodiscard]] glm::dvec2 transformTexcoord(const glm::dmat4& transform, const glm::dvec2& uv);

// The same transform in single precision: whole repeats are taken off the
// translation along each repeating direction.
[[nodiscard]] glm::mat4 wrappedContentsTransform(const glm::dmat4& transform, WrapMode wrapS,
                                                 WrapMode wrapT);

// The width in pixels of a particle of `size` units, `depth` units before the
// camera, in a view `viewportHeight` pixels high.
[[nodiscard]] double projectedSize(double size, double depth, double fieldOfView,
                                   double viewportHeight);

// The mirror's share of light for a thing `height` units above the floor.
[[nodiscard]] double reflectionFactor(double height, double reflectivity, double falloffEnd);

}  // namespace platform
