// SPDX-License-Identifier: MIT
// The labels in front of the globe, and what may come in a list of lines.
#include <cmath>

#include "drawing/Thema.h"
#include "tests/platform/scene/Near.h"
#include "tests/worlds/BolLijst.h"
#include "tests/worlds/Opstelling.h"
#include "worlds/Bol.h"

using brixtel::BolLijnen;
using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::Lijn;
using steun::label;

namespace {

constexpr double kHoogte = 36.0 / 900.0;

class BolLabelsTest : public steun::WereldOpstelling {
  protected:
    std::unique_ptr<DrieWereld> bol_ = maak(DrieSoort::bol, {.eigenLijnen = true});

    void zet(const std::vector<Lijn>& lijnen) {
        bol_->zetLijnen(lijnen);
        bol_->scene()->advance(bol_->scene()->time());
    }
    static Lijn in(double breedte, double lengte, std::int64_t aantal = 1) {
        return {{"QX", breedte, lengte}, {"Proef"}, aantal};
    }
    // The label's middle on the screen, in units as large as the scene's at the label.
    [[nodiscard]] glm::dvec2 plek(std::size_t i) const {
        const glm::dmat4 oog = steun::cameraVan(*bol_)->worldTransform();
        const glm::dvec3 naar = label(*bol_, i).worldPosition() - glm::dvec3(oog[3]);
        return glm::dvec2(glm::dot(naar, glm::dvec3(oog[0])), glm::dot(naar, glm::dvec3(oog[1]))) +
               label(*bol_, i).screenOffset();
    }
};

TEST_F(BolLabelsTest, AreSeenWholeBeforeTheGlobeAndNotAtAllBehindIt) {
    zet({in(30.0, 5.0), in(-30.0, -175.0), in(-52.13, -174.71)});
    EXPECT_EQ(label(*bol_, 0).opacity(), 1.0);
    EXPECT_EQ(label(*bol_, 1).opacity(), 0.0);
    EXPECT_EQ(label(*bol_, 2).opacity(), 0.0);
    for (std::size_t i = 0; i < 3; ++i) {
        const platform::Material& materiaal = *label(*bol_, i).geometry()->material();
        EXPECT_FALSE(materiaal.readsDepth());
        EXPECT_FALSE(materiaal.writesDepth());
        EXPECT_EQ(materiaal.blendMode(), platform::BlendMode::Additive);
        EXPECT_TRUE(materiaal.isDoubleSided());
    }
}

TEST_F(BolLabelsTest, ComeAndGoSoftlyWhileTheGlobeTurns) {
    zet({in(0.0, 5.0), in(10.0, 100.0), in(-20.0, -120.0)});
    int gezien = 0;
    int weg = 0;
    std::vector<double> vorige(3, -1.0);
    for (int beeld = 0; beeld <= 60 * 60; ++beeld) {
        bol_->scene()->advance(beeld / 60.0);
        for (std::size_t i = 0; i < 3; ++i) {
            const double nu = label(*bol_, i).opacity();
            if (vorige[i] >= 0.0) {
                EXPECT_NEAR(nu, vorige[i], 0.03);
            }
            gezien += nu == 1.0 ? 1 : 0;
            weg += nu == 0.0 ? 1 : 0;
            vorige[i] = nu;
        }
    }
    EXPECT_GT(gezien, 3 * 60 * 10);
    EXPECT_GT(weg, 3 * 60 * 10);
}

// Between the camera and the dot there is then no ground.
TEST_F(BolLabelsTest, StayInSightAsLongAsTheDotOfTheirCountryDoes) {
    zet({in(0.0, 5.0), in(40.0, 100.0), in(-30.0, -120.0)});
    const glm::dvec3 oog(steun::cameraVan(*bol_)->worldTransform()[3]);
    int gezien = 0;
    int weg = 0;
    for (int beeld = 0; beeld <= 60 * 10; ++beeld) {
        bol_->scene()->advance(beeld / 10.0);
        for (std::size_t i = 0; i < 3; ++i) {
            const glm::dvec3 stip = steun::deel(*bol_, i, 1).worldPosition();
            const glm::dvec3 straal = glm::normalize(stip - oog);
            const double naderbij = -glm::dot(oog, straal);
            const bool voor = naderbij > glm::length(stip - oog);
            const bool inZicht = voor || glm::length(oog + naderbij * straal) > 1.0;
            gezien += inZicht ? 1 : 0;
            if (inZicht) {
                EXPECT_GT(label(*bol_, i).opacity(), 0.99) << i << " at " << beeld / 10.0;
            }
            // Gone eight degrees further.
            const double hoek = std::acos(glm::dot(glm::normalize(stip), glm::normalize(oog)));
            if (hoek < platform::radians(89.0)) continue;
            EXPECT_EQ(label(*bol_, i).opacity(), 0.0) << i << " at " << beeld / 10.0;
            ++weg;
        }
    }
    EXPECT_GT(gezien, 600);
    EXPECT_GT(weg, 600);
}

TEST_F(BolLabelsTest, ALabelMovedAsideKeepsALineToItsCountry) {
    zet({in(51.1, 10.4, 9), in(50.5, 4.5, 8), in(52.1, 5.3, 7), in(49.8, 6.1, 6),
         in(46.8, 8.2, 5)});
    const glm::dmat4 oog = steun::cameraVan(*bol_)->worldTransform();
    const glm::dmat3 assen(oog);
    int draden = 0;
    for (std::size_t i = 0; i < 5; ++i) {
        const platform::Node& draad = *label(*bol_, i).children().back();
        if (draad.opacity() == 0.0) continue;
        ++draden;
        // The label is drawn parallel to the screen, aside of where it stands.
        const auto inBeeld = [&](const glm::dvec3& punt) {
            const glm::dvec3 plek(draad.localTransform() * glm::dvec4(punt, 1.0));
            return label(*bol_, i).worldPosition() +
                   assen * (plek + glm::dvec3(label(*bol_, i).screenOffset(), 0.0));
        };
        EXPECT_VEC_NEAR(inBeeld({0.0, 1.0, 0.0}), steun::deel(*bol_, i, 1).worldPosition(), 1e-9);
        // From the letters' edge.
        const glm::dvec3 begin(draad.position());
        const double rand = 0.4 * label(*bol_, i).geometry()->size().x;
        EXPECT_LE(std::abs(begin.y), 0.5 * kHoogte + 1e-9);
        EXPECT_LE(std::abs(begin.x), rand + 1e-6);
        EXPECT_TRUE(std::abs(begin.y) > 0.5 * kHoogte - 1e-9 || std::abs(begin.x) > rand - 1e-6);
    }
    EXPECT_GE(draden, 2);
}

TEST_F(BolLabelsTest, ALabelBesideItsDotHasALine) {
    zet({in(51.1, 10.4, 9), in(50.5, 4.5, 8), in(52.1, 5.3, 7), in(49.8, 6.1, 6),
         in(46.8, 8.2, 5)});
    int naast = 0;
    for (int beeld = 0; beeld < 120; ++beeld) {
        bol_->scene()->advance(beeld / 2.0);
        for (std::size_t i = 0; i < 5; ++i) {
            const double letters = 0.4 * label(*bol_, i).geometry()->size().x;
            if (std::abs(label(*bol_, i).screenOffset().x) < letters + kHoogte) continue;
            ++naast;
            EXPECT_EQ(label(*bol_, i).children().back()->opacity(), 1.0)
                << i << " after " << beeld / 2.0;
        }
    }
    EXPECT_GT(naast, 50);
}

// A country that the globe shows far above, over the pole, though it lies further south.
TEST_F(BolLabelsTest, ALabelThatIsFarFromAllOthersIsNotPushed) {
    const auto alleen = maak(DrieSoort::bol, {.eigenLijnen = true});
    alleen->zetLijnen({in(61.4, -98.3)});
    zet({in(61.4, -98.3), in(60.1, 18.6)});
    constexpr double kVrij = 4.5 * kHoogte;
    constexpr std::size_t kRondom = 6;  // the half seconds around that the labels' curve looks at
    std::vector<bool> vrij;
    std::vector<double> verschil;
    for (int beeld = 0; beeld < 120; ++beeld) {
        bol_->scene()->advance(beeld / 2.0);
        alleen->scene()->advance(beeld / 2.0);
        const bool zichtbaar = label(*bol_, 0).opacity() > 0.0 && label(*bol_, 1).opacity() > 0.0;
        vrij.push_back(zichtbaar && plek(1).y - plek(0).y > kVrij);
        verschil.push_back(label(*bol_, 0).screenOffset().y - label(*alleen, 0).screenOffset().y);
    }
    int gezien = 0;
    for (std::size_t i = kRondom; i + kRondom < vrij.size(); ++i) {
        const auto van = vrij.begin() + static_cast<std::ptrdiff_t>(i - kRondom);
        if (!std::all_of(van, van + 2 * kRondom + 1, [](bool is) { return is; })) continue;
        ++gezien;
        EXPECT_NEAR(verschil[i], 0.0, 1e-3) << "after " << static_cast<double>(i) / 2.0;
    }
    EXPECT_GT(gezien, 5);
}

TEST_F(BolLabelsTest, ALabelWithTheRoomToItselfHasNoLine) {
    zet({in(0.0, 5.0), in(20.0, 60.0)});
    for (int beeld = 0; beeld < 120; ++beeld) {
        bol_->scene()->advance(beeld / 10.0);
        EXPECT_EQ(label(*bol_, 0).children().back()->opacity(), 0.0);
    }
}

TEST_F(BolLabelsTest, StandAboveTheirDot) {
    zet({in(52.0, 5.0)});
    const glm::dmat4 oog = steun::cameraVan(*bol_)->worldTransform();
    const auto diepte = [&](std::size_t welk) {
        return -glm::dot(steun::deel(*bol_, 0, welk).worldPosition() - glm::dvec3(oog[3]),
                         glm::dvec3(oog[2]));
    };
    const glm::dvec3 stip = steun::deel(*bol_, 0, 1).worldPosition() - glm::dvec3(oog[3]);
    const double stipHoogte = glm::dot(stip, glm::dvec3(oog[1])) * diepte(3) / diepte(1);
    EXPECT_GE(plek(0).y - stipHoogte, 0.9 * kHoogte);
}

TEST_F(BolLabelsTest, OfNeighboursDoNotOverlap) {
    zet({in(51.1, 10.4, 9), in(50.5, 4.5, 8), in(52.1, 5.3, 7), in(49.8, 6.1, 6),
         in(46.8, 8.2, 5)});
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_GT(label(*bol_, i).opacity(), 0.9) << i;
        for (std::size_t j = 0; j < i; ++j) {
            const bool naast =
                std::abs(plek(i).x - plek(j).x) > 0.95 * label(*bol_, i).geometry()->size().x;
            EXPECT_TRUE(naast || std::abs(plek(i).y - plek(j).y) > 0.85 * kHoogte)
                << i << " and " << j;
        }
    }
    // The labels' nodes stand where they stood.
    EXPECT_VEC_NEAR(label(*bol_, 1).position(), DrieWereld::punt(50.5, 4.5, {.r = 1.09}), 1e-12);
}

TEST_F(BolLabelsTest, WithoutRoomTheBusiestIsTheBrightest) {
    std::vector<Lijn> alle;
    for (int i = 0; i < 24; ++i)
        alle.push_back(in(52.0, 5.0, 24 - i));
    zet(alle);
    EXPECT_EQ(label(*bol_, 0).opacity(), 1.0);
    double minste = 1.0;
    for (std::size_t i = 1; i < 24; ++i)
        minste = std::min(minste, label(*bol_, i).opacity());
    EXPECT_NEAR(minste, 0.37, 0.05);
}

TEST_F(BolLabelsTest, NeverJump) {
    std::vector<Lijn> alle;
    for (int i = 0; i < 24; ++i)
        alle.push_back(in(70.0 - 1.7 * (i % 12), -20.0 + 9.0 * (i % 7), 24 - i));
    zet(alle);
    std::vector<glm::dvec2> vorige;
    for (int beeld = 0; beeld <= 20 * 60; ++beeld) {
        bol_->scene()->advance(beeld / 60.0);
        std::vector<glm::dvec2> nu;
        for (std::size_t i = 0; i < 24; ++i)
            nu.push_back(plek(i));
        for (std::size_t i = 0; i < vorige.size(); ++i) {
            if (label(*bol_, i).opacity() <= 0.05) continue;
            EXPECT_LT(glm::length(nu[i] - vorige[i]), 0.5 * kHoogte) << i << " at " << beeld;
        }
        vorige = nu;
    }
}

TEST_F(BolLabelsTest, LieBesideTheHomeMarkersDot) {
    const brixtel::Land thuis = tabel_.thuis();
    zet({in(51.1, 10.4, 9), in(50.5, 4.5, 8), in(thuis.breedte, thuis.lengte, 7), in(53.1, -8.2, 6),
         in(46.6, 2.4, 5)});
    const glm::dmat4 oog = steun::cameraVan(*bol_)->worldTransform();
    const auto hoog = [&](const glm::dvec3& plaats) {
        const glm::dvec3 naar = plaats - glm::dvec3(oog[3]);
        return -glm::dot(naar, glm::dvec3(oog[1])) / glm::dot(naar, glm::dvec3(oog[2]));
    };
    const auto naast = [&](const glm::dvec3& plaats) {
        const glm::dvec3 naar = plaats - glm::dvec3(oog[3]);
        return -glm::dot(naar, glm::dvec3(oog[0])) / glm::dot(naar, glm::dvec3(oog[2]));
    };
    const glm::dvec3 thuisPlek = bol_->bol()->find("thuis")->worldPosition();
    const double stip = hoog(thuisPlek);
    for (std::size_t i = 0; i < 5; ++i) {
        const double diepte =
            -glm::dot(label(*bol_, i).worldPosition() - glm::dvec3(oog[3]), glm::dvec3(oog[2]));
        const double breed = 0.4 * label(*bol_, i).geometry()->size().x;
        EXPECT_TRUE(std::abs(plek(i).y - stip * diepte) > 0.5 * kHoogte + 0.9 * 0.022 ||
                    std::abs(plek(i).x - naast(thuisPlek) * diepte) > breed + 0.9 * 0.022)
            << i;
    }
}

TEST_F(BolLabelsTest, StayWithinThePictureAllRound) {
    zet({in(61.9, 16.7, 6), in(64.6, 12.7, 5), in(64.3, 26.1, 4), in(65.0, -18.6, 3),
         in(72.0, -40.0, 2), in(78.0, 20.0, 1)});
    for (int beeld = 0; beeld <= 60 * 10; ++beeld) {
        bol_->scene()->advance(beeld / 10.0);
        const glm::dmat4 oog = steun::cameraVan(*bol_)->worldTransform();
        for (std::size_t i = 0; i < 6; ++i) {
            const double diepte =
                -glm::dot(label(*bol_, i).worldPosition() - glm::dvec3(oog[3]), glm::dvec3(oog[2]));
            EXPECT_LT(
                (plek(i).y + 0.5 * kHoogte) / diepte,
                std::tan(0.5 * platform::radians(steun::cameraVan(*bol_)->camera()->fieldOfView)))
                << i << " at " << beeld / 10.0;
        }
    }
}

TEST_F(BolLabelsTest, HaveNightBehindThemAndTheHomeRingBehindThat) {
    zet({in(51.1, 10.4)});
    const platform::Node& letters = label(*bol_, 0);
    ASSERT_EQ(letters.children().size(), 2U);
    const platform::Node& nacht = *letters.children().front();
    const platform::Material& materiaal = *nacht.geometry()->material();
    EXPECT_FALSE(materiaal.isOpaque());
    EXPECT_FALSE(materiaal.readsDepth());
    EXPECT_FALSE(materiaal.writesDepth());
    EXPECT_EQ(materiaal.blendMode(), platform::BlendMode::Alpha);
    const QImage beeld = materiaal.picture();
    EXPECT_EQ(qAlpha(beeld.pixel(0, 0)), 0);
    EXPECT_GT(qAlpha(beeld.pixel(beeld.width() / 2, beeld.height() / 2)), 230);
    EXPECT_EQ(beeld.pixelColor(beeld.width() / 2, beeld.height() / 2).green(), 0);
    EXPECT_GE(nacht.scale().x, letters.geometry()->size().x);
    EXPECT_GE(nacht.scale().y, letters.geometry()->size().y);
    EXPECT_GT(letters.renderingOrder(), nacht.renderingOrder());
    EXPECT_GT(nacht.renderingOrder(), bol_->bol()->find("ring")->renderingOrder());
    // The dark plate takes nothing away from arcs and lights.
    EXPECT_LT(nacht.renderingOrder(), steun::deel(*bol_, 0, 0).renderingOrder());
    EXPECT_LT(nacht.renderingOrder(), steun::deel(*bol_, 0, 2).renderingOrder());
}

TEST_F(BolLabelsTest, FindTheirPlacesAlsoWhenTheWorldIsGone) {
    zet({in(30.0, 5.0)});
    const auto scene = bol_->scene();
    const platform::NodePtr opschrift = bol_->lijnenNode()->children().back();
    EXPECT_EQ(opschrift->opacity(), 1.0);
    bol_.reset();
    scene->advance(30.0);
    EXPECT_EQ(opschrift->opacity(), 0.0);
}

// --- pictures of labels ---

TEST_F(BolLabelsTest, OnlyLabelsWhoseTextIsNewAreDrawn) {
    BolLijnen lijnen({.thuis = {52.0, 5.0}, .meeste = 24});
    platform::Node node;
    auto alle = steun::lijnen(24);
    lijnen.teken(alle, 0.0, node);
    EXPECT_EQ(lijnen.getekend(), 24);
    lijnen.teken(alle, 0.0, node);
    EXPECT_EQ(lijnen.getekend(), 24);
    alle[3].aantal += 100;
    alle[9].aantal += 100;
    lijnen.teken(alle, 0.0, node);
    EXPECT_EQ(lijnen.getekend(), 26);
    // Another order is no new text.
    std::swap(alle[1], alle[2]);
    lijnen.teken(alle, 0.0, node);
    EXPECT_EQ(lijnen.getekend(), 26);
}

// --- lists that are out of the ordinary ---

TEST_F(BolLabelsTest, NoneOneAnd300Lines) {
    for (const int aantal : {0, 1, 300}) {
        zet(steun::lijnen(aantal));
        EXPECT_EQ(steun::aantalLijnen(*bol_), static_cast<std::size_t>(std::min(aantal, 24)));
    }
}

TEST_F(BolLabelsTest, ThePolesTheAntipodeAndHomeItselfHaveAFiniteArcAndLabel) {
    const brixtel::Land thuis = tabel_.thuis();
    zet({in(90.0, 0.0), in(-90.0, 0.0), in(-thuis.breedte, thuis.lengte - 180.0),
         in(thuis.breedte, thuis.lengte)});
    const std::size_t stukken[] = {40, 40, 40, 1};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& boog = steun::deel(*bol_, i, 0).geometry()->mesh()->data();
        EXPECT_EQ(boog.positions.size(), 2 * stukken[i]);
        for (const glm::vec3& punt : boog.positions) {
            EXPECT_GT(glm::length(punt), 0.99F) << i;
            EXPECT_LT(glm::length(punt), 1.3F) << i;
        }
        EXPECT_TRUE(std::isfinite(label(*bol_, i).opacity()));
        EXPECT_TRUE(std::isfinite(label(*bol_, i).screenOffset().y));
    }
}

TEST_F(BolLabelsTest, TheSameCountryTwiceIsTwoLinesWithLabelsBesideOneAnother) {
    zet({in(51.1, 10.4, 3), in(51.1, 10.4, 3)});
    EXPECT_EQ(steun::aantalLijnen(*bol_), 2U);
    EXPECT_EQ(label(*bol_, 0).geometry(), label(*bol_, 1).geometry());
    EXPECT_GT(std::abs(plek(0).y - plek(1).y), 0.85 * kHoogte);
}

TEST_F(BolLabelsTest, StrangeNumbersAreWrittenPlainlyAndKeepTheArcsInRange) {
    constexpr std::int64_t kVeel = std::int64_t{1} << 62;
    for (const std::int64_t eerste : {std::int64_t{0}, std::int64_t{-5}, kVeel}) {
        zet({in(51.1, 10.4, eerste), in(40.0, 30.0, kVeel), in(20.0, 0.0, -kVeel)});
        for (std::size_t i = 0; i < 3; ++i) {
            const float alfa = steun::deel(*bol_, i, 0).geometry()->material()->colour().alphaF();
            EXPECT_GE(alfa, 0.0F);
            EXPECT_LE(alfa, 1.0F);
        }
    }
    EXPECT_TRUE(BolLijnen::opschrift(in(0, 0, kVeel)).endsWith(u"  4611686018427387904"));
    EXPECT_TRUE(BolLijnen::opschrift(in(0, 0, -3)).endsWith(u"  -3"));
}

TEST_F(BolLabelsTest, NamesInAnyScriptAreOneLine) {
    for (const char* naam :
         {"\xF0\x9F\x87\xB3\xF0\x9F\x87\xB1 land", "\xD7\x99\xD7\xA9\xD7\xA8\xD7\x90\xD7\x9C",
          "twee\nregels", "\xFF\xFE", ""}) {
        zet({});
        zet({{{naam, 30.0, 5.0}, {"Proef"}, 1}});
        const auto maat = label(*bol_, 0).geometry()->size();
        EXPECT_NEAR(maat.y, kHoogte, 1e-6);
        EXPECT_GT(maat.x, 16.0 / 900.0);
        EXPECT_LT(maat.x, 0.5);
        EXPECT_EQ(label(*bol_, 0).opacity(), 1.0);
    }
}

TEST_F(BolLabelsTest, AListThatChangesEveryFrameIsAlwaysTheLastOne) {
    for (int beeld = 0; beeld < 90; ++beeld) {
        auto alle = steun::lijnen(beeld % 30);
        for (Lijn& lijn : alle)
            lijn.aantal += beeld;
        zet(alle);
        bol_->scene()->advance(beeld / 60.0);
        EXPECT_EQ(steun::aantalLijnen(*bol_), std::min<std::size_t>(alle.size(), 24U));
    }
}

TEST_F(BolLabelsTest, ANameOf60CharactersIsOneLongLabel) {
    zet({{{std::string(60, 'W'), 30.0, 5.0}, {"Proef"}, 1}});
    const auto maat = label(*bol_, 0).geometry()->size();
    EXPECT_NEAR(maat.y, kHoogte, 1e-6);
    EXPECT_GT(maat.x, 0.8);
    EXPECT_FALSE(label(*bol_, 0).geometry()->material()->drawsNothing());
}

// The same words drawn where they belong.
TEST_F(BolLabelsTest, SayTheirCountryAndNumberFromEightTenOn) {
    zet({{{"US", 40.0, -100.0}, {"Proef"}, 12}});
    const QImage beeld = label(*bol_, 0).geometry()->material()->picture();
    const QFont font = brixtel::Thema::font(26.0, {.vet = true});
    const QString tekst = QStringLiteral("VERENIGDE STATEN  12");
    const auto teken = [&](brixtel::Tekenvlak& vlak) {
        brixtel::Thema::tekst(
            tekst, {.font = font, .kleur = brixtel::Thema::groen(), .op = {8.0, 10.0}}, vlak);
    };
    const auto verwacht =
        brixtel::Thema::beeld({brixtel::Thema::breedte(tekst, {.font = font}) + 16.0, 36.0},
                              {.schaal = 2.0, .teken = teken});
    ASSERT_TRUE(verwacht);
    EXPECT_EQ(beeld, verwacht->convertToFormat(beeld.format()));
}

}  // namespace
