// SPDX-License-Identifier: MIT
// Half a minute of each scene at sixty frames a second: nothing moves further between two
// frames than its speed allows. Places are those of the draw lists.
#include <algorithm>
#include <vector>

#include "tests/worlds/BolLijst.h"
#include "tests/worlds/Opstelling.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;

namespace {

constexpr double kBeeld = 1.0 / 60.0;
constexpr int kBeelden = 30 * 60;

struct Ding {
    const platform::Mesh* vorm;
    glm::vec3 plek;
    float dekking;
};

// An object this faint may appear and vanish.
constexpr float kVaag = 0.05F;

class SprongTest : public steun::WereldOpstelling {
  protected:
    platform::DrawList lijst_;

    // The places of all that is triangles.
    std::vector<Ding> dingen(DrieWereld& wereld, double tijd) {
        wereld.scene()->advance(tijd);
        platform::extract(*wereld.scene(), 16.0 / 9.0, lijst_);
        std::vector<Ding> alle;
        for (const platform::DrawBatch& batch : lijst_.batches)
            for (std::uint32_t i = batch.first; i < batch.first + batch.count; ++i)
                if (batch.mesh->primitive() == platform::Primitive::Triangles)
                    alle.push_back({batch.mesh.get(),
                                    glm::vec3(lijst_.instances[i].world *
                                              glm::vec4(batch.mesh->bounds().centre(), 1.0F)),
                                    lijst_.instances[i].colour.a});
        return alle;
    }

    // Each thing has one that it was a frame before, of the same shape unless `omgezet`, or
    // is at a place where things begin.
    template <typename Begint>
    void springtNiet(DrieWereld& wereld, double verste, bool omgezet, Begint begint) {
        std::vector<Ding> vorige = dingen(wereld, 6.0);
        std::size_t meeste = 0;
        for (int beeld = 1; beeld <= kBeelden; ++beeld) {
            const double tijd = 6.0 + kBeeld * beeld;
            std::vector<Ding> nu = dingen(wereld, tijd);
            for (const Ding& ding : nu) {
                const bool was = std::any_of(vorige.begin(), vorige.end(), [&](const Ding& toen) {
                    return (omgezet || toen.vorm == ding.vorm) &&
                           glm::distance(toen.plek, ding.plek) <= verste;
                });
                ASSERT_TRUE(was || ding.dekking < kVaag || begint(glm::dvec3(ding.plek)))
                    << "at " << tijd << " a thing came to " << ding.plek.x << ", " << ding.plek.y
                    << ", " << ding.plek.z;
            }
            // Nothing goes unseen either.
            for (const Ding& toen : vorige) {
                const bool is = std::any_of(nu.begin(), nu.end(), [&](const Ding& ding) {
                    return (omgezet || toen.vorm == ding.vorm) &&
                           glm::distance(toen.plek, ding.plek) <= verste;
                });
                ASSERT_TRUE(is || toen.dekking < kVaag || eindigt(glm::dvec3(toen.plek)))
                    << "at " << tijd << " a thing left " << toen.plek.x << ", " << toen.plek.y
                    << ", " << toen.plek.z;
            }
            meeste = std::max(meeste, nu.size());
            vorige = std::move(nu);
        }
        EXPECT_GT(meeste, 40U);
    }
    std::function<bool(const glm::dvec3&)> eindigt = [](const glm::dvec3&) { return false; };
    static bool nergens(const glm::dvec3&) { return false; }
};

// A corner turns at 2.2 units from the middle, a round in 24 seconds.
TEST_F(SprongTest, TheDigitsOfTheCube) {
    springtNiet(*maak(DrieSoort::kubus), 1.1 * kBeeld * 2.2 * 2.0 * M_PI / 24.0, true, nergens);
}

// The ring turns at 7.2 units, a round in 18 seconds.
TEST_F(SprongTest, TheWordAndTheRingOfTheLogo) {
    springtNiet(*maak(DrieSoort::logo), 1.1 * kBeeld * 7.2 * 2.0 * M_PI / 18.0, false, nergens);
}

// A particle flies at up to 10.5 units a second. It is born far away in the fog, and fades
// before the camera.
TEST_F(SprongTest, TheDigitsInTheTunnel) {
    eindigt = [](const glm::dvec3& plek) { return plek.z > -0.7; };
    springtNiet(*maak(DrieSoort::tunnel), 1.1 * kBeeld * 10.5, false,
                [](const glm::dvec3& plek) { return plek.z < -29.7; });
}

// The fastest light goes round half the earth in 1.2 seconds, and then begins anew: at home,
// from its country.
TEST_F(SprongTest, TheLightsDotsAndLabelsOfTheGlobe) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    const auto lijnen = steun::lijnen(24);
    wereld->zetLijnen(lijnen);
    const brixtel::Land thuis = tabel_.thuis();
    const auto bij = [&](const glm::dvec3& plek, double breedte, double lengte) {
        const glm::dvec3 land(wereld->bol()->worldTransform() *
                              glm::dvec4(DrieWereld::punt(breedte, lengte, {.r = 1.005}), 1.0));
        return glm::distance(plek, land) < 0.12;
    };
    eindigt = [&](const glm::dvec3& plek) {
        return std::any_of(lijnen.begin(), lijnen.end(), [&](const brixtel::Lijn& lijn) {
            return bij(plek, lijn.land.breedte, lijn.land.lengte);
        });
    };
    springtNiet(*wereld, 1.1 * kBeeld * M_PI * 1.285 / 1.2, false,
                [&](const glm::dvec3& plek) { return bij(plek, thuis.breedte, thuis.lengte); });
}

}  // namespace
