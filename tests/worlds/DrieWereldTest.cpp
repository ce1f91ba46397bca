// SPDX-License-Identifier: MIT
#include "worlds/DrieWereld.h"

#include <QRegularExpression>
#include <QUuid>

#include "tests/platform/scene/Near.h"
#include "tests/worlds/Opstelling.h"

using brixtel::alleSoorten;
using brixtel::DrieSoort;
using brixtel::DrieWereld;
using platform::Camera;
using platform::Fog;
using platform::NodePtr;
using steun::cameraVan;

namespace {

class DrieWereldTest : public steun::WereldOpstelling {};

struct Oog {
    DrieSoort soort;
    double zicht, bloom;
    glm::dvec3 plaats;
    double mistBegin, mistEinde;
    double breedte = 0.0;
};
const std::vector<Oog> kOgen{
    {DrieSoort::bol, 38.0, 1.4, {0.0, 0.35, 3.3}, 0.0, 0.0},
    {DrieSoort::kubus, 40.0, 1.4, {0.0, 0.0, 6.0}, 4.6, 8.2},
    {DrieSoort::tunnel, 70.0, 1.2, {0.0, 0.0, 0.0}, 3.0, 34.0},
    {DrieSoort::logo, 42.0, 0.9, {0.0, 2.2, 15.0}, 12.0, 40.0, 0.565},
};

TEST_F(DrieWereldTest, EveryKindHasItsCamera) {
    for (const Oog& oog : kOgen) {
        for (const bool groot : {true, false}) {
            const auto wereld = maak(oog.soort, {.groot = groot});
            const NodePtr node = cameraVan(*wereld);
            ASSERT_TRUE(node);
            EXPECT_EQ(*node->camera(), (Camera{.fieldOfView = oog.zicht,
                                               .subjectWidth = oog.breedte,
                                               .zNear = 0.05,
                                               .zFar = 100.0,
                                               .hdr = true,
                                               .bloomIntensity = oog.bloom,
                                               .bloomThreshold = 0.35,
                                               .bloomBlurRadius = groot ? 14.0 : 8.0,
                                               .exposureAdaptation = false}));
            EXPECT_EQ(node->position(), oog.plaats);
            EXPECT_EQ(wereld->scene()->pointOfView(), node.get());
        }
    }
}

TEST_F(DrieWereldTest, CubeAndTunnelLookStraightAhead) {
    for (const DrieSoort soort : {DrieSoort::kubus, DrieSoort::tunnel})
        EXPECT_TURN_NEAR(cameraVan(*maak(soort))->orientation(), glm::dquat(1, 0, 0, 0), 1e-12);
}

TEST_F(DrieWereldTest, LogoAndGlobeAreLookedAtInTheirMiddle) {
    for (const DrieSoort soort : {DrieSoort::logo, DrieSoort::bol}) {
        const auto wereld = maak(soort);
        const NodePtr node = cameraVan(*wereld);
        const glm::dvec3 blik = node->orientation() * glm::dvec3(0.0, 0.0, -1.0);
        EXPECT_VEC_NEAR(blik, -glm::normalize(node->position()), 1e-12);
        // Upright.
        EXPECT_NEAR((node->orientation() * glm::dvec3(1.0, 0.0, 0.0)).y, 0.0, 1e-12);
    }
}

TEST_F(DrieWereldTest, EveryKindHasItsBlackFog) {
    for (const Oog& oog : kOgen) {
        const auto wereld = maak(oog.soort);
        const Fog& mist = wereld->scene()->fog();
        EXPECT_EQ(mist.start, oog.mistBegin);
        EXPECT_EQ(mist.end, oog.mistEinde);
        EXPECT_EQ(mist.isActive(), oog.soort != DrieSoort::bol);
        EXPECT_TRUE(!mist.isActive() || mist.colour == QColor(Qt::black));
    }
}

TEST_F(DrieWereldTest, TheBackgroundIsOpaqueBlack) {
    for (const DrieSoort soort : alleSoorten)
        EXPECT_EQ(maak(soort)->scene()->background(), QColor(Qt::black));
}

TEST_F(DrieWereldTest, KeepsWhatItWasMadeWith) {
    const auto wereld = maak(DrieSoort::bol, {.groot = false, .rustig = true, .eigenLijnen = true});
    EXPECT_EQ(wereld->soort(), DrieSoort::bol);
    EXPECT_FALSE(wereld->groot());
    EXPECT_TRUE(wereld->rustig());
    EXPECT_TRUE(wereld->eigenLijnen());
}

// --- views ---

TEST_F(DrieWereldTest, ViewOfALargeWorldHas60FramesAndFourSamples) {
    const auto wereld = maak(DrieSoort::kubus, {.groot = true});
    const auto view = wereld->maakView({10, 20, 300, 200});
    EXPECT_EQ(view->frame(), QRectF(10, 20, 300, 200));
    EXPECT_EQ(view->scene(), wereld->scene());
    EXPECT_EQ(view->backgroundColor(), QColor(Qt::black));
    EXPECT_EQ(view->sampleCount(), 4);
    EXPECT_EQ(view->preferredFramesPerSecond(), 60);
    EXPECT_TRUE(view->isPlaying());
    EXPECT_TRUE(view->loops());
    EXPECT_FALSE(view->allowsCameraControl());
}

TEST_F(DrieWereldTest, ViewOfASmallWorldHas30FramesAndTwoSamples) {
    const auto view = maak(DrieSoort::logo, {.groot = false})->maakView({0, 0, 64, 40});
    EXPECT_EQ(view->preferredFramesPerSecond(), 30);
    EXPECT_EQ(view->sampleCount(), 2);
}

TEST_F(DrieWereldTest, EveryViewIsANewOneThatTheWorldDoesNotKeep) {
    const auto wereld = maak(DrieSoort::kubus);
    const auto een = wereld->maakView({0, 0, 64, 40});
    const auto twee = wereld->maakView({0, 0, 64, 40});
    EXPECT_NE(een, twee);
    EXPECT_EQ(een.use_count(), 1);
}

TEST_F(DrieWereldTest, ASceneOutlivesItsWorldInAView) {
    auto wereld = maak(DrieSoort::kubus);
    const auto view = wereld->maakView({0, 0, 64, 40});
    wereld.reset();
    klok_.advance(1.0);
    platform::SceneFrame beeld;
    view->fill(beeld, {});
    EXPECT_DOUBLE_EQ(view->scene()->time(), 1.0);
    EXPECT_EQ(beeld.list.instances.size(), 344U);
}

// --- the watcher ---

TEST_F(DrieWereldTest, TheKeyIsTheSameEachTimeAndAnotherForEachWorld) {
    const auto een = maak(DrieSoort::bol);
    const auto twee = maak(DrieSoort::bol);
    const std::string sleutel = een->wachtSleutel();
    EXPECT_EQ(een->wachtSleutel(), sleutel);
    EXPECT_NE(twee->wachtSleutel(), sleutel);
    const QRegularExpression vorm(QStringLiteral(
        "^bol-[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
    for (const auto& wereld : {een.get(), twee.get()})
        EXPECT_TRUE(vorm.match(QString::fromStdString(wereld->wachtSleutel())).hasMatch())
            << wereld->wachtSleutel();
}

TEST_F(DrieWereldTest, ActiveRegistersNothingForOtherKinds) {
    for (const DrieSoort soort : {DrieSoort::kubus, DrieSoort::tunnel, DrieSoort::logo}) {
        const auto wereld = maak(soort);
        wereld->actief(true);
        EXPECT_EQ(wacht_.tussentijd(), 0.0);
    }
}

TEST_F(DrieWereldTest, ActiveRegistersNothingForAGlobeWithLinesOfItsOwn) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    EXPECT_EQ(wacht_.tussentijd(), 0.0);
    wereld->actief(true);
    EXPECT_EQ(wacht_.tussentijd(), 0.0);
}

TEST_F(DrieWereldTest, ANormalGlobeRegistersWith3Seconds) {
    const auto wereld = maak(DrieSoort::bol);
    wereld->actief(true);
    EXPECT_EQ(wacht_.tussentijd(), 3.0);
}

TEST_F(DrieWereldTest, ACalmGlobeRegistersWith30Seconds) {
    const auto wereld = maak(DrieSoort::bol, {.rustig = true});
    wereld->actief(true);
    EXPECT_EQ(wacht_.tussentijd(), 30.0);
}

TEST_F(DrieWereldTest, AHiddenGlobeEndsItsRegistration) {
    const auto wereld = maak(DrieSoort::bol);
    wereld->actief(false);
    EXPECT_EQ(wacht_.tussentijd(), 0.0);
    wereld->actief(true);
    EXPECT_EQ(wacht_.tussentijd(), 3.0);
}

TEST_F(DrieWereldTest, ADroppedGlobeEndsItsRegistrationAlone) {
    auto wereld = maak(DrieSoort::bol);
    const auto ander = maak(DrieSoort::bol, {.rustig = true});
    EXPECT_EQ(wacht_.tussentijd(), 3.0);
    wereld.reset();
    EXPECT_EQ(wacht_.tussentijd(), 30.0);
}

TEST_F(DrieWereldTest, ADroppedWorldLeavesTheRegistrationsOfOthers) {
    wacht_.gebruik("ander", true, 7.0);
    maak(DrieSoort::kubus).reset();
    maak(DrieSoort::bol, {.eigenLijnen = true}).reset();
    EXPECT_EQ(wacht_.tussentijd(), 7.0);
}

TEST_F(DrieWereldTest, ActivePausesNothing) {
    const auto wereld = maak(DrieSoort::tunnel);
    const auto view = wereld->maakView({0, 0, 64, 40});
    wereld->actief(false);
    EXPECT_TRUE(view->isPlaying());
}

TEST_F(DrieWereldTest, LinesMeanNothingToOtherKinds) {
    const auto wereld = maak(DrieSoort::logo);
    const std::size_t kinderen = wereld->scene()->root().children().size();
    wereld->zetLijnen({{{"NL", 52.0, 5.0}, {"Proef"}, 1}});
    EXPECT_EQ(wereld->scene()->root().children().size(), kinderen);
    EXPECT_FALSE(wereld->lijnenNode());
    EXPECT_FALSE(wereld->bol());
}

// --- still pictures ---

struct Neem {
    double tijd;
    DrieWereld::Opname opname;
    double aspect;
};

TEST_F(DrieWereldTest, AStillIsTakenAfterThreeSmallWarmUps) {
    const auto wereld = maak(DrieSoort::kubus);
    std::vector<Neem> opnamen;
    const QImage beeld = wereld->plaatje(
        {.maat = {300.0, 200.0}, .na = 6.0, .schaal = 2.0},
        [&](const platform::DrawList& lijst, const DrieWereld::Opname& opname) {
            opnamen.push_back({lijst.sceneTime, opname, lijst.aspect});
            return QImage(static_cast<int>(opnamen.size()), 1, QImage::Format_RGB32);
        });
    EXPECT_EQ(beeld.width(), 4);
    ASSERT_EQ(opnamen.size(), 4U);
    const double tijden[] = {0.0, 2.0, 4.0, 6.0};
    for (std::size_t i = 0; i < 4; ++i) {
        const bool laatste = i == 3;
        EXPECT_DOUBLE_EQ(opnamen[i].tijd, tijden[i]);
        EXPECT_EQ(opnamen[i].opname.maat, laatste ? QSizeF(300, 200) : QSizeF(64, 40));
        EXPECT_EQ(opnamen[i].opname.schaal, laatste ? 2.0 : 1.0);
        EXPECT_EQ(opnamen[i].opname.monsters, 4);
        EXPECT_DOUBLE_EQ(opnamen[i].aspect, laatste ? 1.5 : 1.6);
    }
}

// The moving part of the draw list at a time.
struct Stand {
    std::vector<platform::DrawInstance> instanties;
    std::vector<glm::mat4> vervormingen;
    explicit Stand(const platform::Scene& scene) {
        platform::DrawList lijst;
        platform::extract(scene, 1.6, lijst);
        instanties = lijst.instances;
        for (const auto& groep : lijst.batches)
            vervormingen.push_back(groep.material.contentsTransform);
    }
    [[nodiscard]] double verschil(const Stand& ander) const {
        if (instanties.size() != ander.instanties.size() ||
            vervormingen.size() != ander.vervormingen.size())
            return 1e9;
        double meeste = 0.0;
        const auto tel = [&](const glm::mat4& a, const glm::mat4& b) {
            for (int i = 0; i < 4; ++i)
                for (int j = 0; j < 4; ++j)
                    meeste = std::max(meeste, std::abs(static_cast<double>(a[i][j] - b[i][j])));
        };
        for (std::size_t i = 0; i < instanties.size(); ++i)
            tel(instanties[i].world, ander.instanties[i].world);
        for (std::size_t i = 0; i < vervormingen.size(); ++i)
            tel(vervormingen[i], ander.vervormingen[i]);
        return meeste;
    }
};

TEST_F(DrieWereldTest, AStillIsTheRunningSceneAtThatTime) {
    for (const DrieSoort soort : alleSoorten) {
        const auto stil = maak(soort);
        (void)stil->plaatje({.maat = {64.0, 40.0}, .na = 6.0},
                            [](const auto&, const auto&) { return QImage(); });
        const auto lopend = maak(soort);
        const auto view = lopend->maakView({0, 0, 64, 40});
        platform::SceneFrame beeld;
        for (int i = 0; i < 360; ++i) {
            klok_.advance(1.0 / 60.0);
            view->fill(beeld, {});
        }
        lopend->scene()->advance(6.0);
        EXPECT_LT(Stand(*stil->scene()).verschil(Stand(*lopend->scene())), 1e-5)
            << qPrintable(ruweWaarde(soort));
    }
}

TEST_F(DrieWereldTest, TheSameSeedGivesTheSameWorldAndAnotherSeedAnother) {
    for (const DrieSoort soort : {DrieSoort::kubus, DrieSoort::tunnel, DrieSoort::logo}) {
        const auto opname = [&](std::uint64_t zaad) {
            const auto wereld = maak(soort, {}, zaad);
            wereld->scene()->advance(3.0);
            platform::DrawList lijst;
            platform::extract(*wereld->scene(), 1.6, lijst);
            std::vector<std::uint32_t> tal;
            for (const auto& groep : lijst.batches)
                tal.push_back(groep.count);
            return std::pair(Stand(*wereld->scene()), tal);
        };
        const auto een = opname(5), weer = opname(5), ander = opname(6);
        EXPECT_EQ(een.first.verschil(weer.first), 0.0);
        EXPECT_EQ(een.second, weer.second);
        EXPECT_TRUE(een.second != ander.second || een.first.verschil(ander.first) > 1e-3)
            << qPrintable(ruweWaarde(soort));
    }
}

TEST_F(DrieWereldTest, WhatOthersDrawMeanwhileChangesNothing) {
    platform::RandomSource toeval(5);
    DrieWereld wereld(DrieSoort::kubus, {}, {.klok = klok_, .toeval = toeval});
    const auto alleen = maak(DrieSoort::kubus, {}, 5);
    for (int i = 1; i <= 50; ++i) {
        (void)toeval.bits();
        wereld.scene()->advance(0.08 * i);
    }
    alleen->scene()->advance(4.0);
    EXPECT_LT(Stand(*wereld.scene()).verschil(Stand(*alleen->scene())), 1e-5);
}

TEST_F(DrieWereldTest, AYearInOneStepKeepsEverythingInItsPlace) {
    constexpr double kJaar = 365.25 * 86'400.0;
    for (const DrieSoort soort : alleSoorten) {
        const auto wereld = maak(soort);
        wereld->scene()->advance(kJaar);
        const Stand toen(*wereld->scene());
        ASSERT_FALSE(toen.instanties.empty());
        for (const auto& instantie : toen.instanties)
            for (int i = 0; i < 4; ++i)
                for (int j = 0; j < 4; ++j)
                    ASSERT_LT(std::abs(instantie.world[i][j]), 80.0F);
        for (const glm::mat4& vervorming : toen.vervormingen)
            ASSERT_LT(glm::length(vervorming[3]), 3.0F);
        // Still moving, and smoothly.
        wereld->scene()->advance(kJaar + 1.0 / 60.0);
        const double stap = Stand(*wereld->scene()).verschil(toen);
        EXPECT_GT(stap, 0.0) << qPrintable(ruweWaarde(soort));
        const bool springt = soort == DrieSoort::kubus || soort == DrieSoort::tunnel;
        EXPECT_TRUE(springt || stap < 0.3) << stap;
    }
}

}  // namespace
