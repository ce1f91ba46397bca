// SPDX-License-Identifier: MIT
// The size and the light of dots that the processor draws.
#include <gtest/gtest.h>

#include <QImage>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "platform/scene/Scene.h"
#include "platform/scene/Shading.h"

namespace platform::test {

namespace {

// A picture of one dot, tall, of a scene that a wide picture would show at the same width.
QImage dotOf(double size, double share) {
    Scene scene;
    auto camera = std::make_shared<Node>();
    camera->setCamera(Camera{.fieldOfView = 42.0, .zNear = 0.1, .exposureAdaptation = false});
    scene.root().addChild(camera);
    DrawList list;
    constexpr QSize kSize(180, 320);
    extract(scene, 9.0 / 16.0, list);
    DrawBatch batch;
    batch.mesh = std::make_shared<Mesh>(MeshData{.primitive = Primitive::Points,
                                                 .positions = {glm::vec3(0.1F, 0.1F, -2.0F)},
                                                 .indices = {0},
                                                 .pointSize = size,
                                                 .pointHeightShare = share});
    batch.material.diffuse = {0.0F, 0.5F, 0.0F, 1.0F};
    batch.count = 1;
    list.instances = {DrawInstance{}};
    list.batches = {batch};
    return CpuSceneDrawer().picture(list, kSize);
}

}  // namespace

TEST(CpuDots, ADotIsNoLargerThanItsShareOfTheHeightAtTheCamerasOwnAngle) {
    // 27/64 of the picture's height shows what the camera's own angle would.
    EXPECT_TRUE(dotOf(30.0, 0.1) == dotOf(320.0 * 0.1 * 27.0 / 64.0, 0.0));
    EXPECT_FALSE(dotOf(30.0, 0.1) == dotOf(30.0, 0.0));
    EXPECT_TRUE(dotOf(8.0, 0.1) == dotOf(8.0, 0.0));
}

TEST(CpuDots, ADotWhoseShareOfTheHeightIsLessThanAPixelHasLessLight) {
    constexpr double kPixel = 64.0 / 27.0 / 320.0;
    const auto light = [](double size, double share) {
        const QImage picture = dotOf(size, share);
        double sum = 0.0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                sum += srgbDecode(qGreen(picture.pixel(x, y)) / 255.0);
        return sum;
    };
    const double whole = light(4.0, kPixel);
    EXPECT_NEAR(whole, light(1.0, 0.0), 1e-9);
    EXPECT_NEAR(light(4.0, 0.8 * kPixel) / whole, 0.64, 0.02);
    EXPECT_NEAR(light(4.0, 0.5 * kPixel) / whole, 0.25, 0.02);
    // A dot that is small by itself has a pixel's light.
    EXPECT_NEAR(light(0.1, 0.0), whole, 1e-9);
}

}  // namespace platform::test
