// SPDX-License-Identifier: MIT
// Random scenes beside a slow, obviously right drawer: 64 samples a pixel, each
// followed through all shapes in order.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <array>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/gtc/matrix_transform.hpp>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "platform/scene/Geometry.h"
#include "platform/scene/Shading.h"
#include "platform/time/RandomSource.h"
#include "tests/support/PictureQuality.h"

namespace platform::test {

namespace {

constexpr QSize kSize(150, 110);
constexpr int kSide = 8;  // samples along a pixel's side
// Decibels. Edges of the drawer have eight samples, and a dot hides what is behind
// it only in pixels that it covers; a shape too many or too few costs far more.
constexpr double kLeast = 31.0;

DrawList emptyList() {
    DrawList list;
    list.background = {0.0F, 0.0F, 0.0F, 1.0F};
    list.camera.zNear = 0.5F;
    list.camera.projection = glm::perspective(1.0F, 150.0F / 110.0F, 0.5F, 100.0F);
    return list;
}

MeshPtr randomMesh(RandomSource& random) {
    const auto place = [&] {
        return glm::vec3(random.between(-3.0, 3.0), random.between(-2.5, 2.5),
                         random.between(-9.0, -2.0));
    };
    switch (random.below(4)) {
        case 0:
            return std::make_shared<Mesh>(MeshData{.primitive = Primitive::Points,
                                                   .positions = {place(), place(), place()},
                                                   .indices = {0, 1, 2},
                                                   .pointSize = random.between(1.0, 20.0)});
        case 1:
            return std::make_shared<Mesh>(MeshData{
                .primitive = Primitive::Lines, .positions = {place(), place()}, .indices = {0, 1}});
        case 2: {
            MeshData ball =
                makeSphere({.radius = random.between(0.2, 0.8), .segments = 48})->mesh()->data();
            const glm::vec3 middle = place();
            for (glm::vec3& corner : ball.positions)
                corner += middle;
            return std::make_shared<Mesh>(std::move(ball));
        }
        default:
            return std::make_shared<Mesh>(MeshData{.positions = {place(), place(), place()},
                                                   .normals = std::vector<glm::vec3>(3),
                                                   .indices = {0, 1, 2}});
    }
}

DrawList randomList(RandomSource& random) {
    DrawList list = emptyList();
    for (int i = 0; i < 8; ++i) {
        DrawBatch batch;
        batch.mesh = randomMesh(random);
        batch.material.doubleSided = true;
        batch.material.diffuse = {random.unit(), random.unit(), random.unit(), 1.0F};
        // Every other one lacks a colour, which a drawer may then leave out.
        if (i % 2 == 1) batch.material.diffuse[i / 2 % 3] = 0.0F;
        if (random.below(3) == 0) {
            batch.material.blend = BlendMode::Additive;
            batch.material.opaque = false;
            batch.material.writesDepth = false;
        }
        batch.first = static_cast<std::uint32_t>(list.instances.size());
        batch.count = 1;
        list.instances.emplace_back();
        list.batches.push_back(batch);
    }
    // A list has its opaque batches first.
    std::stable_partition(list.batches.begin(), list.batches.end(),
                          [](const DrawBatch& batch) { return batch.material.opaque; });
    return list;
}

// Follows one sample. x and y in pixels.
class Sample {
  public:
    Sample(const DrawList& list, double x, double y)
        : list_(list),
          at_(x, y),
          ray_((2.0 * x / kSize.width() - 1.0) / list.camera.projection[0][0],
               (1.0 - 2.0 * y / kSize.height()) / list.camera.projection[1][1], -1.0) {}

    glm::dvec3 light() {
        for (const DrawBatch& batch : list_.batches)
            draw(batch);
        return light_;
    }

  private:
    [[nodiscard]] glm::dvec2 screen(const glm::dvec3& eye) const {
        const glm::dvec4 clip = glm::dmat4(list_.camera.projection) * glm::dvec4(eye, 1.0);
        return {(clip.x / clip.w * 0.5 + 0.5) * kSize.width(),
                (0.5 - clip.y / clip.w * 0.5) * kSize.height()};
    }

    void put(const DrawBatch& batch, double depth) {
        if (!(depth > 0.0) || depth > depth_) return;
        const glm::dvec3 colour(batch.material.diffuse);
        if (batch.material.blend == BlendMode::Additive) {
            light_ += colour;
            return;
        }
        light_ = colour;
        depth_ = depth;
    }

    void draw(const DrawBatch& batch) {
        const MeshData& data = batch.mesh->data();
        const auto corner = [&](std::size_t i) {
            return glm::dvec3(data.positions[data.indices[i]]);
        };
        if (data.primitive == Primitive::Points) {
            for (std::size_t i = 0; i < data.indices.size(); ++i)
                if (glm::length(screen(corner(i)) - at_) <= 0.5 * data.pointSize)
                    put(batch, -corner(i).z);
        } else if (data.primitive == Primitive::Lines) {
            line(batch, corner(0), corner(1));
        } else if (data.indices.size() > 3) {
            ball(batch);
        } else {
            for (std::size_t i = 0; i < data.indices.size(); i += 3)
                triangle(batch, corner(i), corner(i + 1), corner(i + 2));
        }
    }

    void line(const DrawBatch& batch, const glm::dvec3& a, const glm::dvec3& b) {
        const glm::dvec2 from = screen(a);
        const glm::dvec2 way = screen(b) - from;
        const double share = glm::dot(at_ - from, way) / glm::dot(way, way);
        if (share < 0.0 || share > 1.0) return;
        if (glm::length(from + share * way - at_) > 0.5) return;
        put(batch, 1.0 / ((1.0 - share) / -a.z + share / -b.z));
    }

    // Draws both walls of the ball, the farther one first.
    void ball(const DrawBatch& batch) {
        const glm::dvec3 middle(batch.mesh->bounds().centre());
        const double radius = 0.5 * batch.mesh->bounds().size().y;
        const double square = glm::dot(ray_, ray_);
        const double along = glm::dot(ray_, middle);
        const double inside = along * along - square * (glm::dot(middle, middle) - radius * radius);
        if (inside < 0.0) return;
        put(batch, (along + std::sqrt(inside)) / square);
        put(batch, (along - std::sqrt(inside)) / square);
    }

    void triangle(const DrawBatch& batch, const glm::dvec3& a, const glm::dvec3& b,
                  const glm::dvec3& c) {
        const glm::dvec3 normal = glm::cross(b - a, c - a);
        const double depth = glm::dot(normal, a) / glm::dot(normal, ray_);
        const glm::dvec3 hit = depth * ray_;
        const std::array<glm::dvec3, 3> corners{a, b, c};
        for (std::size_t i = 0; i < 3; ++i) {
            const glm::dvec3& from = corners[i];
            const glm::dvec3 side = glm::cross(corners[(i + 1) % 3] - from, hit - from);
            if (glm::dot(side, normal) < 0.0) return;
        }
        put(batch, depth);
    }

    const DrawList& list_;
    glm::dvec2 at_;
    glm::dvec3 ray_;
    glm::dvec3 light_{0.0};
    double depth_ = 1e30;
};

QImage reference(const DrawList& list) {
    QImage image(kSize, QImage::Format_RGB32);
    for (int y = 0; y < kSize.height(); ++y)
        for (int x = 0; x < kSize.width(); ++x) {
            glm::dvec3 sum(0.0);
            for (int i = 0; i < kSide * kSide; ++i)
                sum += glm::min(Sample(list, x + (i % kSide + 0.5) / kSide,
                                       y + (static_cast<double>(i / kSide) + 0.5) / kSide)
                                    .light(),
                                glm::dvec3(4.0));
            const glm::dvec3 shown = composite(sum / (1.0 * kSide * kSide), glm::dvec3(0.0), 0.0);
            const auto byte = [](double part) {
                return static_cast<int>(std::lround(255.0 * part));
            };
            image.setPixel(x, y, qRgb(byte(shown.r), byte(shown.g), byte(shown.b)));
        }
    return image;
}

}  // namespace

TEST(CpuSceneAgainstReference, RandomScenesLookTheSame) {
    RandomSource random(7);
    for (int i = 0; i < 12; ++i) {
        const DrawList list = randomList(random);
        CpuSceneDrawer drawer;
        const QImage own = drawer.picture(list, kSize);
        EXPECT_GE(psnr(own, reference(list)), kLeast) << i;
    }
}

}  // namespace platform::test
