// SPDX-License-Identifier: MIT
// The shaders' results against the same formulas on the processor.
#include <gmock/gmock.h>

#include <cmath>
#include <glm/gtc/matrix_transform.hpp>

#include "platform/render/cpu/LinearPixels.h"
#include "platform/render/gl/SceneBloom.h"
#include "platform/scene/Shading.h"
#include "platform/time/RandomSource.h"
#include "tests/platform/render/gl/SceneFixture.h"

namespace platform::test {
namespace {

using SceneShaders = SceneGl;

void expectNear(const glm::vec4& actual, const glm::dvec3& expected, double tolerance) {
    EXPECT_NEAR(actual.r, expected.r, tolerance);
    EXPECT_NEAR(actual.g, expected.g, tolerance);
    EXPECT_NEAR(actual.b, expected.b, tolerance);
}

TEST_F(SceneShaders, ColoursAreLinearLight) {
    Stage stage;
    const QColor colour(200, 100, 50);
    stage.add(square(4, constant(colour)), {0, 0, -1});
    expectNear(light(stage.list(), {8, 8}).middle(), glm::dvec3(linearColour(colour)), 1e-6);
}

TEST_F(SceneShaders, FogIsThatOfTheFormulaByEuclideanDistance) {
    const QColor colour(240, 200, 120);
    const QColor fogColour(40, 60, 200);
    for (const BlendMode blend : {BlendMode::Alpha, BlendMode::Additive}) {
        for (const double depth : {1.0, 2.5, 4.0, 6.0}) {
            Stage stage;
            stage.scene.setFog({.start = 2.0, .end = 7.0, .colour = fogColour});
            stage.add(square(40, constant(colour, blend)), {0, 0, -depth});
            const LightImage image = light(stage.list(), {16, 16});
            for (const int x : {0, 8, 15}) {
                // The place of the pixel's middle, on a plane 2 · depth high.
                const double across = depth * (2.0 * (x + 0.5) / 16.0 - 1.0);
                const double up = depth / 16.0;
                const double distance = std::hypot(across, up, depth);
                const glm::dvec3 expected =
                    fogged(glm::dvec3(linearColour(colour)), glm::dvec3(linearColour(fogColour)),
                           fogFactor(distance, 2.0, 7.0), blend);
                expectNear(image.at(x, 8), expected, 1e-5);
            }
        }
    }
}

TEST_F(SceneShaders, FogLeavesTheBackground) {
    Stage stage;
    stage.scene.setBackground(QColor(0, 0, 128));
    stage.scene.setFog({.start = 0.1, .end = 0.2, .colour = Qt::white});
    expectNear(light(stage.list(), {4, 4}).middle(), glm::dvec3(linearColour(QColor(0, 0, 128))),
               1e-6);
}

TEST_F(SceneShaders, LambertIsThatOfTheFormula) {
    const QColor diffuse(180, 220, 90);
    const QColor emission(10, 60, 30);
    const QColor ambient(0, 64, 20);
    Stage stage;
    auto material = std::make_shared<Material>(diffuse);
    material->setEmission(emission);
    stage.add(square(10, material), {0, 0, -2});
    stage.add({}, {0, 0, 0})->setLight(Light{.type = LightType::Ambient, .colour = ambient});
    const glm::dvec3 lamp{3.0, 1.0, 1.5};
    stage.add({}, lamp)->setLight(Light{.intensity = 900.0});
    const LightImage image = light(stage.list(), {16, 16});
    for (const int x : {1, 8, 14}) {
        const glm::dvec3 at{2.0 * (2.0 * (x + 0.5) / 16.0 - 1.0), 2.0 / 16.0, -2.0};
        const glm::dvec3 lit = lambertLight(glm::dvec3(0.9), {0, 0, 1}, glm::normalize(lamp - at));
        expectNear(image.at(x, 8),
                   lambert(glm::dvec3(linearColour(diffuse)), lit,
                           glm::dvec3(linearColour(ambient)), glm::dvec3(linearColour(emission))),
                   1e-5);
    }
}

TEST_F(SceneShaders, NormalsStayUprightUnderUnevenScale) {
    Stage stage;
    auto node = stage.add(square(1, std::make_shared<Material>(QColor(Qt::white))), {0, 0, -2});
    node->setScale({20.0, 3.0, 0.1});
    node->setEulerAngles({0.0, 0.6, 0.0});
    stage.add({}, {0, 0, 0})->setLight(Light{});
    const glm::dvec3 normal{std::sin(0.6), 0.0, std::cos(0.6)};
    const LightImage image = light(stage.list(), {32, 32});
    // Where the ray through the pixel's middle meets the plane.
    const glm::dvec3 ray{1.0 / 32.0, 1.0 / 32.0, -1.0};
    const glm::dvec3 hit = ray * (glm::dot(normal, {0, 0, -2}) / glm::dot(normal, ray));
    const glm::dvec3 lit = lambertLight(glm::dvec3(1.0), normal, glm::normalize(-hit));
    expectNear(image.middle(), lit, 1e-5);
}

// 16 × 16 texels, red growing along u and green along v.
QImage ramp() {
    QImage image(16, 16, QImage::Format_RGBA8888);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            image.setPixelColor(x, y, QColor(x * 16, y * 16, 0));
    return image;
}

TEST_F(SceneShaders, ContentsTransformIsThatOfTheFormula) {
    const glm::dmat4 transform = glm::scale(
        glm::translate(glm::dmat4(1.0), glm::dvec3(0.25, -0.5, 0.0)), glm::dvec3(0.5, 0.75, 1.0));
    const MaterialPtr material = constant(ramp());
    material->setWrapS(WrapMode::Repeat);
    material->setWrapT(WrapMode::Repeat);
    material->setContentsTransform(transform);
    Stage stage;
    stage.add(square(2, material), {0, 0, -1});
    // A target this large draws the whole surface from the picture itself.
    const LightImage image = light(stage.list(), {256, 256});
    for (int i = 0; i < 8; ++i) {
        const int x = 17 + 29 * i;
        const int y = 203 - 23 * i;
        const glm::dvec2 uv =
            transformTexcoord(transform, {(x + 0.5) / 256.0, 1.0 - (y + 0.5) / 256.0});
        const auto sample = [](double coordinate) {
            // Linear between the middles of two texels, wrapped.
            const double at = (coordinate - std::floor(coordinate)) * 16.0 - 0.5;
            const double base = std::floor(at);
            const auto texel = [](double index) {
                const int wrapped = (static_cast<int>(index) + 16) % 16;
                return srgbDecode(wrapped * 16 / 255.0);
            };
            return glm::mix(texel(base), texel(base + 1.0), at - base);
        };
        // Filters weigh in 256ths.
        expectNear(image.at(x, y), {sample(uv.x), sample(uv.y), 0.0}, 0.004);
    }
}

TEST_F(SceneShaders, PicturesAreAveragedInLinearLight) {
    QImage checks(64, 64, QImage::Format_RGBA8888);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            checks.setPixelColor(x, y, (x + y) % 2 == 0 ? Qt::white : Qt::black);
    Stage stage;
    const MaterialPtr material = constant(checks);
    material->setWrapS(WrapMode::Repeat);
    material->setWrapT(WrapMode::Repeat);
    stage.add(square(2, material), {0, 0, -1});
    expectNear(light(stage.list(), {4, 4}).middle(), glm::dvec3(0.5), 0.005);
}

TEST(LinearPixels, AlphaIsMultipliedInAfterDecoding) {
    QImage image(1, 1, QImage::Format_RGBA8888_Premultiplied);
    image.fill(QColor(255, 128, 0, 128));
    const std::vector<std::uint16_t> pixels = linearPixels(image);
    const double alpha = 128.0 / 255.0;
    EXPECT_THAT(pixels, testing::SizeIs(4));
    EXPECT_NEAR(pixels[0], 65535 * alpha, 2.0);
    EXPECT_NEAR(pixels[1], 65535 * alpha * srgbDecode(128.0 / 255.0), 300.0);  // 8-bit source
    EXPECT_EQ(pixels[2], 0);
    EXPECT_NEAR(pixels[3], 65535 * alpha, 2.0);
}

TEST_F(SceneShaders, SmallerLevelsOfAnEvenPictureAreTheDriversOwn) {
    for (const QSize size : {QSize(64, 32), QSize(64, 1), QSize(16, 16)}) {
        RandomSource random(3);
        std::vector<std::uint16_t> pixels(
            static_cast<std::size_t>(4 * size.width() * size.height()));
        for (std::uint16_t& value : pixels)
            value = static_cast<std::uint16_t>(random.below(65536));
        const GlTexture texture = GlTexture::make();
        glBindTexture(GL_TEXTURE_2D, texture.name());
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA16, size.width(), size.height(), 0, GL_RGBA,
                     GL_UNSIGNED_SHORT, pixels.data());
        glGenerateMipmap(GL_TEXTURE_2D);
        QSize at = size;
        for (GLint level = 1; halvedSize(at) != at; ++level) {
            pixels = halvedPixels(pixels, at);
            at = halvedSize(at);
            ASSERT_THAT(pixels, testing::SizeIs(4 * at.width() * at.height()));
            std::vector<std::uint16_t> theirs(pixels.size());
            glGetTexImage(GL_TEXTURE_2D, level, GL_RGBA, GL_UNSIGNED_SHORT, theirs.data());
            // Each level is rounded anew; drivers weigh what lies between in 256ths.
            for (std::size_t i = 0; i < pixels.size(); ++i)
                EXPECT_NEAR(pixels[i], theirs[i], 300.0 * level) << level << ' ' << i;
        }
        EXPECT_EQ(at, QSize(1, 1));
    }
}

TEST(LinearPixels, ALevelOfHalfTheSizeIsTheAverageOfItsFours) {
    const std::vector<std::uint16_t> pixels{100, 0,    0, 65535, 200, 0,    0, 65535, 300,   0, 0,
                                            0,   1000, 7, 0,     0,   2000, 7, 65535, 0,     0, 0,
                                            0,   0,    0, 0,     0,   0,    0, 7,     65535, 0};
    EXPECT_THAT(halvedPixels(pixels, {4, 2}),
                testing::ElementsAre(575, 2, 16384, 32768, 325, 4, 16384, 0));
}

TEST(LinearPixels, EveryLevelHasTheAverageOfTheWhole) {
    for (const QSize size : {QSize(58, 78), QSize(13, 7), QSize(5, 1), QSize(3, 3)}) {
        // Light in the middle alone, as a digit has it, and a transparent rim.
        std::vector<std::uint16_t> pixels;
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x) {
                const bool rim = x == 0 || x == size.width() - 1;
                pixels.insert(pixels.end(), 4, static_cast<std::uint16_t>(rim ? 0 : 60000));
            }
        const double wanted = 60000.0 * (size.width() - 2) / size.width();
        QSize at = size;
        for (; halvedSize(at) != at; at = halvedSize(at))
            pixels = halvedPixels(pixels, at);
        ASSERT_THAT(pixels, testing::SizeIs(4));
        for (const std::uint16_t value : pixels)
            EXPECT_NEAR(value, wanted, 3.0) << size.width();
    }
}

TEST(LinearPixels, WhiteStaysWhiteHoweverSmall) {
    std::vector<std::uint16_t> pixels(4 * 13 * 7, 65535);
    for (QSize at(13, 7); halvedSize(at) != at; at = halvedSize(at)) {
        pixels = halvedPixels(pixels, at);
        EXPECT_THAT(pixels, testing::Each(65535));
    }
}

TEST_F(SceneShaders, AParticleIsAsLargeAsTheFormulaSays) {
    Stage stage;
    auto node = stage.add({}, {0.01, 0.02, -3});
    RandomSource random(1);
    node->setParticles(std::make_shared<ParticleSystem>(
        ParticleSettings{
            .birthRate = 1, .lifeSpan = 10, .size = 0.5, .blendMode = BlendMode::Additive},
        random));
    stage.scene.advance(1.0);
    const LightImage image = light(stage.list(), {240, 240});
    const double side = projectedSize(0.5, 3.0, 90.0, 240.0);
    EXPECT_NEAR(image.sum().r, side * side, 0.01 * side * side);
    int wide = 0;
    for (int x = 0; x < 240; ++x)
        if (image.at(x, 121).r > 0.5F) ++wide;
    EXPECT_NEAR(wide, side, 1.0);
}

TEST_F(SceneShaders, ASeeThroughPictureKeepsItsLightHoweverSmall) {
    // As a digit's: odd on the way down, with an empty rim.
    QImage picture(29, 39, QImage::Format_RGBA8888);
    picture.fill(Qt::transparent);
    for (int y = 4; y < 35; ++y)
        for (int x = 10; x < 19; ++x)
            picture.setPixelColor(x, y, Qt::white);
    constexpr double kWhite = 9.0 * 31.0 / (29.0 * 39.0);
    constexpr int kSide = 64;  // pixels, of a view one unit high at half a unit away
    for (const double pixels : {0.25, 0.6, 1.0, 1.7, 3.0, 5.5, 9.0, 14.0})
        for (const double aside : {0.0, 0.3, 0.5, 0.8}) {
            Stage stage;
            stage.add(square(pixels / kSide, constant(picture, BlendMode::Additive)),
                      {aside / kSide, 0.37 * aside / kSide, -0.5});
            // Where a pixel lies between the texels of its level, some light moves to or from it.
            const double sum = light(stage.list(), {kSide, kSide}).sum().r;
            EXPECT_NEAR(sum / (pixels * pixels * kWhite), 1.0, 0.1)
                << pixels << " pixels, " << aside << " aside";
        }
}

TEST_F(SceneShaders, TheMirrorFadesWithHeightAsTheFormulaSays) {
    Stage stage;
    stage.camera->setPosition({0, 2, 4});
    auto floor = stage.add({}, {0, 0, 0});
    floor->setFloor(Floor{.reflectivity = 0.5, .falloffEnd = 2.0, .material = constant(Qt::black)});
    // A wall that stands on the floor at z = 0; its mirror image is seen at −y.
    stage.add(square(6, constant(Qt::white)), {0, 3, 0});
    const LightImage image = light(stage.list(), {64, 256});
    int compared = 0;
    for (int y = 0; y < 256; ++y) {
        const double height = 2.0 + 4.0 * (2.0 * (y + 0.5) / 256.0 - 1.0);
        if (height > -0.05) continue;
        EXPECT_NEAR(image.at(32, y).g, reflectionFactor(-height, 0.5, 2.0), 1e-4) << height;
        ++compared;
    }
    EXPECT_GT(compared, 50);
}

// A white pixel amid black of the scene's size.
class SceneBloomTest : public SceneGl {
  protected:
    static constexpr int kSize = 256;

    LightImage bloomOf(double sigma, bool fine, float value, int size = kSize) {
        GlImage scene;
        EXPECT_TRUE(scene.fit({size, size}, GL_RGBA32F));
        std::vector<glm::vec4> pixels(static_cast<std::size_t>(size * size), glm::vec4(0.0F));
        pixels[static_cast<std::size_t>(size / 2 * size + size / 2)] = glm::vec4(value);
        glBindTexture(GL_TEXTURE_2D, scene.texture());
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, size, size, GL_RGBA, GL_FLOAT, pixels.data());
        const auto bloom = SceneBloom::create();
        const GlVertexArray none = GlVertexArray::make();
        glBindVertexArray(none.name());
        EXPECT_GT(
            bloom->draw(scene,
                        {.threshold = 0.35F, .sigma = sigma, .fine = fine, .format = GL_RGBA32F}),
            0);
        reduction_ = size / bloom->image().size().width();
        return read(bloom->image());
    }

    int reduction_ = 1;
};

TEST_F(SceneBloomTest, TheBrightPassIsThatOfTheFormulaAndNothingIsLost) {
    for (const bool fine : {true, false}) {
        const LightImage image = bloomOf(7.0, fine, 1.6F);
        const double expected = brightPass(glm::dvec3(1.6), 0.35).r;
        EXPECT_NEAR(image.sum().r * reduction_ * reduction_, expected, 0.002 * expected);
    }
    EXPECT_EQ(bloomOf(7.0, true, 0.3F).sum().r, 0.0F);
}

// The light's standard deviation about its middle, in the scene's pixels, with
// what stretching the image again adds.
double spreadOf(const LightImage& image, int reduction, bool fine) {
    double sum = 0.0, first = 0.0, second = 0.0;
    for (int y = 0; y < image.size.height(); ++y)
        for (int x = 0; x < image.size.width(); ++x) {
            const double weight = image.at(x, y).r;
            sum += weight;
            first += weight * x;
            second += weight * x * x;
        }
    const double variance = second / sum - first / sum * first / sum;
    const double stretching = fine ? 1.0 / 3.0 : reduction > 1 ? 1.0 / 6.0 : 0.0;
    return reduction * std::sqrt(variance + stretching);
}

TEST_F(SceneBloomTest, LightSpreadsOverTheSameWidthWhateverTheQualityAndDensity) {
    for (const double sigma : {4.0, 7.0, 14.0, 21.0})
        for (const bool fine : {true, false}) {
            const LightImage image = bloomOf(sigma, fine, 1.0F);
            // A kernel cut off at three sigmas is a little narrower.
            EXPECT_NEAR(spreadOf(image, reduction_, fine), sigma, 0.03 * sigma)
                << sigma << (fine ? " fine" : " fast");
        }
}

TEST_F(SceneBloomTest, BloomIsRound) {
    const LightImage image = bloomOf(14.0, true, 4.0F);
    const int middle = image.size.width() / 2;
    const int across = 5;  // and along the diagonal as far: 3 and 4
    const double along =
        0.5 * (image.at(middle + across, middle).r + image.at(middle - across, middle).r);
    const double diagonal =
        0.5 * (image.at(middle + 3, middle + 4).r + image.at(middle - 3, middle - 4).r);
    EXPECT_NEAR(diagonal / along, 1.0, 0.06);
    EXPECT_NEAR(image.at(middle, middle + across).r, image.at(middle + across, middle).r, 1e-6);
}

}  // namespace
}  // namespace platform::test
