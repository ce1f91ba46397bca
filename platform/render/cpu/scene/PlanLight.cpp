// SPDX-License-Identifier: MIT
// Light that is as good as even along a polygon.
#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "platform/render/cpu/scene/ScenePlan.h"

namespace platform {

namespace {

// The part of a light by which planes may miss the light: less than half a step, once encoded.
constexpr float kUnseen = 1.0F / 300.0F;

// The middle of a polygon's corners, from the camera, and the distance of the farthest corner.
struct Extent {
    glm::vec3 middle{0.0F};
    float radius = 0.0F;
};

template <typename Corner>
Extent extentOf(const std::vector<Corner>& corners) {
    Extent extent;
    for (const Corner& corner : corners)
        extent.middle += corner.way;
    extent.middle /= static_cast<float>(corners.size());
    float square = 0.0F;
    for (const Corner& corner : corners) {
        const glm::vec3 way = corner.way - extent.middle;
        square = std::max(square, glm::dot(way, way));
    }
    extent.radius = std::sqrt(square);
    return extent;
}

// Whether a share, between 0 and 1 once clamped, is clamped for some of a polygon and not for the
// rest, given its least and its greatest value and the room that curves need.
bool bends(float least, float most, float room) {
    const auto isBetween = [&](float at) { return least < at + room && most > at - room; };
    return isBetween(0.0F) || isBetween(1.0F);
}

}  // namespace

glm::vec3 ScenePlan::lightAt(const Surface& surface, const ScreenPolygon& polygon,
                             const Corner& corner) const {
    glm::vec3 light(surface.tint);
    if (surface.lambert) {
        glm::vec3 sum = frame_.ambient;
        for (std::size_t i = 0; i < frame_.lights; ++i) {
            const glm::vec3 way =
                (surface.mirrored ? frame_.mirroredPlace[i] : frame_.lightPlace[i]) - corner.way;
            const float share = glm::dot(way, polygon.normal) / std::max(glm::length(way), 1e-20F);
            sum += std::max(share, 0.0F) * frame_.lightColour[i];
        }
        light = light * sum + surface.emission;
    }
    if (frame_.hasFog) {
        const float away = (glm::length(corner.way) - frame_.fogStart) * frame_.fogShare;
        const float fog = std::clamp(away, 0.0F, 1.0F);
        light = light * (1.0F - fog) + fog * frame_.fogColour;
    }
    if (!surface.mirrored) return light;
    const auto height = static_cast<float>(corner.value[ScreenPolygon::kHeight]);
    const float share = std::clamp(1.0F - height * frame_.reflectionShare, 0.0F, 1.0F);
    return light * (share * frame_.reflectivity);
}

// A lamp's share of a flat face's light is a distance over another. With fog, mirror and
// perspective it is a product of nearly even factors, whose changes along the polygon give the
// error of a plane through the corners.
bool ScenePlan::isEven(const Surface& surface, const ScreenPolygon& polygon) const {
    if (!surface.opaque || surface.picture || (surface.lambert && !polygon.flat)) return false;
    const Extent extent = extentOf(cut_);
    const float away = glm::length(extent.middle);
    if (!(extent.radius * 8.0F < away)) return false;
    float lamp = 0.0F;
    for (std::size_t i = 0; surface.lambert && i < frame_.lights; ++i) {
        const glm::vec3& place = surface.mirrored ? frame_.mirroredPlace[i] : frame_.lightPlace[i];
        const float distance = glm::length(place - extent.middle) - extent.radius;
        lamp = std::max(lamp, extent.radius / std::max(distance, 1e-20F));
    }
    float least = 1e30F;
    float low = 1e30F;
    float high = 0.0F;
    for (const Corner& corner : cut_) {
        least = std::min(least, static_cast<float>(corner.eye.z));
        const auto height = static_cast<float>(corner.value[ScreenPolygon::kHeight]);
        low = std::min(low, height);
        high = std::max(high, height);
    }
    const float depth = extent.radius / least;
    float fog = 0.0F;
    if (frame_.hasFog) {
        fog = extent.radius * frame_.fogShare;
        const float middle = (away - frame_.fogStart) * frame_.fogShare;
        if (bends(middle - fog, middle + fog, 0.0F)) return false;
    }
    float mirror = 0.0F;
    if (surface.mirrored && low * frame_.reflectionShare < 1.0F) {
        const float share = 1.0F - high * frame_.reflectionShare;
        if (!(share > 0.0F)) return false;
        mirror = 0.5F * (high - low) * frame_.reflectionShare / share;
    }
    const float error =
        lamp * (lamp + fog + mirror + depth) + fog * (mirror + depth) + mirror * depth;
    return error < kUnseen;
}

}  // namespace platform
