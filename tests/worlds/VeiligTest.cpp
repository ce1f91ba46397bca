// SPDX-License-Identifier: MIT
// The flashes in a minute of each scene, counted in its pictures.
#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/layers/DisplayListBuilder.h"
#include "tests/support/SceneSnapshot.h"
#include "rain/MatrixRegen.h"
#include "tests/support/CpuPicture.h"
#include "tests/support/FlashAnalysis.h"
#include "tests/worlds/BolLijst.h"
#include "tests/worlds/Opstelling.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;

namespace {

constexpr QSizeF kMaat(960.0, 540.0);
constexpr double kSchaal = 0.1;
constexpr int kMeesteFlitsen = 3;  // a second
// The largest change of the mean light from one frame to the next.
constexpr double kHoogste = 0.03;

class VeiligTest : public steun::WereldOpstelling {
  protected:
    static void SetUpTestSuite() { snapshot = platform::SceneSnapshot::create(); }
    static void TearDownTestSuite() { snapshot.reset(); }
    void SetUp() override { ASSERT_TRUE(snapshot) << "no OpenGL"; }

    QImage neem(DrieWereld& wereld, double tijd) {
        wereld.scene()->advance(tijd);
        platform::extract(*wereld.scene(), kMaat.width() / kMaat.height(), lijst_);
        return snapshot->picture(lijst_, kMaat, kSchaal, {.samples = 2, .fineBloom = false});
    }
    // A minute at twenty pictures a second: a flash of four a second is half as fast.
    void isVeilig(DrieSoort soort) {
        const auto wereld = maak(soort, {.groot = false, .eigenLijnen = true});
        wereld->zetLijnen(steun::lijnen(14));
        FlashAnalysis flitsen;
        for (int beeld = 0; beeld < 60 * 20; ++beeld)
            flitsen.add(neem(*wereld, beeld / 20.0), beeld / 20.0);
        EXPECT_LE(flitsen.generalFlashes(), kMeesteFlitsen);
        EXPECT_LE(flitsen.redFlashes(), kMeesteFlitsen);
        EXPECT_GT(flitsen.meanLight(), 0.001) << "nothing was seen";
    }
    // Half a minute at sixty. What the mean light of a picture may differ from that of the
    // one before is left out where `springt` says that the scene jumps.
    template <typename Springt>
    void isRustig(DrieSoort soort, Springt springt) {
        const auto wereld = maak(soort, {.groot = false, .eigenLijnen = true});
        wereld->zetLijnen(steun::lijnen(14));
        double vorige = 0.0;
        int geteld = 0;
        for (int beeld = 0; beeld < 30 * 60; ++beeld) {
            const double tijd = 6.0 + beeld / 60.0;
            FlashAnalysis licht;
            licht.add(neem(*wereld, tijd), tijd);
            const bool telt = beeld > 0 && !springt(tijd - 1.0 / 60.0, tijd);
            if (telt) {
                EXPECT_NEAR(licht.meanLight() / vorige, 1.0, kHoogste) << "at " << tijd;
                ++geteld;
            }
            vorige = licht.meanLight();
        }
        EXPECT_GT(geteld, 900);
    }
    static bool nooit(double, double) { return false; }

    static inline std::unique_ptr<platform::SceneSnapshot> snapshot;
    platform::DrawList lijst_;
};

TEST_F(VeiligTest, TheGlobeFlashesNotTooOften) {
    isVeilig(DrieSoort::bol);
}
TEST_F(VeiligTest, TheCubeFlashesNotTooOften) {
    isVeilig(DrieSoort::kubus);
}
TEST_F(VeiligTest, TheTunnelFlashesNotTooOften) {
    isVeilig(DrieSoort::tunnel);
}
TEST_F(VeiligTest, TheLogoFlashesNotTooOften) {
    isVeilig(DrieSoort::logo);
}

TEST_F(VeiligTest, TheRainFlashesNotTooOften) {
    platform::RandomSource toeval(1);
    brixtel::MatrixRegen regen({.maat = kMaat, .schaal = kSchaal, .dichtheid = 0.7}, klok_, toeval);
    FlashAnalysis flitsen;
    const platform::PixelGrid raster{.scale = kSchaal, .size = (kMaat * kSchaal).toSize()};
    for (int beeld = 0; beeld < 60 * 30; ++beeld) {
        klok_.advance(1.0 / 30.0);
        flitsen.add(drawCpu(listOf(*regen.laag(), raster, klok_.now()), raster), klok_.now());
    }
    EXPECT_LE(flitsen.generalFlashes(), kMeesteFlitsen);
    EXPECT_LE(flitsen.redFlashes(), kMeesteFlitsen);
    EXPECT_GT(flitsen.meanLight(), 0.001) << "nothing was seen";
}

TEST_F(VeiligTest, TheLightOfTheGlobeNeverJumps) {
    isRustig(DrieSoort::bol, nooit);
}
TEST_F(VeiligTest, TheLightOfTheLogoNeverJumps) {
    isRustig(DrieSoort::logo, nooit);
}
// But where digits flip and the wave goes on: at a tick. A frame that falls on one may have it
// on either side.
TEST_F(VeiligTest, TheLightOfTheCubeJumpsOnlyAtATick) {
    isRustig(DrieSoort::kubus, [](double van, double tot) {
        constexpr double kTik = 0.08;
        constexpr double kAfronding = 1e-6;
        return std::floor((tot + kAfronding) / kTik) > std::floor((van - kAfronding) / kTik);
    });
}

// The tunnel's wall as a picture showed it, moved on. One digit in seventeen is bright, and
// these give most of the light. The nearest leave the picture by its edges within four frames,
// up to twelve of one ring at once: the mean light then falls by as much as a seventh. The wall
// moved on lacks the light that left, and keeps the light of what vanishes in sight.
class BewogenWand {
  public:
    void neem(const QImage& beeld) {
        maat_ = beeld.size();
        licht_.clear();
        for (int y = 0; y < maat_.height(); ++y)
            for (int x = 0; x < maat_.width(); ++x)
                licht_.push_back(FlashAnalysis::luminance(beeld.pixel(x, y)));
    }
    // The mean light after so many seconds. A pixel shows the wall at a depth, and showed
    // it farther from the camera, nearer to the middle of the picture.
    [[nodiscard]] double na(double seconden) const {
        constexpr double kStraal = 1.6;
        constexpr double kVaart = 0.55 * 80.0 / 14.0;  // units a second
        const QPointF midden(maat_.width() / 2.0, maat_.height() / 2.0);
        const double brandpunt = midden.y() / std::tan(35.0 * M_PI / 180.0);
        double som = 0.0;
        for (int y = 0; y < maat_.height(); ++y)
            for (int x = 0; x < maat_.width(); ++x) {
                const QPointF uit = QPointF(x + 0.5, y + 0.5) - midden;
                const double diepte = kStraal * brandpunt / std::hypot(uit.x(), uit.y());
                som += bij(midden + uit * (diepte / (diepte + kVaart * seconden)));
            }
        return som / static_cast<double>(licht_.size());
    }

  private:
    [[nodiscard]] double pixel(int x, int y) const {
        return licht_[static_cast<std::size_t>(std::clamp(y, 0, maat_.height() - 1) *
                                                   maat_.width() +
                                               std::clamp(x, 0, maat_.width() - 1))];
    }
    // Between the middles of pixels the light is mixed.
    [[nodiscard]] double bij(QPointF plek) const {
        const int x = static_cast<int>(std::floor(plek.x() - 0.5));
        const int y = static_cast<int>(std::floor(plek.y() - 0.5));
        const double rechts = plek.x() - 0.5 - x;
        const double onder = plek.y() - 0.5 - y;
        return (1.0 - onder) * ((1.0 - rechts) * pixel(x, y) + rechts * pixel(x + 1, y)) +
               onder * ((1.0 - rechts) * pixel(x, y + 1) + rechts * pixel(x + 1, y + 1));
    }
    QSize maat_;
    std::vector<double> licht_;
};

// Digits that leave by the edges of the picture do not count.
TEST_F(VeiligTest, TheLightOfTheTunnelChangesOnlyByWhatLeavesThePicture) {
    const auto wereld = maak(DrieSoort::tunnel);
    BewogenWand wand;
    wand.neem(neem(*wereld, 6.0));
    for (int beeld = 1; beeld <= 30 * 60; ++beeld) {
        const double tijd = 6.0 + beeld / 60.0;
        const double verwacht = wand.na(1.0 / 60.0);
        wand.neem(neem(*wereld, tijd));
        ASSERT_GT(verwacht, 0.001) << "nothing was seen";
        EXPECT_NEAR(wand.na(0.0) / verwacht, 1.0, kHoogste) << "at " << tijd;
    }
}

}  // namespace
