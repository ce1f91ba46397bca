// SPDX-License-Identifier: MIT
// The labels of the globe from one list of lines to the next.
#include <cmath>

#include "tests/worlds/BolLijst.h"
#include "tests/worlds/Opstelling.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::Lijn;

namespace {

constexpr double kHoogte = 36.0 / 900.0;
constexpr double kBeeld = 1.0 / 60.0;
// The fastest that a label may move beside its country, in its own heights a second: less
// than the width of a thumb at arm's length, on a large screen.
constexpr double kKalm = 4.0;

class BolLijstenTest : public steun::WereldOpstelling {
  protected:
    std::unique_ptr<DrieWereld> bol_ = maak(DrieSoort::bol, {.eigenLijnen = true});
    double tijd_ = 0.0;

    void verder(double seconden) { bol_->scene()->advance(tijd_ += seconden); }
    static Lijn in(const char* code, double breedte, double lengte, std::int64_t aantal) {
        return {{code, breedte, lengte}, {"Proef"}, aantal};
    }
    static std::vector<Lijn> europa() {
        return {in("DE", 51.1, 10.4, 9), in("FR", 46.6, 2.5, 8), in("GB", 54.0, -2.5, 7),
                in("ES", 40.4, -3.6, 6), in("US", 39.5, -98.4, 5)};
    }
    static std::vector<Lijn> met(std::vector<Lijn> lijnen, const Lijn& erbij) {
        lijnen.push_back(erbij);
        return lijnen;
    }
    static std::vector<Lijn> metBelgie() { return met(europa(), in("BE", 50.6, 4.6, 4)); }
    // A list that has been seen for half a second.
    void begint(const std::vector<Lijn>& lijnen) {
        bol_->zetLijnen(lijnen);
        verder(0.5);
    }

    struct Gezien {
        double opzij;
        double sterkte;
    };
    // How far each country's label stands aside, in heights, and its strength.
    [[nodiscard]] std::map<std::string, Gezien> gezien(const std::vector<Lijn>& lijnen) const {
        std::map<std::string, Gezien> alle;
        for (std::size_t i = 0; i < lijnen.size(); ++i)
            alle[lijnen[i].land.code] = {steun::label(*bol_, i).screenOffset().y / kHoogte,
                                         steun::label(*bol_, i).opacity()};
        return alle;
    }
    // Shows the list, and looks for six seconds. No label of both lists leaps or hurries, and
    // a label that is new begins with nothing.
    void wisseltKalm(const std::vector<Lijn>& van, const std::vector<Lijn>& naar) {
        auto toen = gezien(van);
        bol_->zetLijnen(naar);
        for (const auto& [code, nu] : gezien(naar)) {
            if (!toen.contains(code)) {
                EXPECT_EQ(nu.sterkte, 0.0) << code;
                continue;
            }
            EXPECT_NEAR(nu.opzij, toen.at(code).opzij, 1e-9) << code;
            EXPECT_NEAR(nu.sterkte, toen.at(code).sterkte, 1e-9) << code;
        }
        toen = gezien(naar);
        for (int beeld = 0; beeld < 6 * 60; ++beeld) {
            verder(kBeeld);
            for (const auto& [code, nu] : gezien(naar)) {
                EXPECT_LT(std::abs(nu.opzij - toen.at(code).opzij), kKalm * kBeeld) << code;
                EXPECT_LT(std::abs(nu.sterkte - toen.at(code).sterkte), 0.03) << code;
                toen.at(code) = nu;
            }
        }
    }
};

TEST_F(BolLijstenTest, ALabelGlidesFromItsPlaceWhenACountryComesOrGoes) {
    begint(europa());
    wisseltKalm(europa(), metBelgie());
    wisseltKalm(metBelgie(), europa());
}

TEST_F(BolLijstenTest, AlsoWhereManyComeAtOnce) {
    const auto weinig = europa();
    std::vector<Lijn> veel;
    for (const brixtel::Land& land : std::initializer_list<brixtel::Land>{{"BE", 50.6, 4.6},
                                                                          {"LU", 49.8, 6.1},
                                                                          {"CH", 46.8, 8.2},
                                                                          {"AT", 47.6, 14.1},
                                                                          {"CZ", 49.8, 15.3},
                                                                          {"PL", 52.1, 19.4},
                                                                          {"DK", 56.0, 9.5},
                                                                          {"IE", 53.1, -8.2}})
        veel.push_back({land, {"Proef"}, 20});
    veel.insert(veel.end(), weinig.begin(), weinig.end());
    begint(weinig);
    wisseltKalm(weinig, veel);
    wisseltKalm(veel, weinig);
}

// The glide ends where the label would stand had the list been there from the start.
TEST_F(BolLijstenTest, AGlideEndsClearOfTheOthers) {
    begint(europa());
    wisseltKalm(europa(), metBelgie());
    const glm::dmat4 oog = steun::cameraVan(*bol_)->worldTransform();
    const auto plek = [&](std::size_t i) {
        const glm::dvec3 naar = steun::label(*bol_, i).worldPosition() - glm::dvec3(oog[3]);
        return glm::dvec2(glm::dot(naar, glm::dvec3(oog[0])), glm::dot(naar, glm::dvec3(oog[1]))) +
               steun::label(*bol_, i).screenOffset();
    };
    for (std::size_t i = 0; i < 4; ++i) {
        const bool naast =
            std::abs(plek(i).x - plek(5).x) > 0.5 * (steun::label(*bol_, i).geometry()->size().x +
                                                     steun::label(*bol_, 5).geometry()->size().x);
        EXPECT_TRUE(naast || std::abs(plek(i).y - plek(5).y) > 0.85 * kHoogte) << i;
    }
}

TEST_F(BolLijstenTest, ANewLabelComesUpToTheStrengthThatItHasInAFirstList) {
    const auto zonder = europa();
    const auto mee = met(zonder, in("NZ", -41.0, -20.0, 4));
    bol_->zetLijnen(zonder);
    verder(0.5);
    // Two lists between two frames.
    bol_->zetLijnen(mee);
    bol_->zetLijnen(mee);
    verder(kBeeld);
    EXPECT_LT(steun::label(*bol_, 5).opacity(), 0.03);
    const auto ander = maak(DrieSoort::bol, {.eigenLijnen = true});
    ander->zetLijnen(mee);
    for (int beeld = 0; beeld < 6 * 60; ++beeld)
        verder(kBeeld);
    ander->scene()->advance(0.5);
    EXPECT_GT(steun::label(*ander, 5).opacity(), 0.9);
    ander->scene()->advance(tijd_);
    EXPECT_NEAR(steun::label(*bol_, 5).opacity(), steun::label(*ander, 5).opacity(), 5e-3);
    EXPECT_GT(steun::label(*bol_, 5).opacity(), 0.9);
}

// The list comes every three seconds, mostly with other numbers and in another order.
TEST_F(BolLijstenTest, ALabelWithNoNewNeighbourStaysWhereItIs) {
    auto lijnen = europa();
    bol_->zetLijnen(lijnen);
    const auto ander = maak(DrieSoort::bol, {.eigenLijnen = true});
    ander->zetLijnen(lijnen);
    for (int keer = 0; keer < 5; ++keer) {
        verder(3.0);
        ander->scene()->advance(tijd_);
        std::rotate(lijnen.begin(), lijnen.begin() + 1, lijnen.end());
        // Far from Europe.
        auto mee = keer % 2 == 0 ? met(lijnen, in("NZ", -41.0, 174.0, 3)) : lijnen;
        bol_->zetLijnen(mee);
        const auto hier = gezien(mee);
        for (std::size_t i = 0; i < 5; ++i) {
            const auto& daar = steun::label(*ander, i);
            EXPECT_NEAR(hier.at(europa()[i].land.code).opzij, daar.screenOffset().y / kHoogte, 1e-9)
                << i << " at " << tijd_;
        }
    }
}

TEST_F(BolLijstenTest, ANewLabelMakesWayForOneThatWasThere) {
    // Two countries in one place, in either order of their coming.
    const Lijn belgie = in("BE", 30.0, 30.0, 4);
    const Lijn duitsland = in("DE", 30.1, 30.0, 9);
    const auto opzij = [&](const Lijn& eerst, const Lijn& later) {
        const auto bol = maak(DrieSoort::bol, {.eigenLijnen = true});
        bol->zetLijnen({eerst});
        const double alleen = steun::label(*bol, 0).screenOffset().y;
        bol->zetLijnen({eerst, later});
        bol->scene()->advance(30.0);
        bol->scene()->advance(60.0);
        return std::abs(steun::label(*bol, 0).screenOffset().y - alleen) / kHoogte;
    };
    const auto samen = maak(DrieSoort::bol, {.eigenLijnen = true});
    samen->zetLijnen({duitsland});
    const double alleen = steun::label(*samen, 0).screenOffset().y;
    samen->zetLijnen({});
    samen->zetLijnen({duitsland, belgie});
    const double geduwd = std::abs(steun::label(*samen, 0).screenOffset().y - alleen) / kHoogte;
    EXPECT_GT(geduwd, 0.2);
    EXPECT_LT(opzij(duitsland, belgie), 0.5 * geduwd);
    EXPECT_LT(opzij(belgie, duitsland), 0.5 * geduwd);
}

TEST_F(BolLijstenTest, TheSameListAgainHoldsNoGlideUp) {
    const auto mee = metBelgie();
    const auto ander = maak(DrieSoort::bol, {.eigenLijnen = true});
    for (auto* wereld : {bol_.get(), ander.get()}) {
        wereld->zetLijnen(europa());
        wereld->scene()->advance(0.5);
        wereld->zetLijnen(mee);
    }
    for (int keer = 1; keer <= 4; ++keer) {
        tijd_ = 0.5 + 0.3 * keer;
        bol_->scene()->advance(tijd_);
        ander->scene()->advance(tijd_);
        bol_->zetLijnen(mee);
        for (std::size_t i = 0; i < mee.size(); ++i)
            EXPECT_NEAR(steun::label(*bol_, i).screenOffset().y,
                        steun::label(*ander, i).screenOffset().y, 1e-9);
    }
}

}  // namespace
