// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/MeshShape.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/vector_relational.hpp>

namespace platform {

namespace {

constexpr float kSame = 1e-4F;
// A mesh with fewer corners is not drawn as a ball: its facets show.
constexpr std::size_t kLeastBallCorners = 200;

template <typename V>
bool meets(const std::vector<V>& values, std::uint32_t a, std::uint32_t b, std::uint32_t c,
           std::uint32_t d, float scale) {
    if (values.empty()) return true;
    if (std::max({a, b, c, d}) >= values.size()) return false;
    const V gap = values[a] + values[d] - values[b] - values[c];
    return glm::dot(gap, gap) <= scale * scale;
}

// Two triangles a b c and c b d, as grids are made of.
bool isParallelogram(const MeshData& data, const std::uint32_t* index) {
    if (index[3] != index[2] || index[4] != index[1]) return false;
    const std::uint32_t a = index[0], b = index[1], c = index[2], d = index[5];
    if (std::max({a, b, c, d}) >= data.positions.size()) return false;
    const float size = glm::length(data.positions[d] - data.positions[a]);
    return meets(data.positions, a, b, c, d, kSame * size) &&
           meets(data.normals, a, b, c, d, 1e-3F) && meets(data.texcoords, a, b, c, d, kSame);
}

bool allAsFar(const Mesh& mesh, float radius) {
    const glm::vec3 middle = mesh.bounds().centre();
    return std::all_of(mesh.data().positions.begin(), mesh.data().positions.end(),
                       [&](const glm::vec3& place) {
                           return std::abs(glm::length(place - middle) - radius) <= 1e-3F * radius;
                       });
}

}  // namespace

MeshShape::MeshShape(const Mesh& mesh) {
    const MeshData& data = mesh.data();
    if (data.primitive != Primitive::Triangles) return;
    const std::size_t corners = data.positions.size();
    for (std::size_t i = 0; i + 2 < data.indices.size(); i += 3) {
        const std::uint32_t* const index = &data.indices[i];
        if (i + 5 < data.indices.size() && isParallelogram(data, index)) {
            faces.push_back({4, {index[0], index[1], index[5], index[2]}});
            i += 3;
        } else if (std::max({index[0], index[1], index[2]}) < corners) {
            faces.push_back({3, {index[0], index[1], index[2], index[2]}});
        }
    }
    const glm::vec3 size = mesh.bounds().size();
    radius = 0.5F * std::max({size.x, size.y, size.z});
    isBall = corners >= kLeastBallCorners && radius > 0.0F &&
             std::min({size.x, size.y, size.z}) > 1.9F * radius && allAsFar(mesh, radius);
    if (faces.size() != 1 || faces[0].corners != 4 || data.texcoords.size() != corners) return;
    const auto& c = faces[0].corner;
    // Finds the picture's corners among the face's corners, which have any order.
    const auto find = [&](glm::vec2 uv) -> const glm::vec3* {
        for (const std::uint32_t at : c)
            if (glm::length(data.texcoords[at] - uv) < kSame) return &data.positions[at];
        return nullptr;
    };
    const glm::vec3* const upperLeft = find({0.0F, 0.0F});
    const glm::vec3* const upperRight = find({1.0F, 0.0F});
    const glm::vec3* const lowerLeft = find({0.0F, 1.0F});
    if (!upperLeft || !upperRight || !lowerLeft) return;
    isCard = true;
    corner = *upperLeft;
    along = *upperRight - corner;
    down = *lowerLeft - corner;
}

}  // namespace platform
