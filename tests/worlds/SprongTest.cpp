// SPDX-License-Identifier: MIT
// Half a minute of each scene at sixty frames a second: nothing moves further between two
// frames than its speed allows: neither a corner of a shape, nor the end of a line, nor a dot.
// Places are those of the draw lists.
#include <algorithm>
#include <functional>
#include <utility>
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
    platform::Primitive soort;
    float dekking;
    // The corners of a shape's box, or the ends of lines, or dots.
    std::vector<glm::vec3> punten;

    [[nodiscard]] glm::dvec3 midden() const {
        glm::dvec3 som(0.0);
        for (const glm::vec3& punt : punten)
            som += glm::dvec3(punt);
        return som / static_cast<double>(punten.size());
    }
};

// An object this faint may appear and vanish.
constexpr float kVaag = 0.05F;

// The points by which a shape's place, size and turn are known.
std::vector<glm::vec3> puntenVan(const platform::Mesh& vorm) {
    if (vorm.primitive() != platform::Primitive::Triangles) return vorm.data().positions;
    const platform::Bounds& doos = vorm.bounds();
    std::vector<glm::vec3> hoeken;
    for (int k = 0; k < 8; ++k)
        hoeken.emplace_back((k & 1) != 0 ? doos.low.x : doos.high.x,
                            (k & 2) != 0 ? doos.low.y : doos.high.y,
                            (k & 4) != 0 ? doos.low.z : doos.high.z);
    return hoeken;
}

class SprongTest : public steun::WereldOpstelling {
  protected:
    platform::DrawList lijst_;

    std::vector<Ding> dingen(DrieWereld& wereld, double tijd) {
        wereld.scene()->advance(tijd);
        platform::extract(*wereld.scene(), 16.0 / 9.0, lijst_);
        std::vector<Ding> alle;
        for (const platform::DrawBatch& batch : lijst_.batches)
            for (std::uint32_t i = batch.first; i < batch.first + batch.count; ++i) {
                Ding ding{batch.mesh.get(), batch.mesh->primitive(), lijst_.instances[i].colour.a,
                          puntenVan(*batch.mesh)};
                for (glm::vec3& punt : ding.punten)
                    punt = glm::vec3(lijst_.instances[i].world * glm::vec4(punt, 1.0F));
                alle.push_back(std::move(ding));
            }
        return alle;
    }

    // Whether the one may be the other a frame on.
    [[nodiscard]] bool kanZijn(const Ding& toen, const Ding& nu, double ver) const {
        if (toen.soort != nu.soort || toen.punten.size() != nu.punten.size()) return false;
        if (!omgezet && toen.vorm != nu.vorm) return false;
        return std::equal(
            toen.punten.begin(), toen.punten.end(), nu.punten.begin(),
            [ver](const glm::vec3& a, const glm::vec3& b) { return glm::distance(a, b) <= ver; });
    }

    // Each thing has one that it was a frame before, or is at a place where things begin; and
    // each has one that it becomes.
    void springtNiet(DrieWereld& wereld) {
        const auto staatIn = [this](const Ding& ding, const std::vector<Ding>& alle, bool vooruit) {
            return std::any_of(alle.begin(), alle.end(), [&](const Ding& ander) {
                return vooruit ? kanZijn(ding, ander, verste(ding))
                               : kanZijn(ander, ding, verste(ding));
            });
        };
        std::vector<Ding> vorige = dingen(wereld, 6.0);
        std::size_t meeste = 0;
        for (int beeld = 1; beeld <= kBeelden; ++beeld) {
            const double tijd = 6.0 + kBeeld * beeld;
            voorBeeld(beeld);
            std::vector<Ding> nu = dingen(wereld, tijd);
            for (const Ding& ding : nu) {
                const glm::dvec3 plek = ding.midden();
                ASSERT_TRUE(ding.dekking < kVaag || staatIn(ding, vorige, false) || begint(ding))
                    << "at " << tijd << " a thing of " << ding.punten.size() << " came to "
                    << plek.x << ", " << plek.y << ", " << plek.z;
            }
            for (const Ding& ding : vorige) {
                const glm::dvec3 plek = ding.midden();
                ASSERT_TRUE(ding.dekking < kVaag || staatIn(ding, nu, true) || eindigt(ding))
                    << "at " << tijd << " a thing of " << ding.punten.size() << " left " << plek.x
                    << ", " << plek.y << ", " << plek.z;
            }
            meeste = std::max(meeste, nu.size());
            vorige = std::move(nu);
        }
        EXPECT_GT(meeste, 40U);
    }

    static bool nooit(const Ding&) { return false; }

    // A step before each frame, given its number.
    std::function<void(int)> voorBeeld = [](int) {};
    // Whether a shape may become another in its place.
    bool omgezet = false;
    // The farthest that any point of a thing may move in a frame.
    std::function<double(const Ding&)> verste;
    std::function<bool(const Ding&)> begint = nooit;
    std::function<bool(const Ding&)> eindigt = nooit;
};

// The way in one frame at this distance from the axis of a turn in so many seconds.
double draai(double straal, double omwenteling) {
    return 1.1 * kBeeld * straal * 2.0 * M_PI / omwenteling;
}

// A corner of a digit turns at 2.3 units from the middle, a round in 24 seconds.
TEST_F(SprongTest, TheDigitsOfTheCube) {
    omgezet = true;
    verste = [](const Ding&) { return draai(2.3, 24.0); };
    springtNiet(*maak(DrieSoort::kubus));
}

constexpr double kRing = 7.0;
// The word's bob: a quarter of a unit a second.
constexpr double kDein = 0.25 * kBeeld;

// The ring turns a round in 18 seconds. The word sways faster: 1.1 radians in four seconds,
// eased, are as fast as a round in 13.
TEST_F(SprongTest, TheWordAndTheRingOfTheLogo) {
    verste = [](const Ding& ding) {
        double straal = 0.0;
        for (const glm::vec3& punt : ding.punten)
            straal = std::max(straal, std::hypot(double{punt.x}, double{punt.z}));
        return straal < kRing ? draai(straal, 13.0) + kDein : draai(straal, 18.0);
    };
    springtNiet(*maak(DrieSoort::logo));
}

// A particle flies at up to 10.5 units a second. It is born far away in the fog, and fades
// before the camera.
TEST_F(SprongTest, TheDigitsInTheTunnel) {
    verste = [](const Ding&) { return 1.1 * kBeeld * 10.5; };
    begint = [](const Ding& ding) { return ding.midden().z < -29.7; };
    eindigt = [](const Ding& ding) { return ding.midden().z > -0.7; };
    springtNiet(*maak(DrieSoort::tunnel));
}

// The globe turns in a minute, with its dots, grid and arcs, which rise to 1.285. The fastest
// light goes round half the earth in 1.2 seconds, and then begins anew: at home, from its
// country. A label makes room for others, at up to four of its heights a second. The ring about
// home grows from 0.6 to 1.8 in 1.4 seconds, and begins anew. The countries are published
// every three seconds, each time with others first; their shapes are then made anew.
TEST_F(SprongTest, EverythingOfTheGlobe) {
    const auto wereld = maak(DrieSoort::bol, {.eigenLijnen = true});
    auto lijnen = steun::lijnen(24);
    // Numbers of one width, since the letters of a label move when its width changes.
    for (brixtel::Lijn& lijn : lijnen)
        lijn.aantal += 10;
    wereld->zetLijnen(lijnen);
    const auto vormVan = [&](std::size_t welk) {
        return steun::deel(*wereld, 0, welk).geometry()->mesh().get();
    };
    const platform::Mesh* const licht = vormVan(2);
    const platform::Mesh* const ring = wereld->bol()->find("ring")->geometry()->mesh().get();
    // The frame before a list has the shapes of the list before.
    std::vector<const platform::Mesh*> opschriften, vorige;
    const auto neemOpschriften = [&] {
        vorige = std::exchange(opschriften, {});
        for (std::size_t i = 0; i < 24; ++i) {
            opschriften.push_back(steun::label(*wereld, i).geometry()->mesh().get());
            for (const auto& onderdeel : steun::label(*wereld, i).children())
                opschriften.push_back(onderdeel->geometry()->mesh().get());
        }
    };
    neemOpschriften();
    omgezet = true;
    constexpr int kLijstBeelden = 180;
    voorBeeld = [&](int beeld) {
        if (beeld % kLijstBeelden != 0) return;
        for (std::size_t i = 1; i < lijnen.size(); i += 2) {
            std::swap(lijnen[i - 1], lijnen[i]);
            std::swap(lijnen[i - 1].aantal, lijnen[i].aantal);
        }
        wereld->zetLijnen(lijnen);
        ASSERT_EQ(licht, vormVan(2));
        neemOpschriften();
    };
    verste = [&](const Ding& ding) {
        if (ding.vorm == licht) return 1.1 * kBeeld * M_PI * 1.285 / 1.2;
        if (ding.vorm == ring) return draai(1.3, 60.0) + kBeeld * 1.2 * 0.1 / 1.4;
        const auto heeft = [&](const auto& vormen) {
            return std::find(vormen.begin(), vormen.end(), ding.vorm) != vormen.end();
        };
        const bool ruimt = heeft(opschriften) || heeft(vorige);
        return draai(1.3, 60.0) + (ruimt ? kBeeld * 4.0 * 36.0 / 900.0 : 0.0);
    };
    const brixtel::Land thuis = tabel_.thuis();
    const auto bij = [&](const glm::dvec3& plek, double breedte, double lengte) {
        const glm::dvec3 land(wereld->bol()->worldTransform() *
                              glm::dvec4(DrieWereld::punt(breedte, lengte, {.r = 1.005}), 1.0));
        return glm::distance(plek, land) < 0.12;
    };
    begint = [&](const Ding& ding) {
        return (ding.vorm == licht || ding.vorm == ring) &&
               bij(ding.midden(), thuis.breedte, thuis.lengte);
    };
    eindigt = [&](const Ding& ding) {
        if (ding.vorm == ring) return true;
        return ding.vorm == licht &&
               std::any_of(lijnen.begin(), lijnen.end(), [&](const brixtel::Lijn& lijn) {
                   return bij(ding.midden(), lijn.land.breedte, lijn.land.lengte);
               });
    };
    springtNiet(*wereld);
}

}  // namespace
