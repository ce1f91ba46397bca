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

    // Three corners, or the four of a parallelogram along which all is even.
    struct Face {
        int corners = 3;
        std::array<std::uint32_t, 4> corner{};
    };
    std::vector<Face> faces;

    // Whether all vertices have the same distance from the middle of the mesh's box.
    bool isBall = false;
    float radius = 0.0F;

    // Whether the mesh is one parallelogram: the place of its picture's upper left corner, and
    // the vectors along the picture's width and height.
    bool isCard = false;
    glm::vec3 corner{0.0F};
    glm::vec3 along{0.0F};
    glm::vec3 down{0.0F};
};

}  // namespace platform
