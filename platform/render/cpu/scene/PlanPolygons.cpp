// SPDX-License-Identifier: MIT
// Polygons on the screen, cut where the camera sees no further.
#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <utility>

#include "platform/render/cpu/scene/ScenePlan.h"

namespace platform {

namespace {

// The plane through three values on the screen; twice the corners' area is given.
Plane planeOf(const std::array<glm::dvec2, 3>& at, const std::array<double, 3>& value,
              double area) {
    const double u = value[1] - value[0];
    const double v = value[2] - value[0];
    Plane plane;
    plane.a = (u * (at[2].y - at[0].y) - v * (at[1].y - at[0].y)) / area;
    plane.b = (v * (at[1].x - at[0].x) - u * (at[2].x - at[0].x)) / area;
    plane.c = value[0] - plane.a * at[0].x - plane.b * at[0].y;
    return plane;
}

double areaOf(glm::dvec2 a, glm::dvec2 b, glm::dvec2 c) {
    return (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
}

// The numbers of three corners of a polygon that make a large triangle, and its area.
template <typename Corner>
std::pair<std::array<std::size_t, 3>, double> widestCorners(const std::vector<Corner>& corners) {
    std::array<std::size_t, 3> three{0, 1, 2};
    double whole = 0.0;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        const double part = areaOf(corners[0].at, corners[i].at, corners[i + 1].at);
        if (std::abs(part) <= std::abs(whole)) continue;
        whole = part;
        three = {0, i, i + 1};
    }
    return {three, whole};
}

// Keeps the part of a polygon where `inside` is at least 0.
template <typename Corner, typename Inside, typename PlaceOf>
void cutAway(std::vector<Corner>& from, std::vector<Corner>& to, Inside inside, PlaceOf placeOf) {
    if (std::none_of(from.begin(), from.end(), [&](const Corner& c) { return inside(c) < 0.0; }))
        return;
    to.clear();
    for (std::size_t i = 0; i < from.size(); ++i) {
        const Corner& a = from[i];
        const Corner& b = from[(i + 1) % from.size()];
        const double insideA = inside(a);
        const double insideB = inside(b);
        if (insideA >= 0.0) to.push_back(a);
        if ((insideA >= 0.0) == (insideB >= 0.0)) continue;
        const double share = insideA / (insideA - insideB);
        Corner between = a;
        between.eye += share * (b.eye - a.eye);
        between.way += static_cast<float>(share) * (b.way - a.way);
        between.at = placeOf(between.eye);
        for (std::size_t k = 0; k < between.value.size(); ++k)
            between.value[k] += share * (b.value[k] - a.value[k]);
        to.push_back(between);
    }
    std::swap(from, to);
}

}  // namespace

// Cuts off the parts of the polygon in `cut_` that lie before or behind the camera's view, or below
// the mirror.
void ScenePlan::cutFace(const Surface& surface) {
    const auto cut = [&](auto inside) {
        cutAway(cut_, uncut_, inside, [&](const glm::dvec3& eye) { return screenAt(eye); });
    };
    cut([&](const Corner& c) { return c.eye.z - zNear_; });
    cut([&](const Corner& c) { return zFar_ - c.eye.z; });
    if (surface.mirrored) cut([](const Corner& c) { return c.value[ScreenPolygon::kHeight]; });
}

// Whether the corners in `cut_` make a polygon to be seen from its front, or from a side that
// counts; sets the polygon's box and edges.
bool ScenePlan::setOutline(const Surface& surface, bool doubleSided, ScreenPolygon& polygon) const {
    const std::size_t count = cut_.size();
    if (count < 3 || count > ScreenPolygon::kMaxEdges) return false;
    glm::dvec2 low(1e30), high(-1e30);
    double area = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const glm::dvec2& at = cut_[i].at;
        if (!std::isfinite(at.x) || !std::isfinite(at.y)) return false;
        low = glm::min(low, at);
        high = glm::max(high, at);
        if (i >= 2) area += areaOf(cut_[0].at, cut_[i - 1].at, at);
    }
    if (high.x < 0.0 || high.y < 0.0 || low.x > size_.width() || low.y > size_.height())
        return false;
    // A counterclockwise polygon is clockwise where y points down.
    const bool front = surface.mirrored ? area > 0.0 : area < 0.0;
    if (!front && !doubleSided) return false;
    polygon.back = !front;
    polygon.low = glm::vec2(low);
    polygon.high = glm::vec2(high);
    const double side = area > 0.0 ? 1.0 : -1.0;
    for (std::size_t i = 0; i < count; ++i) {
        const glm::dvec2 way = cut_[(i + 1) % count].at - cut_[i].at;
        const double length = glm::length(way);
        if (length < 1e-9) continue;
        Plane& edge = polygon.edge[static_cast<std::size_t>(polygon.edges++)];
        edge.a = -side * way.y / length;
        edge.b = side * way.x / length;
        edge.c = -edge.a * cut_[i].at.x - edge.b * cut_[i].at.y;
    }
    return true;
}

// The polygon whose corners are in `cut_`.
void ScenePlan::addPolygon(const Surface& surface, std::size_t number, bool doubleSided) {
    ScreenPolygon& polygon = polygons_.emplace_back();
    polygon.surface = static_cast<std::uint32_t>(number);
    const auto [three, whole] = widestCorners(cut_);
    if (!(std::abs(whole) > 1e-9) || !setOutline(surface, doubleSided, polygon)) {
        polygons_.pop_back();
        return;
    }
    const std::array<glm::dvec2, 3> places{cut_[three[0]].at, cut_[three[1]].at, cut_[three[2]].at};
    const auto plane = [&, corner = three, area = whole](auto valueOf) {
        std::array<double, 3> value{};
        for (std::size_t i = 0; i < 3; ++i)
            value[i] = valueOf(cut_[corner[i]]);
        return planeOf(places, value, area);
    };
    polygon.near = plane([](const Corner& c) { return 1.0 / c.eye.z; });
    if (surface.lambert) setFlatNormal(polygon);
    polygon.even = isEven(surface, polygon);
    if (polygon.even) {
        std::array<glm::vec3, 3> light;
        for (std::size_t i = 0; i < 3; ++i)
            light[i] = lightAt(surface, polygon, cut_[three[i]]);
        for (int k = 0; k < 3; ++k)
            polygon.attribute[ScreenPolygon::kLight + static_cast<std::size_t>(k)] =
                planeOf(places, {light[0][k], light[1][k], light[2][k]}, whole);
    }
    const auto setAttributes = [&](std::size_t first, std::size_t count) {
        for (std::size_t k = first; !polygon.even && k < first + count; ++k)
            polygon.attribute[k] = plane([k](const Corner& c) { return c.value[k] / c.eye.z; });
    };
    if (surface.picture) setAttributes(ScreenPolygon::kPicture, 2);
    if (surface.lambert && !polygon.flat) setAttributes(ScreenPolygon::kNormal, 3);
    if (surface.mirrored) setAttributes(ScreenPolygon::kHeight, 1);
    bins_.add(ShapeCall(ShapeKind::Polygon, polygons_.size() - 1), polygon);
}

// Sets the normal of a polygon whose corners, in `cut_`, have the same one.
void ScenePlan::setFlatNormal(ScreenPolygon& polygon) const {
    const auto normalOf = [](const Corner& c) {
        return glm::dvec3(c.value[ScreenPolygon::kNormal], c.value[ScreenPolygon::kNormal + 1],
                          c.value[ScreenPolygon::kNormal + 2]);
    };
    const glm::dvec3 first = normalOf(cut_.front());
    polygon.flat = std::all_of(cut_.begin(), cut_.end(),
                               [&](const Corner& c) { return normalOf(c) == first; });
    if (!polygon.flat) return;
    const double size = std::max(glm::length(first), 1e-20);
    polygon.normal = glm::vec3(first * ((polygon.back ? -1.0 : 1.0) / size));
}

}  // namespace platform
