// SPDX-License-Identifier: MIT
#include "platform/render/gl/ScenePass.h"

#include <algorithm>
#include <glm/geometric.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/matrix.hpp>
#include <glm/vector_relational.hpp>

namespace platform {

namespace {

constexpr int kTexelsPerInstance = 4;
// Above this size, drawing meshes separately costs less than keeping them merged.
constexpr std::size_t kMaxMergedVertices = 1U << 17U;

// Whether a see-through picture ends within its surface.
bool fades(const DrawMaterial& material) {
    return !material.picture.isNull() && !material.opaque && material.wrapS == WrapMode::Clamp &&
           material.wrapT == WrapMode::Clamp;
}

unsigned variantOf(const DrawBatch& batch) {
    unsigned variant = 0;
    const DrawMaterial& material = batch.material;
    if (!material.picture.isNull()) variant |= kTextured;
    if (fades(material)) variant |= kFading;
    if (material.lighting == LightingModel::Lambert) variant |= kLambert;
    if (material.blend == BlendMode::Additive) variant |= kAdditive;
    if (batch.mesh->primitive() == Primitive::Lines) variant |= kLines;
    if (batch.mesh->primitive() == Primitive::Points) variant |= kPoints;
    return variant;
}

// Lines and points have soft edges, so any material of theirs is blended.
bool hasSoftEdges(const DrawBatch& batch) {
    return batch.mesh->primitive() != Primitive::Triangles;
}

bool mayMerge(const DrawBatch& a, const DrawBatch& b) {
    const unsigned variant = variantOf(a);
    return variant == variantOf(b) && (variant & (kTextured | kLambert)) == 0 &&
           (a.material.opaque == b.material.opaque || hasSoftEdges(a)) &&
           a.material.writesDepth == b.material.writesDepth &&
           a.material.readsDepth == b.material.readsDepth &&
           a.material.doubleSided == b.material.doubleSided;
}

// The number of leading batches that one draw call takes.
std::size_t runLength(std::span<const PlacedBatch> batches) {
    std::size_t vertices = 0;
    std::size_t length = 0;
    for (const PlacedBatch& placed : batches) {
        const DrawBatch& batch = *placed.batch;
        if (length > 0 && !mayMerge(*batches[length - 1].batch, batch)) break;
        vertices += batch.mesh->data().positions.size() * batch.count;
        if (length > 0 && vertices > kMaxMergedVertices) break;
        ++length;
    }
    return length;
}

// Whether order makes no difference: light that only adds and hides nothing.
bool commutes(const DrawBatch& batch) {
    return batch.material.blend == BlendMode::Additive && !batch.material.writesDepth;
}

// Whether the camera stands within the mesh's box.
bool surrounds(const Mesh& mesh, const DrawInstance& instance, const glm::vec3& camera) {
    const glm::vec3 local(glm::inverse(instance.world) * glm::vec4(camera, 1.0F));
    const Bounds& bounds = mesh.bounds();
    return glm::all(glm::greaterThan(local, bounds.low)) &&
           glm::all(glm::lessThan(local, bounds.high));
}

bool hasOutline(const DrawBatch& batch, const DrawList& list) {
    if (hasSoftEdges(batch)) return false;
    if (fades(batch.material)) return false;
    return batch.count > 1 ||
           !surrounds(*batch.mesh, list.instances[batch.first], list.camera.position);
}

}  // namespace

ScenePass::ScenePass(int keepDraws)
    : meshes_(keepDraws),
      textures_(keepDraws),
      instances_("instances", GL_RGBA32F),
      noVertices_(GlVertexArray::make()) {
    GLint texels = 0;
    glGetIntegerv(GL_MAX_TEXTURE_BUFFER_SIZE, &texels);
    maxInstances_ = texels / kTexelsPerInstance;
}

bool ScenePass::prepare() {
    return programs_.find(kTextured | kAdditive | kFog) != nullptr;
}

bool ScenePass::needsDepth(const DrawList& list) {
    const auto writes = [](const DrawBatch& batch) { return batch.material.writesDepth; };
    return list.floor || std::any_of(list.batches.begin(), list.batches.end(), writes);
}

bool ScenePass::needsSamples(const DrawList& list) {
    return std::any_of(list.batches.begin(), list.batches.end(),
                       [&](const DrawBatch& batch) { return hasOutline(batch, list); });
}

int ScenePass::draw(const DrawList& list, const ScenePassOptions& options) {
    ++draw_;
    drawCalls_ = 0;
    options_ = options;
    frame_.list = &list;
    frame_.viewProjection = list.camera.projection * list.camera.view;
    frame_.halfViewport = 0.5F * glm::vec2(options.size.width(), options.size.height());
    frame_.outputScale = options.outputScale;
    frame_.anisotropy = options.anisotropy;
    arrange(list);
    uploadInstances(list);
    glEnable(GL_PROGRAM_POINT_SIZE);
    glDisable(GL_SCISSOR_TEST);
    clear(list, needsDepth(list));
    if (list.floor) drawFloor(*list.floor);
    drawBatches(0);
    meshes_.endDraw();
    textures_.endDraw();
    glDepthMask(GL_TRUE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_BLEND);
    return drawCalls_;
}

// Orders batches as in the list, except that batches for one draw call come
// together where order makes no difference.
void ScenePass::arrange(const DrawList& list) {
    batches_.clear();
    for (const DrawBatch& batch : list.batches)
        batches_.push_back({&batch, 0});
    const auto isBefore = [](const PlacedBatch& a, const PlacedBatch& b) {
        const unsigned variantA = variantOf(*a.batch);
        const unsigned variantB = variantOf(*b.batch);
        return variantA != variantB ? variantA < variantB : a.batch < b.batch;
    };
    for (auto from = batches_.begin(); from != batches_.end();) {
        const DrawBatch& first = *from->batch;
        const auto end = std::find_if(from, batches_.end(), [&](const PlacedBatch& placed) {
            return !commutes(*placed.batch) || placed.batch->renderingOrder != first.renderingOrder;
        });
        std::sort(from, end, isBefore);
        from = end == from ? std::next(from) : end;
    }
    std::uint32_t instances = 0;
    for (PlacedBatch& placed : batches_) {
        placed.first = instances;
        instances += placed.batch->count;
    }
}

void ScenePass::uploadInstances(const DrawList& list) {
    staging_.clear();
    for (const PlacedBatch& placed : batches_) {
        const DrawBatch& batch = *placed.batch;
        for (std::uint32_t i = 0; i < batch.count; ++i) {
            const DrawInstance& instance = list.instances[batch.first + i];
            const glm::mat4 rows = glm::transpose(instance.world);
            staging_.insert(staging_.end(),
                            {rows[0], rows[1], rows[2], instance.colour * batch.material.diffuse});
        }
    }
    const auto bytes =
        static_cast<GLsizeiptr>(std::max<std::size_t>(staging_.size(), 1) * sizeof(glm::vec4));
    instances_.renew(bytes, GL_STREAM_DRAW);
    if (!staging_.empty()) instances_.write(0, bytes, staging_.data());
    instances_.bindTo(1);
}

void ScenePass::clear(const DrawList& list, bool depth) const {
    const glm::vec3 light = glm::vec3(list.background) * list.background.a * options_.outputScale;
    glClearColor(light.r, light.g, light.b, list.background.a);
    glDepthMask(GL_TRUE);
    glClear(depth ? GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT : GL_COLOR_BUFFER_BIT);
    if (depth) {
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LEQUAL);
    } else {
        glDisable(GL_DEPTH_TEST);
    }
}

void ScenePass::drawBatches(unsigned variant) {
    if (frame_.list->fog.active) variant |= kFog;
    std::span<const PlacedBatch> rest(batches_);
    while (!rest.empty()) {
        const std::size_t length = runLength(rest);
        drawRun(rest.first(length), variant);
        rest = rest.subspan(length);
    }
}

void ScenePass::drawRun(std::span<const PlacedBatch> run, unsigned variant) {
    const DrawBatch& batch = *run.front().batch;
    const PlacedBatch& last = run.back();
    if (static_cast<GLint>(last.first + last.batch->count) > maxInstances_) return;
    variant |= variantOf(batch);
    SceneProgram* const program = programs_.find(variant);
    if (!program) return;
    const bool single = run.size() == 1;
    const GlMesh& mesh = single ? meshes_.find(run.front()) : meshes_.findMerged(run);
    program->use(frame_, draw_);
    glUniform1i(program->firstInstance, static_cast<GLint>(run.front().first));
    const bool softEdges = hasSoftEdges(batch);
    if (softEdges) setThickness(*program);
    if ((variant & kLambert) != 0)
        glUniform3fv(program->emission, 1, glm::value_ptr(batch.material.emission));
    if ((variant & kTextured) != 0) {
        textures_.bind(batch.material);
        glUniformMatrix4fv(program->contentsTransform, 1, GL_FALSE,
                           glm::value_ptr(batch.material.contentsTransform));
    }
    if ((variant & kFading) != 0) {
        const Bounds& bounds = batch.mesh->bounds();
        const glm::vec3 middle = 0.5F * (bounds.low + bounds.high);
        glUniform3fv(program->middle, 1, glm::value_ptr(middle));
    }
    setBlending(batch.material, softEdges);
    // The see-through rims of dots in a crowd would hide the dots behind.
    if ((variant & kPoints) != 0) glDepthMask(GL_FALSE);
    if (batch.material.doubleSided || softEdges) {
        glDisable(GL_CULL_FACE);
    } else {
        glEnable(GL_CULL_FACE);
    }
    glBindVertexArray(mesh.vertexArray.name());
    glDrawElementsInstanced(mesh.mode, mesh.indexCount, GL_UNSIGNED_INT, nullptr,
                            single ? static_cast<GLsizei>(batch.count) : 1);
    ++drawCalls_;
}

// Sets lines one point wide, at least one shown pixel. A width below one pixel
// of the image is drawn as one pixel, with proportionally less light.
void ScenePass::setThickness(const SceneProgram& program) const {
    const float wanted = std::max(options_.pixelsPerPoint, options_.shownPixel);
    const float drawn = std::max(wanted, 1.0F);
    glUniform1f(program.thickness, drawn);
    glUniform1f(program.strength, wanted / drawn);
    // Every dot has its own size.
    glUniform3f(program.dots, options_.pixelsPerPoint,
                frame_.list->camera.heightShare * static_cast<float>(options_.size.height()),
                options_.shownPixel);
}

void ScenePass::setBlending(const DrawMaterial& material, bool smoothEdges) const {
    glDepthMask(material.writesDepth ? GL_TRUE : GL_FALSE);
    glDepthFunc(material.readsDepth ? GL_LEQUAL : GL_ALWAYS);
    if (material.blend == BlendMode::Additive) {
        glEnable(GL_BLEND);
        glBlendFuncSeparate(GL_ONE, GL_ONE, GL_ZERO, GL_ONE);
    } else if (!material.opaque || smoothEdges) {
        glEnable(GL_BLEND);
        glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    } else {
        glDisable(GL_BLEND);
    }
}

void ScenePass::drawFloor(const DrawFloor& floor) {
    const glm::vec3 normal =
        glm::normalize(glm::cross(glm::vec3(floor.world[2]), glm::vec3(floor.world[0])));
    const float distance = -glm::dot(normal, glm::vec3(floor.world[3]));
    const DrawList& list = *frame_.list;
    const bool above = glm::dot(normal, list.camera.position) + distance > 0.0F;
    const glm::vec4 background = list.background * list.background.a;
    // The floor adds the mirrored light to its own; the background behind must not be added.
    if (floor.material.opaque && glm::length(glm::vec3(background)) > 0.0F) {
        glDisable(GL_BLEND);
        glDepthMask(GL_FALSE);
        drawFloorPlane(floor, {0.0F, 0.0F, 0.0F, 1.0F}, kFloor | kAdditive);
    }
    if (above && floor.reflectivity > 0.0F) {
        frame_.floorPlane = glm::vec4(normal, distance);
        frame_.reflection = {floor.reflectivity,
                             floor.falloffEnd > 0.0F ? 1.0F / floor.falloffEnd : 0.0F};
        glFrontFace(GL_CW);
        drawBatches(kMirrored);
        glFrontFace(GL_CCW);
    }
    unsigned variant = kFloor;
    if (!floor.material.picture.isNull()) variant |= kTextured;
    if (floor.material.lighting == LightingModel::Lambert) variant |= kLambert;
    if (floor.material.blend == BlendMode::Additive) variant |= kAdditive;
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    glDepthMask(floor.material.writesDepth ? GL_TRUE : GL_FALSE);
    glDepthFunc(GL_LEQUAL);
    drawFloorPlane(floor, floor.material.diffuse, variant);
}

void ScenePass::drawFloorPlane(const DrawFloor& floor, const glm::vec4& colour, unsigned variant) {
    const DrawList& list = *frame_.list;
    if (list.fog.active) variant |= kFog;
    SceneProgram* const program = programs_.find(variant);
    if (!program) return;
    program->use(frame_, draw_);
    glm::vec3 under(glm::inverse(floor.world) * glm::vec4(list.camera.position, 1.0F));
    under.y = 0.0F;
    const float unit =
        std::min(glm::length(glm::vec3(floor.world[0])), glm::length(glm::vec3(floor.world[2])));
    glUniformMatrix4fv(program->world, 1, GL_FALSE, glm::value_ptr(floor.world));
    glUniform3fv(program->under, 1, glm::value_ptr(under));
    glUniform1f(program->reach, 2.0F * list.camera.zFar / unit);
    glUniform1f(program->textureSpan, floor.textureSpan);
    glUniform4fv(program->colour, 1, glm::value_ptr(colour));
    if ((variant & kLambert) != 0)
        glUniform3fv(program->emission, 1, glm::value_ptr(floor.material.emission));
    if ((variant & kTextured) != 0) {
        textures_.bind(floor.material);
        glUniformMatrix4fv(program->contentsTransform, 1, GL_FALSE,
                           glm::value_ptr(floor.material.contentsTransform));
    }
    if (floor.material.doubleSided) {
        glDisable(GL_CULL_FACE);
    } else {
        glEnable(GL_CULL_FACE);
    }
    glBindVertexArray(noVertices_.name());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    ++drawCalls_;
}

}  // namespace platform
