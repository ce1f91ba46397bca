// SPDX-License-Identifier: MIT
// Flat surfaces of a scene, as the processor draws them.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <glm/gtc/matrix_transform.hpp>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "platform/scene/Mesh.h"

namespace platform::test {

namespace {

constexpr QSize kSize(160, 100);

DrawList emptyList() {
    DrawList list;
    list.background = {0.0F, 0.0F, 0.0F, 1.0F};
    list.camera.zNear = 0.5F;
    list.camera.projection = glm::perspective(1.0F, 1.6F, 0.5F, 100.0F);
    return list;
}

void add(DrawList& list, MeshData data, LightingModel lighting) {
    DrawBatch batch;
    batch.mesh = std::make_shared<Mesh>(std::move(data));
    batch.material.diffuse = {0.9F, 0.7F, 0.5F, 1.0F};
    batch.material.lighting = lighting;
    batch.first = static_cast<std::uint32_t>(list.instances.size());
    batch.count = 1;
    list.instances.emplace_back();
    list.batches.push_back(batch);
}

// Adds a parallelogram that is seen from where `along` × `down` points away.
void addSide(MeshData& data, glm::vec3 corner, glm::vec3 along, glm::vec3 down) {
    const auto first = static_cast<std::uint32_t>(data.positions.size());
    data.positions.insert(data.positions.end(),
                          {corner, corner + down, corner + along, corner + along + down});
    data.normals.insert(data.normals.end(), 4, glm::normalize(glm::cross(down, along)));
    for (const std::uint32_t i : {0U, 1U, 2U, 2U, 1U, 3U})
        data.indices.push_back(first + i);
}

// Three sides of a block that stand in sight of a camera in the origin.
MeshData block(glm::vec3 corner) {
    const glm::vec3 x(0.6F, 0.0F, 0.0F), y(0.0F, 0.6F, 0.0F), z(0.0F, 0.0F, 0.6F);
    MeshData data;
    addSide(data, corner + y, x, -y);
    addSide(data, corner + y - z, z, -y);
    addSide(data, corner + x + y, -z, -y);
    return data;
}

int mostDifference(const QImage& a, const QImage& b) {
    int most = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            most = std::max({most, std::abs(qRed(one) - qRed(other)),
                             std::abs(qGreen(one) - qGreen(other)),
                             std::abs(qBlue(one) - qBlue(other))});
        }
    return most;
}

int litPixels(const QImage& image) {
    int lit = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            lit += qGreen(image.pixel(x, y)) > 40 ? 1 : 0;
    return lit;
}

// Blocks above a mirror, in fog, under a lamp. Normals of different lengths have the same
// directions, but make the drawer shade every pixel.
struct FogReach {
    float start, end;
};
QImage blocks(const glm::vec3& lamp, FogReach fog, bool everyPixel) {
    DrawList list = emptyList();
    list.ambient = {0.05F, 0.05F, 0.05F};
    list.lights.push_back({.position = lamp, .colour = {1.0F, 0.8F, 0.6F}});
    list.fog = {.active = true, .start = fog.start, .end = fog.end};
    list.floor.emplace();
    list.floor->world = glm::translate(glm::mat4(1.0F), {0.0F, -1.2F, 0.0F});
    list.floor->reflectivity = 0.5F;
    list.floor->falloffEnd = 4.0F;
    list.floor->material.diffuse = {0.01F, 0.01F, 0.01F, 1.0F};
    for (const glm::vec3 corner : {glm::vec3(-3.0F, -0.6F, -8.0F), glm::vec3(-0.3F, 0.2F, -7.0F),
                                   glm::vec3(2.0F, -0.9F, -9.0F), glm::vec3(0.9F, 0.9F, -11.0F)}) {
        MeshData data = block(corner);
        for (std::size_t i = 0; everyPixel && i < data.normals.size(); i += 4)
            data.normals[i] *= 2.0F;
        add(list, std::move(data), LightingModel::Lambert);
    }
    CpuSceneDrawer drawer;
    return drawer.picture(list, kSize, 3.0);
}

}  // namespace

TEST(CpuPolygons, EvenLightIsTheLightOfEveryPixel) {
    // The second fog begins within the faces of some blocks.
    for (const FogReach fog : {FogReach{4.0F, 22.0F}, FogReach{8.6F, 18.0F}})
        for (const glm::vec3 lamp : {glm::vec3(2.0F, 6.0F, 4.0F), glm::vec3(0.2F, 0.5F, -6.2F),
                                     glm::vec3(20.0F, 60.0F, 40.0F)}) {
            const QImage even = blocks(lamp, fog, false);
            EXPECT_GT(litPixels(even), 3000);
            EXPECT_LE(mostDifference(even, blocks(lamp, fog, true)), 1) << lamp.x << fog.start;
        }
}

// Faces smaller than the distance of two samples make no holes and no rims.
TEST(CpuPolygons, TinyFacesTogetherAreALargeOne) {
    constexpr int kFaces = 90;  // along a side
    const glm::vec3 corner(-0.837F, 0.911F, -7.0F);
    const glm::vec3 along(1.51F, 0.13F, 0.0F);
    const glm::vec3 down(-0.21F, -1.43F, 0.0F);
    MeshData one, many;
    addSide(one, corner, along, down);
    const float share = 1.0F / kFaces;
    for (int i = 0; i < kFaces * kFaces; ++i)
        addSide(many,
                corner + share * static_cast<float>(i % kFaces) * along +
                    share * static_cast<float>(i / kFaces) * down,
                share * along, share * down);
    std::array<QImage, 2> pictures;
    for (std::size_t i = 0; i < 2; ++i) {
        DrawList list = emptyList();
        add(list, i == 0 ? one : many, LightingModel::Constant);
        CpuSceneDrawer drawer;
        pictures[i] = drawer.picture(list, kSize);
    }
    EXPECT_GT(litPixels(pictures[0]), 300);
    EXPECT_LE(mostDifference(pictures[0], pictures[1]), 1);
}

}  // namespace platform::test
