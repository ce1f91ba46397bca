// SPDX-License-Identifier: MIT
// Meshes built from grids of vertices; private to platform/scene.
#pragma once

#include <cstdint>

#include "platform/scene/Mesh.h"

namespace platform {

struct GridVertex {
    glm::vec3 position, normal;
    glm::vec2 texcoord;
};

// Adds columns × rows cells of two triangles. Calls `vertex(column, row)` for
// (columns + 1) × (rows + 1) vertices. Seen from where the normals point,
// columns run to the right and rows downwards.
template <typename VertexAt>
void addGrid(MeshData& mesh, int columns, int rows, VertexAt vertex) {
    const auto base = static_cast<std::uint32_t>(mesh.positions.size());
    for (int row = 0; row <= rows; ++row) {
        for (int column = 0; column <= columns; ++column) {
            const GridVertex v = vertex(column, row);
            mesh.positions.push_back(v.position);
            mesh.normals.push_back(v.normal);
            mesh.texcoords.push_back(v.texcoord);
        }
    }
    const auto stride = static_cast<std::uint32_t>(columns + 1);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const std::uint32_t a = base + static_cast<std::uint32_t>(row) * stride +
                                    static_cast<std::uint32_t>(column);
            const std::uint32_t below = a + stride;
            for (const std::uint32_t index : {a, below, a + 1, a + 1, below, below + 1})
                mesh.indices.push_back(index);
        }
    }
}

}  // namespace platform
