// SPDX-License-Identifier: MIT
#include "worlds/Bol.h"

#include <algorithm>
#include <map>

#include <cmath>

#include "drawing/Thema.h"
#include "tests/platform/scene/Near.h"
#include "tests/worlds/BolLijst.h"
#include "tests/worlds/Opstelling.h"

using brixtel::BolLijnen;
using brixtel::BolPunten;
using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::LandKaart;
using brixtel::Lijn;
using brixtel::Thema;
using platform::Node;
using platform::NodePtr;
using platform::Primitive;

namespace {

TEST(BolRooster, TheFirstPointLiesNearTheNorthPole) {
    for (const int n : {26'000, 12'000}) {
        const auto plaats = brixtel::roosterPlaats(0, n);
        EXPECT_NEAR(plaats.breedte, std::asin(1.0 - 1.0 / n) * 180.0 / M_PI, 1e-9);
        EXPECT_EQ(plaats.lengte, 0.0);
    }
}

TEST(BolRooster, GoesRoundByTheGoldenAngle) {
    EXPECT_NEAR(brixtel::roosterPlaats(1, 26'000).lengte, 2.399963229728653 * 180.0 / M_PI, 1e-9);
    for (int k = 0; k < 26'000; k += 97) {
        const double lengte = brixtel::roosterPlaats(k, 26'000).lengte;
        EXPECT_GT(lengte, -180.0);
        EXPECT_LE(lengte, 180.0);
        const double ronden = (k * 2.399963229728653 - lengte * M_PI / 180.0) / (2.0 * M_PI);
        EXPECT_NEAR(ronden, std::round(ronden), 1e-6);
    }
}

TEST(BolRooster, SeaIsFiveTimesThinnerThanLand) {
    const BolPunten punten = brixtel::bolPunten(26'000, steun::noordland());
    EXPECT_EQ(punten.land.size(), 13'000U);
    EXPECT_EQ(punten.zee.size(), 2'600U);
    for (const glm::dvec3& punt : punten.land)
        EXPECT_GT(punt.y, 0.0);
    for (const glm::dvec3& punt : punten.zee)
        EXPECT_NEAR(glm::length(punt), 1.0, 1e-12);
}

TEST(BolRooster, WithoutAMapThereIsOnlySea) {
    const BolPunten punten = brixtel::bolPunten(12'000, LandKaart());
    EXPECT_TRUE(punten.land.empty());
    EXPECT_EQ(punten.zee.size(), 2'400U);
}

TEST(BolRaster, HasFiveParallelsAndTwelveMeridians) {
    const auto einden = brixtel::bolRaster();
    EXPECT_EQ(einden.size(), 2U * (5U * 60U + 12U * 28U));
    for (const glm::dvec3& einde : einden)
        EXPECT_NEAR(glm::length(einde), 1.001, 1e-12);
    EXPECT_VEC_NEAR(einden.front(), DrieWereld::punt(-60.0, -180.0, {.r = 1.001}), 1e-12);
    EXPECT_VEC_NEAR(einden.back(), DrieWereld::punt(84.0, 150.0, {.r = 1.001}), 1e-12);
}

TEST(BolGloed, IsARingThatPeaksJustOutsideTheRim) {
    const QImage beeld = brixtel::bolGloed();
    ASSERT_EQ(beeld.size(), QSize(256, 256));
    const auto alfa = [&](double deel) {
        return qAlpha(beeld.pixel(128 + static_cast<int>(128.0 * deel), 128)) / 255.0;
    };
    EXPECT_EQ(alfa(0.0), 0.0);
    EXPECT_EQ(alfa(0.58), 0.0);
    EXPECT_NEAR(alfa(0.655), 0.07, 0.012);
    EXPECT_NEAR(alfa(0.73), 0.035, 0.012);
    EXPECT_EQ(alfa(0.82), 0.0);
}

// --- the globe ---

class BolTest : public steun::WereldOpstelling {
  protected:
    BolTest() { kaart_ = steun::noordland(); }

    static std::vector<Lijn> lijnen(int aantal) {
        std::vector<Lijn> alle;
        for (int i = 0; i < aantal; ++i)
            alle.push_back(
                {{"L" + std::to_string(i), -40.0 + 2.0 * i, 10.0 * i - 120.0}, {"Proef"}, 100 - i});
        return alle;
    }
    // Each line has an arc, a dot, a light and a label.
    static const Node& arc(const DrieWereld& w, std::size_t i) { return deel(w, 4 * i); }
    static const Node& stip(const DrieWereld& w, std::size_t i) { return deel(w, 4 * i + 1); }
    static const Node& licht(const DrieWereld& w, std::size_t i) { return deel(w, 4 * i + 2); }
    static const Node& label(const DrieWereld& w, std::size_t i) { return deel(w, 4 * i + 3); }
    static const Node& deel(const DrieWereld& w, std::size_t i) {
        return *w.lijnenNode()->children().at(i);
    }
    static std::size_t getekend(const DrieWereld& w) {
        return w.lijnenNode()->children().size() / 4;
    }
};

TEST_F(BolTest, CloudsAreTwoGeometriesOfTheirOwnSizeAndColour) {
    for (const bool groot : {true, false}) {
        const auto wereld = maak(DrieSoort::bol, {.groot = groot, .eigenLijnen = true});
        const auto wolken = steun::kinderen(*wereld->bol(), [](const Node& node) {
            return node.geometry() && node.geometry()->mesh()->primitive() == Primitive::Points;
        });
        ASSERT_EQ(wolken.size(), 2U);
        const auto& land = *wolken[0]->geometry();
        const auto& zee = *wolken[1]->geometry();
        EXPECT_EQ(land.mesh()->primitiveCount(), groot ? 13'000U : 6'000U);
        EXPECT_EQ(zee.mesh()->primitiveCount(), groot ? 2'600U : 1'200U);
        EXPECT_EQ(land.mesh()->data().pointSize, groot ? 3.0 : 2.2);
        EXPECT_EQ(zee.mesh()->data().pointSize, 1.5);
        EXPECT_EQ(land.mesh()->data().pointHeightShare, groot ? 0.0038 : 0.0056);
        EXPECT_EQ(land.material()->colour(), Thema::groen());
        EXPECT_EQ(zee.material()->colour(), steun::metAlfa(Thema::donker(), 0.8));
    }
}

TEST_F(BolTest, HasItsGridAndADarkBallInside) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const auto& delen = wereld->bol()->children();
    EXPECT_EQ(delen[2]->geometry()->material()->colour(), steun::metAlfa(Thema::donker(), 0.55));
    EXPECT_EQ(delen[2]->geometry()->mesh()->primitive(), Primitive::Lines);
    EXPECT_VEC_NEAR(delen[3]->geometry()->size(), glm::dvec3(1.97), 1e-3);
    const auto& donker = *delen[3]->geometry()->material();
    EXPECT_EQ(donker.colour(), QColor::fromRgbF(0.0F, 0.03F, 0.01F));
    EXPECT_EQ(donker.lightingModel(), platform::LightingModel::Constant);
    EXPECT_TRUE(donker.writesDepth());
}

TEST_F(BolTest, TheHaloIsDrawnFirstAndFacesTheScreen) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const NodePtr gloed = wereld->scene()->root().find("gloed");
    EXPECT_EQ(gloed->parent(), &wereld->scene()->root());
    EXPECT_TRUE(gloed->isBillboard());
    EXPECT_EQ(gloed->renderingOrder(), -1);
    EXPECT_VEC_NEAR(gloed->geometry()->size(), glm::dvec3(3.1, 3.1, 0.0), 1e-6);
    const QImage ring = gloed->geometry()->material()->picture();
    EXPECT_EQ(ring.size(), brixtel::bolGloed().size());
    EXPECT_EQ(ring.pixel(128, 128), qRgb(0, 0, 0));
    EXPECT_NEAR(qGreen(ring.pixel(128 + 84, 128)), 0.07 * 255, 3);
    EXPECT_TRUE(gloed->geometry()->material()->commutes());
}

TEST_F(BolTest, TheHomeMarkerIsFlatOnTheSurfaceAndPulses) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const glm::dvec3 thuis = DrieWereld::punt(52.13, 5.29, {.r = 1.01});
    const NodePtr stip = wereld->bol()->find("thuis");
    EXPECT_VEC_NEAR(stip->position(), thuis, 1e-12);
    EXPECT_VEC_NEAR(stip->geometry()->size(), glm::dvec3(0.044), 1e-4);
    EXPECT_EQ(stip->geometry()->material()->colour(), Thema::cijferFel());
    const NodePtr ring = wereld->bol()->find("ring");
    EXPECT_VEC_NEAR(ring->position(), thuis, 1e-12);
    // The torus's own axis is y.
    EXPECT_NEAR(
        std::abs(glm::dot(ring->orientation() * glm::dvec3(0, 1, 0), glm::normalize(thuis))), 1.0,
        1e-9);
    EXPECT_VEC_NEAR(ring->geometry()->size(), glm::dvec3(0.108, 0.008, 0.108), 1e-4);
    const auto* klop = ring->animation("klop");
    ASSERT_NE(klop, nullptr);
    EXPECT_EQ(klop->property, platform::NodeProperty::Scale);
    EXPECT_EQ(klop->values, (std::vector<glm::dvec3>{glm::dvec3(0.6), glm::dvec3(1.8)}));
    EXPECT_EQ(klop->duration, 1.4);
    EXPECT_EQ(klop->repeatCount, platform::kForever);
}

TEST_F(BolTest, HomeFacesTheCameraAndTheGlobeTurnsAboutItsOwnAxisInAMinute) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const double helling = 0.55 * 52.13 * M_PI / 180.0;
    const glm::dvec3 thuis =
        wereld->bol()->orientation() * DrieWereld::punt(52.13, 5.29, {.r = 1.0});
    // Straight before the camera, as high as the tilt leaves it.
    EXPECT_NEAR(thuis.x, 0.0, 1e-9);
    EXPECT_NEAR(std::asin(thuis.y), (1.0 - 0.55) * 52.13 * M_PI / 180.0, 1e-9);
    EXPECT_GT(thuis.z, 0.0);
    const glm::dvec3 as = wereld->bol()->orientation() * glm::dvec3(0, 1, 0);
    EXPECT_VEC_NEAR(as, glm::dvec3(0.0, std::cos(helling), std::sin(helling)), 1e-9);
    const glm::dquat begin = wereld->bol()->orientation();
    wereld->scene()->advance(15.0);
    EXPECT_VEC_NEAR(wereld->bol()->orientation() * glm::dvec3(0, 1, 0), as, 1e-9);
    EXPECT_TURN_NEAR(wereld->bol()->orientation(), begin * platform::turn(0.5 * M_PI, {0, 1, 0}),
                     1e-9);
    wereld->scene()->advance(60.0);
    EXPECT_TURN_NEAR(wereld->bol()->orientation(), begin, 1e-9);
}

TEST_F(BolTest, ThirtyLinesAre24ArcsOnALargeGlobeAnd14OnASmall) {
    for (const bool groot : {true, false}) {
        const auto wereld = maak(DrieSoort::bol, {.groot = groot, .eigenLijnen = true});
        wereld->zetLijnen(lijnen(30));
        EXPECT_EQ(getekend(*wereld), groot ? 24U : 14U);
        wereld->zetLijnen(lijnen(3));
        EXPECT_EQ(getekend(*wereld), 3U);
    }
}

TEST_F(BolTest, WithoutLinesItIsTheSameAgainAfterItsLoop) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const auto beeldOp = [&](double tijd) {
        wereld->scene()->advance(tijd);
        platform::DrawList lijst;
        platform::extract(*wereld->scene(), 16.0 / 9.0, lijst);
        return lijst;
    };
    const double duur = brixtel::start(DrieSoort::bol).lus.duur;
    const auto toen = beeldOp(6.3);
    const auto halverwege = beeldOp(6.3 + 0.5 * duur);
    const auto straks = beeldOp(6.3 + duur);
    ASSERT_EQ(straks.instances.size(), toen.instances.size());
    float anders = 0.0F;
    for (std::size_t i = 0; i < toen.instances.size(); ++i)
        for (int k = 0; k < 4; ++k) {
            EXPECT_LT(glm::length(straks.instances[i].world[k] - toen.instances[i].world[k]), 1e-5F)
                << i;
            anders = std::max(
                anders, glm::length(halverwege.instances[i].world[k] - toen.instances[i].world[k]));
        }
    EXPECT_GT(anders, 0.1F);
    EXPECT_EQ(straks.camera.view, toen.camera.view);
}

TEST_F(BolTest, AnEmptyListLeavesOnlyTheGlobe) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const std::size_t delen = wereld->bol()->children().size();
    wereld->zetLijnen(lijnen(5));
    wereld->zetLijnen({});
    EXPECT_TRUE(wereld->lijnenNode()->children().empty());
    EXPECT_EQ(wereld->bol()->children().size(), delen);
    EXPECT_EQ(wereld->lijnenNode()->parent(), wereld->bol().get());
}

TEST_F(BolTest, AnArcsStrengthIsItsShareOfTheFirstLine) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    auto alle = lijnen(3);
    alle[0].aantal = 10;
    alle[1].aantal = 5;
    alle[2].aantal = 40;
    wereld->zetLijnen(alle);
    const double alfas[] = {1.0, 0.45 + 0.55 * 0.5, 1.0};
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(arc(*wereld, i).geometry()->material()->colour(),
                  steun::metAlfa(Thema::groen(), alfas[i]));
    EXPECT_EQ(arc(*wereld, 0).geometry()->mesh()->primitiveCount(), 40U);
}

TEST_F(BolTest, HomeItselfIsAnArcOfTwoPoints) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    wereld->zetLijnen({{{"NL", 52.13, 5.29}, {"Proef"}, 0}});
    EXPECT_EQ(arc(*wereld, 0).geometry()->mesh()->primitiveCount(), 1U);
    EXPECT_EQ(arc(*wereld, 0).geometry()->material()->colour(),
              steun::metAlfa(Thema::groen(), 0.45));
}

TEST_F(BolTest, EveryLineHasItsDotItsLightAndItsLabel) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    wereld->zetLijnen({{{"DE", 51.0, 10.5}, {"Proef"}, 12}});
    EXPECT_VEC_NEAR(stip(*wereld, 0).position(), DrieWereld::punt(51.0, 10.5, {.r = 1.01}), 1e-12);
    EXPECT_VEC_NEAR(stip(*wereld, 0).geometry()->size(), glm::dvec3(0.032), 1e-4);
    EXPECT_EQ(stip(*wereld, 0).geometry()->material()->colour(), Thema::cijferFel());
    EXPECT_VEC_NEAR(licht(*wereld, 0).geometry()->size(), glm::dvec3(0.022), 1e-4);
    EXPECT_EQ(licht(*wereld, 0).geometry()->material()->colour(), QColor(Qt::white));
    const Node& opschrift = label(*wereld, 0);
    EXPECT_TRUE(opschrift.isBillboard());
    EXPECT_VEC_NEAR(opschrift.position(), DrieWereld::punt(51.0, 10.5, {.r = 1.09}), 1e-12);
    EXPECT_TRUE(opschrift.geometry()->material()->commutes());
}

TEST_F(BolTest, TheSeventhLightTakes1Comma7Seconds) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    wereld->zetLijnen(lijnen(12));
    const double duren[] = {1.2, 1.45, 1.7, 1.95, 2.2};
    for (std::size_t i = 0; i < 12; ++i) {
        const auto* baan = licht(*wereld, i).animation("baan");
        ASSERT_NE(baan, nullptr);
        EXPECT_DOUBLE_EQ(baan->duration, duren[i % 5]);
        EXPECT_EQ(baan->property, platform::NodeProperty::Position);
        EXPECT_EQ(baan->values.size(), 41U);
        EXPECT_EQ(baan->repeatCount, platform::kForever);
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_NE(baan->timeOffset, licht(*wereld, j).animation("baan")->timeOffset);
    }
    EXPECT_DOUBLE_EQ(licht(*wereld, 7).animation("baan")->duration, 1.7);
}

// Every publication draws all anew, in whatever order the countries then come.
TEST_F(BolTest, TheLightOfALineThatStaysGoesOnWhereItWas) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    auto alle = lijnen(12);
    wereld->zetLijnen(alle);
    wereld->scene()->advance(3.1);
    const auto plekken = [&] {
        std::map<QString, glm::dvec3> waar;
        for (std::size_t i = 0; i < alle.size(); ++i)
            waar[BolLijnen::opschrift(alle[i])] =
                licht(*wereld, i).shownPose(wereld->scene()->time()).position;
        return waar;
    };
    for (int keer = 0; keer < 5; ++keer) {
        const auto voor = plekken();
        std::rotate(alle.begin(), alle.begin() + 1 + keer, alle.end());
        std::swap(alle[2], alle[5]);
        wereld->zetLijnen(alle);
        for (const auto& [land, plek] : plekken())
            EXPECT_VEC_NEAR(plek, voor.at(land), 1e-9);
        // The next frame goes on from there.
        const auto direct = plekken();
        wereld->scene()->advance(wereld->scene()->time() + 1.0 / 60.0);
        int verder = 0;
        for (const auto& [land, plek] : plekken())
            verder += glm::length(plek - direct.at(land)) > 1e-6 ? 1 : 0;
        EXPECT_EQ(verder, 12);
        wereld->scene()->advance(wereld->scene()->time() + 3.0);
    }
}

TEST_F(BolTest, ALabelSaysTheCountryInUpperCaseAndTheNumber) {
    const Lijn lijn{{"DE", 51.0, 10.5}, {"Proef"}, 12};
    EXPECT_EQ(BolLijnen::opschrift(lijn), QStringLiteral("DUITSLAND  12"));
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    wereld->zetLijnen({lijn});
    const auto& vlak = *label(*wereld, 0).geometry();
    const double breedte = Thema::breedte(QStringLiteral("DUITSLAND  12"),
                                          {.font = Thema::font(26.0, {.vet = true})}) +
                           16.0;
    EXPECT_VEC_NEAR(vlak.size(), glm::dvec3(breedte / 900.0, 36.0 / 900.0, 0.0), 1e-6);
    EXPECT_EQ(vlak.material()->picture().size(),
              QSize(static_cast<int>(std::ceil(2.0 * breedte)), 72));
}

TEST_F(BolTest, ALabelWhoseTextStaysIsNotDrawnAnew) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    auto alle = lijnen(3);
    wereld->zetLijnen(alle);
    const auto eerste = label(*wereld, 0).geometry();
    const auto tweede = label(*wereld, 1).geometry();
    alle[1].aantal = 7;
    wereld->zetLijnen(alle);
    EXPECT_EQ(label(*wereld, 0).geometry(), eerste);
    EXPECT_NE(label(*wereld, 1).geometry(), tweede);
}

}  // namespace
