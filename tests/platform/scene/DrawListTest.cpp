// SPDX-License-Identifier: MIT
#include "platform/scene/DrawList.h"

#include "platform/scene/Scene.h"
#include "platform/scene/Shading.h"
#include "platform/time/RandomSource.h"
#include "tests/platform/scene/Near.h"
#include "tests/support/DigitCube.h"

using namespace platform;

namespace {

NodePtr add(Scene& scene, GeometryPtr geometry = {}) {
    auto node = std::make_shared<Node>(std::move(geometry));
    scene.root().addChild(node);
    return node;
}

DrawList drawn(const Scene& scene, double aspect = 1.0) {
    DrawList list;
    extract(scene, aspect, list);
    return list;
}

TEST(DrawList, TheCameraLooksDownItsOwnMinusZ) {
    Scene scene;
    const NodePtr eye = add(scene);
    eye->setCamera(Camera{.fieldOfView = 42.0, .zNear = 0.05});
    eye->setPosition({0, 2.2, 15});
    eye->lookAt({0, 0, 0});
    const DrawList list = drawn(scene, 16.0 / 9.0);
    const glm::vec4 origin = list.camera.view * glm::vec4(0, 0, 0, 1);
    EXPECT_VEC_NEAR(glm::vec3(origin), glm::dvec3(0, 0, -std::hypot(2.2, 15.0)), 1e-5);
    EXPECT_VEC_NEAR(list.camera.position, glm::dvec3(0, 2.2, 15), 1e-6);
}

TEST(DrawList, TheFieldOfViewIsVertical) {
    const glm::dmat4 projection =
        Camera{.fieldOfView = 40.0, .zNear = 0.05, .zFar = 100.0}.projection(2.0);
    const double y = std::tan(radians(20.0));
    const glm::dvec4 corner = projection * glm::dvec4(2.0 * y, y, -1.0, 1.0);
    EXPECT_NEAR(corner.x / corner.w, 1.0, 1e-12);
    EXPECT_NEAR(corner.y / corner.w, 1.0, 1e-12);
    const glm::dvec4 near = projection * glm::dvec4(0, 0, -0.05, 1.0);
    const glm::dvec4 far = projection * glm::dvec4(0, 0, -100.0, 1.0);
    EXPECT_NEAR(near.z / near.w, -1.0, 1e-9);
    EXPECT_NEAR(far.z / far.w, 1.0, 1e-9);
}

TEST(DrawList, BloomNeedsHdr) {
    Scene scene;
    const NodePtr eye = add(scene);
    Camera camera{.hdr = true,
                  .bloomIntensity = 1.4,
                  .bloomThreshold = 0.35,
                  .bloomBlurRadius = 14.0,
                  .exposureAdaptation = false};
    eye->setCamera(camera);
    EXPECT_FLOAT_EQ(drawn(scene).camera.bloomIntensity, 1.4F);
    EXPECT_FLOAT_EQ(drawn(scene).camera.bloomThreshold, 0.35F);
    EXPECT_FLOAT_EQ(drawn(scene).camera.bloomBlurRadius, 14.0F);
    camera.hdr = false;
    eye->setCamera(camera);
    EXPECT_EQ(drawn(scene).camera.bloomIntensity, 0.0F);
}

TEST(DrawList, WithoutACameraItIsSeenFromTheDefaultPlace) {
    const Scene scene;
    EXPECT_EQ(drawn(scene).camera.position, glm::vec3(0, 0, 15));
}

TEST(DrawList, CarriesBackgroundFogAndLightsInLinearLight) {
    Scene scene;
    scene.setBackground(Qt::black);
    scene.setFog({.start = 12.0, .end = 40.0, .colour = QColor(128, 128, 128)});
    const NodePtr omni = add(scene), ambient = add(scene);
    omni->setPosition({2, 6, 10});
    omni->setLight(Light{.intensity = 900.0});
    ambient->setLight(
        Light{.type = LightType::Ambient, .colour = QColor::fromRgbF(0.0F, 0.25F, 0.08F)});
    const DrawList list = drawn(scene);
    EXPECT_EQ(list.background, glm::vec4(0, 0, 0, 1));
    EXPECT_TRUE(list.fog.active);
    EXPECT_NEAR(list.fog.colour.r, 0.2159, 1e-3);
    ASSERT_EQ(list.lights.size(), 1U);
    EXPECT_EQ(list.lights[0].position, glm::vec3(2, 6, 10));
    EXPECT_VEC_NEAR(list.lights[0].colour, glm::dvec3(0.9), 1e-6);
    EXPECT_VEC_NEAR(list.ambient, glm::dvec3(0, srgbDecode(0.25), srgbDecode(0.08)), 1e-4);
}

TEST(DrawList, FogIsActiveOnlyWhenItsEndLiesBeyondItsStart) {
    Scene scene;
    EXPECT_FALSE(drawn(scene).fog.active);
    scene.setFog({.start = 5.0, .end = 5.0});
    EXPECT_FALSE(drawn(scene).fog.active);
}

TEST(DrawList, ThreeHundredFortyThreeDigitsOfFourGeometriesAreFourBatches) {
    const DigitCube cube(1);
    const DrawList list = drawn(cube.scene);
    ASSERT_EQ(list.batches.size(), 4U);
    EXPECT_EQ(list.instances.size(), 343U);
    std::uint32_t first = 0;
    for (const DrawBatch& batch : list.batches) {
        EXPECT_EQ(batch.first, first);
        first += batch.count;
    }
    EXPECT_EQ(first, 343U);
}

TEST(DrawList, ABatchCarriesItsMaterialAsItIs) {
    Scene scene;
    auto material = std::make_shared<Material>(QColor::fromRgbF(0.0F, 1.0F, 0.5F, 0.5F));
    material->setLightingModel(LightingModel::Constant);
    material->setEmission(QColor::fromRgbF(1.0F, 0.0F, 0.0F, 0.25F));
    material->setDoubleSided(true);
    material->setWritesDepth(false);
    add(scene, makePlane({}, material));
    const DrawList list = drawn(scene);
    ASSERT_EQ(list.batches.size(), 1U);
    const DrawMaterial& m = list.batches[0].material;
    EXPECT_EQ(m.id, material->id());
    EXPECT_EQ(m.revision, material->revision());
    EXPECT_NEAR(m.diffuse.b, srgbDecode(0.5), 1e-4);
    EXPECT_NEAR(m.diffuse.a, 0.5, 1e-4);
    EXPECT_NEAR(m.emission.r, 0.25, 1e-4);
    EXPECT_FALSE(m.opaque);
    EXPECT_FALSE(m.writesDepth);
    EXPECT_TRUE(m.doubleSided);
    EXPECT_TRUE(m.picture.isNull());
}

TEST(DrawList, APictureIsKnownByItsKey) {
    Scene scene;
    QImage picture(8, 8, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    auto material = std::make_shared<Material>(Contents(picture));
    add(scene, makePlane({}, material));
    EXPECT_EQ(drawn(scene).batches.at(0).material.pictureKey, picture.cacheKey());
    EXPECT_EQ(drawn(scene).batches.at(0).material.diffuse, glm::vec4(1.0F));
}

TEST(DrawList, AScrollingPictureReachesTheDrawerWithoutItsWholeRepeats) {
    Scene scene;
    auto material = std::make_shared<Material>();
    material->setWrapS(WrapMode::Repeat);
    material->setWrapT(WrapMode::Repeat);
    glm::dmat4 scrolled(1.0);
    scrolled[3] = {0.0, -0.55 * 1'000'000.5, 0.0, 1.0};
    material->setContentsTransform(scrolled);
    add(scene, makePlane({}, material));
    const glm::mat4 shown = drawn(scene).batches.at(0).material.contentsTransform;
    EXPECT_NEAR(shown[3].y, 1.0 - std::fmod(0.55 * 1'000'000.5, 1.0), 1e-6);
    EXPECT_EQ(material->contentsTransform()[3].y, -0.55 * 1'000'000.5);
}

TEST(DrawList, ABillboardTakesTheCamerasOrientationAndKeepsPlaceAndScale) {
    Scene scene;
    const NodePtr eye = add(scene), holder = add(scene);
    eye->setCamera(Camera{});
    eye->setPosition({3, 4, 5});
    eye->setEulerAngles({-0.3, 0.5, 0.0});
    holder->setEulerAngles({1.0, 2.0, 3.0});
    holder->setScale(glm::dvec3(2.0));
    const auto board = std::make_shared<Node>(makePlane({}));
    board->setPosition({1, 1, 1});
    board->setScale({1, 3, 1});
    board->setBillboard(true);
    holder->addChild(board);
    const glm::dmat4 world(drawn(scene).instances.at(0).world);
    EXPECT_VEC_NEAR(positionOf(world), board->worldPosition(), 1e-5);
    EXPECT_VEC_NEAR(scaleOf(world), glm::dvec3(2, 6, 2), 1e-5);
    EXPECT_TURN_NEAR(orientationOf(world), eye->orientation(), 1e-9);
}

TEST(DrawList, AnimationsShowInTheFrame) {
    Scene scene;
    const NodePtr ring = add(scene, makePlane({}));
    ring->addAnimation({.property = NodeProperty::Scale,
                        .values = {glm::dvec3(0.6), glm::dvec3(1.8)},
                        .duration = 1.4,
                        .repeatCount = kForever},
                       "klop");
    scene.advance(0.7);
    EXPECT_VEC_NEAR(scaleOf(glm::dmat4(drawn(scene).instances.at(0).world)), glm::dvec3(1.2), 1e-6);
}

TEST(DrawList, TransparentAndEmptyThingsAreLeftOut) {
    Scene scene;
    const NodePtr clear = add(scene);
    clear->setOpacity(0.0);
    clear->addChild(std::make_shared<Node>(makePlane({})));
    add(scene, makePlane({}, std::make_shared<Material>(Contents(QImage()))));
    add(scene, makePoints({}, 1.0));
    add(scene, makePlane({}))->setOpacity(0.0);
    EXPECT_TRUE(drawn(scene).batches.empty());
}

TEST(DrawList, OpacityMultipliesDownTheTree) {
    Scene scene;
    const NodePtr parent = add(scene);
    parent->setOpacity(0.5);
    const auto child = std::make_shared<Node>(makePlane({}));
    child->setOpacity(0.5);
    parent->addChild(child);
    const DrawList list = drawn(scene);
    EXPECT_EQ(list.instances.at(0).colour, glm::vec4(1, 1, 1, 0.25));
    EXPECT_FALSE(list.batches.at(0).material.opaque);
}

TEST(DrawList, CarriesTheFloor) {
    Scene scene;
    const NodePtr node = add(scene);
    node->setPosition({0, -1.2, 0});
    auto material = std::make_shared<Material>(QColor(Qt::black));
    node->setFloor(Floor{.reflectivity = 0.22, .falloffEnd = 4.0, .material = material});
    const DrawList list = drawn(scene);
    ASSERT_TRUE(list.floor);
    EXPECT_FLOAT_EQ(list.floor->reflectivity, 0.22F);
    EXPECT_FLOAT_EQ(list.floor->falloffEnd, 4.0F);
    EXPECT_EQ(list.floor->world[3], glm::vec4(0, -1.2F, 0, 1));
    EXPECT_EQ(list.floor->material.id, material->id());
    EXPECT_TRUE(list.batches.empty());
}

TEST(DrawList, ABillboardsOffsetIsAlongTheScreen) {
    Scene scene;
    auto camera = std::make_shared<Node>();
    camera->setCamera(Camera{.exposureAdaptation = false});
    camera->setPosition({5.0, 0.0, 0.0});
    scene.root().addChild(camera);
    camera->lookAt({0.0, 0.0, 0.0});
    auto board = std::make_shared<Node>(makePlane({}));
    board->setScale(glm::dvec3(3.0));
    scene.root().addChild(board);
    board->setScreenOffset({0.25, 0.5});
    DrawList list;
    extract(scene, 1.0, list);
    EXPECT_VEC_NEAR(glm::dvec3(list.instances[0].world[3]), glm::dvec3(0.0), 1e-6);
    board->setBillboard(true);
    extract(scene, 1.0, list);
    // Seen from +x, the right is −z.
    EXPECT_VEC_NEAR(glm::dvec3(list.instances[0].world[3]), glm::dvec3(0.0, 0.5, -0.25), 1e-6);
}

TEST(DrawList, ParticlesAreOneBatchOfSquaresParallelToTheScreen) {
    Scene scene;
    const NodePtr eye = add(scene), emitter = add(scene);
    eye->setCamera(Camera{});
    eye->setEulerAngles({0.1, 0.2, 0.3});
    RandomSource random(1);
    const auto system =
        std::make_shared<ParticleSystem>(ParticleSettings{.birthRate = 90.0,
                                                          .lifeSpan = 4.0,
                                                          .size = 0.06,
                                                          .colour = QColor(0, 128, 0),
                                                          .blendMode = BlendMode::Additive},
                                         random);
    emitter->setParticles(system);
    scene.advance(2.001);
    const DrawList list = drawn(scene);
    ASSERT_EQ(list.batches.size(), 1U);
    EXPECT_EQ(list.batches[0].count, 180U);
    EXPECT_EQ(list.batches[0].material.blend, BlendMode::Additive);
    EXPECT_FALSE(list.batches[0].material.writesDepth);
    const glm::dmat4 world(list.instances[0].world);
    EXPECT_NEAR(scaleOf(world).x, 0.06, 1e-6);
    EXPECT_TURN_NEAR(orientationOf(world), eye->orientation(), 1e-6);
    EXPECT_NEAR(list.instances[0].colour.g, srgbDecode(128.0 / 255.0), 1e-3);
}

TEST(DrawList, IsFilledAnewEachTime) {
    Scene scene;
    const NodePtr node = add(scene, makePlane({}));
    node->setLight(Light{});
    DrawList list;
    extract(scene, 1.0, list);
    node->removeFromParent();
    extract(scene, 2.0, list);
    EXPECT_TRUE(list.batches.empty());
    EXPECT_TRUE(list.instances.empty());
    EXPECT_TRUE(list.lights.empty());
    EXPECT_EQ(list.aspect, 2.0);
}

TEST(DrawList, KeepsItsPicturesAndMeshesWhateverBecomesOfTheScene) {
    DrawList list;
    {
        Scene scene;
        add(scene, makePlane({}));
        extract(scene, 1.0, list);
    }
    EXPECT_EQ(list.batches.at(0).mesh->primitiveCount(), 2U);
}

TEST(DrawListParticles, FadeNearTheCameraWhereTheirSystemSaysSo) {
    for (const double fade : {0.0, 2.0}) {
        Scene scene;
        auto eye = std::make_shared<Node>();
        eye->setCamera(Camera{.fieldOfView = 60.0, .zNear = 0.05});
        scene.root().addChild(eye);
        auto stream = std::make_shared<Node>();
        stream->setPosition({0.0, 0.0, -4.0});
        RandomSource random(1);
        stream->setParticles(
            std::make_shared<ParticleSystem>(ParticleSettings{.birthRate = 1.0,
                                                              .lifeSpan = 10.0,
                                                              .velocity = 1.0,
                                                              .emittingDirection = {0.0, 0.0, 1.0},
                                                              .blendMode = BlendMode::Additive,
                                                              .nearFade = fade},
                                             random));
        scene.root().addChild(stream);
        DrawList list;
        double last = 1.0;
        // The eldest was born after a second, and flies a unit a second.
        for (const double depth : {4.0, 2.0, 1.25, 0.75, 0.5}) {
            scene.advance(5.0 - depth);
            extract(scene, 1.6, list);
            double eldest = 0.0;
            for (const DrawInstance& instance : list.instances)
                if (instance.world[3].z > -depth - 0.01F) eldest = instance.colour.a;
            if (fade == 0.0) {
                EXPECT_EQ(eldest, 1.0) << depth;
            } else {
                EXPECT_LE(eldest, last) << depth;
                EXPECT_EQ(eldest == 1.0, depth >= 2.0) << depth;
                EXPECT_EQ(eldest == 0.0, depth <= 0.5) << depth;
            }
            last = eldest;
        }
    }
}

}  // namespace
