// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

namespace platform {

enum class Primitive { Triangles, Lines, Points };

// A mesh's vertices and indices. Triangles have three indices each and run
// counterclockwise seen from where their normals point; lines have two indices
// each, points one. Lines and points have no normals and no texture
// coordinates. v = 0 is the top of the picture.
struct MeshData {
    Primitive primitive = Primitive::Triangles;
    std::vector<glm::vec3> positions{};
    std::vector<glm::vec3> normals{};
    std::vector<glm::vec2> texcoords{};
    std::vector<std::uint32_t> indices{};
    double pointSize = 1.0;  // points on screen across; for Points
    // A point's greatest share of the picture's height, at the camera's own angle, so that
    // close dots stay apart in a small picture; 0: no limit.
    double pointHeightShare = 0.0;
};

// The box that holds every position; both corners zero for an empty mesh.
struct Bounds {
    glm::vec3 low{0.0F};
    glm::vec3 high{0.0F};

    [[nodiscard]] glm::vec3 centre() const { return 0.5F * (low + high); }
    [[nodiscard]] glm::vec3 size() const { return high - low; }
};

// Immutable vertices and indices. Nodes, draw lists and drawers on any thread
// share ownership. An id is never used twice in one process, so a drawer may
// cache by it.
class Mesh {
  public:
    explicit Mesh(MeshData data);

    [[nodiscard]] const MeshData& data() const { return data_; }
    [[nodiscard]] const Bounds& bounds() const { return bounds_; }
    [[nodiscard]] std::uint64_t id() const { return id_; }
    [[nodiscard]] Primitive primitive() const { return data_.primitive; }

    // The number of triangles, lines or points; for tests and benchmarks.
    [[nodiscard]] std::size_t primitiveCount() const;

  private:
    const MeshData data_;
    const Bounds bounds_;
    const std::uint64_t id_;
};

using MeshPtr = std::shared_ptr<const Mesh>;

}  // namespace platform
