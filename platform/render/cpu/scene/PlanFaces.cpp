// SPDX-License-Identifier: MIT
// Flat surfaces, cut where the camera sees no further.
#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>
#include <glm/matrix.hpp>
#include <glm/vector_relational.hpp>

#include "platform/render/cpu/scene/ScenePlan.h"
#include "platform/render/cpu/scene/TileFinish.h"

namespace platform {

namespace {

// Whether the camera stands within the mesh's box.
bool surrounds(const Mesh& mesh, const glm::mat4& world, const glm::vec3& camera) {
    const glm::vec3 local(glm::inverse(world) * glm::vec4(camera, 1.0F));
    return glm::all(glm::greaterThan(local, mesh.bounds().low)) &&
           glm::all(glm::lessThan(local, mesh.bounds().high));
}

// The matrix that turns normals, for any scale along each axis.
glm::mat3 cofactors(const glm::mat3& m) {
    glm::mat3 result(glm::cross(m[1], m[2]), glm::cross(m[2], m[0]), glm::cross(m[0], m[1]));
    if (glm::dot(m[0], result[0]) < 0.0F) result = -result;
    return result;
}

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

// Keeps the part of a polygon where `inside` is at least 0.
template <typename Corner, typename Inside>
void cutAway(std::vector<Corner>& from, std::vector<Corner>& to, Inside inside) {
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
        for (std::size_t k = 0; k < between.value.size(); ++k)
            between.value[k] += share * (b.value[k] - a.value[k]);
        to.push_back(between);
    }
    std::swap(from, to);
}

}  // namespace

void ScenePlan::addFaces(const BatchView& view, const DrawInstance& instance) {
    const DrawMaterial& material = view.batch->material;
    const MeshData& data = view.batch->mesh->data();
    Surface surface;
    surface.tint = tintOf(view, instance);
    surface.emission = material.emission;
    surface.lambert = material.lighting == LightingModel::Lambert;
    surface.additive = view.additive;
    surface.opaque = material.opaque && !view.additive && surface.tint.a >= 1.0F;
    surface.repeatS = material.wrapS == WrapMode::Repeat;
    surface.repeatT = material.wrapT == WrapMode::Repeat;
    surface.outlined = view.batch->count > 1 ||
                       !surrounds(*view.batch->mesh, instance.world, list_->camera.position);
    surface.mirrored = view.mirrored;
    surface.hiding = view.hiding;
    if (!material.picture.isNull()) surface.picture = &ripOf(material);
    surface.colours = coloursOf(surface);
    const std::size_t number = surfaces_.size();
    surfaces_.push_back(surface);

    const glm::mat3 turn = cofactors(glm::mat3(instance.world));
    corners_.clear();
    for (std::size_t i = 0; i < data.positions.size(); ++i) {
        Corner& corner = corners_.emplace_back();
        glm::vec3 world(instance.world * glm::vec4(data.positions[i], 1.0F));
        if (view.mirrored) {
            corner.value[ScreenPolygon::kHeight] = heightOf(world);
            world = mirroredPlace(world);
        }
        corner.eye = glm::dvec3(eyeOf(world));
        if (surface.picture && i < data.texcoords.size()) {
            const glm::vec4 uv =
                material.contentsTransform * glm::vec4(data.texcoords[i], 0.0F, 1.0F);
            corner.value[ScreenPolygon::kPicture] = uv.x;
            corner.value[ScreenPolygon::kPicture + 1] = uv.y;
        }
        if (!surface.lambert || i >= data.normals.size()) continue;
        glm::vec3 normal = turn * data.normals[i];
        if (view.mirrored) {
            const glm::vec3 up(floorPlane_);
            normal -= 2.0F * glm::dot(up, normal) * up;
        }
        for (int k = 0; k < 3; ++k)
            corner.value[ScreenPolygon::kNormal + static_cast<std::size_t>(k)] = normal[k];
    }
    for (const MeshShape::Face& face : view.shape->faces) {
        cut_.clear();
        for (int i = 0; i < face.corners; ++i)
            cut_.push_back(corners_[face.corner[static_cast<std::size_t>(i)]]);
        addPolygon(surface, number, material.doubleSided);
    }
}

unsigned ScenePlan::coloursOf(const Surface& surface) const {
    unsigned colours = platform::coloursOf(glm::vec3(surface.tint));
    if (surface.picture) colours &= surface.picture->colours;
    if (surface.lambert) {
        unsigned lamps = platform::coloursOf(frame_.ambient);
        for (std::size_t i = 0; i < frame_.lights; ++i)
            lamps |= platform::coloursOf(frame_.lightColour[i]);
        colours = (colours & lamps) | platform::coloursOf(surface.emission);
    }
    if (frame_.hasFog && !surface.additive) colours |= platform::coloursOf(frame_.fogColour);
    return colours;
}

// The polygon whose corners are in `cut_`.
void ScenePlan::addPolygon(const Surface& surface, std::size_t number, bool doubleSided) {
    const auto isOutside = [&](auto inside) {
        return std::any_of(cut_.begin(), cut_.end(),
                           [&](const Corner& c) { return inside(c) < 0.0; });
    };
    const auto cut = [&](auto inside) {
        if (isOutside(inside)) cutAway(cut_, uncut_, inside);
    };
    cut([&](const Corner& c) { return c.eye.z - zNear_; });
    cut([&](const Corner& c) { return zFar_ - c.eye.z; });
    if (surface.mirrored) cut([&](const Corner& c) { return c.value[ScreenPolygon::kHeight]; });
    const std::size_t count = cut_.size();
    if (count < 3 || count > ScreenPolygon::kMaxEdges) return;
    std::array<glm::dvec2, ScreenPolygon::kMaxEdges> at{};
    glm::dvec2 low(1e30), high(-1e30);
    for (std::size_t i = 0; i < count; ++i) {
        const glm::dvec3& eye = cut_[i].eye;
        at[i] = {lens_.middle.x + eye.x / (eye.z * lens_.perPixel.x),
                 lens_.middle.y - eye.y / (eye.z * lens_.perPixel.y)};
        if (!std::isfinite(at[i].x) || !std::isfinite(at[i].y)) return;
        low = glm::min(low, at[i]);
        high = glm::max(high, at[i]);
    }
    if (high.x < 0.0 || high.y < 0.0 || low.x > size_.width() || low.y > size_.height()) return;
    double area = 0.0;
    double most = 0.0;
    std::size_t second = 1;
    for (std::size_t i = 1; i + 1 < count; ++i) {
        const double part = areaOf(at[0], at[i], at[i + 1]);
        area += part;
        if (std::abs(part) <= most) continue;
        most = std::abs(part);
        second = i;
    }
    // A counterclockwise polygon is clockwise where y points down.
    const bool front = surface.mirrored ? area > 0.0 : area < 0.0;
    if (!(most > 1e-9) || (!front && !doubleSided)) return;
    const ShapeCall call(ShapeKind::Polygon, polygons_.size());
    ScreenPolygon& polygon = polygons_.emplace_back();
    polygon.surface = static_cast<std::uint32_t>(number);
    polygon.back = !front;
    polygon.low = glm::vec2(low);
    polygon.high = glm::vec2(high);
    const double side = area > 0.0 ? 1.0 : -1.0;
    for (std::size_t i = 0; i < count; ++i) {
        const glm::dvec2 way = at[(i + 1) % count] - at[i];
        const double length = glm::length(way);
        if (length < 1e-9) continue;
        Plane& edge = polygon.edge[static_cast<std::size_t>(polygon.edges++)];
        edge.a = -side * way.y / length;
        edge.b = side * way.x / length;
        edge.c = -edge.a * at[i].x - edge.b * at[i].y;
    }
    const std::array<std::size_t, 3> three{0, second, second + 1};
    const std::array<glm::dvec2, 3> places{at[three[0]], at[three[1]], at[three[2]]};
    const double whole = areaOf(places[0], places[1], places[2]);
    const auto plane = [&](auto valueOf) {
        std::array<double, 3> value{};
        for (std::size_t i = 0; i < 3; ++i)
            value[i] = valueOf(cut_[three[i]]) / cut_[three[i]].eye.z;
        return planeOf(places, value, whole);
    };
    polygon.near = plane([](const Corner&) { return 1.0; });
    const auto setAttribute = [&](std::size_t k) {
        polygon.attribute[k] = plane([k](const Corner& c) { return c.value[k]; });
    };
    for (std::size_t k = 0; surface.picture && k < 2; ++k)
        setAttribute(ScreenPolygon::kPicture + k);
    if (surface.lambert) setFlatNormal(polygon);
    for (std::size_t k = 0; surface.lambert && !polygon.flat && k < 3; ++k)
        setAttribute(ScreenPolygon::kNormal + k);
    if (surface.mirrored) setAttribute(ScreenPolygon::kHeight);
    bins_.add(call, polygon);
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
