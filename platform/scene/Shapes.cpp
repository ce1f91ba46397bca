// SPDX-License-Identifier: MIT
// Shapes with flat sides, points and lines.
#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "platform/scene/Geometry.h"
#include "platform/scene/GridMesh.h"
#include "platform/scene/Transform.h"
#include "platform/time/Require.h"

namespace platform {

namespace {

MaterialPtr orWhite(MaterialPtr material) {
    return material ? std::move(material) : std::make_shared<Material>();
}

// One side of a cube: `out` is the normal, `right` and `up` are as seen from there.
struct Side {
    glm::vec3 out, right, up;
};

constexpr std::array<Side, 6> kSides{{
    {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}},
    {{0, 0, -1}, {-1, 0, 0}, {0, 1, 0}},
    {{1, 0, 0}, {0, 0, -1}, {0, 1, 0}},
    {{-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
    {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}},
    {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}},
}};

// The grid lines of a side, from −half to half: at the rim of the flat part,
// and inside the rounding at equal steps of angle.
std::vector<float> gridLines(float half, float radius, int steps) {
    if (radius <= 0.0F) return {-half, half};
    std::vector<float> lines;
    for (int i = steps; i >= 0; --i) {
        const double angle = 0.25 * kPi * i / steps;
        lines.push_back(radius - half - radius * static_cast<float>(std::tan(angle)));
    }
    for (std::size_t i = lines.size(); i-- > 0;)
        lines.push_back(-lines[i]);
    return lines;
}

// A point of the sharp box moved onto the rounded box: at the chamfer's radius
// from the inner box.
struct Rounded {
    glm::vec3 position, normal;
};
Rounded rounded(const glm::vec3& sharp, const glm::vec3& half, float radius, const glm::vec3& out) {
    if (radius <= 0.0F) return {sharp, out};
    const glm::vec3 inner = glm::clamp(sharp, radius - half, half - radius);
    const glm::vec3 normal = glm::normalize(sharp - inner);
    return {inner + radius * normal, normal};
}

void addSide(MeshData& mesh, const Side& side, const glm::vec3& half, float radius, int steps) {
    const float width = glm::dot(glm::abs(side.right), half);
    const float height = glm::dot(glm::abs(side.up), half);
    const std::vector<float> columns = gridLines(width, radius, steps);
    const std::vector<float> rows = gridLines(height, radius, steps);
    addGrid(mesh, static_cast<int>(columns.size()) - 1, static_cast<int>(rows.size()) - 1,
            [&](int column, int row) {
                const float x = columns[static_cast<std::size_t>(column)];
                const float y = -rows[static_cast<std::size_t>(row)];
                const glm::vec3 sharp =
                    side.out * glm::dot(glm::abs(side.out), half) + side.right * x + side.up * y;
                const Rounded point = rounded(sharp, half, radius, side.out);
                return GridVertex{point.position,
                                  point.normal,
                                  {0.5F + 0.5F * x / width, 0.5F - 0.5F * y / height}};
            });
}

// Adds a triangle, counterclockwise seen from where the normals point.
void addFacing(MeshData& mesh, std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    const glm::vec3 across =
        glm::cross(mesh.positions[b] - mesh.positions[a], mesh.positions[c] - mesh.positions[a]);
    if (glm::dot(across, mesh.normals[a] + mesh.normals[b] + mesh.normals[c]) < 0.0F)
        std::swap(b, c);
    mesh.indices.insert(mesh.indices.end(), {a, b, c});
}

// Adds six flat sides and a flat strip or triangle at each edge and corner.
// Normals turn along a strip as on a rounded edge.
void addBevelled(MeshData& mesh, const glm::vec3& half, float radius) {
    // Vertex indices by corner (bit i is the sign along axis i), then by the side's axis.
    std::array<std::array<std::uint32_t, 3>, 8> at{};
    for (const Side& side : kSides) {
        const unsigned axis = side.out.x != 0.0F ? 0 : side.out.y != 0.0F ? 1 : 2;
        addGrid(mesh, 1, 1, [&](int column, int row) {
            const glm::vec2 uv(column, row);
            const glm::vec3 c =
                side.out + (2.0F * uv.x - 1.0F) * side.right + (1.0F - 2.0F * uv.y) * side.up;
            const unsigned corner = (c.x > 0.0F) + 2U * (c.y > 0.0F) + 4U * (c.z > 0.0F);
            at[corner][axis] = static_cast<std::uint32_t>(mesh.positions.size());
            return GridVertex{c * (half - radius) + radius * side.out, side.out, uv};
        });
    }
    for (unsigned corner = 0; corner < at.size(); ++corner) {
        addFacing(mesh, at[corner][0], at[corner][1], at[corner][2]);
        for (unsigned axis = 0; axis < 3; ++axis) {
            const unsigned other = corner | 1U << axis;
            if (other == corner) continue;
            const unsigned a = (axis + 1) % 3;
            const unsigned b = (axis + 2) % 3;
            addFacing(mesh, at[corner][a], at[other][a], at[corner][b]);
            addFacing(mesh, at[corner][b], at[other][a], at[other][b]);
        }
    }
}

// Indexes every vertex once, in order.
std::vector<std::uint32_t> oneByOne(std::size_t count) {
    std::vector<std::uint32_t> indices(count);
    std::iota(indices.begin(), indices.end(), 0U);
    return indices;
}

}  // namespace

GeometryPtr makeGeometry(MeshData data, MaterialPtr material) {
    return std::make_shared<const Geometry>(std::make_shared<const Mesh>(std::move(data)),
                                            orWhite(std::move(material)));
}

GeometryPtr makePlane(const PlaneOptions& options, MaterialPtr material) {
    MeshData mesh;
    const glm::vec3 half(0.5 * options.width, 0.5 * options.height, 0.0);
    addGrid(mesh, 1, 1, [&](int column, int row) {
        const glm::vec2 uv(column, row);
        return GridVertex{{half.x * (2.0F * uv.x - 1.0F), half.y * (1.0F - 2.0F * uv.y), 0.0F},
                          {0.0F, 0.0F, 1.0F},
                          uv};
    });
    return makeGeometry(std::move(mesh), std::move(material));
}

GeometryPtr makeBox(const BoxOptions& options, MaterialPtr material) {
    const int segments = options.chamferSegments;
    require(segments == 1 || (segments >= 2 && segments % 2 == 0));
    const glm::vec3 half(0.5 * options.width, 0.5 * options.height, 0.5 * options.length);
    const auto radius = std::clamp(static_cast<float>(options.chamferRadius), 0.0F,
                                   std::min({half.x, half.y, half.z}));
    MeshData mesh;
    if (segments == 1 && radius > 0.0F) {
        addBevelled(mesh, half, radius);
        return makeGeometry(std::move(mesh), std::move(material));
    }
    for (const Side& side : kSides)
        addSide(mesh, side, half, radius, segments / 2);
    return makeGeometry(std::move(mesh), std::move(material));
}

GeometryPtr makePoints(std::vector<glm::vec3> positions, double pointSize, MaterialPtr material) {
    MeshData mesh{.primitive = Primitive::Points, .pointSize = pointSize};
    mesh.indices = oneByOne(positions.size());
    mesh.positions = std::move(positions);
    return makeGeometry(std::move(mesh), std::move(material));
}

GeometryPtr makeLines(std::vector<glm::vec3> ends, MaterialPtr material) {
    MeshData mesh{.primitive = Primitive::Lines};
    ends.resize(ends.size() / 2 * 2);
    mesh.indices = oneByOne(ends.size());
    mesh.positions = std::move(ends);
    return makeGeometry(std::move(mesh), std::move(material));
}

}  // namespace platform
