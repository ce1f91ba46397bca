// SPDX-License-Identifier: MIT
// A mesh as the processor draws it; private to platform/render.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/scene/Mesh.h"

namespace platform {

struct MeshShape {
    explicit MeshShape(const Mesh& mesh);

    // Three corners, or the four of two triangles that are one face.
    struct Face {
        int corners = 3;
        std::array<std::uint32_t, 4> corner{};  // a triangle's last one twice
    };
    // The part of its mesh that a surface shows. Two triangles are one face where all of that is
    // even.
    enum Look : std::size_t { kShape, kNormals, kPicture, kLooks };
    std::array<std::vector<Face>, kLooks> faces;

    // The faces of every second, fourth, … row and column of a mesh that is one grid, for
    // kShape. Each level has a quarter of the faces of the one before.
    struct Level {
        std::vector<Face> faces;
        float miss = 0.0F;  // the farthest that a place left out lies from the level
    };
    std::vector<Level> coarser;

    // Whether all vertices have the same distance from the middle of the mesh's box.
    bool isBall = false;
    float radius = 0.0F;

    // Whether the mesh is one parallelogram: the place of its picture's upper left corner, and
    // the vectors along the picture's width and height.
    bool isCard = false;
    glm::vec3 corner{0.0F};
    glm::vec3 along{0.0F};
    glm::vec3 down{0.0F};

  private:
    void addCoarser(const MeshData& data);
};

}  // namespace platform
