// SPDX-License-Identifier: MIT
// The worlds as they are seen.
#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/support/Pictures.h"
#include "tests/support/SceneSnapshot.h"
#include "tests/worlds/Opstelling.h"

using brixtel::alleSoorten;
using brixtel::DrieSoort;
using brixtel::DrieWereld;
using platform::SceneSnapshot;

namespace {

class PlaatjeTest : public steun::WereldOpstelling {
  protected:
    // One for all, as its shaders take the longest.
    static void SetUpTestSuite() { snapshot = SceneSnapshot::create(); }
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

    static inline std::unique_ptr<SceneSnapshot> snapshot;
};

// The brightest green in a rectangle.
int felste(const QImage& beeld, const QRect& vak) {
    int meeste = 0;
    for (int y = vak.top(); y <= vak.bottom(); ++y)
        for (int x = vak.left(); x <= vak.right(); ++x)
            meeste = std::max(meeste, qGreen(beeld.pixel(x, y)));
    return meeste;
}

// The brightest green of a column of the rectangle, that three quarters of the columns
// do not exceed: what hides a few columns does not count.
int felsteKolommen(const QImage& beeld, const QRect& vak) {
    std::vector<int> kolommen;
    for (int x = vak.left(); x <= vak.right(); ++x)
        kolommen.push_back(felste(beeld, {x, vak.top(), 1, vak.height()}));
    const auto plaats = kolommen.begin() + static_cast<std::ptrdiff_t>(kolommen.size() * 3 / 4);
    std::nth_element(kolommen.begin(), plaats, kolommen.end());
    return *plaats;
}

double gemiddeld(const QImage& beeld) {
    double som = 0.0;
    for (int y = 0; y < beeld.height(); ++y)
        for (int x = 0; x < beeld.width(); ++x)
            som += qGreen(beeld.pixel(x, y));
    return som / (beeld.width() * beeld.height());
}

TEST_F(PlaatjeTest, TheWorldTakesItItself) {
    const QImage beeld =
        maak(DrieSoort::kubus)->plaatje({.maat = {160.0, 90.0}, .na = 6.0, .schaal = 2.0});
    EXPECT_EQ(beeld.size(), QSize(320, 180));
    EXPECT_GT(felste(beeld, beeld.rect()), 100);
}

TEST_F(PlaatjeTest, DrawsInFewCalls) {
    const std::pair<DrieSoort, int> hoogstens[] = {
        {DrieSoort::kubus, 16}, {DrieSoort::tunnel, 14}, {DrieSoort::logo, 18}};
    for (const auto& [soort, aantal] : hoogstens) {
        neem(*maak(soort), 6.0, {160, 90});
        EXPECT_LE(snapshot->renderer().drawCalls(), aantal) << qPrintable(ruweWaarde(soort));
    }
}

TEST_F(PlaatjeTest, EveryWorldIsGreenOnBlack) {
    for (const DrieSoort soort : alleSoorten) {
        const auto wereld = maak(soort, {.eigenLijnen = true});
        const QImage beeld = neem(*wereld, 6.0, {320, 180});
        ASSERT_EQ(beeld.size(), QSize(320, 180));
        EXPECT_GT(felste(beeld, beeld.rect()), 150) << qPrintable(ruweWaarde(soort));
        EXPECT_GT(gemiddeld(beeld), 1.0) << qPrintable(ruweWaarde(soort));
        EXPECT_LT(gemiddeld(beeld), 80.0) << qPrintable(ruweWaarde(soort));
        for (int y = 0; y < beeld.height(); ++y)
            for (int x = 0; x < beeld.width(); ++x) {
                const QRgb punt = beeld.pixel(x, y);
                ASSERT_EQ(qAlpha(punt), 255);
                // A level more may be the dither's.
                ASSERT_LE(qRed(punt), qGreen(punt) + 2) << x << "," << y;
                ASSERT_LE(qBlue(punt), qGreen(punt) + 2) << x << "," << y;
            }
    }
}

TEST_F(PlaatjeTest, AStillIsTheRunningSceneAtThatTimePixelForPixel) {
    for (const DrieSoort soort : alleSoorten) {
        const QImage stil = neem(*maak(soort, {.eigenLijnen = true}), 3.0, {160, 90});
        const auto lopend = maak(soort, {.eigenLijnen = true});
        for (int i = 0; i < 180; ++i)
            lopend->scene()->advance(i / 60.0);
        const QImage gelopen = neem(*lopend, 3.0, {160, 90});
        EXPECT_TRUE(
            platform::test::agree(gelopen, stil, "stil-" + ruweWaarde(soort).toStdString(), {}));
    }
}

TEST_F(PlaatjeTest, TheSameAtOnceAndAtTwiceThePixels) {
    for (const DrieSoort soort : {DrieSoort::kubus, DrieSoort::tunnel, DrieSoort::logo}) {
        const QImage een = neem(*maak(soort), 6.0, {480, 270});
        const QImage twee = neem(*maak(soort), 6.0, {480, 270}, 2.0);
        ASSERT_EQ(twee.size(), 2 * een.size());
        // Blurred alike, so that edges count for what they light and not for where
        // their samples fall.
        const auto grof = [](const QImage& beeld) {
            return beeld.convertToFormat(QImage::Format_RGB32)
                .scaled(60, 34, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .convertToFormat(QImage::Format_ARGB32_Premultiplied);
        };
        EXPECT_TRUE(platform::test::agree(grof(twee), grof(een),
                                          "dichtheid-" + ruweWaarde(soort).toStdString(),
                                          {.largest = 24, .mean = 1.5}));
    }
}

TEST_F(PlaatjeTest, TheTunnelDissolvesIntoBlackFarAway) {
    const QImage beeld = neem(*maak(DrieSoort::tunnel), 6.0, {320, 180});
    // The very middle is the tube's far end.
    EXPECT_LT(felste(beeld, {157, 87, 6, 6}), 90);
    EXPECT_GT(felste(beeld, {0, 0, 60, 180}), 150);
}

TEST_F(PlaatjeTest, TheLogosMirrorImageIsDimmerThanTheLogo) {
    const QImage beeld = neem(*maak(DrieSoort::logo), 6.0, {320, 180});
    const int woord = felste(beeld, {80, 60, 160, 36});
    // A digit of the ring may pass before it.
    const int spiegel = felsteKolommen(beeld, {80, 118, 160, 40});
    EXPECT_GT(woord, 240);
    // In linear light a fifth of it at most, which is 0.5 encoded.
    EXPECT_GT(spiegel, 60);
    EXPECT_LT(spiegel, 145);
    // Above is nothing but night.
    EXPECT_LT(felste(beeld, {0, 0, 320, 40}), 8);
}

// The number of pixels with a red that only bright digits have.
int roodachtig(const QImage& beeld) {
    int aantal = 0;
    for (int y = 0; y < beeld.height(); ++y)
        for (int x = 0; x < beeld.width(); ++x)
            aantal += qRed(beeld.pixel(x, y)) > 50 ? 1 : 0;
    return aantal;
}

TEST_F(PlaatjeTest, AWaveIsABrightSheet) {
    const auto wereld = maak(DrieSoort::kubus);
    double tijd = 0.0;
    QImage beeld = neem(*wereld, tijd, {320, 180});
    EXPECT_EQ(roodachtig(beeld), 0);
    double voor = 0.0;
    while (roodachtig(beeld) == 0 && tijd < 30.0) {
        voor = gemiddeld(beeld);
        beeld = neem(*wereld, tijd += 0.08, {320, 180});
    }
    ASSERT_GT(roodachtig(beeld), 0);
    // Half way through the cube.
    beeld = neem(*wereld, tijd + 0.8, {320, 180});
    EXPECT_GT(roodachtig(beeld), 300);
    EXPECT_GT(gemiddeld(beeld), 1.1 * voor);
}

TEST_F(PlaatjeTest, WithoutACameraItIsSeenFromTheDefaultPlace) {
    const auto wereld = maak(DrieSoort::logo);
    steun::cameraVan(*wereld)->removeFromParent();
    EXPECT_EQ(wereld->scene()->pointOfView(), nullptr);
    const QImage beeld = neem(*wereld, 1.0, {160, 90});
    EXPECT_EQ(beeld.size(), QSize(160, 90));
    EXPECT_GT(felste(beeld, beeld.rect()), 100);
}

TEST_F(PlaatjeTest, AnImpossibleSizeGivesNoPicture) {
    EXPECT_TRUE(neem(*maak(DrieSoort::kubus), 1.0, {0.0, 90.0}).isNull());
}

}  // namespace
