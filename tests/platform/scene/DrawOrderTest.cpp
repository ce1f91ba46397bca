// SPDX-License-Identifier: MIT
// The order in which a draw list's batches stand, seen from +z.
#include <string>

#include "platform/scene/DrawList.h"
#include "platform/scene/Scene.h"
#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

enum class Kind { Opaque, Covering, Light };

MaterialPtr material(Kind kind) {
    auto result = std::make_shared<Material>(kind == Kind::Opaque ? QColor(Qt::green)
                                                                  : QColor(0, 255, 0, 128));
    if (kind == Kind::Light) {
        result->setBlendMode(BlendMode::Additive);
        result->setWritesDepth(false);
    }
    return result;
}

struct DrawOrder : testing::Test {
    DrawOrder() {
        const auto eye = std::make_shared<Node>();
        eye->setCamera(Camera{});
        eye->setPosition({0, 0, 10});
        scene.root().addChild(eye);
    }

    NodePtr put(const GeometryPtr& geometry, double z, int order = 0) {
        auto node = std::make_shared<Node>(geometry);
        node->setPosition({0, 0, z});
        node->setRenderingOrder(order);
        scene.root().addChild(node);
        return node;
    }

    // The z of every instance, batches set apart by bars.
    std::string drawn() {
        DrawList list;
        extract(scene, 1.0, list);
        std::string result;
        for (const DrawBatch& batch : list.batches) {
            if (!result.empty()) result += "| ";
            for (std::uint32_t i = batch.first; i < batch.first + batch.count; ++i)
                result += std::to_string(std::lround(list.instances[i].world[3].z)) + " ";
        }
        return result;
    }

    Scene scene;
    GeometryPtr opaque = makePlane({}, material(Kind::Opaque));
    GeometryPtr covering = makePlane({}, material(Kind::Covering));
    GeometryPtr otherCovering = makePlane({}, material(Kind::Covering));
    GeometryPtr light = makePlane({}, material(Kind::Light));
    GeometryPtr otherLight = makePlane({}, material(Kind::Light));
};

TEST_F(DrawOrder, OpaqueComesBeforeBlended) {
    put(covering, 1);
    put(light, 2);
    put(opaque, 3);
    EXPECT_EQ(drawn(), "3 | 1 | 2 ");
}

TEST_F(DrawOrder, TheRenderingOrderComesFirst) {
    put(opaque, 1);
    put(light, 2, -1);
    put(opaque, 3, 1);
    EXPECT_EQ(drawn(), "2 | 1 | 3 ");
}

TEST_F(DrawOrder, CoveringThingsGoBackToFrontAndShareACallWhereNeighbours) {
    put(covering, 3);
    put(covering, 1);
    put(covering, 2);
    EXPECT_EQ(drawn(), "1 2 3 ");
    put(otherCovering, 0);
    EXPECT_EQ(drawn(), "0 | 1 2 3 ");
}

TEST_F(DrawOrder, OneBetweenTwoOfAKindParts) {
    put(covering, 1);
    put(covering, 3);
    put(otherCovering, 2);
    EXPECT_EQ(drawn(), "1 | 2 | 3 ");
}

TEST_F(DrawOrder, LightsAreMergedWithoutSorting) {
    put(light, 3);
    put(otherLight, 2);
    put(light, 1);
    put(otherLight, 4);
    EXPECT_EQ(drawn(), "3 1 | 2 4 ");
}

TEST_F(DrawOrder, WhatCoversPartsTheLightsBehindFromThoseBefore) {
    put(light, 3);
    put(otherLight, 1);
    put(covering, 2);
    put(light, 1);
    put(light, 4);
    EXPECT_EQ(drawn(), "1 | 1 | 2 | 3 4 ");
}

TEST_F(DrawOrder, LightThatWritesDepthIsSorted) {
    light->material()->setWritesDepth(true);
    put(light, 3);
    put(light, 1);
    EXPECT_EQ(drawn(), "1 3 ");
}

TEST_F(DrawOrder, AnOpaqueThingFadedOutIsBlended) {
    put(opaque, 5)->setOpacity(0.5);
    put(opaque, 1);
    EXPECT_EQ(drawn(), "1 | 5 ");
}

TEST_F(DrawOrder, OneMeshInTwoMaterialsIsTwoBatches) {
    const auto twin = std::make_shared<const Geometry>(opaque->mesh(), material(Kind::Opaque));
    put(opaque, 1);
    put(twin, 2);
    put(opaque, 3);
    EXPECT_EQ(drawn(), "1 3 | 2 ");
}

}  // namespace
