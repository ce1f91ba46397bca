// SPDX-License-Identifier: MIT
#include "worlds/Kubus.h"

#include <map>
#include <set>

#include "drawing/Thema.h"
#include "tests/platform/scene/Near.h"
#include "tests/worlds/Opstelling.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::KubusCijfers;
using brixtel::Thema;
using platform::Node;
using platform::NodePtr;

namespace {

struct KubusCijfersTest : testing::Test {
    NodePtr node = std::make_shared<Node>();
    KubusCijfers cijfers{*node, platform::RandomSource(1)};

    [[nodiscard]] bool isFel(const KubusCijfers::Cel& cel) const {
        return cel.node->geometry() == cijfers.vlakken()[2] ||
               cel.node->geometry() == cijfers.vlakken()[3];
    }
    [[nodiscard]] std::size_t felle() const {
        std::size_t aantal = 0;
        for (const auto& cel : cijfers.cellen())
            aantal += isFel(cel) ? 1U : 0U;
        return aantal;
    }
};

TEST_F(KubusCijfersTest, TheGridHasExactly343Digits) {
    EXPECT_EQ(cijfers.cellen().size(), 343U);
    EXPECT_EQ(node->children().size(), 343U);
}

TEST_F(KubusCijfersTest, ZRunsFastestAndXSlowest) {
    std::size_t i = 0;
    for (int x = 0; x < 7; ++x)
        for (int y = 0; y < 7; ++y)
            for (int z = 0; z < 7; ++z, ++i) {
                const auto& cel = cijfers.cellen()[i];
                EXPECT_EQ(cel.plek, (std::array{x, y, z}));
                EXPECT_EQ(cel.node, node->children()[i]);
                EXPECT_VEC_NEAR(cel.node->position(),
                                glm::dvec3((x - 3) * 0.42, (y - 3) * 0.42, (z - 3) * 0.42), 1e-12);
                EXPECT_TRUE(cel.node->isBillboard());
            }
    EXPECT_VEC_NEAR(cijfers.cellen().front().node->position(), glm::dvec3(-1.26), 1e-12);
    EXPECT_VEC_NEAR(cijfers.cellen().back().node->position(), glm::dvec3(1.26), 1e-12);
}

TEST_F(KubusCijfersTest, FourSharedGeometriesInTheirOrder) {
    const QColor gewoon = steun::metAlfa(Thema::cijfer(), 0.55);
    const QColor kleuren[] = {gewoon, gewoon, Thema::cijferFel(), Thema::cijferFel()};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& vlak = cijfers.vlakken()[i];
        EXPECT_VEC_NEAR(vlak->size(), glm::dvec3(0.17 * 29.0 / 39.0, 0.17, 0.0), 1e-6);
        EXPECT_EQ(vlak->material()->picture(), DrieWereld::cijferBeeld(i % 2 == 1, kleuren[i]));
    }
    std::set<platform::GeometryPtr> gezien;
    for (const auto& cel : cijfers.cellen())
        gezien.insert(cel.node->geometry());
    EXPECT_EQ(gezien, (std::set{cijfers.vlakken()[0], cijfers.vlakken()[1]}));
}

TEST_F(KubusCijfersTest, EveryDigitShowsItsOwnBit) {
    int enen = 0;
    for (int i = 0; i < 100; ++i) {
        for (const auto& cel : cijfers.cellen()) {
            const std::size_t dof = cel.een ? 1 : 0;
            EXPECT_TRUE(cel.node->geometry() == cijfers.vlakken()[dof] ||
                        cel.node->geometry() == cijfers.vlakken()[dof + 2]);
            enen += cel.een ? 1 : 0;
        }
        cijfers.tik();
    }
    EXPECT_NEAR(enen / 34'300.0, 0.5, 0.05);
}

TEST_F(KubusCijfersTest, InitiallyNoWaveRuns) {
    EXPECT_EQ(cijfers.golf().positie, -1.0);
    EXPECT_FALSE(cijfers.golf().loopt());
}

TEST_F(KubusCijfersTest, WithTheWaveAtMinusOneNoCellIsBright) {
    for (int i = 0; i < 200; ++i) {
        cijfers.zetGolf({});
        const auto voor = cijfers.golf();
        cijfers.tik();
        // A wave that this very tick began is at its first step now.
        if (cijfers.golf().loopt()) continue;
        EXPECT_FALSE(voor.loopt());
        EXPECT_EQ(felle(), 0U);
    }
}

TEST_F(KubusCijfersTest, ACellAtThreeIsBrightStrictlyBetween2Comma2And3Comma8) {
    for (std::uint32_t as = 0; as < 3; ++as) {
        for (const auto& [positie, fel] : std::map<double, bool>{{2.1, false},
                                                                 {2.19, false},
                                                                 {2.21, true},
                                                                 {3.0, true},
                                                                 {3.79, true},
                                                                 {3.81, false},
                                                                 {3.85, false}}) {
            cijfers.zetGolf({positie, as});
            cijfers.tik();
            for (const auto& cel : cijfers.cellen())
                EXPECT_TRUE(cel.plek.at(as) != 3 || isFel(cel) == fel) << positie << " axis " << as;
        }
    }
}

TEST_F(KubusCijfersTest, ARunningWaveLightsACellAtThreeInFourTicks) {
    cijfers.zetGolf({0.0, 1});
    std::vector<double> felBij;
    while (cijfers.golf().loopt()) {
        const double positie = cijfers.golf().positie;
        cijfers.tik();
        for (const auto& cel : cijfers.cellen())
            if (cel.plek == std::array{0, 3, 0} && isFel(cel)) felBij.push_back(positie);
    }
    ASSERT_EQ(felBij.size(), 4U);
    EXPECT_NEAR(felBij.front(), 2.45, 1e-9);
    EXPECT_NEAR(felBij.back(), 3.5, 1e-9);
}

TEST_F(KubusCijfersTest, AWaveIsASheetAcrossTheOtherTwoAxes) {
    cijfers.zetGolf({3.15, 2});
    cijfers.tik();
    EXPECT_EQ(felle(), 49U);
    cijfers.zetGolf({3.5, 0});
    cijfers.tik();
    EXPECT_EQ(felle(), 98U);
}

TEST_F(KubusCijfersTest, AWaveEndsAStepBeyondTheLastLayerAfter23Ticks) {
    cijfers.zetGolf({0.0, 0});
    int tikken = 0;
    double laatste = 0.0;
    while (cijfers.golf().loopt()) {
        laatste = cijfers.golf().positie;
        cijfers.tik();
        ++tikken;
    }
    EXPECT_EQ(tikken, 23);
    EXPECT_NEAR(laatste, 7.7, 1e-9);
    EXPECT_EQ(cijfers.golf().positie, -1.0);
    // No light is left behind by the next tick.
    cijfers.tik();
    EXPECT_TRUE(cijfers.golf().loopt() || felle() == 0U);
}

TEST(KubusGolf, AWaveExactlyAtEightStillRuns) {
    KubusCijfers::Golf golf{7.65, 0};
    golf.verder();
    EXPECT_DOUBLE_EQ(golf.positie, 8.0);
    golf.verder();
    EXPECT_EQ(golf.positie, -1.0);
    golf.verder();
    EXPECT_EQ(golf.positie, -1.0);
}

TEST_F(KubusCijfersTest, AWaveBeginsOnceInFortyIdleTicksOnAnyAxis) {
    int rustig = 0, begonnen = 0;
    std::map<std::uint32_t, int> assen;
    for (int i = 0; i < 60'000; ++i) {
        if (cijfers.golf().loopt()) {
            cijfers.zetGolf({});
            continue;
        }
        ++rustig;
        cijfers.tik();
        if (!cijfers.golf().loopt()) continue;
        ++begonnen;
        ++assen[cijfers.golf().as];
        EXPECT_DOUBLE_EQ(cijfers.golf().positie, 0.35);
    }
    // Within some five standard deviations.
    EXPECT_NEAR(static_cast<double>(begonnen) / rustig, 0.025, 0.0035);
    ASSERT_EQ(assen.size(), 3U);
    for (const auto& [as, aantal] : assen)
        EXPECT_NEAR(static_cast<double>(aantal) / begonnen, 1.0 / 3.0, 0.07) << as;
}

TEST_F(KubusCijfersTest, ATickThatPicksTheSameCellTwiceLeavesItAsItWas) {
    // The same lots, to know what was picked.
    platform::RandomSource lot(1);
    for (int i = 0; i < 343; ++i)
        (void)lot.coin();
    int dubbel = 0;
    for (int tik = 0; tik < 200; ++tik) {
        std::map<std::uint32_t, int> keer;
        for (int i = 0; i < 12; ++i)
            ++keer[lot.below(343)];
        cijfers.zetGolf({});
        if (lot.unit() < 0.025) (void)lot.below(3);
        std::vector<bool> voor;
        for (const auto& cel : cijfers.cellen())
            voor.push_back(cel.een);
        cijfers.tik();
        for (std::uint32_t i = 0; i < 343; ++i) {
            const int aantal = keer.count(i) > 0 ? keer[i] : 0;
            ASSERT_EQ(cijfers.cellen()[i].een, voor[i] != (aantal % 2 == 1)) << tik;
            dubbel += aantal == 2 ? 1 : 0;
        }
    }
    EXPECT_GT(dubbel, 5);
}

// --- the world ---

class KubusTest : public steun::WereldOpstelling {
  protected:
    std::unique_ptr<DrieWereld> wereld = maak(DrieSoort::kubus);
    NodePtr kubus = wereld->scene()->root().find("kubus");

    [[nodiscard]] std::vector<platform::GeometryPtr> stand() const {
        std::vector<platform::GeometryPtr> vlakken;
        for (const NodePtr& kind : kubus->children())
            vlakken.push_back(kind->geometry());
        return vlakken;
    }
};

TEST_F(KubusTest, HasItsDigitsAndOneFrame) {
    EXPECT_EQ(kubus->parent(), &wereld->scene()->root());
    EXPECT_EQ(kubus->children().size(), 344U);
}

TEST_F(KubusTest, TheFrameHas12EdgesBetween8Corners) {
    const auto& rand = *kubus->children().back()->geometry();
    EXPECT_EQ(rand.mesh()->primitive(), platform::Primitive::Lines);
    EXPECT_EQ(rand.mesh()->primitiveCount(), 12U);
    EXPECT_EQ(rand.material()->colour(), Thema::middel());
    const auto& einden = rand.mesh()->data().positions;
    ASSERT_EQ(einden.size(), 24U);
    const auto hoek = [](int nummer) {
        constexpr float c = 1.47F;
        const std::array<glm::vec2, 4> rondom{{{-c, -c}, {c, -c}, {c, c}, {-c, c}}};
        return glm::vec3(rondom[static_cast<std::size_t>(nummer % 4)], nummer < 4 ? -c : c);
    };
    const std::pair<int, int> randen[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                                          {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_EQ(einden[2 * i], hoek(randen[i].first)) << i;
        EXPECT_EQ(einden[2 * i + 1], hoek(randen[i].second)) << i;
    }
}

TEST_F(KubusTest, StartsTiltedAndTumblesOnceIn24Seconds) {
    const glm::dquat begin = platform::fromEuler({0.45, 0.65, 0.1});
    EXPECT_EQ(kubus->eulerAngles(), glm::dvec3(0.45, 0.65, 0.1));
    wereld->scene()->advance(6.0);
    EXPECT_TURN_NEAR(kubus->orientation(), begin * platform::turn(0.5 * M_PI, {0.4, 1.0, 0.2}),
                     1e-9);
    wereld->scene()->advance(24.0);
    EXPECT_TURN_NEAR(kubus->orientation(), begin, 1e-9);
    wereld->scene()->advance(30.0);
    EXPECT_TURN_NEAR(kubus->orientation(), begin * platform::turn(0.5 * M_PI, {0.4, 1.0, 0.2}),
                     1e-9);
}

TEST_F(KubusTest, TicksEvery80Milliseconds) {
    auto vorige = stand();
    wereld->scene()->advance(0.0799);
    EXPECT_EQ(stand(), vorige);
    for (int i = 1; i <= 25; ++i) {
        wereld->scene()->advance(0.08 * i + 0.001);
        EXPECT_NE(stand(), vorige) << i;
        vorige = stand();
        wereld->scene()->advance(0.08 * i + 0.079);
        EXPECT_EQ(stand(), vorige) << i;
    }
}

TEST_F(KubusTest, ALateFrameShowsAllTheTicksBeforeIt) {
    const auto ander = maak(DrieSoort::kubus);
    for (int i = 1; i <= 600; ++i)
        wereld->scene()->advance(i / 60.0);
    ander->scene()->advance(10.0);
    const auto soorten = [](const std::vector<platform::GeometryPtr>& vlakken) {
        QByteArray beelden;
        for (const auto& vlak : vlakken)
            beelden += vlak->material()->picture().pixelColor(28, 6).name().toLatin1() +
                       vlak->material()->picture().pixelColor(6, 38).name().toLatin1();
        return beelden;
    };
    const NodePtr andere = ander->scene()->root().find("kubus");
    std::vector<platform::GeometryPtr> vlakken;
    for (const NodePtr& kind : andere->children())
        vlakken.push_back(kind->geometry());
    vlakken.pop_back();
    auto eigen = stand();
    eigen.pop_back();
    EXPECT_EQ(soorten(eigen), soorten(vlakken));
}

TEST_F(KubusTest, IsDrawnInFiveCallsAtMost) {
    wereld->scene()->advance(6.0);
    platform::DrawList lijst;
    platform::extract(*wereld->scene(), 1.6, lijst);
    EXPECT_LE(lijst.batches.size(), 5U);
    EXPECT_EQ(lijst.instances.size(), 344U);
}

}  // namespace
