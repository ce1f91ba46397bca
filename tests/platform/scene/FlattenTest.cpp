// SPDX-License-Identifier: MIT
#include <glm/geometric.hpp>

#include "platform/scene/Node.h"
#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

NodePtr childOf(const NodePtr& parent, GeometryPtr geometry, glm::dvec3 position = {}) {
    auto child = std::make_shared<Node>(std::move(geometry));
    child->setPosition(position);
    parent->addChild(child);
    return child;
}

TEST(Flatten, ManyBlocksOfOneMaterialBecomeOneNode) {
    const auto word = std::make_shared<Node>();
    const GeometryPtr block = makeBox({.length = 1.4, .chamferRadius = 0.06});
    for (int i = 0; i < 20; ++i)
        childOf(word, block, {1.15 * i, 0, 0});
    const NodePtr flat = word->flattenedClone();
    EXPECT_TRUE(flat->children().empty());
    ASSERT_NE(flat->geometry(), nullptr);
    EXPECT_EQ(flat->geometry()->material(), block->material());
    const Mesh& mesh = *flat->geometry()->mesh();
    EXPECT_EQ(mesh.primitiveCount(), 20 * block->mesh()->primitiveCount());
    EXPECT_EQ(mesh.data().positions.size(), 20 * block->mesh()->data().positions.size());
    EXPECT_VEC_NEAR(mesh.bounds().low, glm::dvec3(-0.5, -0.5, -0.7), 1e-5);
    EXPECT_VEC_NEAR(mesh.bounds().high, glm::dvec3(19 * 1.15 + 0.5, 0.5, 0.7), 1e-4);
    EXPECT_EQ(word->children().size(), 20U);  // the original stays as it is
}

TEST(Flatten, KeepsItsOwnPlaceAndTakesInTheChildrens) {
    const auto top = std::make_shared<Node>();
    top->setName("word");
    top->setPosition({0, 0.5, 0});
    top->setScale({0.25, 0.25, 0.25});
    const auto middle = childOf(top, {}, {1, 0, 0});
    middle->setEulerAngles({0, 0, kPi / 2});
    middle->setScale({2, 2, 2});
    childOf(middle, makePoints({{1, 0, 0}}, 1.0));
    const NodePtr flat = top->flattenedClone();
    EXPECT_EQ(flat->name(), "word");
    EXPECT_EQ(flat->position(), top->position());
    EXPECT_EQ(flat->scale(), top->scale());
    EXPECT_VEC_NEAR(flat->geometry()->mesh()->data().positions.at(0), glm::dvec3(1, 2, 0), 1e-6);
}

TEST(Flatten, TurnsNormalsAsTheSurfaceTurns) {
    const auto top = std::make_shared<Node>();
    const auto plane = childOf(top, makePlane({}));
    plane->setEulerAngles({0, kPi / 4, 0});
    plane->setScale({2, 1, 3});
    const MeshData mesh = top->flattenedClone()->geometry()->mesh()->data();
    for (const glm::vec3& normal : mesh.normals)
        EXPECT_VEC_NEAR(normal, glm::normalize(glm::dvec3(1, 0, 1)), 1e-6);
}

TEST(Flatten, AMirroredTriangleStillFacesItsNormal) {
    const auto top = std::make_shared<Node>();
    childOf(top, makePlane({}))->setScale({-1, 1, 1});
    const MeshData mesh = top->flattenedClone()->geometry()->mesh()->data();
    const auto at = [&](std::size_t i) { return mesh.positions[mesh.indices[i]]; };
    const glm::vec3 side = glm::cross(at(1) - at(0), at(2) - at(0));
    EXPECT_GT(glm::dot(side, mesh.normals[mesh.indices[0]]), 0.0F);
}

TEST(Flatten, EachFurtherMaterialOrPrimitiveBecomesAChild) {
    const auto top = std::make_shared<Node>();
    const auto material = std::make_shared<Material>();
    childOf(top, makePlane({}, material));
    childOf(top, makeLines({{0, 0, 0}, {1, 0, 0}}, material));
    childOf(top, makePlane({}));
    childOf(top, makePlane({}, material));
    const NodePtr flat = top->flattenedClone();
    EXPECT_EQ(flat->geometry()->mesh()->primitiveCount(), 4U);
    EXPECT_EQ(flat->children().size(), 2U);
}

}  // namespace
