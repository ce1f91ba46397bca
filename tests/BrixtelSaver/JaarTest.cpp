// SPDX-License-Identifier: MIT
// A year unattended, on a clock that runs 10,000 times as fast as the frames: memory,
// descriptors and threads stay what they were, and all that moves is where it would be at
// the start.
//
// A few days unless BRIXTEL_JAAR=N in the environment says N days; the mode that changes
// scenes gets a hundredth of them, since it builds a scene a minute.
#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <set>

#include <glm/geometric.hpp>

#include "platform/view/Frame.h"
#include "platform/view/FrameBuilder.h"
#include "tests/BrixtelSaver/SaverOpstelling.h"
#include "tests/support/Processen.h"

namespace {

using brixtel::alleKeuzes;
using brixtel::MatrixRegen;
using steun::SaverKeuze;

constexpr double kDag = 86'400.0;           // seconds
constexpr double kBeeld = 10'000.0 / 60.0;  // seconds of the clock between two frames
constexpr double kRonde = 360.0;            // seconds: every scene's motion repeats within it

double dagen() {
    bool is = false;
    const int gevraagd = qEnvironmentVariableIntValue("BRIXTEL_JAAR", &is);
    return is ? gevraagd : 1;
}

struct Gebruik {
    std::size_t geheugen = 0;  // allocated and not freed
    std::size_t bijDeKern = 0;
    long descriptors = 0, draden = 0;

    static Gebruik nu() {
        return {steun::geheugenInGebruik(), steun::geheugenBijDeKern(), steun::descriptors(),
                steun::draden()};
    }
    // The most memory; the fewest descriptors and threads, since a measurement of the
    // connections has some for a moment.
    void neem(const Gebruik& ander) {
        geheugen = std::max(geheugen, ander.geheugen);
        bijDeKern = std::max(bijDeKern, ander.bijDeKern);
        descriptors = std::min(descriptors, ander.descriptors);
        draden = std::min(draden, ander.draden);
    }
};

class Jaar : public steun::SaverView {
  protected:
    platform::Frame beeld_;

    void SetUp() override { beeld_.grid = {.scale = 1.0, .size = {300, 200}}; }

    void teken(platform::View& view) {
        {
            platform::FrameBuilder bouwer(beeld_, klok.now());
            bouwer.add(view);
        }
        QCoreApplication::processEvents();
    }
    // The cost of this many seconds.
    Gebruik laatGaan(platform::View& view, double seconden) {
        Gebruik gebruik = Gebruik::nu();
        for (const double tot = klok.now() + seconden; klok.now() < tot;) {
            klok.advance(std::min(kBeeld, tot - klok.now()));
            teken(view);
            gebruik.neem(Gebruik::nu());
        }
        return gebruik;
    }
};

TEST_F(Jaar, MemoryDescriptorsAndThreadsStayWhatTheyWere) {
    for (const SaverKeuze keuze : alleKeuzes) {
        SCOPED_TRACE(qPrintable(ruweWaarde(keuze)));
        const bool wisselt = keuze == SaverKeuze::wisselend;
        // An hour shows every scene many times.
        const double duur = wisselt ? std::max(dagen() * kDag / 100.0, 3600.0) : dagen() * kDag;
        const auto view = gestart(keuze);
        // Every scene has been there, and every table and font read.
        laatGaan(*view, wisselt ? duur : 0.05 * duur);
        const Gebruik eerst = laatGaan(*view, wisselt ? duur : 0.05 * duur);
        const Gebruik later = laatGaan(*view, wisselt ? duur : 0.9 * duur);
        std::printf(
            "%s: %.1f dagen, %zu en %zu bytes, bij de kern %zu en %zu, %ld en %ld bestanden, "
            "%ld en %ld draden\n",
            qPrintable(ruweWaarde(keuze)), duur / kDag, eerst.geheugen, later.geheugen,
            eerst.bijDeKern, later.bijDeKern, eerst.descriptors, later.descriptors, eerst.draden,
            later.draden);
        EXPECT_LE(later.geheugen, eerst.geheugen + eerst.geheugen / 100);
        EXPECT_LE(later.bijDeKern, eerst.bijDeKern + eerst.bijDeKern / 100);
        EXPECT_TRUE(until([&] {
            return steun::descriptors() <= eerst.descriptors && steun::draden() <= eerst.draden;
        })) << "a measurement that was under way ended long ago";
        view->stopAnimation();
    }
}

// The pose of every node that the scene itself moves: the root's children.
std::vector<platform::Pose> standen(const platform::Scene& scene) {
    std::vector<platform::Pose> alle;
    for (const platform::NodePtr& node : scene.root().children())
        alle.push_back(node->shownPose(scene.time()));
    return alle;
}

// How far the wallpaper has scrolled, in repeats: a number from 0 to 1.
double verloop(const platform::Scene& scene) {
    const platform::NodePtr buis = scene.root().find("buis");
    if (!buis) return 0.0;
    const double y = buis->geometry()->material()->contentsTransform()[3].y;
    return y - std::floor(y);
}

double afstand(const platform::Pose& een, const platform::Pose& ander) {
    // An orientation and its negative are the same.
    const double gelijk = std::abs(glm::dot(een.orientation, ander.orientation));
    return glm::distance(een.position, ander.position) + glm::distance(een.scale, ander.scale) +
           std::sqrt(std::max(0.0, 1.0 - gelijk));
}

TEST_F(Jaar, WhatMovesIsWhereItWouldBeAtTheStart) {
    constexpr double kFase = 7.3;  // seconds
    for (const SaverKeuze keuze : brixtel::alleScenes) {
        if (keuze == SaverKeuze::regen) continue;
        SCOPED_TRACE(qPrintable(ruweWaarde(keuze)));
        const auto oud = gestart(keuze);
        const double begin = klok.now();
        teken(*oud);
        laatGaan(*oud, std::floor(dagen() * kDag / kRonde) * kRonde);
        // By the same steps, so that no rounding differs.
        const double rondes = std::round((klok.now() - begin) / kRonde);
        klok.advance(begin + rondes * kRonde + kFase - klok.now());
        teken(*oud);
        const auto nieuw = gestart(keuze);
        teken(*nieuw);
        klok.advance(kFase);
        teken(*nieuw);
        const auto toen = standen(*nieuw->wereld()->scene());
        // The old scene is a phase further by now.
        const auto nu = standen(*oud->wereld()->scene());
        ASSERT_EQ(nu.size(), toen.size());
        double verst = 0.0;
        for (std::size_t i = 0; i < nu.size(); ++i)
            verst = std::max(verst, afstand(nu[i], toen[i]));
        EXPECT_LT(verst, 1e-4);
        const double schuift =
            std::abs(verloop(*oud->wereld()->scene()) - verloop(*nieuw->wereld()->scene()));
        EXPECT_LT(std::min(schuift, 1.0 - schuift), 1e-4);
    }
}

using Stuk = std::shared_ptr<platform::Layer>;

// The pieces that fall, in the order of the columns: of each drop its trail, then its head.
std::vector<Stuk> vallend(const MatrixRegen& regen) {
    std::vector<Stuk> stukken;
    for (const MatrixRegen::Kolom& kolom : regen.kolommen())
        for (std::size_t i = 0; i < kolom.staart->mask()->sublayers().size(); ++i) {
            stukken.push_back(kolom.staart->mask()->sublayers()[i]);
            stukken.push_back(kolom.kop->mask()->sublayers()[i]);
        }
    return stukken;
}

double hoogteVan(const platform::Layer& stuk, double klok) {
    return stuk.shownPosition(stuk.localTime(klok)).y();
}

// Each drop has a period of its own. A fresh rain of the same lots shows the drop at the same
// phase, well before its first round ends.
TEST_F(Jaar, TheRainsDropsAreWhereTheyWouldBeAtTheStart) {
    const platform::RandomSource lot = toeval;
    const auto view = gestart(SaverKeuze::regen);
    const double begin = klok.now();
    laatGaan(*view, dagen() * kDag);
    platform::ManualClock nieuweKlok(begin);
    platform::RandomSource zelfdeLot = lot;
    const MatrixRegen nieuw({.maat = {300, 200}, .schaal = 1.0, .dichtheid = 0.7, .snelheid = 1.0},
                            nieuweKlok, zelfdeLot);
    const auto oude = vallend(*view->regen());
    const auto verse = vallend(nieuw);
    ASSERT_EQ(oude.size(), verse.size());
    ASSERT_GT(oude.size(), 40U);
    // At so many moments that a hundredth of a second in a day moves some drop by a row.
    std::set<double> hoogten;
    for (int moment = 0; moment < 60; ++moment) {
        for (std::size_t i = 0; i < oude.size(); ++i) {
            const double ronde = verse[i]->animation("val")->data().timing.duration;
            ASSERT_EQ(oude[i]->animation("val")->data().timing.duration, ronde);
            const double fase = std::fmod(klok.now() - begin, ronde);
            const double hoogte = hoogteVan(*oude[i], klok.now());
            EXPECT_EQ(hoogte, hoogteVan(*verse[i], begin + fase)) << "piece " << i;
            hoogten.insert(hoogte);
        }
        klok.advance(7.3);
        teken(*view);
    }
    EXPECT_GT(hoogten.size(), 10U) << "the drops are in different rows";
}

TEST_F(Jaar, TheComparisonSeesAScenesMotion) {
    for (const SaverKeuze keuze : brixtel::alleScenes) {
        if (keuze == SaverKeuze::regen) continue;
        const auto view = gestart(keuze);
        teken(*view);
        const auto eerst = standen(*view->wereld()->scene());
        klok.advance(0.05);
        teken(*view);
        const auto later = standen(*view->wereld()->scene());
        double verst = 0.0;
        for (std::size_t i = 0; i < eerst.size(); ++i)
            verst = std::max(verst, afstand(eerst[i], later[i]));
        EXPECT_GT(verst, 1e-3) << qPrintable(ruweWaarde(keuze));
    }
}

}  // namespace
