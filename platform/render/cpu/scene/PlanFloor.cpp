// SPDX-License-Identifier: MIT
// The floor, and the scene that is mirrored in it.
#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/matrix.hpp>

#include "platform/render/cpu/LinearPixels.h"
#include "platform/render/cpu/scene/ScenePlan.h"
#include "platform/render/cpu/scene/TileFinish.h"

namespace platform {

namespace {

using Kinds = std::array<int, StripePicture::kMostKinds>;  // a line of each kind

// Sorts a picture's columns or rows into kinds of equal look. False for too many kinds, or if a
// kind other than the most frequent one has more than one stretch.
template <typename Same>
bool findKinds(int count, Same same, StripePicture::Kind* kinds, std::size_t& found, Kinds& line) {
    if (count < 1) return false;
    std::vector<int> kindOf;
    std::vector<int> first{0};
    for (int i = 0; i < count; ++i) {
        std::size_t kind = 0;
        while (kind < first.size() && !same(first[kind], i))
            ++kind;
        if (kind == first.size()) first.push_back(i);
        if (first.size() > StripePicture::kMostKinds) return false;
        kindOf.push_back(static_cast<int>(kind));
    }
    const auto countOf = [&](std::size_t kind) {
        return std::count(kindOf.begin(), kindOf.end(), static_cast<int>(kind));
    };
    std::size_t rest = 0;
    for (std::size_t kind = 1; kind < first.size(); ++kind)
        if (countOf(kind) > countOf(rest)) rest = kind;
    found = 1;
    line[0] = first[rest];
    for (std::size_t kind = 0; kind < first.size(); ++kind) {
        if (kind == rest) continue;
        const auto length = static_cast<int>(countOf(kind));
        for (int i = first[kind]; i < first[kind] + length; ++i)
            if (kindOf[static_cast<std::size_t>(i)] != static_cast<int>(kind)) return false;
        line[found] = first[kind];
        kinds[found++] = {static_cast<float>(first[kind]) / static_cast<float>(count),
                          static_cast<float>(first[kind] + length) / static_cast<float>(count)};
    }
    return true;
}

std::unique_ptr<StripePicture> stripesOf(const QImage& picture) {
    const int width = picture.width();
    const int height = picture.height();
    const std::vector<std::uint16_t> pixels = linearPixels(picture);
    const auto at = [&](int x, int y) {
        return &pixels[4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(x))];
    };
    const auto isSame = [&](int x, int y, int otherX, int otherY) {
        return std::equal(at(x, y), at(x, y) + 4, at(otherX, otherY));
    };
    auto stripes = std::make_unique<StripePicture>();
    stripes->texel = {1.0F / static_cast<float>(width), 1.0F / static_cast<float>(height)};
    Kinds column{};
    Kinds row{};
    const bool simple = findKinds(
                            width,
                            [&](int a, int b) {
                                for (int y = 0; y < height; ++y)
                                    if (!isSame(a, y, b, y)) return false;
                                return true;
                            },
                            stripes->column, stripes->columnKinds, column) &&
                        findKinds(
                            height,
                            [&](int a, int b) {
                                for (int x = 0; x < width; ++x)
                                    if (!isSame(x, a, x, b)) return false;
                                return true;
                            },
                            stripes->row, stripes->rowKinds, row);
    if (!simple) return nullptr;
    for (std::size_t i = 0; i < stripes->columnKinds; ++i)
        for (std::size_t j = 0; j < stripes->rowKinds; ++j) {
            const std::uint16_t* const texel = at(column[i], row[j]);
            stripes->colour[i][j] = glm::vec3(texel[0], texel[1], texel[2]) / 65535.0F;
        }
    return stripes;
}

Plane scaled(const Plane& plane, double by) {
    return {plane.a * by, plane.b * by, plane.c * by};
}

}  // namespace

// A direction's part along an axis of the eye, for every pixel.
Plane ScenePlan::along(const glm::dvec3& axis) const {
    const double x = lens_.perPixel.x;
    const double y = lens_.perPixel.y;
    return {axis.x * x, -axis.y * y,
            -axis.x * x * lens_.middle.x + axis.y * y * lens_.middle.y - axis.z};
}

void ScenePlan::addFloor(const DrawFloor& floor) {
    const glm::vec3 normal =
        glm::normalize(glm::cross(glm::vec3(floor.world[2]), glm::vec3(floor.world[0])));
    floorPlane_ = glm::vec4(normal, -glm::dot(normal, glm::vec3(floor.world[3])));
    if (!std::isfinite(normal.x + normal.y + normal.z + floorPlane_.w)) return;
    const float above = heightOf(list_->camera.position);
    if (!std::isfinite(above) || above == 0.0F || (above < 0.0F && !floor.material.doubleSided))
        return;
    // The floor's nearness is linear on the screen: the ray's part along the floor's normal.
    ScreenFloor plane;
    const glm::mat3 turn(list_->camera.view);
    plane.near = scaled(along(glm::dvec3(turn * normal)), -1.0 / static_cast<double>(above));
    const glm::vec4 background = list_->background * list_->background.a;
    if (floor.material.opaque && glm::length(glm::vec3(background)) > 0.0F) {
        ScreenFloor dark = plane;
        dark.blackens = true;
        bins_.addEverywhere(ShapeCall(ShapeKind::Floor, floors_.size()));
        floors_.push_back(dark);
    }
    if (above > 0.0F && floor.reflectivity > 0.0F) addMirrored(floor);
    setPicturePlanes(floor, plane);
    if (!addStripes(floor, plane)) addFloorPolygon(floor);
}

// Adds the scene as the floor mirrors it.
void ScenePlan::addMirrored(const DrawFloor& floor) {
    frame_.reflectivity = floor.reflectivity;
    frame_.reflectionShare = floor.falloffEnd > 0.0F ? 1.0F / floor.falloffEnd : 0.0F;
    for (std::size_t i = 0; i < frame_.lights; ++i)
        frame_.mirroredPlace[i] = mirroredPlace(list_->lights[i].position) - list_->camera.position;
    addBatches(true);
    hidingRadius_ = 0.0F;
}

// Sets the map from a pixel's ray to a place in the floor's picture.
void ScenePlan::setPicturePlanes(const DrawFloor& floor, ScreenFloor& plane) const {
    const glm::dmat4 toEye(list_->camera.view * floor.world);
    const glm::dmat4 toFloor = glm::inverse(toEye);
    const glm::dmat4 contents(floor.material.contentsTransform);
    const auto picturePlane = [&](int k) {
        const double fromX = contents[0][k] / floor.textureSpan;
        const double fromZ = contents[1][k] / floor.textureSpan;
        const auto row = [&](int i) {
            return glm::dvec3(toFloor[0][i], toFloor[1][i], toFloor[2][i]);
        };
        const Plane across = along(fromX * row(0) + fromZ * row(2));
        const double rest = fromX * toFloor[3][0] + fromZ * toFloor[3][2] + contents[3][k];
        const Plane& near = plane.near;
        return Plane{across.a + rest * near.a, across.b + rest * near.b, across.c + rest * near.c};
    };
    plane.u = picturePlane(0);
    plane.v = picturePlane(1);
}

// The stripes of the floor's picture; null where it has none.
const StripePicture* ScenePlan::stripesFor(const DrawMaterial& material) {
    Picture& kept = pictureOf(material);
    if (!kept.stripes && !kept.hasNoStripes) {
        kept.stripes = stripesOf(material.picture);
        kept.hasNoStripes = !kept.stripes;
    }
    return kept.stripes.get();
}

bool ScenePlan::addStripes(const DrawFloor& floor, const ScreenFloor& plane) {
    const DrawMaterial& material = floor.material;
    const bool repeats = material.wrapS == WrapMode::Repeat && material.wrapT == WrapMode::Repeat;
    if (material.lighting != LightingModel::Constant || (!material.picture.isNull() && !repeats))
        return false;
    ScreenFloor made = plane;
    if (material.picture.isNull()) {
        made.stripes.colour[0][0] = glm::vec3(1.0F);
    } else {
        const StripePicture* const stripes = stripesFor(material);
        if (!stripes) return false;
        made.stripes = *stripes;
    }
    made.light = glm::vec3(material.diffuse) * material.diffuse.a;
    made.additive = material.blend == BlendMode::Additive;
    made.hasFog = frame_.hasFog;
    made.fog = frame_.fogColour;
    made.fogStart = frame_.fogStart;
    made.fogShare = frame_.fogShare;
    for (const auto& column : made.stripes.colour)
        for (const glm::vec3& colour : column)
            made.colours |= platform::coloursOf(colour * made.light);
    if (made.hasFog && !made.additive) made.colours |= platform::coloursOf(made.fog);
    made.hiding = {true, material.writesDepth};
    for (const Plane& p : {made.near, made.u, made.v})
        if (!std::isfinite(p.a + p.b + p.c)) return true;
    putFloor(made);
    return true;
}

// Adds the floor to the tiles in which a part of it lies before the camera.
void ScenePlan::putFloor(const ScreenFloor& floor) {
    const ShapeCall call(ShapeKind::Floor, floors_.size());
    floors_.push_back(floor);
    const QSize tiles = bins_.tiles();
    const Plane& near = floor.near;
    for (int row = 0; row < tiles.height(); ++row)
        for (int column = 0; column < tiles.width(); ++column) {
            const double most = near.at((near.a > 0.0 ? column + 1 : column) * kTileWidth,
                                        (near.b > 0.0 ? row + 1 : row) * kTileHeight);
            if (most <= 0.0) continue;
            const glm::vec2 low(static_cast<float>(column * kTileWidth),
                                static_cast<float>(row * kTileHeight));
            bins_.add(call, low, low);
        }
}

Surface ScenePlan::floorSurface(const DrawMaterial& material) {
    Surface surface;
    surface.tint = {glm::vec3(material.diffuse) * material.diffuse.a, material.diffuse.a};
    surface.emission = material.emission;
    surface.lambert = material.lighting == LightingModel::Lambert;
    surface.additive = true;
    surface.opaque = false;
    surface.repeatS = material.wrapS == WrapMode::Repeat;
    surface.repeatT = material.wrapT == WrapMode::Repeat;
    surface.hiding = {true, material.writesDepth};
    if (!material.picture.isNull()) surface.picture = &ripOf(material);
    surface.colours = coloursOf(surface);
    return surface;
}

// Adds the part of the plane that the camera can see.
void ScenePlan::addFloorPolygon(const DrawFloor& floor) {
    const DrawMaterial& material = floor.material;
    const Surface surface = floorSurface(material);
    const std::size_t number = surfaces_.size();
    surfaces_.push_back(surface);
    glm::vec3 under(glm::inverse(floor.world) * glm::vec4(list_->camera.position, 1.0F));
    under.y = 0.0F;
    const float unit =
        std::min(glm::length(glm::vec3(floor.world[0])), glm::length(glm::vec3(floor.world[2])));
    const float reach = 2.0F * list_->camera.zFar / unit;
    if (!std::isfinite(reach)) return;
    const glm::vec3 normal(floorPlane_);
    cut_.clear();
    for (const auto& [x, z] :
         {std::pair{-1.0F, 1.0F}, {1.0F, 1.0F}, {1.0F, -1.0F}, {-1.0F, -1.0F}}) {
        const glm::vec3 local = under + glm::vec3(x * reach, 0.0F, z * reach);
        const glm::vec3 world(floor.world * glm::vec4(local, 1.0F));
        const glm::vec4 uv =
            material.contentsTransform *
            glm::vec4(local.x / floor.textureSpan, local.z / floor.textureSpan, 0.0F, 1.0F);
        Corner& corner = cut_.emplace_back();
        corner.eye = glm::dvec3(eyeOf(world));
        corner.way = world - list_->camera.position;
        corner.at = screenAt(corner.eye);
        corner.value[ScreenPolygon::kPicture] = uv.x;
        corner.value[ScreenPolygon::kPicture + 1] = uv.y;
        for (int k = 0; k < 3; ++k)
            corner.value[ScreenPolygon::kNormal + static_cast<std::size_t>(k)] = normal[k];
    }
    cutFace(surface);
    addPolygon(surface, number, material.doubleSided);
}

}  // namespace platform
