// SPDX-License-Identifier: MIT
#include "platform/scene/Shading.h"

#include <algorithm>
#include <cmath>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "platform/scene/Transform.h"

namespace platform {

double srgbDecode(double encoded) {
    return encoded <= 0.04045 ? encoded / 12.92 : std::pow((encoded + 0.055) / 1.055, 2.4);
}

double srgbEncode(double linear) {
    return linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}

glm::dvec4 linearColour(const QColor& colour) {
    return {srgbDecode(colour.redF()), srgbDecode(colour.greenF()), srgbDecode(colour.blueF()),
            colour.alphaF()};
}

double fogFactor(double distance, double start, double end) {
    if (!(end > start)) return 0.0;
    return std::clamp((distance - start) / (end - start), 0.0, 1.0);
}

glm::dvec3 fogged(const glm::dvec3& colour, const glm::dvec3& fog, double factor, BlendMode blend) {
    return blend == BlendMode::Additive ? colour * (1.0 - factor) : glm::mix(colour, fog, factor);
}

glm::dvec3 brightPass(const glm::dvec3& colour, double threshold) {
    return glm::max(colour - threshold, glm::dvec3(0.0));
}

double bloomSigma(double blurRadius, double scale) {
    return 0.5 * blurRadius * scale;
}

double gaussian(double distance, double sigma) {
    return std::exp(-distance * distance / (2.0 * sigma * sigma));
}

glm::dvec3 composite(const glm::dvec3& scene, const glm::dvec3& bloom, double bloomIntensity) {
    const glm::dvec3 light =
        glm::clamp(scene + bloom * bloomIntensity, glm::dvec3(0.0), glm::dvec3(1.0));
    return {srgbEncode(light.r), srgbEncode(light.g), srgbEncode(light.b)};
}

glm::dvec3 lambertLight(const glm::dvec3& light, const glm::dvec3& normal,
                        const glm::dvec3& toLight) {
    return light * std::max(glm::dot(normal, toLight), 0.0);
}

glm::dvec3 lambert(const glm::dvec3& diffuse, const glm::dvec3& light, const glm::dvec3& ambient,
                   const glm::dvec3& emission) {
    return diffuse * (light + ambient) + emission;
}

glm::dvec2 transformTexcoord(const glm::dmat4& transform, const glm::dvec2& uv) {
    return glm::dvec2(transform * glm::dvec4(uv, 0.0, 1.0));
}

glm::mat4 wrappedContentsTransform(const glm::dmat4& transform, WrapMode wrapS, WrapMode wrapT) {
    glm::dmat4 wrapped = transform;
    if (wrapS == WrapMode::Repeat) wrapped[3].x -= std::floor(wrapped[3].x);
    if (wrapT == WrapMode::Repeat) wrapped[3].y -= std::floor(wrapped[3].y);
    return glm::mat4(wrapped);
}

double projectedSize(double size, double depth, double fieldOfView, double viewportHeight) {
    return size * viewportHeight / (2.0 * depth * std::tan(0.5 * radians(fieldOfView)));
}

double reflectionFactor(double height, double reflectivity, double falloffEnd) {
    if (falloffEnd <= 0.0) return reflectivity;
    return reflectivity * (1.0 - std::clamp(height / falloffEnd, 0.0, 1.0));
}

}  // namespace platform
