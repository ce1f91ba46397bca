// SPDX-License-Identifier: MIT
// The geometry and materials that the scenes share.
#include <cmath>
#include <glm/geometric.hpp>

#include "drawing/Thema.h"
#include "tests/platform/scene/Near.h"
#include "worlds/DrieWereld.h"

using brixtel::DrieWereld;
using brixtel::Thema;
using platform::BlendMode;
using platform::LightingModel;
using platform::Primitive;

namespace {

constexpr double kRond = 1e-12;

TEST(DrieVormen, GlowIsUnlitAndDoubleSided) {
    const auto materiaal = DrieWereld::gloed(Thema::groen());
    EXPECT_EQ(materiaal->lightingModel(), LightingModel::Constant);
    EXPECT_EQ(materiaal->colour(), Thema::groen());
    EXPECT_TRUE(materiaal->isDoubleSided());
    EXPECT_EQ(materiaal->blendMode(), BlendMode::Alpha);
    EXPECT_TRUE(materiaal->writesDepth());
}

TEST(DrieVormen, AddingGlowWritesNoDepth) {
    const auto materiaal = DrieWereld::gloed(Thema::groen(), {.add = true});
    EXPECT_EQ(materiaal->lightingModel(), LightingModel::Constant);
    EXPECT_TRUE(materiaal->isDoubleSided());
    EXPECT_EQ(materiaal->blendMode(), BlendMode::Additive);
    EXPECT_FALSE(materiaal->writesDepth());
}

TEST(DrieVormen, DigitPictureIs28By38PointsAtScaleTwo) {
    for (const bool een : {false, true}) {
        const auto beeld = DrieWereld::cijferBeeld(een, Thema::cijferFel());
        ASSERT_TRUE(beeld);
        EXPECT_EQ(beeld->size(), QSize(56, 76));
    }
}

TEST(DrieVormen, DigitPictureHasItsBlocksTwoPointsIn) {
    const QImage een = *DrieWereld::cijferBeeld(true, Thema::cijferFel());
    // The foot: five blocks of four points, one apart, from (2, 2); rows run down.
    const QRgb fel = Thema::cijferFel().rgba();
    for (int kolom = 0; kolom < 5; ++kolom) {
        const int links = 2 * (2 + 5 * kolom);
        EXPECT_EQ(een.pixel(links, 71), fel) << kolom;
        EXPECT_EQ(een.pixel(links + 7, 64), fel) << kolom;
        EXPECT_EQ(qAlpha(een.pixel(links - 1, 71)), 0) << kolom;
        EXPECT_EQ(qAlpha(een.pixel(links, 72)), 0) << kolom;
    }
    // The top row of the one is its third column alone.
    EXPECT_EQ(een.pixel(2 * 12, 4), fel);
    EXPECT_EQ(qAlpha(een.pixel(2 * 7, 4)), 0);
    const QImage nul = *DrieWereld::cijferBeeld(false, Thema::cijferFel());
    EXPECT_EQ(nul.pixel(2 * 7, 4), fel);
    EXPECT_EQ(qAlpha(nul.pixel(2 * 2, 4)), 0);
}

TEST(DrieVormen, DigitPlaneIs29By39ths) {
    const auto vlak = DrieWereld::cijferVlak(true, {.kleur = Thema::groen(), .hoogte = 0.78});
    EXPECT_VEC_NEAR(vlak->size(), glm::dvec3(0.58, 0.78, 0.0), 1e-6);
    EXPECT_EQ(vlak->mesh()->primitiveCount(), 2U);
}

TEST(DrieVormen, DigitPlaneGlowsWithItsPicture) {
    const auto vlak = DrieWereld::cijferVlak(true, {.kleur = Thema::groen(), .hoogte = 1.0});
    const auto& materiaal = *vlak->material();
    EXPECT_EQ(materiaal.picture(), DrieWereld::cijferBeeld(true, Thema::groen()));
    EXPECT_EQ(materiaal.lightingModel(), LightingModel::Constant);
    EXPECT_EQ(materiaal.blendMode(), BlendMode::Additive);
    EXPECT_FALSE(materiaal.writesDepth());
    EXPECT_TRUE(materiaal.isDoubleSided());
}

TEST(DrieVormen, PointZeroZeroFacesTheCamera) {
    EXPECT_VEC_NEAR(DrieWereld::punt(0.0, 0.0, {.r = 1.0}), glm::dvec3(0, 0, 1), kRond);
}

TEST(DrieVormen, PointAtThePoleIsUpWhateverTheLongitude) {
    for (const double lengte : {-180.0, -33.0, 0.0, 90.0, 179.0})
        EXPECT_VEC_NEAR(DrieWereld::punt(90.0, lengte, {.r = 2.0}), glm::dvec3(0, 2, 0), kRond);
}

TEST(DrieVormen, PointInTheEastLiesTowardsX) {
    EXPECT_VEC_NEAR(DrieWereld::punt(0.0, 90.0, {.r = 1.0}), glm::dvec3(1, 0, 0), kRond);
}

TEST(DrieVormen, ArcOfTwoEqualPointsIsJustThose) {
    const glm::dvec3 p = DrieWereld::punt(52.0, 5.0, {.r = 1.0});
    EXPECT_EQ(DrieWereld::boog({.van = p, .naar = p}), (std::vector<glm::dvec3>{p, p}));
    // Half a thousandth of a radian is still the same place.
    const glm::dvec3 q = DrieWereld::punt(52.0 + 0.0005 * 180.0 / M_PI, 5.0, {.r = 1.0});
    EXPECT_EQ(DrieWereld::boog({.van = p, .naar = q}), (std::vector<glm::dvec3>{p, q}));
}

TEST(DrieVormen, ArcHas41PointsThatStartAndEndJustAboveTheSphere) {
    const glm::dvec3 van = DrieWereld::punt(52.0, 5.0, {.r = 1.0});
    const glm::dvec3 naar = DrieWereld::punt(-34.0, 151.0, {.r = 1.0});
    const auto boog = DrieWereld::boog({.van = van, .naar = naar});
    ASSERT_EQ(boog.size(), 41U);
    EXPECT_VEC_NEAR(boog.front(), 1.005 * van, kRond);
    EXPECT_VEC_NEAR(boog.back(), 1.005 * naar, 1e-9);
    EXPECT_EQ(DrieWereld::boog({.van = van, .naar = naar, .stappen = 8}).size(), 9U);
}

TEST(DrieVormen, ArcBetweenOppositePointsGoesHalfRoundInOnePlane) {
    for (const double breedte : {0.0, 52.0, 90.0}) {
        const glm::dvec3 van = DrieWereld::punt(breedte, 5.0, {.r = 1.0});
        const auto boog = DrieWereld::boog({.van = van, .naar = -van});
        ASSERT_EQ(boog.size(), 41U);
        EXPECT_VEC_NEAR(boog.front(), 1.005 * van, kRond);
        EXPECT_VEC_NEAR(boog.back(), -1.005 * van, 1e-9);
        // Halfway, highest, square to both.
        EXPECT_NEAR(glm::dot(boog.at(20), van), 0.0, 1e-9);
        EXPECT_NEAR(glm::length(boog.at(20)), 1.005 + 0.22 + 0.06, 1e-9);
        const glm::dvec3 normaal = glm::cross(van, boog.at(20));
        for (const glm::dvec3& punt : boog)
            EXPECT_NEAR(glm::dot(punt, normaal), 0.0, 1e-9);
    }
}

TEST(DrieVormen, ArcClimbsWithItsLength) {
    const auto top = [](double graden) {
        const auto boog = DrieWereld::boog({.van = DrieWereld::punt(0.0, 0.0, {.r = 1.0}),
                                            .naar = DrieWereld::punt(0.0, graden, {.r = 1.0})});
        return glm::length(boog.at(20));
    };
    EXPECT_NEAR(top(90.0), 1.005 + 0.06 + 0.22 * 0.5, 1e-9);
    EXPECT_NEAR(top(36.0), 1.005 + 0.06 + 0.22 * 0.2, 1e-9);
    EXPECT_GT(top(150.0), top(90.0));
}

TEST(DrieVormen, ArcStaysInThePlaneOfItsEnds) {
    const glm::dvec3 van = DrieWereld::punt(10.0, 20.0, {.r = 1.0});
    const glm::dvec3 naar = DrieWereld::punt(-40.0, -70.0, {.r = 1.0});
    const glm::dvec3 normaal = glm::cross(van, naar);
    for (const glm::dvec3& punt : DrieWereld::boog({.van = van, .naar = naar}))
        EXPECT_NEAR(glm::dot(punt, normaal), 0.0, 1e-9);
}

TEST(DrieVormen, DotsAreOnePrimitiveAPoint) {
    const auto wolk = DrieWereld::punten({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                                         {.grootte = 2.2, .kleur = Thema::groen()});
    EXPECT_EQ(wolk->mesh()->primitive(), Primitive::Points);
    EXPECT_EQ(wolk->mesh()->primitiveCount(), 3U);
    EXPECT_EQ(wolk->mesh()->data().pointSize, 2.2);
    EXPECT_EQ(wolk->material()->colour(), Thema::groen());
    EXPECT_EQ(wolk->material()->lightingModel(), LightingModel::Constant);
    EXPECT_TRUE(wolk->material()->isDoubleSided());
}

TEST(DrieVormen, LinesTakeTheirEndsPairwiseAndGlow) {
    const auto lijnen =
        DrieWereld::lijnen({{0, 0, 0}, {1, 0, 0}, {0, 2, 0}, {0, 3, 0}}, Thema::middel());
    EXPECT_EQ(lijnen->mesh()->primitive(), Primitive::Lines);
    EXPECT_EQ(lijnen->mesh()->primitiveCount(), 2U);
    EXPECT_EQ(lijnen->material()->colour(), Thema::middel());
    EXPECT_EQ(lijnen->material()->blendMode(), BlendMode::Additive);
    EXPECT_EQ(lijnen->material()->lightingModel(), LightingModel::Constant);
    EXPECT_FALSE(lijnen->material()->writesDepth());
    EXPECT_TRUE(lijnen->material()->isDoubleSided());
}

}  // namespace
