// SPDX-License-Identifier: MIT
#include "platform/render/gl/SceneMeshes.h"

#include <algorithm>
#include <cstddef>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

namespace platform {

namespace {

struct Vertex {
    glm::vec3 position{0.0F};
    glm::vec3 normal{0.0F};
    glm::vec2 texcoord{0.0F};
    float slot = 0.0F;
};

struct Build {
    std::vector<Vertex> vertices;
    std::vector<std::uint32_t> indices;
};

void addLines(Build& build, const MeshData& data, float slot) {
    for (std::size_t i = 0; i + 1 < data.indices.size(); i += 2) {
        const glm::vec3 a = data.positions[data.indices[i]];
        const glm::vec3 b = data.positions[data.indices[i + 1]];
        const auto first = static_cast<std::uint32_t>(build.vertices.size());
        // The direction between the ends reverses at the second end, and so do the sides.
        for (const float side : {1.0F, -1.0F})
            build.vertices.push_back({a, b, {side, 1.0F}, slot});
        for (const float side : {-1.0F, 1.0F})
            build.vertices.push_back({b, a, {side, -1.0F}, slot});
        for (const std::uint32_t corner : {0U, 1U, 2U, 2U, 1U, 3U})
            build.indices.push_back(first + corner);
    }
}

void addVertices(Build& build, const MeshData& data, float slot) {
    const auto first = static_cast<std::uint32_t>(build.vertices.size());
    for (std::size_t i = 0; i < data.positions.size(); ++i) {
        Vertex& vertex = build.vertices.emplace_back();
        vertex.position = data.positions[i];
        if (i < data.normals.size()) vertex.normal = data.normals[i];
        if (i < data.texcoords.size()) vertex.texcoord = data.texcoords[i];
        if (data.primitive == Primitive::Points)
            vertex.texcoord = glm::vec2(data.pointSize, data.pointHeightShare);
        vertex.slot = slot;
    }
    for (const std::uint32_t index : data.indices)
        build.indices.push_back(first + index);
}

void add(Build& build, const MeshData& data, std::uint32_t slot) {
    if (data.primitive == Primitive::Lines) {
        addLines(build, data, static_cast<float>(slot));
    } else {
        addVertices(build, data, static_cast<float>(slot));
    }
}

template <typename T>
GLsizeiptr bytesOf(const std::vector<T>& values) {
    return static_cast<GLsizeiptr>(values.size() * sizeof(T));
}

GlMesh upload(const Build& build, Primitive primitive) {
    GlMesh mesh{GlVertexArray::make(), GlBuffer::make(), GlBuffer::make(),
                static_cast<GLsizei>(build.indices.size()),
                primitive == Primitive::Points ? static_cast<GLenum>(GL_POINTS)
                                               : static_cast<GLenum>(GL_TRIANGLES)};
    glBindVertexArray(mesh.vertexArray.name());
    glBindBuffer(GL_ARRAY_BUFFER, mesh.vertices.name());
    glBufferData(GL_ARRAY_BUFFER, bytesOf(build.vertices), build.vertices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.indices.name());
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, bytesOf(build.indices), build.indices.data(),
                 GL_STATIC_DRAW);
    const auto attribute = [](GLuint at, GLint size, std::size_t offset) {
        glEnableVertexAttribArray(at);
        glVertexAttribPointer(at, size, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                              reinterpret_cast<const void*>(offset));
    };
    attribute(0, 3, offsetof(Vertex, position));
    attribute(1, 3, offsetof(Vertex, normal));
    attribute(2, 2, offsetof(Vertex, texcoord));
    attribute(3, 1, offsetof(Vertex, slot));
    return mesh;
}

GlMesh make(std::span<const PlacedBatch> batches, bool merged) {
    Build build;
    std::uint32_t slot = 0;
    for (const PlacedBatch& placed : batches) {
        const std::uint32_t times = merged ? placed.batch->count : 1;
        for (std::uint32_t i = 0; i < times; ++i)
            add(build, placed.batch->mesh->data(), slot++);
    }
    return upload(build, batches.front().batch->mesh->primitive());
}

}  // namespace

SceneMeshes::SceneMeshes(int keepDraws)
    : keepDraws_(static_cast<std::uint64_t>(std::max(1, keepDraws))) {}

const GlMesh& SceneMeshes::find(std::span<const PlacedBatch> batches, bool merged) {
    const auto partOf = [merged](const PlacedBatch& placed) {
        return Part{placed.batch->mesh->id(), merged ? placed.batch->count : 0};
    };
    std::uint64_t hash = 0;
    for (const PlacedBatch& placed : batches) {
        const Part part = partOf(placed);
        hash = (hash ^ (part.mesh << 20U) ^ part.count) * 0x9E3779B97F4A7C15ULL;
    }
    const auto isOf = [&](const Part& part, const PlacedBatch& placed) {
        return part == partOf(placed);
    };
    for (auto [it, end] = kept_.equal_range(hash); it != end; ++it) {
        const std::vector<Part>& parts = it->second.parts;
        if (!std::equal(parts.begin(), parts.end(), batches.begin(), batches.end(), isOf)) continue;
        it->second.lastDraw = draw_;
        return it->second.mesh;
    }
    Kept kept{make(batches, merged), {}, draw_};
    for (const PlacedBatch& placed : batches)
        kept.parts.push_back(partOf(placed));
    return kept_.emplace(hash, std::move(kept))->second.mesh;
}

void SceneMeshes::endDraw() {
    std::erase_if(kept_,
                  [&](const auto& entry) { return draw_ - entry.second.lastDraw >= keepDraws_; });
    ++draw_;
}

}  // namespace platform
