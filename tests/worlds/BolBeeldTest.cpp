// SPDX-License-Identifier: MIT
// The globe with its lines as it is seen.
#include "tests/support/SceneSnapshot.h"
#include "tests/worlds/BolLijst.h"
#include "tests/worlds/Opstelling.h"
#include "worlds/Bol.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::Lijn;

namespace {

class BolBeeldTest : public steun::WereldOpstelling {
  protected:
    static void SetUpTestSuite() { snapshot = platform::SceneSnapshot::create(); }
    static void TearDownTestSuite() { snapshot.reset(); }
    void SetUp() override { ASSERT_TRUE(snapshot) << "no OpenGL"; }
    void TearDown() override { EXPECT_EQ(snapshot->errors(), 0); }

    static QImage neem(DrieWereld& wereld, double na, QSizeF maat, double schaal = 1.0) {
        return wereld.plaatje(
            {.maat = maat, .na = na, .schaal = schaal},
            [](const platform::DrawList& lijst, const DrieWereld::Opname& opname) {
                return snapshot->picture(lijst, opname.maat, opname.schaal,
                                         {.samples = opname.monsters});
            });
    }
    [[nodiscard]] QImage bolMet(const std::vector<Lijn>& lijnen, double na = 0.0) {
        const auto bol = maak(DrieSoort::bol, {.eigenLijnen = true});
        bol->zetLijnen(lijnen);
        return neem(*bol, na, {960, 600});
    }

    static inline std::unique_ptr<platform::SceneSnapshot> snapshot;
};

// By how much the pictures' greens differ, over all pixels.
std::int64_t verschil(const QImage& a, const QImage& b) {
    std::int64_t som = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            som += std::abs(qGreen(a.pixel(x, y)) - qGreen(b.pixel(x, y)));
    return som;
}

// The ground of the labels lies between the grid and the arcs, so that these two kinds of
// lines are drawn apart; the labels' leaders are one draw.
TEST_F(BolBeeldTest, With24LinesItTakesFifteenDrawCallsAndOnePerLabel) {
    kaart_ = steun::noordland();
    const auto bol = maak(DrieSoort::bol, {.eigenLijnen = true});
    bol->zetLijnen(steun::lijnen(24));
    for (double na = 0.0; na < 60.0; na += 3.7) {
        neem(*bol, na, {480, 300}, na < 30.0 ? 1.0 : 2.0);
        const auto labels = static_cast<int>(steun::zichtbareLabels(*bol));
        EXPECT_GT(labels, 4);
        EXPECT_EQ(snapshot->renderer().drawCalls() - labels, 15) << "at " << na;
    }
}

TEST_F(BolBeeldTest, ALabelIsReadOverLand) {
    kaart_ = steun::noordland();
    const auto bol = maak(DrieSoort::bol, {.eigenLijnen = true});
    bol->zetLijnen({{{"NL", 20.0, 5.0}, {"Proef"}, 1}});
    const platform::Node& label = steun::label(*bol, 0);
    const QImage met = neem(*bol, 0.0, {960, 600});
    platform::DrawList lijst;
    platform::extract(*bol->scene(), 1.6, lijst);
    const glm::mat4 naar = lijst.camera.projection * lijst.camera.view;
    // The two spaces between its name and its number.
    const auto& oog = steun::cameraVan(*bol)->worldTransform();
    const glm::dvec3 midden = label.worldPosition() + glm::dvec3(oog[1]) * label.screenOffset().y;
    const double teken =
        (900.0 * label.geometry()->size().x - 16.0) / 900.0 /
        static_cast<double>(
            brixtel::BolLijnen::opschrift({{"NL", 20.0, 5.0}, {"Proef"}, 1}).size());
    const auto plek = [&](double rechts, double omhoog) {
        const glm::dvec3 p = midden + glm::dvec3(oog[0]) * rechts + glm::dvec3(oog[1]) * omhoog;
        const glm::vec4 op = naar * glm::vec4(glm::vec3(p), 1.0F);
        return QPoint(static_cast<int>(480.0F * (1.0F + op.x / op.w)),
                      static_cast<int>(300.0F * (1.0F - op.y / op.w)));
    };
    const double einde = 0.5 * label.geometry()->size().x - 8.0 / 900.0 - teken;
    const QRect tussen(plek(einde - 1.8 * teken, 0.012), plek(einde - 0.2 * teken, -0.008));
    ASSERT_GT(tussen.width(), 4);
    const auto felst = [&](const QImage& beeld) {
        int meest = 0;
        for (int y = tussen.top(); y <= tussen.bottom(); ++y)
            for (int x = tussen.left(); x <= tussen.right(); ++x)
                meest = std::max(meest, qGreen(beeld.pixel(x, y)));
        return meest;
    };
    EXPECT_LT(felst(met), 130);
    bol->lijnenNode()->children().back()->removeFromParent();
    EXPECT_GT(felst(neem(*bol, 0.0, {960, 600})), 200);
}

TEST_F(BolBeeldTest, ACountryBehindTheGlobeShowsNothing) {
    // Straight under the globe's far side; its arc goes over the rim.
    const auto bol = maak(DrieSoort::bol, {.eigenLijnen = true});
    bol->zetLijnen({{{"QX", -30.0, -174.0}, {"Proef"}, 1}});
    const QImage met = neem(*bol, 0.0, {960, 600});
    bol->lijnenNode()->children().back()->removeFromParent();
    EXPECT_EQ(verschil(met, neem(*bol, 0.0, {960, 600})), 0);
}

TEST_F(BolBeeldTest, ALabelAtTheRimIsAsBrightAsOneInTheMiddle) {
    // The light that a label adds, wherever it stands: the ball takes none of it.
    const auto licht = [this](double lengte) {
        const auto bol = maak(DrieSoort::bol, {.eigenLijnen = true});
        bol->zetLijnen({{{"QX", 10.0, lengte}, {"Proef"}, 1}});
        bol->bol()->setOpacity(1.0);
        const QImage met = neem(*bol, 0.0, {960, 600});
        bol->lijnenNode()->children().back()->removeFromParent();
        return static_cast<double>(verschil(met, neem(*bol, 0.0, {960, 600})));
    };
    // Just before it begins to go; perspective makes it smaller there.
    EXPECT_GT(licht(5.0 - 68.0), 0.55 * licht(5.0));
    EXPECT_GT(licht(5.0 + 68.0), 0.55 * licht(5.0));
}

TEST_F(BolBeeldTest, OddListsMakeSoundPictures) {
    const brixtel::Land thuis = tabel_.thuis();
    const QImage leeg = bolMet({});
    EXPECT_EQ(verschil(leeg, bolMet(steun::lijnen(0))), 0);
    EXPECT_GT(verschil(leeg, bolMet(steun::lijnen(1))), 0);
    EXPECT_EQ(verschil(bolMet(steun::lijnen(300)), bolMet([] {
                           auto eerste = steun::lijnen(300);
                           eerste.resize(24);
                           return eerste;
                       }())),
              0);
    const Lijn vreemd[] = {{{"QX", 90.0, 0.0}, {"Proef"}, 1},
                           {{"QX", -thuis.breedte, thuis.lengte - 180.0}, {"Proef"}, 1},
                           {thuis, {"Proef"}, 1},
                           {{std::string(60, 'W'), 40.0, 5.0}, {"Proef"}, 1}};
    for (const Lijn& lijn : vreemd) {
        const QImage beeld = bolMet({lijn}, 1.0);
        // The corners stay night: nothing has gone wild.
        for (const QPoint hoek : {QPoint(2, 2), QPoint(957, 2), QPoint(2, 597), QPoint(957, 597)})
            EXPECT_LT(qGreen(beeld.pixel(hoek)), 12) << lijn.land.code;
        EXPECT_GT(verschil(leeg, beeld), 0);
    }
}

// How much neighbouring pixels differ within this many pixels of the middle.
std::int64_t korrel(const QImage& beeld, int straal) {
    std::int64_t som = 0;
    const QPoint midden = beeld.rect().center();
    for (int y = -straal; y <= straal; ++y)
        for (int x = -straal; x < straal; ++x) {
            if (x * x + y * y > straal * straal) continue;
            const QPoint hier = midden + QPoint(x, y);
            som += std::abs(qGreen(beeld.pixel(hier)) - qGreen(beeld.pixel(hier + QPoint(1, 0))));
        }
    return som;
}

TEST_F(BolBeeldTest, IsAGlobeAt320By200WhoseDotsStandOut) {
    kaart_ = steun::noordland();
    const auto bol = maak(DrieSoort::bol, {.eigenLijnen = true});
    const QImage beeld = neem(*bol, 0.0, {320, 200});
    // Land and sea are the first two parts of the globe.
    const auto delen = bol->bol()->children();
    for (int i = 0; i < 2; ++i)
        delen[static_cast<std::size_t>(i)]->removeFromParent();
    const QImage zonder = neem(*bol, 0.0, {320, 200});
    EXPECT_GT(korrel(beeld, 55), 4 * korrel(zonder, 55));
    // The halo begins outside the globe, where no dot is.
    EXPECT_EQ(qGreen(beeld.pixel(4, 4)), qGreen(zonder.pixel(4, 4)));
    for (const QPoint binnen : {QPoint(160, 60), QPoint(130, 100), QPoint(190, 100)}) {
        std::int64_t stippen = 0;
        for (int y = -8; y <= 8; ++y)
            for (int x = -8; x <= 8; ++x)
                stippen += std::max(0, qGreen(beeld.pixel(binnen + QPoint(x, y))) -
                                           qGreen(zonder.pixel(binnen + QPoint(x, y))));
        EXPECT_GT(stippen, 1000) << binnen.x() << ", " << binnen.y();
    }
}

}  // namespace
