// SPDX-License-Identifier: MIT
// Flat surfaces, and the faces of them that are seen.
#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>
#include <glm/matrix.hpp>
#include <glm/vector_relational.hpp>

#include "platform/render/cpu/scene/ScenePlan.h"
#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/TileFinish.h"

namespace platform {

namespace {

// Reasons for which a place cannot be shown.
constexpr unsigned kTooNear = 1;
constexpr unsigned kTooFar = 2;
constexpr unsigned kBelowMirror = 4;
// The pixels by which a coarser mesh may miss its places: half of what samples lie apart.
constexpr float kUnseenMiss = 0.5F / kSamples;

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

// Whether no sample of any pixel lies in a box; two samples of a pixel share no column or row.
bool isBetweenSamples(glm::vec2 low, glm::vec2 high) {
    // Samples lie an eighth of a pixel apart along either side, the first one a sixteenth on.
    constexpr float kRounding = 1e-3F;
    const auto isBetween = [](float from, float to) {
        const float first = std::ceil((from - kRounding) * kSamples - 0.5F);
        return first > (to + kRounding) * kSamples - 0.5F;
    };
    return isBetween(low.x, high.x) || isBetween(low.y, high.y);
}

}  // namespace

Surface ScenePlan::surfaceFor(const BatchView& view, const DrawInstance& instance) {
    const DrawMaterial& material = view.batch->material;
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
    return surface;
}

// Finds where the mesh's points are to be seen.
void ScenePlan::placeMesh(const BatchView& view, const DrawInstance& instance) {
    places_.clear();
    for (const glm::vec3& position : view.batch->mesh->data().positions) {
        glm::vec3 world(instance.world * glm::vec4(position, 1.0F));
        MeshPlace& place = places_.emplace_back();
        if (view.mirrored) {
            place.height = heightOf(world);
            world = mirroredPlace(world);
        }
        place.way = world - list_->camera.position;
        place.eye = eyeOf(world);
        place.at = screenOf(place.eye);
        place.outside = (place.eye.z < zNear_ ? kTooNear : 0U) |
                        (place.eye.z > zFar_ ? kTooFar : 0U) |
                        (place.height < 0.0F ? kBelowMirror : 0U);
    }
}

// Whether something of a face may be seen, by its places alone. Most faces of a mesh turn away,
// or lie between samples.
bool ScenePlan::maySee(const MeshShape::Face& face, const Surface& surface,
                       bool doubleSided) const {
    unsigned any = 0;
    unsigned all = kTooNear | kTooFar | kBelowMirror;
    glm::vec2 low(1e30F), high(-1e30F);
    std::array<glm::vec2, 4> at;
    for (std::size_t i = 0; i < at.size(); ++i) {
        // The last corner of a triangle stands twice.
        const MeshPlace& place = places_[face.corner[i]];
        any |= place.outside;
        all &= place.outside;
        at[i] = place.at;
        low = glm::min(low, at[i]);
        high = glm::max(high, at[i]);
    }
    if (all != 0) return false;
    if (any != 0) return true;
    if (!doubleSided) {
        const glm::vec2 across = at[2] - at[0];
        const glm::vec2 down = at[3] - at[1];
        const float area = across.x * down.y - across.y * down.x;
        // Rounding decides nothing: the polygon's own area does.
        const glm::vec2 size = high - low;
        const float doubt = 1e-3F * (size.x + size.y);
        if ((surface.mirrored ? -area : area) > doubt) return false;
    }
    return !surface.outlined || surface.picture || !isBetweenSamples(low, high);
}

// Puts the face's corners into `cut_`.
void ScenePlan::takeCorners(const MeshShape::Face& face, const BatchView& view,
                            const Surface& surface, const glm::mat3& turn) {
    const DrawMaterial& material = view.batch->material;
    const MeshData& data = view.batch->mesh->data();
    cut_.clear();
    for (int i = 0; i < face.corners; ++i) {
        const std::uint32_t number = face.corner[static_cast<std::size_t>(i)];
        const MeshPlace& place = places_[number];
        Corner& corner = cut_.emplace_back();
        corner.eye = glm::dvec3(place.eye);
        corner.way = place.way;
        corner.at = screenAt(corner.eye);
        corner.value[ScreenPolygon::kHeight] = place.height;
        if (surface.picture && number < data.texcoords.size()) {
            const glm::vec4 uv =
                material.contentsTransform * glm::vec4(data.texcoords[number], 0.0F, 1.0F);
            corner.value[ScreenPolygon::kPicture] = uv.x;
            corner.value[ScreenPolygon::kPicture + 1] = uv.y;
        }
        if (!surface.lambert || number >= data.normals.size()) continue;
        glm::vec3 normal = turn * data.normals[number];
        if (view.mirrored) {
            const glm::vec3 up(floorPlane_);
            normal -= 2.0F * glm::dot(up, normal) * up;
        }
        for (int k = 0; k < 3; ++k)
            corner.value[ScreenPolygon::kNormal + static_cast<std::size_t>(k)] = normal[k];
    }
}

const std::vector<MeshShape::Face>& ScenePlan::facesOf(const BatchView& view,
                                                       const Surface& surface,
                                                       const DrawInstance& instance) const {
    const MeshShape& shape = *view.shape;
    if (surface.picture) return shape.faces[MeshShape::kPicture];
    if (surface.lambert) return shape.faces[MeshShape::kNormals];
    const std::vector<MeshShape::Face>* faces = &shape.faces[MeshShape::kShape];
    if (shape.coarser.empty()) return *faces;
    float nearest = 1e30F;
    for (const MeshPlace& place : places_)
        nearest = std::min(nearest, place.eye.z);
    const float perPixel = std::max(nearest, zNear_) * std::min(lens_.perPixel.x, lens_.perPixel.y);
    float grown = 0.0F;
    for (int i = 0; i < 3; ++i)
        grown = std::max(grown, glm::length(glm::vec3(instance.world[i])));
    for (const MeshShape::Level& level : shape.coarser)
        if (level.miss * grown < kUnseenMiss * perPixel) faces = &level.faces;
    return *faces;
}

void ScenePlan::addFaces(const BatchView& view, const DrawInstance& instance) {
    const bool doubleSided = view.batch->material.doubleSided;
    const std::size_t number = surfaces_.size();
    const Surface surface = surfaces_.emplace_back(surfaceFor(view, instance));
    const glm::mat3 turn = cofactors(glm::mat3(instance.world));
    placeMesh(view, instance);
    for (const MeshShape::Face& face : facesOf(view, surface, instance)) {
        if (!maySee(face, surface, doubleSided)) continue;
        takeCorners(face, view, surface, turn);
        cutFace(surface);
        addPolygon(surface, number, doubleSided);
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

}  // namespace platform
