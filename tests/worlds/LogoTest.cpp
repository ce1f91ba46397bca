// SPDX-License-Identifier: MIT
#include "worlds/Logo.h"

#include <cmath>
#include <glm/gtc/matrix_transform.hpp>

#include "drawing/BlokTekst.h"
#include "drawing/Thema.h"
#include "tests/platform/scene/Near.h"
#include "tests/worlds/Opstelling.h"

using brixtel::BlokTekst;
using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::logoRing;
using brixtel::logoTegel;
using brixtel::logoWoord;
using brixtel::Thema;
using platform::Node;
using platform::NodePtr;

namespace {

std::vector<QRectF> vakken() {
    return BlokTekst::vakken(QStringLiteral("BRIXTEL"),
                             {.bij = {0, 0}, .blok = 1.0, .spleet = 0.15, .omhoog = true});
}

// --- the word ---

TEST(LogoWoord, HoldsOneBoxForEachLitCellAndNothingElse) {
    const NodePtr woord = logoWoord();
    const auto cellen = vakken();
    ASSERT_GT(cellen.size(), 80U);
    ASSERT_EQ(woord->children().size(), cellen.size());
    EXPECT_FALSE(woord->geometry());
    const double breedte = 7 * (5 + 4 * 0.15) + 6 * (1 + 2 * 0.15);
    const double hoogte = 7 + 6 * 0.15;
    for (std::size_t i = 0; i < cellen.size(); ++i) {
        const Node& blok = *woord->children()[i];
        EXPECT_EQ(blok.geometry(), woord->children()[0]->geometry());
        EXPECT_TRUE(blok.children().empty());
        EXPECT_VEC_NEAR(blok.position(),
                        glm::dvec3(cellen[i].x() + 0.5 - breedte / 2.0,
                                   cellen[i].y() + 0.5 - hoogte / 2.0, 0.0),
                        1e-9);
    }
}

TEST(LogoWoord, IsCentredOnTheOrigin) {
    const auto bounds = logoWoord()->flattenedClone()->geometry()->mesh()->bounds();
    EXPECT_VEC_NEAR(bounds.centre(), glm::dvec3(0.0), 1e-4);
    EXPECT_VEC_NEAR(bounds.size(), glm::dvec3(7 * 5.6 + 6 * 1.3, 7.9, 1.4), 1e-4);
}

TEST(LogoWoord, BlocksAreRoundedAndShineOfThemselves) {
    const NodePtr woord = logoWoord();
    const auto& blok = *woord->children()[0]->geometry();
    EXPECT_VEC_NEAR(blok.size(), glm::dvec3(1.0, 1.0, 1.4), 1e-6);
    const auto rond =
        platform::makeBox({.length = 1.4, .chamferRadius = 0.06, .chamferSegments = 1});
    EXPECT_EQ(blok.mesh()->data().positions, rond->mesh()->data().positions);
    EXPECT_EQ(blok.mesh()->data().normals, rond->mesh()->data().normals);
    const auto& materiaal = *blok.material();
    EXPECT_EQ(materiaal.lightingModel(), platform::LightingModel::Lambert);
    EXPECT_EQ(materiaal.colour(), Thema::groen());
    EXPECT_EQ(materiaal.emission(), steun::metAlfa(Thema::cijfer(), 0.55));
}

class LogoTest : public steun::WereldOpstelling {
  protected:
    std::unique_ptr<DrieWereld> wereld = maak(DrieSoort::logo);
    Node& wortel = wereld->scene()->root();
    NodePtr woord = wortel.find("woord");
    NodePtr vloer = wortel.find("vloer");
    NodePtr ring = wortel.find("ring");
};

TEST_F(LogoTest, TheFlattenedWordIsOneNode) {
    EXPECT_TRUE(woord->children().empty());
    const NodePtr los = logoWoord();
    const std::size_t perBlok = los->children()[0]->geometry()->mesh()->primitiveCount();
    EXPECT_EQ(woord->geometry()->mesh()->primitiveCount(), vakken().size() * perBlok);
}

TEST_F(LogoTest, TheWordIsAQuarterOfItsSizeOnEveryAxis) {
    EXPECT_EQ(woord->scale(), glm::dvec3(0.25));
    EXPECT_EQ(woord->position(), glm::dvec3(0.0, 0.5, 0.0));
    EXPECT_EQ(woord->parent(), &wortel);
}

TEST_F(LogoTest, TheWordSwaysBetweenItsTwoTurnsEvery8Seconds) {
    const auto na = [&](double tijd) {
        wereld->scene()->advance(tijd);
        return woord->orientation();
    };
    EXPECT_TURN_NEAR(na(4.0), platform::fromEuler({0.0, 0.55, 0.0}), 1e-6);
    EXPECT_TURN_NEAR(na(8.0), platform::fromEuler({0.0, -0.55, 0.0}), 1e-6);
    EXPECT_TURN_NEAR(na(12.0), platform::fromEuler({0.0, 0.55, 0.0}), 1e-6);
}

// The speeds at both ends of a leg are a small part of the speed in its middle.
TEST_F(LogoTest, TheWordTurnsAndRisesGentlyAtBothEnds) {
    struct Stand {
        glm::dquat draai;
        double hoogte;
    };
    const auto na = [&](double tijd) {
        wereld->scene()->advance(tijd);
        return Stand{woord->orientation(), woord->position().y};
    };
    const auto snelheid = [&](double tijd) {
        const Stand van = na(tijd - 0.01);
        const Stand tot = na(tijd + 0.01);
        return Stand{{glm::angle(glm::conjugate(van.draai) * tot.draai) / 0.02, 0.0, 0.0, 0.0},
                     std::abs(tot.hoogte - van.hoogte) / 0.02};
    };
    for (const double omkeer : {8.0, 12.0, 16.0, 20.0}) {
        const Stand einde = snelheid(omkeer);
        const Stand wip = snelheid(omkeer + 1.0);
        const Stand midden = snelheid(omkeer + 2.0);
        EXPECT_LT(einde.draai.w, 0.05 * midden.draai.w) << omkeer;
        EXPECT_LT(einde.hoogte, 0.05 * wip.hoogte) << omkeer;
        // The other end of the bob.
        EXPECT_LT(midden.hoogte, 0.05 * wip.hoogte) << omkeer;
    }
}

TEST_F(LogoTest, TheWordBobsByAQuarterUnitEvery4Seconds) {
    const auto na = [&](double tijd) {
        wereld->scene()->advance(tijd);
        return woord->position().y;
    };
    EXPECT_NEAR(na(2.0), 0.75, 1e-6);
    EXPECT_NEAR(na(4.0), 0.5, 1e-6);
    EXPECT_NEAR(na(6.0), 0.75, 1e-6);
    EXPECT_NEAR(na(8.0), 0.5, 1e-6);
    EXPECT_NEAR(na(3600.0 * 24.0 * 7.0), 0.5, 1e-6);
}

// --- the floor ---

TEST_F(LogoTest, TheFloorMirrorsBelowTheWord) {
    ASSERT_TRUE(vloer->floor());
    EXPECT_EQ(vloer->floor()->reflectivity, 0.22);
    EXPECT_EQ(vloer->floor()->falloffEnd, 4.0);
    EXPECT_EQ(vloer->position(), glm::dvec3(0.0, -1.2, 0.0));
    const auto& materiaal = *vloer->floor()->material;
    EXPECT_EQ(materiaal.lightingModel(), platform::LightingModel::Constant);
    EXPECT_EQ(materiaal.wrapS(), platform::WrapMode::Repeat);
    EXPECT_EQ(materiaal.wrapT(), platform::WrapMode::Repeat);
    EXPECT_EQ(materiaal.contentsTransform(),
              glm::scale(glm::dmat4(1.0), glm::dvec3(60.0, 60.0, 1.0)));
    EXPECT_EQ(materiaal.picture(), logoTegel());
    EXPECT_TRUE(materiaal.isOpaque());
}

TEST(LogoTegel, HasABarAtTheBottomAndOneAtTheLeft) {
    const QImage tegel = logoTegel();
    ASSERT_EQ(tegel.size(), QSize(64, 64));
    const auto groen = [&](int x, int vanOnder) {
        const QColor kleur = tegel.pixelColor(x, 63 - vanOnder);
        EXPECT_EQ(kleur.alpha(), 255);
        return kleur.greenF();
    };
    const double vol = Thema::donker().greenF() * 0.7;
    for (const int i : {2, 20, 40, 63}) {
        EXPECT_NEAR(groen(i, 0), vol, 0.01);
        EXPECT_NEAR(groen(i, 1), vol / 2.0, 0.01);
        EXPECT_EQ(groen(i, 2), 0.0);
        EXPECT_NEAR(groen(0, i), vol, 0.01);
        EXPECT_NEAR(groen(1, i), vol / 2.0, 0.01);
    }
    EXPECT_EQ(groen(30, 30), 0.0);
    EXPECT_EQ(groen(63, 63), 0.0);
}

// --- the lights ---

TEST_F(LogoTest, HasALampAndDimGreenFromEverywhere) {
    const auto lampen = steun::kinderen(wortel, [](const Node& node) { return node.light(); });
    ASSERT_EQ(lampen.size(), 2U);
    EXPECT_EQ(*lampen[0]->light(),
              (platform::Light{
                  .type = platform::LightType::Omni, .colour = Qt::white, .intensity = 900.0}));
    EXPECT_EQ(lampen[0]->position(), glm::dvec3(2.0, 6.0, 10.0));
    EXPECT_EQ(*lampen[1]->light(), (platform::Light{.type = platform::LightType::Ambient,
                                                    .colour = QColor::fromRgbF(0.0F, 0.25F, 0.08F),
                                                    .intensity = 1000.0}));
}

// --- the ring ---

TEST_F(LogoTest, TheRingHas48DigitsThatUndulateThreeTimes) {
    ASSERT_EQ(ring->children().size(), 48U);
    EXPECT_EQ(ring->position(), glm::dvec3(0.0, 0.5, 0.0));
    EXPECT_VEC_NEAR(ring->children()[0]->position(), glm::dvec3(7.2, 0.0, 0.0), 1e-9);
    EXPECT_VEC_NEAR(ring->children()[12]->position(), glm::dvec3(0.0, -0.3, 7.2), 1e-9);
    for (std::size_t i = 0; i < 48; ++i) {
        const double a = 2.0 * M_PI * static_cast<double>(i) / 48.0;
        EXPECT_VEC_NEAR(ring->children()[i]->position(),
                        glm::dvec3(7.2 * std::cos(a), 0.3 * std::sin(3.0 * a), 7.2 * std::sin(a)),
                        1e-9);
        EXPECT_TRUE(ring->children()[i]->isBillboard());
    }
}

TEST(LogoRing, ShowsTheDigitsThatItsLotsSay) {
    platform::RandomSource toeval(4), lot(4);
    const NodePtr ring = logoRing(toeval);
    const QColor kleur = steun::metAlfa(Thema::cijfer(), 0.55);
    for (const NodePtr& cijfer : ring->children()) {
        EXPECT_EQ(cijfer->geometry()->material()->picture(),
                  DrieWereld::cijferBeeld(lot.coin(), kleur));
        EXPECT_VEC_NEAR(cijfer->geometry()->size(), glm::dvec3(0.42 * 29.0 / 39.0, 0.42, 0.0),
                        1e-6);
    }
}

TEST_F(LogoTest, TheRingTurnsIn18SecondsAndKeepsItsDigits) {
    std::vector<platform::GeometryPtr> voor;
    for (const NodePtr& cijfer : ring->children())
        voor.push_back(cijfer->geometry());
    wereld->scene()->advance(4.5);
    EXPECT_TURN_NEAR(ring->orientation(), platform::turn(0.5 * M_PI, {0, 1, 0}), 1e-9);
    wereld->scene()->advance(18.0);
    EXPECT_TURN_NEAR(ring->orientation(), glm::dquat(1, 0, 0, 0), 1e-9);
    for (std::size_t i = 0; i < 48; ++i)
        EXPECT_EQ(ring->children()[i]->geometry(), voor[i]);
}

// A film of 72 seconds begins again unseen, once the first half sway is over.
TEST_F(LogoTest, IsAsItWasAfter72Seconds) {
    const auto na = [&](double tijd) {
        wereld->scene()->advance(tijd);
        platform::DrawList lijst;
        platform::extract(*wereld->scene(), 1.6, lijst);
        return lijst;
    };
    for (const double tijd : {8.0, 13.7}) {
        wereld = maak(DrieSoort::logo);
        const auto eerst = na(tijd);
        const auto later = na(tijd + 72.0);
        ASSERT_EQ(eerst.instances.size(), later.instances.size());
        for (std::size_t i = 0; i < eerst.instances.size(); ++i)
            for (int as = 0; as < 4; ++as)
                EXPECT_VEC_NEAR(glm::dvec3(eerst.instances[i].world[as]),
                                glm::dvec3(later.instances[i].world[as]), 1e-5);
    }
}

TEST_F(LogoTest, IsDrawnInThreeCallsBesidesTheFloor) {
    platform::DrawList lijst;
    platform::extract(*wereld->scene(), 1.6, lijst);
    EXPECT_LE(lijst.batches.size(), 3U);
    EXPECT_EQ(lijst.instances.size(), 49U);
    EXPECT_TRUE(lijst.floor);
}

}  // namespace
