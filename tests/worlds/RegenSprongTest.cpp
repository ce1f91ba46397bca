// SPDX-License-Identifier: MIT
// Half a minute of rain at sixty frames a second: what may change from one picture to the next.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "platform/layers/DisplayListBuilder.h"
#include "rain/MatrixRegen.h"
#include "tests/support/CpuPicture.h"
#include "tests/support/FlashAnalysis.h"

using brixtel::MatrixRegen;
using platform::Layer;

namespace {

constexpr double kBeeld = 1.0 / 60.0;
constexpr int kBeelden = 30 * 60;

class RegenSprongTest : public testing::Test {
  protected:
    platform::ManualClock klok_;
    platform::RandomSource toeval_{1};

    [[nodiscard]] std::unique_ptr<MatrixRegen> maak(const QSizeF& maat, double schaal) {
        return std::make_unique<MatrixRegen>(
            brixtel::MatrixRegenOpties{.maat = maat, .schaal = schaal, .dichtheid = 0.7}, klok_,
            toeval_);
    }
    [[nodiscard]] QImage beeld(const MatrixRegen& regen, const platform::PixelGrid& raster) const {
        return drawCpu(listOf(*regen.laag(), raster, klok_.now()), raster);
    }
};

// One column of the rain, as the last picture had it.
struct Kolombeeld {
    std::vector<double> stukken;  // the heights of its drops' pieces
    qint64 cijfers = 0;
    QImage beeld;
};

// Relative luminance, summed over a picture. Every channel's part is looked up.
double lichtVan(const QImage& beeld) {
    static const auto delen = [] {
        std::array<std::array<double, 256>, 3> tabel{};
        for (int v = 0; v < 256; ++v) {
            const auto i = static_cast<std::size_t>(v);
            tabel[0][i] = FlashAnalysis::luminance(qRgb(v, 0, 0));
            tabel[1][i] = FlashAnalysis::luminance(qRgb(0, v, 0));
            tabel[2][i] = FlashAnalysis::luminance(qRgb(0, 0, v));
        }
        return tabel;
    }();
    double som = 0.0;
    for (int y = 0; y < beeld.height(); ++y)
        for (int x = 0; x < beeld.width(); ++x) {
            const QRgb pixel = beeld.pixel(x, y);
            som += delen[0][static_cast<std::size_t>(qRed(pixel))] +
                   delen[1][static_cast<std::size_t>(qGreen(pixel))] +
                   delen[2][static_cast<std::size_t>(qBlue(pixel))];
        }
    return som;
}

class KolommenTest : public RegenSprongTest {
  protected:
    // A rain whose columns begin and end at whole pixels.
    void SetUp() override {
        const double breed = maak({400.0, 270.0}, 1.0)->kolommen().front().staart->frame().width();
        const QSizeF maat(20.0 * breed, 270.0);
        regen_ = maak(maat, 1.0);
        raster_ = {.scale = 1.0, .size = maat.toSize()};
        const Layer& kop = *regen_->kolommen().front().kop;
        cel_ = kop.mask()->sublayers().front()->bounds().size();
    }
    // A step down by one row, or from below the strip to above it.
    [[nodiscard]] bool isStap(double van, double naar, const Layer& kolom) const {
        if (std::abs(van - cel_.height() - naar) < 1e-6) return true;
        return van < 0.0 && naar > kolom.bounds().height();
    }
    [[nodiscard]] Kolombeeld neem(const MatrixRegen::Kolom& kolom, const QImage& beeld) const {
        Kolombeeld nu{.cijfers = kolom.staart->contents().cacheKey()};
        for (const Layer* const laag : {kolom.staart.get(), kolom.kop.get()})
            for (const auto& stuk : laag->mask()->sublayers())
                nu.stukken.push_back(stuk->shownPosition(klok_.now()).y());
        const QRectF vlak = kolom.staart->frame();
        nu.beeld = beeld.copy(static_cast<int>(vlak.x()), 0, static_cast<int>(vlak.width()),
                              beeld.height());
        return nu;
    }
    std::vector<Kolombeeld> volgende() {
        klok_.advance(kBeeld);
        const QImage geheel = beeld(*regen_, raster_);
        std::vector<Kolombeeld> nu;
        for (const auto& kolom : regen_->kolommen())
            nu.push_back(neem(kolom, geheel));
        return nu;
    }
    // The pieces that come in or leave between the two pictures: they step, and are not wholly
    // in sight before and after.
    [[nodiscard]] int randstappen(std::size_t k, const Kolombeeld& toen,
                                  const Kolombeeld& nu) const {
        const auto& kolom = regen_->kolommen()[k];
        // The strip hangs over the picture's lower edge.
        const double onder = -kolom.staart->frame().y();
        const double boven = kolom.staart->bounds().height();
        std::size_t s = 0;
        int aantal = 0;
        for (const Layer* const laag : {kolom.staart.get(), kolom.kop.get()})
            for (const auto& stuk : laag->mask()->sublayers()) {
                const double half = 0.5 * stuk->bounds().height();
                const double hoog = std::max(toen.stukken[s], nu.stukken[s]) + half;
                const double laagst = std::min(toen.stukken[s], nu.stukken[s]) - half;
                const bool over = hoog > boven + 1e-6 || laagst < onder - 1e-6;
                aantal += toen.stukken[s] != nu.stukken[s] && over ? 1 : 0;
                ++s;
            }
        return aantal;
    }

    // Whether a drop of the column is overtaking another.
    [[nodiscard]] bool overlapt(std::size_t k, const Kolombeeld& beeld) const {
        const auto& stukken = regen_->kolommen()[k].staart->mask()->sublayers();
        for (std::size_t a = 0; a < stukken.size(); ++a)
            for (std::size_t b = 0; b < a; ++b)
                if (std::abs(beeld.stukken[a] - beeld.stukken[b]) <
                    0.5 * (stukken[a]->bounds().height() + stukken[b]->bounds().height()))
                    return true;
        return false;
    }

    std::unique_ptr<MatrixRegen> regen_;
    platform::PixelGrid raster_;
    QSizeF cel_;
};

// Several drops may come in at the same moment, and each brings a whole row at once: five of
// them change the light of a rain of 960 by 540 by 3.7 % in a frame, and by 4.7 % with their
// digits. Strips without digits show that nothing else changes: a drop that steps within the
// picture keeps its light, and one that comes in or leaves changes it by no more than a cell.
TEST_F(KolommenTest, TheLightChangesByTheRowsThatComeInOrLeaveAlone) {
    const QColor kop(150, 255, 150);
    regen_->stop();
    for (const auto& kolom : regen_->kolommen())
        for (Layer* const laag : {kolom.staart.get(), kolom.kop.get()}) {
            QImage vlak = laag->contents();
            vlak.fill(laag == kolom.kop.get() ? kop : QColor(0, 200, 0));
            laag->setContents(vlak);
        }
    const double cel = cel_.width() * cel_.height() * FlashAnalysis::luminance(kop.rgb());
    std::vector<Kolombeeld> vorige = volgende();
    std::vector<double> licht(vorige.size());
    for (std::size_t k = 0; k < licht.size(); ++k)
        licht[k] = lichtVan(vorige[k].beeld);
    int gezien = 0;
    for (int i = 1; i < kBeelden; ++i) {
        std::vector<Kolombeeld> nu = volgende();
        for (std::size_t k = 0; k < licht.size(); ++k) {
            const double was = std::exchange(licht[k], lichtVan(nu[k].beeld));
            const int aan = randstappen(k, vorige[k], nu[k]);
            EXPECT_LE(std::abs(licht[k] - was), 1.02 * cel * std::max(1, aan))
                << "column " << k << " at " << klok_.now();
            if (aan > 0 || overlapt(k, vorige[k]) || overlapt(k, nu[k])) continue;
            EXPECT_NEAR(licht[k], was, 0.001 * cel) << "column " << k << " at " << klok_.now();
            ++gezien;
        }
        vorige = std::move(nu);
    }
    EXPECT_GT(gezien, 2 * kBeelden);
}

TEST_F(KolommenTest, AColumnChangesOnlyWhenADropStepsOneRowOrItsDigitsAreSwapped) {
    std::vector<Kolombeeld> vorige;
    int stappen = 0;
    int wissels = 0;
    int gelijk = 0;
    for (int i = 0; i < kBeelden; ++i) {
        std::vector<Kolombeeld> nu = volgende();
        for (std::size_t k = 0; k < vorige.size(); ++k) {
            bool stapte = false;
            for (std::size_t s = 0; s < nu[k].stukken.size(); ++s) {
                if (nu[k].stukken[s] == vorige[k].stukken[s]) continue;
                stapte = true;
                EXPECT_TRUE(
                    isStap(vorige[k].stukken[s], nu[k].stukken[s], *regen_->kolommen()[k].staart))
                    << vorige[k].stukken[s] << " to " << nu[k].stukken[s] << " at " << klok_.now();
            }
            const bool wisselde = nu[k].cijfers != vorige[k].cijfers;
            stappen += stapte ? 1 : 0;
            wissels += wisselde ? 1 : 0;
            if (stapte || wisselde) continue;
            ++gelijk;
            EXPECT_EQ(nu[k].beeld, vorige[k].beeld) << "column " << k << " at " << klok_.now();
        }
        vorige = std::move(nu);
    }
    EXPECT_GT(stappen, 1000);
    EXPECT_GT(wissels, 100);
    EXPECT_GT(gelijk, 1000);
}

}  // namespace
