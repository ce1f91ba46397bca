// SPDX-License-Identifier: MIT
// The subject of each scene, in pictures of every shape.
#include <algorithm>
#include <array>
#include <cmath>

#include "tests/worlds/BolLijst.h"
#include "tests/worlds/Opstelling.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;

namespace {

constexpr std::array kSmal{9.0 / 32.0, 9.0 / 16.0, 3.0 / 4.0, 1.0};

class SchermVormTest : public steun::WereldOpstelling {
  protected:
    platform::DrawList lijst_;

    // The distance of the furthest vertex from the picture's middle, as parts of half the
    // picture, of the batches that `telt` accepts.
    template <typename Telt>
    glm::dvec2 verste(const DrieWereld& wereld, double verhouding, Telt telt) {
        platform::extract(*wereld.scene(), verhouding, lijst_);
        const glm::mat4 oog = lijst_.camera.projection * lijst_.camera.view;
        glm::dvec2 meest(0.0);
        for (const platform::DrawBatch& batch : lijst_.batches) {
            if (!telt(batch)) continue;
            for (std::uint32_t i = batch.first; i < batch.first + batch.count; ++i)
                for (const glm::vec3& punt : batch.mesh->data().positions) {
                    const glm::vec4 plek = oog * lijst_.instances[i].world * glm::vec4(punt, 1.0F);
                    meest = glm::max(meest, glm::abs(glm::dvec2(plek) / double(plek.w)));
                }
        }
        return meest;
    }
    static bool alles(const platform::DrawBatch&) { return true; }

    // The scene is whole over a full turn, in every narrow shape.
    template <typename Telt>
    void isHeel(DrieWereld& wereld, double duur, Telt telt) {
        const double begin = wereld.scene()->time();
        for (int stap = 0; stap <= 48; ++stap) {
            wereld.scene()->advance(begin + duur * stap / 48.0);
            for (const double verhouding : kSmal) {
                const glm::dvec2 meest = verste(wereld, verhouding, telt);
                ASSERT_LT(meest.x, 1.0) << verhouding << " after " << wereld.scene()->time();
                ASSERT_LT(meest.y, 1.0) << verhouding << " after " << wereld.scene()->time();
            }
        }
    }
};

TEST_F(SchermVormTest, TheWholeWordWithItsRingIsSeen) {
    isHeel(*maak(DrieSoort::logo), 18.0, alles);
}

TEST_F(SchermVormTest, TheWholeCubeIsSeenAtItsWidestTurn) {
    isHeel(*maak(DrieSoort::kubus), 24.0, alles);
}

TEST_F(SchermVormTest, TheWholeGlobeIsSeenWithItsArcsAndLabels) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    wereld->zetLijnen(steun::lijnen(24));
    // The halo's picture is dark towards its edges.
    const platform::Mesh* gloed = wereld->scene()->root().find("gloed")->geometry()->mesh().get();
    isHeel(*wereld, 60.0,
           [gloed](const platform::DrawBatch& batch) { return batch.mesh.get() != gloed; });
}

// Long names beside a crowd.
TEST_F(SchermVormTest, LongLabelsAreSeenWhole) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    wereld->zetLijnen({{{"AE", 23.4, 53.8}, {"Proef"}, 5},
                       {{"SA", 23.9, 45.1}, {"Proef"}, 4},
                       {{"QA", 25.4, 51.2}, {"Proef"}, 3},
                       {{"BH", 26.0, 50.6}, {"Proef"}, 2},
                       {{"KW", 29.3, 47.5}, {"Proef"}, 1}});
    const platform::Mesh* gloed = wereld->scene()->root().find("gloed")->geometry()->mesh().get();
    // The labels' soft ground is dark, and may end outside.
    isHeel(*wereld, 60.0, [gloed](const platform::DrawBatch& batch) {
        return batch.mesh.get() != gloed && batch.material.blend == platform::BlendMode::Additive;
    });
}

// A wide picture is whole too: the furthest part is an arc to the other side of the
// earth, over a pole.
TEST_F(SchermVormTest, NoArcLeavesThePicture) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const brixtel::Land thuis = tabel_.thuis();
    wereld->zetLijnen({{{"QX", 39.5, -98.4}, {"Proef"}, 2},
                       {{"QY", -thuis.breedte, thuis.lengte - 179.0}, {"Proef"}, 1},
                       {{"QZ", 36.2, 138.3}, {"Proef"}, 1}});
    for (int stap = 0; stap < 120; ++stap) {
        wereld->scene()->advance(0.5 * stap);
        const glm::dvec2 meest = verste(*wereld, 16.0 / 9.0, [](const auto& batch) {
            return batch.mesh->primitive() == platform::Primitive::Lines;
        });
        ASSERT_LT(meest.y, 1.0) << "after " << 0.5 * stap;
    }
}

// At 3840 x 2160, with the angle that the globe has by itself.
TEST_F(SchermVormTest, TheRimOfTheDarkBallIsRoundToAFifthOfAPixel) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    platform::extract(*wereld->scene(), 16.0 / 9.0, lijst_);
    const platform::Mesh* bal = wereld->bol()->find("binnen")->geometry()->mesh().get();
    const glm::mat4 oog = lijst_.camera.projection * lijst_.camera.view;
    std::vector<double> stralen(720, 0.0);
    for (const platform::DrawBatch& batch : lijst_.batches) {
        if (batch.mesh.get() != bal) continue;
        for (const glm::vec3& punt : batch.mesh->data().positions) {
            const glm::dvec4 plek(oog * lijst_.instances[batch.first].world *
                                  glm::vec4(punt, 1.0F));
            const glm::dvec2 pixel = glm::dvec2(1920.0, 1080.0) * glm::dvec2(plek) / plek.w;
            for (std::size_t i = 0; i < stralen.size(); ++i) {
                const double hoek = 2.0 * M_PI * double(i) / double(stralen.size());
                stralen[i] = std::max(stralen[i],
                                      glm::dot(pixel, glm::dvec2(std::cos(hoek), std::sin(hoek))));
            }
        }
    }
    const auto [minste, meeste] = std::minmax_element(stralen.begin(), stralen.end());
    EXPECT_GT(*minste, 900.0);
    EXPECT_LT(*meeste - *minste, 0.2);
}

TEST_F(SchermVormTest, TheAngleOfTheGlobeWidensSoftlyForAHighArcAndStays) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const auto zicht = [&] { return steun::cameraVan(*wereld)->camera()->fieldOfView; };
    wereld->scene()->advance(5.0);
    EXPECT_EQ(zicht(), 38.0);
    wereld->zetLijnen({{{"QX", 36.2, 138.3}, {"Proef"}, 1}});
    EXPECT_EQ(zicht(), 38.0);
    double vorige = zicht();
    for (int beeld = 1; beeld <= 240; ++beeld) {
        wereld->scene()->advance(5.0 + beeld / 60.0);
        EXPECT_GE(zicht(), vorige);
        EXPECT_LT(zicht() - vorige, 0.06);
        vorige = zicht();
    }
    EXPECT_GT(vorige, 40.0);
    wereld->zetLijnen({});
    wereld->scene()->advance(30.0);
    EXPECT_EQ(zicht(), vorige);
}

// Nearby countries need no wider view than the stated one.
TEST_F(SchermVormTest, TheAngleOfTheGlobeIsTheStatedOneForArcsThatStayInThePicture) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    wereld->zetLijnen({{{"QX", 51.1, 10.4}, {"Proef"}, 2}, {{"QY", 40.0, -3.7}, {"Proef"}, 1}});
    EXPECT_EQ(steun::cameraVan(*wereld)->camera()->fieldOfView, 38.0);
}

}  // namespace
