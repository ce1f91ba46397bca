// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <set>

#include <glm/geometric.hpp>

#include "platform/scene/Geometry.h"
#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

constexpr double kTiny = 1e-5;

struct Corner {
    glm::vec3 position, normal;
    glm::vec2 texcoord;
};

std::vector<Corner> cornersOf(const Mesh& mesh) {
    std::vector<Corner> corners;
    for (const std::uint32_t i : mesh.data().indices)
        corners.push_back(
            {mesh.data().positions.at(i), mesh.data().normals.at(i), mesh.data().texcoords.at(i)});
    return corners;
}

// Triangles must run counterclockwise seen from where their normals point, and
// those normals have unit length. Returns the surface's area.
double checkedArea(const Mesh& mesh) {
    const auto corners = cornersOf(mesh);
    double area = 0.0;
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        const glm::vec3 side = glm::cross(corners[i + 1].position - corners[i].position,
                                          corners[i + 2].position - corners[i].position);
        area += 0.5 * glm::length(side);
        if (glm::length(side) < 1e-7F) continue;  // at a pole
        for (std::size_t k = i; k < i + 3; ++k) {
            EXPECT_NEAR(glm::length(corners[k].normal), 1.0, kTiny);
            EXPECT_GT(glm::dot(side, corners[k].normal), 0.0F) << "triangle " << i / 3;
        }
    }
    return area;
}

TEST(Shapes, APlaneFacesPlusZWithTheTopOfThePictureUp) {
    const auto plane = makePlane({.width = 3.0, .height = 2.0});
    EXPECT_NEAR(checkedArea(*plane->mesh()), 6.0, kTiny);
    EXPECT_EQ(plane->mesh()->primitiveCount(), 2U);
    for (const Corner& corner : cornersOf(*plane->mesh())) {
        EXPECT_EQ(corner.normal, glm::vec3(0, 0, 1));
        EXPECT_NEAR(corner.position.x, 3.0 * (corner.texcoord.x - 0.5), kTiny);
        EXPECT_NEAR(corner.position.y, 2.0 * (0.5 - corner.texcoord.y), kTiny);
    }
}

TEST(Shapes, ASharpBoxHasSixSides) {
    const auto box = makeBox({.width = 1.0, .height = 2.0, .length = 3.0});
    EXPECT_EQ(box->mesh()->primitiveCount(), 12U);
    EXPECT_NEAR(checkedArea(*box->mesh()), 22.0, kTiny);
    EXPECT_VEC_NEAR(box->size(), glm::dvec3(1, 2, 3), kTiny);
}

class ChamferedBox : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Segments, ChamferedBox, testing::Values(1, 2, 4));

TEST_P(ChamferedBox, LiesInsideTheOuterSize) {
    const auto box = makeBox({.length = 1.4, .chamferRadius = 0.06, .chamferSegments = GetParam()});
    EXPECT_VEC_NEAR(box->size(), glm::dvec3(1, 1, 1.4), kTiny);
    const double area = checkedArea(*box->mesh());
    EXPECT_LT(area, 2.0 + 4 * 1.4);
    EXPECT_GT(area, 0.93 * (2.0 + 4 * 1.4));
    // Every vertex is as far from the box without its rounding as the radius.
    for (const Corner& corner : cornersOf(*box->mesh())) {
        const glm::vec3 half(0.44, 0.44, 0.64);
        const glm::vec3 inner = glm::clamp(corner.position, -half, half);
        EXPECT_NEAR(glm::distance(corner.position, inner), 0.06, kTiny);
        EXPECT_VEC_NEAR((corner.position - inner) / 0.06F, corner.normal, 1e-4);
    }
}

TEST(Shapes, AChamferOfOneStepHasNoMoreThanItNeeds) {
    const auto box = makeBox({.chamferRadius = 0.06, .chamferSegments = 1});
    EXPECT_EQ(box->mesh()->data().positions.size(), 24U);
    EXPECT_EQ(box->mesh()->primitiveCount(), 6U * 2U + 12U * 2U + 8U);
}

TEST(Shapes, ABoxWithoutRoundingHasSixSidesInOneStepToo) {
    const auto box = makeBox({.chamferSegments = 1});
    EXPECT_EQ(box->mesh()->primitiveCount(), 12U);
    EXPECT_NEAR(checkedArea(*box->mesh()), 6.0, kTiny);
}

TEST_P(ChamferedBox, IsClosed) {
    const auto box = makeBox({.chamferRadius = 0.2, .chamferSegments = GetParam()});
    // Each edge of each triangle is met once in the other direction.
    const auto key = [](const glm::vec3& p) {
        return std::tuple(std::lround(p.x * 1e4F), std::lround(p.y * 1e4F),
                          std::lround(p.z * 1e4F));
    };
    using Key = decltype(key(glm::vec3()));
    std::multiset<std::pair<Key, Key>> edges;
    const auto corners = cornersOf(*box->mesh());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const std::size_t next = i % 3 == 2 ? i - 2 : i + 1;
        edges.emplace(key(corners[i].position), key(corners[next].position));
    }
    for (const auto& [from, to] : edges)
        EXPECT_EQ(edges.count({to, from}), 1U);
}

TEST(Shapes, TheChamferNeverOutgrowsTheBox) {
    const auto box = makeBox({.width = 1.0, .height = 1.0, .length = 0.2, .chamferRadius = 5.0});
    EXPECT_VEC_NEAR(box->size(), glm::dvec3(1, 1, 0.2), kTiny);
}

TEST(Shapes, ASphereHasItsPolesOnY) {
    const auto sphere = makeSphere({.radius = 2.0});
    EXPECT_NEAR(checkedArea(*sphere->mesh()), 16.0 * M_PI, 0.02 * 16.0 * M_PI);
    for (const Corner& corner : cornersOf(*sphere->mesh())) {
        EXPECT_NEAR(glm::length(corner.position), 2.0, kTiny);
        EXPECT_VEC_NEAR(corner.normal * 2.0F, corner.position, kTiny);
        EXPECT_NEAR(corner.position.y, 2.0 * std::cos(M_PI * corner.texcoord.y), kTiny);
    }
    EXPECT_EQ(sphere->mesh()->data().positions.size(), 49U * 25U);
}

TEST(Shapes, ATubeReachesFromItsInnerToItsOuterRadius) {
    const auto tube =
        makeTube({.innerRadius = 1.6, .outerRadius = 1.65, .height = 80.0, .radialSegments = 64});
    EXPECT_VEC_NEAR(tube->size(), glm::dvec3(3.3, 80.0, 3.3), 1e-3);
    const double walls = 2.0 * M_PI * (1.6 + 1.65) * 80.0;
    EXPECT_NEAR(checkedArea(*tube->mesh()), walls, 0.01 * walls);
    EXPECT_EQ(tube->mesh()->primitiveCount(), 4U * 64U * 2U);
}

TEST(Shapes, ATubesInnerWallFacesInwardAndReadsFromInside) {
    const auto tube = makeTube({.innerRadius = 1.0, .outerRadius = 2.0, .height = 4.0});
    int inner = 0;
    for (const Corner& corner : cornersOf(*tube->mesh())) {
        const glm::vec3 out(corner.position.x, 0, corner.position.z);
        if (std::abs(glm::length(out) - 1.0F) > 1e-4F || corner.normal.y != 0.0F) continue;
        ++inner;
        EXPECT_VEC_NEAR(corner.normal, -out, kTiny);
        EXPECT_NEAR(corner.position.y, 4.0 * (0.5 - corner.texcoord.y), kTiny);
        // Going right, seen from inside, is where u grows: a quarter of a round
        // from behind (−z) is on the right (+x).
        const double angle = 2.0 * M_PI * corner.texcoord.x;
        EXPECT_VEC_NEAR(out, glm::dvec3(std::sin(angle), 0.0, -std::cos(angle)), kTiny);
    }
    EXPECT_EQ(inner, 48 * 6);
}

TEST(Shapes, ATubesOuterWallReadsFromOutside) {
    const auto tube = makeTube({.innerRadius = 1.0, .outerRadius = 2.0});
    for (const Corner& corner : cornersOf(*tube->mesh())) {
        const glm::vec3 out(corner.position.x, 0, corner.position.z);
        if (std::abs(glm::length(out) - 2.0F) > 1e-4F || corner.normal.y != 0.0F) continue;
        // Seen from +z, the middle of the picture is in front, its first quarter
        // on the left.
        const double angle = 2.0 * M_PI * corner.texcoord.x;
        EXPECT_VEC_NEAR(out, 2.0 * glm::dvec3(-std::sin(angle), 0.0, -std::cos(angle)), kTiny);
    }
}

TEST(Shapes, ATorusLiesInTheXzPlane) {
    const auto torus = makeTorus({.ringRadius = 0.05, .pipeRadius = 0.004});
    EXPECT_VEC_NEAR(torus->size(), glm::dvec3(0.108, 0.008, 0.108), 1e-4);
    checkedArea(*torus->mesh());
    EXPECT_EQ(torus->mesh()->primitiveCount(), 48U * 24U * 2U);
    for (const Corner& corner : cornersOf(*torus->mesh())) {
        const glm::vec3 flat(corner.position.x, 0, corner.position.z);
        EXPECT_NEAR(glm::distance(corner.position, 0.05F * glm::normalize(flat)), 0.004, kTiny);
    }
}

TEST(Shapes, PointsKeepTheirSizeAndOrder) {
    const auto points = makePoints({{1, 2, 3}, {4, 5, 6}}, 2.2);
    EXPECT_EQ(points->mesh()->primitive(), Primitive::Points);
    EXPECT_EQ(points->mesh()->primitiveCount(), 2U);
    EXPECT_EQ(points->mesh()->data().pointSize, 2.2);
    EXPECT_EQ(points->mesh()->data().indices, (std::vector<std::uint32_t>{0, 1}));
}

TEST(Shapes, LinesTakePositionsPairByPair) {
    const auto lines = makeLines({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {2, 1, 0}, {9, 9, 9}});
    EXPECT_EQ(lines->mesh()->primitive(), Primitive::Lines);
    EXPECT_EQ(lines->mesh()->primitiveCount(), 2U);
    EXPECT_EQ(lines->mesh()->bounds().high, glm::vec3(2, 1, 0));
}

TEST(Shapes, EveryMeshHasItsOwnId) {
    EXPECT_NE(makePlane({})->mesh()->id(), makePlane({})->mesh()->id());
}

TEST(Shapes, WithoutAMaterialAShapeIsWhiteAndLit) {
    const auto plane = makePlane({});
    EXPECT_EQ(plane->material()->colour(), QColor(Qt::white));
    EXPECT_EQ(plane->material()->lightingModel(), LightingModel::Lambert);
}

}  // namespace
