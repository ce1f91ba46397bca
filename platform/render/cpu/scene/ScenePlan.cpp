// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/ScenePlan.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/matrix.hpp>

namespace platform {

void ScenePlan::make(const DrawList& list, QSize size, double scale) {
    ++frameNumber_;
    list_ = &list;
    size_ = size;
    scale_ = scale;
    dots_.clear();
    dotStyles_.clear();
    lines_.clear();
    sprites_.clear();
    balls_.clear();
    surfaces_.clear();
    polygons_.clear();
    floors_.swap(floorsBefore_);
    floors_.clear();
    lensBefore_ = lens_;
    hidingRadius_ = 0.0F;
    const auto thickness = static_cast<float>(std::clamp(scale, 1.0, 64.0));
    if (!lineKernel_ || lineKernel_->thickness != thickness)
        lineKernel_ = std::make_unique<LineKernel>(thickness);
    bins_.begin(size);
    setFrame(list);
    if (list.floor) addFloor(*list.floor);
    addBatches(false);
    bins_.end();
    hasSameFloors_ = lens_ == lensBefore_ && floors_ == floorsBefore_;
    dropOld();
}

void ScenePlan::setFrame(const DrawList& list) {
    const DrawCamera& camera = list.camera;
    const glm::vec2 half(0.5F * static_cast<float>(size_.width()),
                         0.5F * static_cast<float>(size_.height()));
    lens_.middle = half;
    lens_.perPixel = {1.0F / (half.x * camera.projection[0][0]),
                      1.0F / (half.y * camera.projection[1][1])};
    heightShare_ = camera.heightShare;
    zNear_ = std::max(camera.zNear, 1e-4F);
    zFar_ = camera.zFar;
    frame_ = {};
    frame_.right = {lens_.perPixel.x, 0.0, -half.x * lens_.perPixel.x};
    frame_.down = {0.0, lens_.perPixel.y, -half.y * lens_.perPixel.y};
    // The rows of the view's turn are the camera's axes in the world.
    for (int i = 0; i < 3; ++i) {
        const double right = camera.view[i][0];
        const double up = camera.view[i][1];
        const double back = camera.view[i][2];
        frame_.ray[static_cast<std::size_t>(i)] = {
            right * lens_.perPixel.x, -up * lens_.perPixel.y,
            -right * lens_.perPixel.x * half.x + up * lens_.perPixel.y * half.y - back};
    }
    frame_.ambient = list.ambient;
    frame_.lights = std::min(list.lights.size(), PolygonFrame::kMostLights);
    for (std::size_t i = 0; i < frame_.lights; ++i) {
        frame_.lightPlace[i] = list.lights[i].position - camera.position;
        frame_.lightColour[i] = list.lights[i].colour;
    }
    frame_.hasFog = list.fog.active && list.fog.end > list.fog.start;
    if (!frame_.hasFog) return;
    frame_.fogStart = list.fog.start;
    frame_.fogShare = 1.0F / (list.fog.end - list.fog.start);
    frame_.fogColour = list.fog.colour;
}

void ScenePlan::addBatches(bool mirrored) {
    for (const DrawBatch& batch : list_->batches) {
        if (!batch.mesh) continue;
        const BatchView view{.batch = &batch,
                             .shape = &shapeOf(*batch.mesh),
                             .mirrored = mirrored,
                             .additive = batch.material.blend == BlendMode::Additive,
                             .hiding = {batch.material.readsDepth, batch.material.writesDepth}};
        for (std::uint32_t i = 0; i < batch.count; ++i) {
            const std::size_t at = static_cast<std::size_t>(batch.first) + i;
            if (at < list_->instances.size()) addInstance(view, list_->instances[at]);
        }
    }
}

void ScenePlan::addInstance(const BatchView& view, const DrawInstance& instance) {
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 3; ++row)
            if (!std::isfinite(instance.world[column][row])) return;
    const glm::vec4 tint = tintOf(view, instance);
    if (!std::isfinite(tint.r + tint.g + tint.b + tint.a)) return;
    switch (view.batch->mesh->primitive()) {
        case Primitive::Points:
            return addDots(view, instance);
        case Primitive::Lines:
            return addLines(view, instance);
        case Primitive::Triangles:
            if (!addSprite(view, instance) && !addBall(view, instance)) addFaces(view, instance);
    }
}

glm::vec4 ScenePlan::tintOf(const BatchView& view, const DrawInstance& instance) const {
    const glm::vec4 colour = view.batch->material.diffuse * instance.colour;
    return {glm::vec3(colour) * colour.a, colour.a};
}

float ScenePlan::heightOf(const glm::vec3& world) const {
    return glm::dot(glm::vec3(floorPlane_), world) + floorPlane_.w;
}

glm::vec3 ScenePlan::mirroredPlace(const glm::vec3& world) const {
    return world - 2.0F * heightOf(world) * glm::vec3(floorPlane_);
}

glm::vec3 ScenePlan::eyeOf(const glm::vec3& world) const {
    const glm::vec3 eye(list_->camera.view * glm::vec4(world, 1.0F));
    return {eye.x, eye.y, -eye.z};
}

glm::vec2 ScenePlan::screenOf(const glm::vec3& eye) const {
    return {lens_.middle.x + eye.x / (eye.z * lens_.perPixel.x),
            lens_.middle.y - eye.y / (eye.z * lens_.perPixel.y)};
}

glm::dvec2 ScenePlan::screenAt(const glm::dvec3& eye) const {
    return {lens_.middle.x + eye.x / (eye.z * lens_.perPixel.x),
            lens_.middle.y - eye.y / (eye.z * lens_.perPixel.y)};
}

Ink ScenePlan::inkAt(const BatchView& view, const glm::vec4& tint, float distance,
                     float height) const {
    glm::vec3 light(tint);
    if (frame_.hasFog) {
        const float fog = std::clamp((distance - frame_.fogStart) * frame_.fogShare, 0.0F, 1.0F);
        light *= 1.0F - fog;
        if (!view.additive) light += fog * tint.a * frame_.fogColour;
    }
    if (view.mirrored)
        light *=
            frame_.reflectivity * std::clamp(1.0F - height * frame_.reflectionShare, 0.0F, 1.0F);
    return {light, view.additive ? 0.0F : tint.a};
}

const MeshShape& ScenePlan::shapeOf(const Mesh& mesh) {
    Shape& kept = meshes_[mesh.id()];
    if (!kept.shape) kept.shape = std::make_unique<MeshShape>(mesh);
    kept.lastFrame = frameNumber_;
    return *kept.shape;
}

ScenePlan::Picture& ScenePlan::pictureOf(const DrawMaterial& material) {
    Picture& kept = pictures_[material.pictureKey];
    kept.lastFrame = frameNumber_;
    return kept;
}

SpritePicture& ScenePlan::spriteOf(const DrawMaterial& material, bool additive) {
    auto& sprite = pictureOf(material).sprite[additive ? 1 : 0];
    if (!sprite) sprite = std::make_unique<SpritePicture>(material.picture, additive);
    return *sprite;
}

const RipPicture& ScenePlan::ripOf(const DrawMaterial& material) {
    Picture& kept = pictureOf(material);
    if (!kept.rip) kept.rip = std::make_unique<RipPicture>(material.picture, workers_);
    return *kept.rip;
}

const DotKernel& ScenePlan::dotKernelOf(float diameter) {
    for (const auto& kernel : dotKernels_)
        if (kernel->diameter == diameter) return *kernel;
    return *dotKernels_.emplace_back(std::make_unique<DotKernel>(diameter));
}

void ScenePlan::dropOld() {
    constexpr std::size_t kMostKernels = 16;
    const auto isOld = [&](const auto& entry) {
        return frameNumber_ - entry.second.lastFrame >= static_cast<std::uint64_t>(keepFrames_);
    };
    std::erase_if(meshes_, isOld);
    std::erase_if(pictures_, isOld);
    // The frame's own styles point to theirs; only when all are unused they go.
    if (dotStyles_.empty() && dotKernels_.size() > kMostKernels) dotKernels_.clear();
}

}  // namespace platform
