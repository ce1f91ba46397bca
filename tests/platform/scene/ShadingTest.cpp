// SPDX-License-Identifier: MIT
#include "platform/scene/Shading.h"

#include <glm/gtc/matrix_transform.hpp>

#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

constexpr double kTiny = 1e-12;

TEST(Shading, SrgbDecodesAndEncodesBothWays) {
    EXPECT_NEAR(srgbDecode(0.5), 0.214041140482, 1e-10);
    EXPECT_NEAR(srgbDecode(0.04), 0.04 / 12.92, kTiny);
    for (const double x : {0.0, 0.001, 0.04, 0.2, 0.7, 1.0})
        EXPECT_NEAR(srgbEncode(srgbDecode(x)), x, 1e-7);
    // The straight part ends at 0.0031308.
    EXPECT_NEAR(srgbEncode(0.003), 0.003 * 12.92, kTiny);
    EXPECT_NEAR(srgbEncode(0.0035), 0.044988, 1e-6);
    EXPECT_NEAR(srgbEncode(0.01), 0.099853, 1e-6);
}

TEST(Shading, AColoursAlphaIsNotEncoded) {
    const glm::dvec4 colour = linearColour(QColor::fromRgbF(0.5F, 0.0F, 1.0F, 0.5F));
    EXPECT_NEAR(colour.r, 0.2140, 1e-4);
    EXPECT_NEAR(colour.a, 0.5, 1e-4);
}

TEST(Shading, FogGrowsFromItsStartToItsEnd) {
    EXPECT_EQ(fogFactor(4.0, 4.6, 8.2), 0.0);
    EXPECT_NEAR(fogFactor(6.4, 4.6, 8.2), 0.5, kTiny);
    EXPECT_EQ(fogFactor(9.0, 4.6, 8.2), 1.0);
    EXPECT_EQ(fogFactor(9.0, 5.0, 5.0), 0.0);
}

TEST(Shading, FogCoversWhatCoversAndDimsWhatAdds) {
    const glm::dvec3 colour(1.0, 0.5, 0.0), fog(0.2);
    EXPECT_VEC_NEAR(fogged(colour, fog, 0.5, BlendMode::Alpha), glm::dvec3(0.6, 0.35, 0.1), kTiny);
    EXPECT_VEC_NEAR(fogged(colour, fog, 0.5, BlendMode::Additive), glm::dvec3(0.5, 0.25, 0.0),
                    kTiny);
}

TEST(Shading, OnlyWhatIsAboveTheThresholdBlooms) {
    EXPECT_VEC_NEAR(brightPass({0.3, 0.35, 2.0}, 0.35), glm::dvec3(0.0, 0.0, 1.65), kTiny);
}

TEST(Shading, TheBlursWidthIsInPoints) {
    EXPECT_EQ(bloomSigma(14.0, 1.0), 7.0);
    EXPECT_EQ(bloomSigma(14.0, 2.0), 14.0);
    EXPECT_NEAR(gaussian(7.0, 7.0), std::exp(-0.5), kTiny);
}

TEST(Shading, ThePictureIsSceneAndBloomClampedAndEncoded) {
    const glm::dvec3 shown = composite({0.1, 0.8, 0.0}, {0.1, 0.5, 0.0}, 1.4);
    EXPECT_NEAR(shown.r, srgbEncode(0.24), kTiny);
    EXPECT_NEAR(shown.g, 1.0, kTiny);
    EXPECT_EQ(shown.b, 0.0);
}

TEST(Shading, LambertTakesLightByItsAngle) {
    const glm::dvec3 light(0.9), up(0, 1, 0);
    EXPECT_VEC_NEAR(lambertLight(light, up, glm::normalize(glm::dvec3(1, 1, 0))),
                    glm::dvec3(0.9 * std::sqrt(0.5)), kTiny);
    EXPECT_VEC_NEAR(lambertLight(light, up, {0, -1, 0}), glm::dvec3(0.0), kTiny);
    EXPECT_VEC_NEAR(lambert({0.5, 1, 0}, light, {0.0, 0.1, 0.0}, {0.2, 0, 0.2}),
                    glm::dvec3(0.65, 1.0, 0.2), kTiny);
}

TEST(Shading, ContentsTransformMultipliesTheTextureCoordinates) {
    const glm::dmat4 transform = glm::scale(glm::dmat4(1.0), glm::dvec3(6, 14, 1)) *
                                 glm::translate(glm::dmat4(1.0), glm::dvec3(0, -5.5, 0));
    const glm::dvec2 uv = transformTexcoord(transform, {0.5, 0.25});
    EXPECT_NEAR(uv.x, 3.0, kTiny);
    EXPECT_NEAR(uv.y, 14.0 * (0.25 - 5.5), kTiny);
}

TEST(Shading, WholeRepeatsAreTakenOffOnlyWhereThePictureRepeats) {
    const glm::dmat4 transform = glm::translate(glm::dmat4(1.0), glm::dvec3(7.25, -3.25, 0));
    const glm::mat4 wrapped =
        wrappedContentsTransform(transform, WrapMode::Clamp, WrapMode::Repeat);
    EXPECT_FLOAT_EQ(wrapped[3].x, 7.25F);
    EXPECT_FLOAT_EQ(wrapped[3].y, 0.75F);
}

TEST(Shading, AParticleShrinksWithItsDepth) {
    EXPECT_NEAR(projectedSize(2.0, 1.0, 90.0, 100.0), 100.0, 1e-9);
    EXPECT_NEAR(projectedSize(2.0, 4.0, 90.0, 100.0), 25.0, 1e-9);
}

TEST(Shading, TheMirrorFadesWithTheHeight) {
    EXPECT_NEAR(reflectionFactor(0.0, 0.22, 4.0), 0.22, kTiny);
    EXPECT_NEAR(reflectionFactor(1.0, 0.22, 4.0), 0.165, kTiny);
    EXPECT_EQ(reflectionFactor(5.0, 0.22, 4.0), 0.0);
    EXPECT_EQ(reflectionFactor(5.0, 0.22, 0.0), 0.22);
}

}  // namespace
