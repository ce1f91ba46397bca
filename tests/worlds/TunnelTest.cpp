// SPDX-License-Identifier: MIT
#include "worlds/Tunnel.h"

#include <cmath>
#include <glm/gtc/matrix_transform.hpp>
#include <set>

#include "drawing/BlokCijfer.h"
#include "drawing/Thema.h"
#include "tests/platform/scene/Near.h"
#include "tests/worlds/Opstelling.h"

using brixtel::BlokCijfer;
using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::Thema;
using brixtel::tunnelBeeld;
using brixtel::TunnelCijfer;
using brixtel::tunnelCijfers;
using brixtel::tunnelStroom;
using brixtel::tunnelVerloop;
using platform::NodePtr;

namespace {

std::vector<TunnelCijfer> cijfersVan(std::uint64_t zaad) {
    platform::RandomSource toeval(zaad);
    return tunnelCijfers(toeval);
}

// --- the wallpaper ---

TEST(TunnelBeeld, Holds16Times14Digits) {
    const auto cijfers = cijfersVan(1);
    ASSERT_EQ(cijfers.size(), 224U);
    // Digits are 19 points wide, centred in columns of 32.
    for (std::size_t i = 0; i < 224; ++i) {
        EXPECT_DOUBLE_EQ(cijfers[i].linksonder.x(), 6.5 + 32.0 * static_cast<double>(i / 14));
        EXPECT_DOUBLE_EQ(cijfers[i].linksonder.y(), 36.57 * static_cast<double>(i % 14) + 4.0);
    }
}

TEST(TunnelBeeld, LowestRowAtFourAndHighestAt479) {
    const auto cijfers = cijfersVan(1);
    EXPECT_DOUBLE_EQ(cijfers.front().linksonder.y(), 4.0);
    EXPECT_NEAR(cijfers.back().linksonder.y(), 479.41, 1e-9);
}

// Whether the picture shows the digit at its place, and the other one not.
bool toont(const QImage& beeld, const TunnelCijfer& cijfer) {
    const auto past = [&](bool een) {
        for (int rij = 0; rij < 7; ++rij)
            for (int kolom = 0; kolom < 5; ++kolom) {
                const auto& patroon = een ? BlokCijfer::een : BlokCijfer::nul;
                const bool blok =
                    ((patroon[static_cast<std::size_t>(rij)] >> (4 - kolom)) & 1) != 0;
                const double x = cijfer.linksonder.x() + 4.0 * kolom + 1.5;
                const double y = cijfer.linksonder.y() + 4.0 * (6 - rij) + 1.5;
                const QColor kleur =
                    beeld.pixelColor(static_cast<int>(x), 511 - static_cast<int>(std::floor(y)));
                if ((kleur.green() > 0) != blok) return false;
            }
        return true;
    };
    return past(cijfer.een) && !past(!cijfer.een);
}

TEST(TunnelBeeld, IsOnePictureOf512PointsOnOpaqueBlack) {
    const auto cijfers = cijfersVan(1);
    const QImage beeld = *tunnelBeeld(cijfers);
    ASSERT_EQ(beeld.size(), QSize(512, 512));
    for (const TunnelCijfer& cijfer : cijfers)
        EXPECT_TRUE(toont(beeld, cijfer));
    int buiten = 0;
    for (int y = 0; y < 512; ++y)
        for (int x = 0; x < 512; ++x) {
            const QColor kleur = beeld.pixelColor(x, y);
            ASSERT_EQ(kleur.alpha(), 255);
            // Between the columns, and above and below the rows.
            const bool tussen = x % 32 < 6 || x % 32 > 25 || y > 507 || y < 5;
            if (tussen && kleur != QColor(Qt::black)) ++buiten;
        }
    EXPECT_EQ(buiten, 0);
}

TEST(TunnelBeeld, EveryDigitHasItsColour) {
    const auto cijfers = cijfersVan(3);
    const QImage beeld = *tunnelBeeld(cijfers);
    for (const TunnelCijfer& cijfer : cijfers) {
        // The middle of the foot's or the bottom's third block: lit in both digits.
        const int x = static_cast<int>(cijfer.linksonder.x() + 9.5);
        const int y = 511 - static_cast<int>(std::floor(cijfer.linksonder.y() + 1.5));
        EXPECT_NEAR(beeld.pixelColor(x, y).greenF(), cijfer.kleur.greenF() * cijfer.kleur.alphaF(),
                    0.01);
    }
}

TEST(TunnelBeeld, AboutSixInAHundredAreBright) {
    int felle = 0, enen = 0, alle = 0;
    for (std::uint64_t zaad = 0; zaad < 100; ++zaad) {
        for (const TunnelCijfer& cijfer : cijfersVan(zaad)) {
            ++alle;
            enen += cijfer.een ? 1 : 0;
            if (cijfer.kleur == Thema::cijferFel()) {
                ++felle;
                continue;
            }
            EXPECT_EQ(cijfer.kleur.rgb(), Thema::cijfer().rgb());
            // 0.25 · 0.3 at least, below 1 at most.
            EXPECT_GE(cijfer.kleur.alphaF(), 0.0749F);
            EXPECT_LT(cijfer.kleur.alphaF(), 1.0F);
        }
    }
    EXPECT_NEAR(static_cast<double>(felle) / alle, 0.06, 0.008);
    EXPECT_NEAR(static_cast<double>(enen) / alle, 0.5, 0.02);
}

TEST(TunnelBeeld, IsDrawnFromItsLotsInOrder) {
    platform::RandomSource lot(9);
    double helderheid = 0.0;
    for (const TunnelCijfer& cijfer : cijfersVan(9)) {
        if (cijfer.linksonder.y() == 4.0) helderheid = 0.25 + 0.75 * lot.unit();
        const double eigen = lot.unit();
        const bool fel = lot.unit() < 0.06;
        const QColor verwacht =
            fel ? Thema::cijferFel()
                : steun::metAlfa(Thema::cijfer(), helderheid * (0.3 + 0.7 * eigen));
        EXPECT_EQ(cijfer.kleur, verwacht);
        EXPECT_EQ(cijfer.een, lot.coin());
    }
}

// --- the wall ---

class TunnelTest : public steun::WereldOpstelling {
  protected:
    std::unique_ptr<DrieWereld> wereld = maak(DrieSoort::tunnel);
    NodePtr buis = wereld->scene()->root().find("buis");
    NodePtr stroom = wereld->scene()->root().find("stroom");
};

TEST_F(TunnelTest, TheTubeEnclosesTheCamera) {
    const auto& data = buis->geometry()->mesh()->data();
    EXPECT_VEC_NEAR(buis->geometry()->size(), glm::dvec3(3.3, 80.0, 3.3), 1e-3);
    float binnenste = 10.0F;
    for (const glm::vec3& punt : data.positions)
        binnenste = std::min(binnenste, glm::length(glm::vec2(punt.x, punt.z)));
    EXPECT_NEAR(binnenste, 1.6, 1e-5);
    // Two walls and two rims of 64 segments of two triangles.
    EXPECT_EQ(buis->geometry()->mesh()->primitiveCount(), 512U);
    EXPECT_EQ(buis->eulerAngles(), glm::dvec3(M_PI / 2.0, 0.0, 0.0));
    EXPECT_EQ(buis->position(), glm::dvec3(0.0, 0.0, -38.0));
    const glm::dmat4 plaats = buis->worldTransform();
    EXPECT_VEC_NEAR(plaats * glm::dvec4(0, 40, 0, 1), glm::dvec3(0, 0, 2), 1e-9);
    EXPECT_VEC_NEAR(plaats * glm::dvec4(0, -40, 0, 1), glm::dvec3(0, 0, -78), 1e-9);
}

TEST_F(TunnelTest, TheWallWearsTheWallpaperUnlitAndRepeating) {
    const auto& behang = *buis->geometry()->material();
    EXPECT_EQ(behang.lightingModel(), platform::LightingModel::Constant);
    EXPECT_EQ(behang.picture().size(), QSize(512, 512));
    EXPECT_EQ(behang.wrapS(), platform::WrapMode::Repeat);
    EXPECT_EQ(behang.wrapT(), platform::WrapMode::Repeat);
    EXPECT_TRUE(behang.isDoubleSided());
    EXPECT_TRUE(behang.isOpaque());
    EXPECT_TRUE(behang.writesDepth());
}

TEST_F(TunnelTest, TheWallpaperRepeats6Times14AndStartsUnmoved) {
    EXPECT_EQ(tunnelVerloop(0.0), glm::scale(glm::dmat4(1.0), glm::dvec3(6.0, 14.0, 1.0)));
    EXPECT_EQ(buis->geometry()->material()->contentsTransform(), tunnelVerloop(0.0));
}

TEST_F(TunnelTest, AfterTenSecondsTheWallHasMovedByMinusFiveAndAHalf) {
    wereld->scene()->advance(10.0);
    const glm::dmat4& verloop = buis->geometry()->material()->contentsTransform();
    EXPECT_NEAR(verloop[3][1], -5.5, 1e-9);
    EXPECT_EQ(verloop[3][0], 0.0);
    EXPECT_EQ(verloop[0][0], 6.0);
    EXPECT_EQ(verloop[1][1], 14.0);
    EXPECT_EQ(verloop[2][2], 1.0);
}

TEST_F(TunnelTest, TheWallScrollsSteadilyAtAnyFrameRate) {
    for (int i = 1; i <= 100; ++i) {
        wereld->scene()->advance(0.037 * i);
        EXPECT_NEAR(buis->geometry()->material()->contentsTransform()[3][1], -0.55 * 0.037 * i,
                    1e-9);
    }
}

TEST_F(TunnelTest, TheWallStreamsTowardsTheCamera) {
    // The point at texture height 3.5 is still there half a second later, but nearer.
    const auto waar = [&] {
        const auto& data = buis->geometry()->mesh()->data();
        const glm::dmat4 verloop = buis->geometry()->material()->contentsTransform();
        const glm::dmat4 plaats = buis->worldTransform();
        // The wall's two ends, where v is 0 and 1.
        double z0 = 0.0, z1 = 0.0;
        for (std::size_t i = 0; i < data.positions.size(); ++i) {
            if (data.normals[i].y != 0.0F) continue;
            const glm::dvec4 p = plaats * glm::dvec4(data.positions[i], 1.0);
            (data.texcoords[i].y < 0.5F ? z0 : z1) = p.z;
        }
        const double v = (3.5 - verloop[3][1]) / verloop[1][1];
        return z0 + v * (z1 - z0);
    };
    const double eerst = waar();
    wereld->scene()->advance(0.5);
    EXPECT_NEAR(waar() - eerst, 0.5 * 0.55 * 80.0 / 14.0, 1e-6);
}

TEST_F(TunnelTest, TheTubeTurnsAboutTheViewingAxisIn40Seconds) {
    const glm::dquat begin = platform::fromEuler({M_PI / 2.0, 0.0, 0.0});
    wereld->scene()->advance(10.0);
    EXPECT_TURN_NEAR(buis->orientation(), begin * platform::turn(0.5 * M_PI, {0, 1, 0}), 1e-9);
    EXPECT_VEC_NEAR(buis->orientation() * glm::dvec3(0, 1, 0), glm::dvec3(0, 0, 1), 1e-9);
    wereld->scene()->advance(40.0);
    EXPECT_TURN_NEAR(buis->orientation(), begin, 1e-9);
}

TEST_F(TunnelTest, TheWallGoesOnUnseenPastAMillionSeconds) {
    wereld->scene()->advance(999'999.9);
    const double voor = buis->geometry()->material()->contentsTransform()[3][1];
    wereld->scene()->advance(1'000'000.1);
    const double na = buis->geometry()->material()->contentsTransform()[3][1];
    const double stap = na - voor + 0.55 * 0.2;
    EXPECT_NEAR(stap, std::round(stap), 1e-6);
}

TEST_F(TunnelTest, TwoTunnelsShowDifferentWalls) {
    const auto ander = maak(DrieSoort::tunnel, {}, 2);
    EXPECT_NE(buis->geometry()->material()->picture(),
              ander->scene()->root().find("buis")->geometry()->material()->picture());
}

// --- the stream ---

TEST_F(TunnelTest, AFullTunnelGivesBirthTo90ASecondAndAPreviewTo45) {
    EXPECT_EQ(stroom->particles()->settings().birthRate, 90.0);
    const auto klein = maak(DrieSoort::tunnel, {.groot = false});
    EXPECT_EQ(klein->scene()->root().find("stroom")->particles()->settings().birthRate, 45.0);
}

TEST(TunnelStroom, HasItsSettings) {
    const platform::ParticleSettings stroom = tunnelStroom(true);
    EXPECT_EQ(stroom.image, DrieWereld::cijferBeeld(true, Thema::groen()));
    EXPECT_EQ(stroom.lifeSpan, 4.0);
    EXPECT_EQ(stroom.velocity, 9.0);
    EXPECT_EQ(stroom.velocityVariation, 3.0);
    EXPECT_EQ(stroom.emittingDirection, glm::dvec3(0, 0, 1));
    EXPECT_EQ(stroom.spreadingAngle, 0.0);
    EXPECT_EQ(stroom.emitterSize, glm::dvec2(2.6));
    EXPECT_EQ(stroom.size, 0.06);
    EXPECT_EQ(stroom.sizeVariation, 0.03);
    EXPECT_EQ(stroom.colour, Thema::groen());
    EXPECT_EQ(stroom.colourVariation, glm::dvec4(0, 0, 0.3, 0));
    EXPECT_EQ(stroom.blendMode, platform::BlendMode::Additive);
}

TEST_F(TunnelTest, DigitsFlyFromFarAwayToJustBehindTheCamera) {
    EXPECT_EQ(stroom->position(), glm::dvec3(0.0, 0.0, -30.0));
    wereld->scene()->advance(10.0);
    const auto& deeltjes = *stroom->particles();
    EXPECT_NEAR(static_cast<double>(deeltjes.count()), 360.0, 1.0);
    for (std::size_t i = 0; i < deeltjes.count(); ++i) {
        const auto& deeltje = deeltjes.particle(i);
        EXPECT_EQ(deeltje.origin.z, -30.0);
        EXPECT_LE(std::abs(deeltje.origin.x), 1.3);
        EXPECT_LE(std::abs(deeltje.origin.y), 1.3);
        EXPECT_EQ(glm::dvec2(deeltje.velocity), glm::dvec2(0.0));
        EXPECT_NEAR(deeltje.velocity.z, 9.0, 1.5);
        EXPECT_NEAR(deeltje.size, 0.06, 0.0151);
        EXPECT_EQ(deeltje.colour.r, 0.0F);
        EXPECT_GT(deeltje.position(deeltje.born + 4.0).z, -0.5);
    }
}

}  // namespace
