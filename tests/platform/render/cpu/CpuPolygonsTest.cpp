// SPDX-License-Identifier: MIT
// Flat surfaces and pictures of a scene, as the processor draws them.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <glm/gtc/matrix_transform.hpp>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/render/cpu/scene/MeshShape.h"
#include "platform/render/cpu/scene/SpritePicture.h"
#include "platform/scene/DrawList.h"
#include "platform/scene/Geometry.h"
#include "platform/scene/Mesh.h"
#include "platform/scene/Transform.h"
#include "tests/support/PictureQuality.h"

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

// A parallelogram.
struct Sheet {
    glm::vec3 corner, along, down;
};

MeshData sheetOf(const Sheet& sheet, int columns, int rows) {
    const glm::vec3 along = sheet.along / static_cast<float>(columns);
    const glm::vec3 down = sheet.down / static_cast<float>(rows);
    MeshData data;
    for (int i = 0; i < columns * rows; ++i)
        addSide(data,
                sheet.corner + static_cast<float>(i % columns) * along +
                    static_cast<float>(i / columns) * down,
                along, down);
    return data;
}

QImage pictureOf(const MeshData& data) {
    DrawList list = emptyList();
    add(list, data, LightingModel::Constant);
    CpuSceneDrawer drawer;
    return drawer.picture(list, kSize);
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
    const Sheet sheet{.corner = {-0.837F, 0.911F, -7.0F},
                      .along = {1.51F, 0.13F, 0.0F},
                      .down = {-0.21F, -1.43F, 0.0F}};
    const QImage one = pictureOf(sheetOf(sheet, 1, 1));
    EXPECT_GT(litPixels(one), 300);
    EXPECT_LE(mostDifference(one, pictureOf(sheetOf(sheet, 90, 90))), 1);
}

// Faces of three pixels by one and a half: more of them hold whole pixels than a tile has numbers
// for.
TEST(CpuPolygons, MoreFacesThanNumbersTogetherAreALargeOne) {
    const Sheet sheet{.corner = {-2.295F, 2.295F, -7.0F},
                      .along = {6.885F, 0.0F, 0.0F},
                      .down = {0.0F, -4.651F, 0.3F}};
    const QImage one = pictureOf(sheetOf(sheet, 1, 1));
    EXPECT_GT(litPixels(one), 4000);
    EXPECT_LE(mostDifference(one, pictureOf(sheetOf(sheet, 30, 38))), 1);
}

// A texel is to be seen half a texel beyond its own area.
TEST(CpuSprites, ABoxWithLightIsNotEmpty) {
    for (const int side : {33, 46, 50, 67}) {
        for (int x = 0; x < side; ++x) {
            QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
            image.fill(0);
            image.setPixel(x, side / 2, 0xFFFFFFFFU);
            const SpritePicture picture(image, false);
            for (double left = x - 0.45; left < x + 1.45; left += 0.05)
                ASSERT_FALSE(picture.isEmpty(left, 0.0, left + 0.01, side)) << side << ' ' << left;
            if (x + 6 < side) {
                EXPECT_TRUE(picture.isEmpty(x + 6.0, 0.0, side, side)) << side << ' ' << x;
            }
        }
    }
}

// A label that is shown small is read from a half of its picture, with the same light.
TEST(CpuSprites, ASmallLabelIsReadFromAHalf) {
    QImage image(125, 97, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, (x * y + x / 7) % 5 < 2 ? 0xFF40FF80U : 0U);
    SpritePicture picture(image, true);
    EXPECT_EQ(&picture.forSize({12.0, 8.0}), &picture);
    const SpritePicture& half = picture.forSize({9.0, -7.5});
    EXPECT_EQ(half.width, 62);
    EXPECT_EQ(half.height, 48);
    EXPECT_EQ(&picture.forSize({9.0, -7.5}), &half) << "is kept";
    EXPECT_EQ(picture.forSize({4.0, 3.0}).width, 31);
    const auto lightOf = [](const SpritePicture& of) {
        double sum = 0.0;
        for (int y = 0; y < of.height; ++y)
            for (int x = 1; x <= of.width; ++x)
                sum += of.values(0, of.runOf[static_cast<std::size_t>(y)])[x];
        return sum / (of.width * of.height);
    };
    EXPECT_GT(lightOf(picture), 0.2);
    EXPECT_NEAR(lightOf(half), lightOf(picture), 1e-5);
    EXPECT_NEAR(lightOf(picture.forSize({4.0, 3.0})), lightOf(picture), 1e-5);
}

// A ring that is one grid has coarser levels; the same ring in another order of triangles has
// none.
TEST(CpuPolygons, ASmallRingIsTheSameWithFewerFaces) {
    const GeometryPtr ring = makeTorus(
        {.ringRadius = 1.0, .pipeRadius = 0.09, .ringSegments = 96, .pipeSegments = 32}, nullptr);
    MeshData grid = ring->mesh()->data();
    for (glm::vec3& place : grid.positions)
        place = glm::vec3(glm::rotate(glm::mat4(1.0F), 0.7F, {1.0F, 0.3F, 0.0F}) *
                          glm::vec4(place, 1.0F)) -
                glm::vec3(0.0F, 0.0F, 9.0F);
    MeshData mixed = grid;
    std::rotate(mixed.indices.begin(), mixed.indices.begin() + 3, mixed.indices.end());
    const MeshShape shape{Mesh(grid)};
    ASSERT_EQ(shape.coarser.size(), 2U);
    EXPECT_EQ(shape.faces[MeshShape::kShape].size(), 96U * 32U);
    EXPECT_EQ(shape.coarser[0].faces.size(), 48U * 16U);
    EXPECT_EQ(shape.coarser[1].faces.size(), 24U * 8U);
    // The farthest is the middle of a side of the ring's outer rim.
    EXPECT_NEAR(shape.coarser[0].miss, 1.09 * (1.0 - std::cos(kPi / 48)), 0.002);
    ASSERT_TRUE(MeshShape(Mesh(mixed)).coarser.empty());
    const QImage coarse = pictureOf(grid);
    EXPECT_GT(litPixels(coarse), 40);
    EXPECT_GT(psnr(coarse, pictureOf(mixed)), 50.0);
}

}  // namespace platform::test
