// SPDX-License-Identifier: MIT
#include "platform/scene/DrawList.h"

#include <algorithm>
#include <glm/gtc/matrix_transform.hpp>

#include "platform/scene/DrawOrder.h"
#include "platform/scene/Scene.h"
#include "platform/scene/Shading.h"

namespace platform {

namespace {

DrawMaterial snapshot(const Material& material) {
    DrawMaterial result;
    result.id = material.id();
    result.revision = material.revision();
    result.lighting = material.lightingModel();
    result.blend = material.blendMode();
    result.opaque = material.isOpaque();
    result.writesDepth = material.writesDepth();
    result.readsDepth = material.readsDepth();
    result.doubleSided = material.isDoubleSided();
    result.wrapS = material.wrapS();
    result.wrapT = material.wrapT();
    if (const auto* colour = std::get_if<QColor>(&material.diffuse())) {
        result.diffuse = glm::vec4(linearColour(*colour));
    } else {
        result.picture = material.picture();
        result.pictureKey = result.picture.cacheKey();
    }
    const glm::dvec4 emission = linearColour(material.emission());
    result.emission = glm::vec3(glm::dvec3(emission) * emission.a);
    result.contentsTransform =
        wrappedContentsTransform(material.contentsTransform(), material.wrapS(), material.wrapT());
    return result;
}

// The share of a particle that shows at this distance before the camera.
double nearness(double depth, double nearFade) {
    constexpr double kGone = 0.25;
    if (nearFade <= 0.0) return 1.0;
    const double t = std::clamp((depth / nearFade - kGone) / (1.0 - kGone), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

// A single walk through a scene.
class Extraction {
  public:
    Extraction(const Scene& scene, DrawList& out) : scene_(scene), out_(out) {}

    void run(double aspect);

  private:
    struct Inherited {
        glm::dmat4 world{1.0};
        double opacity = 1.0;
    };

    void clear();
    void takeCamera(double aspect);
    void takeSurroundings();
    void visit(const Node& node, const Inherited& parent);
    void takeFloor(const Node& node, const glm::dmat4& world);
    void takeLight(const Light& light, const glm::dmat4& world);
    void takeParticles(const Node& node, double opacity);
    void add(const Geometry& geometry, const glm::dmat4& world, const glm::vec4& colour,
             int renderingOrder);
    void makeBatches();

    const Scene& scene_;
    DrawList& out_;
    Pose camera_;
    glm::dmat4 facing_{1.0};  // the camera's orientation, used by billboards
};

void Extraction::run(double aspect) {
    clear();
    takeCamera(aspect);
    takeSurroundings();
    visit(scene_.root(), {});
    makeBatches();
}

void Extraction::clear() {
    out_.ambient = glm::vec3(0.0F);
    out_.lights.clear();
    out_.floor.reset();
    out_.batches.clear();
    out_.instances.clear();
    out_.scratch.items.clear();
    out_.scratch.instances.clear();
}

void Extraction::takeCamera(double aspect) {
    const Node* node = scene_.pointOfView();
    camera_.position = {0.0, 0.0, 15.0};
    if (node != nullptr) {
        const glm::dmat4 world = node->worldTransform();
        camera_ = {positionOf(world), orientationOf(world)};
    }
    facing_ = glm::mat4_cast(camera_.orientation);
    const Camera camera =
        node != nullptr && node->camera() ? *node->camera() : Camera{.exposureAdaptation = false};
    out_.aspect = aspect;
    out_.camera.view = glm::mat4(glm::mat4_cast(glm::conjugate(camera_.orientation)) *
                                 glm::translate(glm::dmat4(1.0), -camera_.position));
    out_.camera.projection = glm::mat4(camera.projection(aspect));
    out_.camera.position = glm::vec3(camera_.position);
    out_.camera.fieldOfView = static_cast<float>(camera.verticalAngle(aspect));
    out_.camera.heightShare = static_cast<float>(camera.heightShare(aspect));
    out_.camera.zNear = static_cast<float>(camera.zNear);
    out_.camera.zFar = static_cast<float>(camera.zFar);
    out_.camera.hdr = camera.hdr;
    out_.camera.bloomIntensity = camera.hdr ? static_cast<float>(camera.bloomIntensity) : 0.0F;
    out_.camera.bloomThreshold = static_cast<float>(camera.bloomThreshold);
    out_.camera.bloomBlurRadius = static_cast<float>(camera.bloomBlurRadius);
}

void Extraction::takeSurroundings() {
    const Fog& fog = scene_.fog();
    out_.sceneTime = scene_.time();
    out_.background = glm::vec4(linearColour(scene_.background()));
    out_.fog = {fog.isActive(), static_cast<float>(fog.start), static_cast<float>(fog.end),
                glm::vec3(linearColour(fog.colour))};
}

void Extraction::visit(const Node& node, const Inherited& parent) {
    Inherited here{parent.world * node.shownPose(scene_.time()).matrix(),
                   parent.opacity * node.opacity()};
    if (node.isBillboard()) {
        const glm::dvec3 scale = scaleOf(here.world);
        const glm::dvec2 beside = node.screenOffset();
        const glm::dvec4 position = here.world[3] + facing_[0] * beside.x + facing_[1] * beside.y;
        for (int axis = 0; axis < 3; ++axis)
            here.world[axis] = facing_[axis] * scale[axis];
        here.world[3] = position;
    }
    if (node.light()) takeLight(*node.light(), here.world);
    if (node.floor() && !out_.floor) takeFloor(node, here.world);
    if (node.particles()) takeParticles(node, here.opacity);
    if (node.geometry())
        add(*node.geometry(), here.world, {1.0F, 1.0F, 1.0F, here.opacity}, node.renderingOrder());
    for (const NodePtr& child : node.children())
        visit(*child, here);
}

void Extraction::takeFloor(const Node& node, const glm::dmat4& world) {
    const Floor& floor = *node.floor();
    DrawFloor& result = out_.floor.emplace();
    result.world = glm::mat4(world);
    if (floor.material) result.material = snapshot(*floor.material);
    result.reflectivity = static_cast<float>(floor.reflectivity);
    result.falloffEnd = static_cast<float>(floor.falloffEnd * scaleOf(world).y);
    result.textureSpan = static_cast<float>(floor.textureSpan);
    result.renderingOrder = node.renderingOrder();
}

void Extraction::takeLight(const Light& light, const glm::dmat4& world) {
    const glm::vec3 colour(linearColour(light.colour) * (light.intensity / 1000.0));
    if (light.type == LightType::Ambient) {
        out_.ambient += colour;
    } else {
        out_.lights.push_back({glm::vec3(positionOf(world)), colour});
    }
}

void Extraction::takeParticles(const Node& node, double opacity) {
    const ParticleSystem& system = *node.particles();
    for (std::size_t i = 0; i < system.count(); ++i) {
        const ParticleSystem::Particle& particle = system.particle(i);
        glm::dmat4 world = facing_;
        world[0] *= particle.size;
        world[1] *= particle.size;
        world[3] = glm::dvec4(particle.position(scene_.time()), 1.0);
        const double depth =
            -glm::dot(glm::dvec3(world[3]) - camera_.position, glm::dvec3(facing_[2]));
        const glm::vec4 faded(1.0F, 1.0F, 1.0F,
                              opacity * nearness(depth, system.settings().nearFade));
        add(*system.geometry(), world, particle.colour * faded, node.renderingOrder());
    }
}

void Extraction::add(const Geometry& geometry, const glm::dmat4& world, const glm::vec4& colour,
                     int renderingOrder) {
    const Material& material = *geometry.material();
    if (material.drawsNothing() || geometry.mesh()->data().indices.empty()) return;
    if (colour.a <= 0.0F) return;
    DrawList::Item& item = out_.scratch.items.emplace_back();
    item.mesh = geometry.mesh().get();
    item.handle = &geometry.mesh();
    item.material = &material;
    item.renderingOrder = renderingOrder;
    item.blended = !material.isOpaque() || colour.a < 1.0F;
    item.staged = static_cast<std::uint32_t>(out_.scratch.instances.size());
    const glm::dvec3 centre(world * glm::dvec4(item.mesh->bounds().centre(), 1.0));
    item.depth = static_cast<float>(glm::dot(centre - camera_.position, -glm::dvec3(facing_[2])));
    out_.scratch.instances.push_back({glm::mat4(world), colour});
}

void Extraction::makeBatches() {
    putInDrawingOrder(out_.scratch.items);
    const DrawList::Item* last = nullptr;
    for (const DrawList::Item& item : out_.scratch.items) {
        const bool joins = last != nullptr && last->mesh == item.mesh &&
                           last->material == item.material && last->blended == item.blended &&
                           last->renderingOrder == item.renderingOrder;
        if (!joins) {
            DrawBatch& batch = out_.batches.emplace_back();
            batch.mesh = *item.handle;
            batch.material = snapshot(*item.material);
            batch.material.opaque = !item.blended;
            batch.first = static_cast<std::uint32_t>(out_.instances.size());
            batch.renderingOrder = item.renderingOrder;
        }
        ++out_.batches.back().count;
        out_.instances.push_back(out_.scratch.instances[item.staged]);
        last = &item;
    }
}

}  // namespace

void extract(const Scene& scene, double aspect, DrawList& out) {
    Extraction(scene, out).run(aspect);
}

}  // namespace platform
