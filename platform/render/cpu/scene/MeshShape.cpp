// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/MeshShape.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/vector_relational.hpp>
#include <optional>

namespace platform {

namespace {

constexpr float kSame = 1e-4F;
// A mesh with fewer corners is not drawn as a ball: its facets show.
constexpr std::size_t kLeastBallCorners = 200;

using Corners = std::array<std::uint32_t, 4>;  // round a quadrangle

template <typename V>
bool meets(const std::vector<V>& values, const Corners& c, float scale) {
    if (values.empty()) return true;
    if (*std::max_element(c.begin(), c.end()) >= values.size()) return false;
    const V gap = values[c[0]] + values[c[2]] - values[c[1]] - values[c[3]];
    return glm::dot(gap, gap) <= scale * scale;
}

// Whether four places lie in one plane and have no corner that points inwards.
bool isFlatAndConvex(const std::vector<glm::vec3>& places, const Corners& c) {
    const glm::vec3 across = glm::cross(places[c[1]] - places[c[0]], places[c[3]] - places[c[0]]);
    const float twice = glm::length(across);
    if (!(twice > 0.0F)) return false;
    const glm::vec3 normal = across / twice;
    const glm::vec3 way = places[c[2]] - places[c[0]];
    if (std::abs(glm::dot(normal, way)) > kSame * glm::length(way)) return false;
    for (std::size_t i = 0; i < c.size(); ++i) {
        const glm::vec3& corner = places[c[(i + 1) % c.size()]];
        const glm::vec3 turn =
            glm::cross(corner - places[c[i]], places[c[(i + 2) % c.size()]] - corner);
        if (!(glm::dot(turn, normal) > 0.0F)) return false;
    }
    return true;
}

// Whether two triangles are one face, as far as a surface of this look shows.
bool isOne(const MeshData& data, const Corners& c, MeshShape::Look look) {
    if (*std::max_element(c.begin(), c.end()) >= data.positions.size()) return false;
    if (look == MeshShape::kShape) return isFlatAndConvex(data.positions, c);
    const float size = glm::length(data.positions[c[2]] - data.positions[c[0]]);
    return meets(data.positions, c, kSame * size) && meets(data.normals, c, 1e-3F) &&
           (look == MeshShape::kNormals || meets(data.texcoords, c, kSame));
}

// The quadrangle of two triangles that share an edge; the first corner is the first triangle's
// own.
std::optional<Corners> quadrangleOf(const std::uint32_t* index) {
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j) {
            const std::uint32_t from = index[(i + 1) % 3];
            const std::uint32_t to = index[(i + 2) % 3];
            if (index[3 + j] != to || index[3 + (j + 1) % 3] != from) continue;
            return Corners{index[i], from, index[3 + (j + 2) % 3], to};
        }
    return std::nullopt;
}

std::vector<MeshShape::Face> facesOf(const MeshData& data, MeshShape::Look look) {
    std::vector<MeshShape::Face> faces;
    for (std::size_t i = 0; i + 2 < data.indices.size(); i += 3) {
        const std::uint32_t* const index = &data.indices[i];
        const auto pair =
            i + 5 < data.indices.size() ? quadrangleOf(index) : std::optional<Corners>();
        if (pair && isOne(data, *pair, look)) {
            faces.push_back({4, *pair});
            i += 3;
        } else if (std::max({index[0], index[1], index[2]}) < data.positions.size()) {
            faces.push_back({3, {index[0], index[1], index[2], index[2]}});
        }
    }
    return faces;
}

// A mesh that is one grid: its columns and rows of cells, 0 for any other mesh.
struct Grid {
    std::uint32_t columns = 0;
    std::uint32_t rows = 0;
    [[nodiscard]] std::uint32_t at(std::uint32_t column, std::uint32_t row) const {
        return row * (columns + 1) + column;
    }
};

Grid gridOf(const MeshData& data) {
    if (data.indices.size() < 6 || data.indices[0] != 0) return {};
    const std::uint32_t stride = data.indices[1];
    if (stride < 2 || data.positions.size() % stride != 0) return {};
    const Grid grid{stride - 1, static_cast<std::uint32_t>(data.positions.size() / stride) - 1};
    if (data.indices.size() != 6 * std::size_t{grid.columns} * grid.rows) return {};
    for (std::size_t i = 0; i < data.indices.size(); i += 6) {
        const auto cell = static_cast<std::uint32_t>(i / 6);
        const std::uint32_t a = grid.at(cell % grid.columns, cell / grid.columns);
        const std::array<std::uint32_t, 6> corners{a,     a + stride, a + 1,
                                                   a + 1, a + stride, a + stride + 1};
        if (!std::equal(corners.begin(), corners.end(), &data.indices[i])) return {};
    }
    return grid;
}

// The distance of the places left out by one coarse cell, or more.
float missOf(const MeshData& data, const Grid& grid, const Corners& c, std::uint32_t step) {
    const std::uint32_t column = c[0] % (grid.columns + 1);
    const std::uint32_t row = c[0] / (grid.columns + 1);
    const glm::vec3 corner = data.positions[c[0]];
    const glm::vec3 down = data.positions[c[1]] - corner;
    const glm::vec3 along = data.positions[c[3]] - corner;
    const glm::vec3 twist = data.positions[c[2]] - corner - down - along;
    float most = 0.0F;
    for (std::uint32_t y = 0; y <= step; ++y)
        for (std::uint32_t x = 0; x <= step; ++x) {
            const float u = static_cast<float>(x) / static_cast<float>(step);
            const float v = static_cast<float>(y) / static_cast<float>(step);
            const glm::vec3 there = corner + u * along + v * down + u * v * twist;
            most =
                std::max(most, glm::length(data.positions[grid.at(column + x, row + y)] - there));
        }
    return most;
}

MeshShape::Level levelOf(const MeshData& data, const Grid& grid, std::uint32_t step) {
    MeshShape::Level level;
    for (std::uint32_t row = 0; row < grid.rows; row += step)
        for (std::uint32_t column = 0; column < grid.columns; column += step) {
            const Corners c{grid.at(column, row), grid.at(column, row + step),
                            grid.at(column + step, row + step), grid.at(column + step, row)};
            level.miss = std::max(level.miss, missOf(data, grid, c, step));
            if (isFlatAndConvex(data.positions, c)) {
                level.faces.push_back({4, c});
            } else {
                level.faces.push_back({3, {c[0], c[1], c[3], c[3]}});
                level.faces.push_back({3, {c[3], c[1], c[2], c[2]}});
            }
        }
    return level;
}

bool allAsFar(const Mesh& mesh, float radius) {
    const glm::vec3 middle = mesh.bounds().centre();
    return std::all_of(mesh.data().positions.begin(), mesh.data().positions.end(),
                       [&](const glm::vec3& place) {
                           return std::abs(glm::length(place - middle) - radius) <= 1e-3F * radius;
                       });
}

}  // namespace

void MeshShape::addCoarser(const MeshData& data) {
    const Grid grid = gridOf(data);
    constexpr std::uint32_t kFewest = 6;  // cells along a side
    for (std::uint32_t step = 2; grid.columns % step == 0 && grid.rows % step == 0 &&
                                 std::min(grid.columns, grid.rows) >= kFewest * step;
         step *= 2)
        coarser.push_back(levelOf(data, grid, step));
}

MeshShape::MeshShape(const Mesh& mesh) {
    const MeshData& data = mesh.data();
    if (data.primitive != Primitive::Triangles) return;
    const std::size_t corners = data.positions.size();
    for (const Look look : {kShape, kNormals, kPicture})
        faces[look] = facesOf(data, look);
    const glm::vec3 size = mesh.bounds().size();
    radius = 0.5F * std::max({size.x, size.y, size.z});
    isBall = corners >= kLeastBallCorners && radius > 0.0F &&
             std::min({size.x, size.y, size.z}) > 1.9F * radius && allAsFar(mesh, radius);
    if (!isBall) addCoarser(data);
    const std::vector<Face>& cards = faces[kPicture];
    if (cards.size() != 1 || cards[0].corners != 4 || data.texcoords.size() != corners) return;
    const auto& c = cards[0].corner;
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
