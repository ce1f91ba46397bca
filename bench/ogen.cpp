// SPDX-License-Identifier: MIT
// The pictures' effect on eyes and screens. Prints by how much the strongest flash on a beat
// changes the light of black, and two tables: the flashes of the black screen's beat by tempo,
// over nothing and over the rain, counted as WCAG 2.3.1 does; and the wear of eight hours of
// each scene: the mean light of a pixel, and that of the brightest pixel over it. Light is
// linear, and 1 is the greatest.
#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <vector>

#include "desktop/BeatFlits.h"
#include "rain/MatrixRegen.h"
#include "tests/support/CpuPicture.h"
#include "tests/support/FlashAnalysis.h"
#include "tests/support/SceneSnapshot.h"
#include "worlds/DrieWereld.h"

namespace {

using brixtel::DrieSoort;
using brixtel::DrieWereld;
using brixtel::MatrixRegen;
using platform::Layer;

constexpr QSizeF kMaat(960.0, 540.0);
constexpr double kSchaal = 0.1;
const platform::PixelGrid kRaster{.scale = kSchaal, .size = (kMaat * kSchaal).toSize()};

// --- the beat ---

std::shared_ptr<Layer> flitsLaag() {
    auto flits = std::make_shared<Layer>();
    flits->setFrame({QPointF(0, 0), kMaat});
    flits->setBackgroundColor(brixtel::beatFlitsKleur());
    return flits;
}

// The light of a flash at its height, over black.
double lichtVanDeFlits() {
    FlashAnalysis licht;
    licht.add(drawCpu(listOf(*flitsLaag(), kRaster), kRaster), 0.0);
    return licht.meanLight();
}

int flitsenBij(double slagenPerMinuut, bool metRegen) {
    platform::ManualClock klok;
    platform::RandomSource toeval(1);
    Layer wortel;
    wortel.setFrame({QPointF(0, 0), kMaat});
    std::optional<MatrixRegen> regen;
    if (metRegen) {
        regen.emplace(brixtel::MatrixRegenOpties{.maat = kMaat, .schaal = kSchaal}, klok, toeval);
        wortel.addSublayer(regen->laag());
    }
    const auto flits = flitsLaag();
    flits->setOpacity(0.0);
    wortel.addSublayer(flits);
    FlashAnalysis flitsen;
    const double begin = klok.now();
    double volgende = begin;
    for (int beeld = 0; beeld < 4 * 60; ++beeld) {
        if (klok.now() >= volgende) {
            flits->addAnimation("beat", brixtel::beatFlits(1.0), klok.now());
            volgende += 60.0 / slagenPerMinuut;
        }
        flitsen.add(drawCpu(listOf(wortel, kRaster, klok.now()), kRaster), klok.now() - begin);
        klok.advance(1.0 / 60.0);
    }
    return std::max(flitsen.generalFlashes(), flitsen.redFlashes());
}

void tabelVanDeMaat() {
    constexpr int kMeeste = 3;
    std::printf("a flash changes black by %.3f; from 0.1 on it counts\n", lichtVanDeFlits());
    std::printf("%-24s %8s %8s\n", "flashes a second, beat at", "black", "rain");
    int teVeel = 0;
    for (int tempo = 60; tempo <= 600; tempo += 60) {
        const int zwart = flitsenBij(tempo, false);
        const int regen = flitsenBij(tempo, true);
        if (teVeel == 0 && std::max(zwart, regen) > kMeeste) teVeel = tempo;
        std::printf("%20d bpm %8d %8d\n", tempo, zwart, regen);
    }
    if (teVeel > 0)
        std::printf("too much from %d beats a minute on\n\n", teVeel);
    else
        std::printf("not too much at any tempo\n\n");
}

// --- wear ---

constexpr double kUren = 8.0;
constexpr double kElke = 19.37;  // seconds; no part of a scene's period

struct Slijtage {
    std::vector<double> licht = std::vector<double>(
        static_cast<std::size_t>(kRaster.size.width() * kRaster.size.height()), 0.0);

    void neem(const QImage& beeld) {
        std::size_t i = 0;
        for (int y = 0; y < beeld.height(); ++y)
            for (int x = 0; x < beeld.width(); ++x)
                licht[i++] += FlashAnalysis::luminance(beeld.pixel(x, y));
    }
    void druk(const char* wat) const {
        const double beelden = kUren * 3600.0 / kElke;
        double som = 0.0;
        for (const double pixel : licht)
            som += pixel;
        const double midden = som / static_cast<double>(licht.size()) / beelden;
        const double meeste = *std::max_element(licht.begin(), licht.end()) / beelden;
        std::printf("%-24s %8.4f %8.1f\n", wat, midden, midden > 0.0 ? meeste / midden : 0.0);
        std::fflush(stdout);
    }
};

void over8Uur(const char* wat, const std::function<QImage(double)>& beeld) {
    Slijtage slijtage;
    for (double tijd = kElke; tijd <= kUren * 3600.0; tijd += kElke)
        slijtage.neem(beeld(tijd));
    slijtage.druk(wat);
}

void slijtageVan(DrieSoort soort, platform::SceneSnapshot& snapshot) {
    platform::ManualClock klok;
    platform::RandomSource toeval(1);
    brixtel::LandenTabel landen{"/nergens/landen.bin"};
    DrieWereld wereld(soort, {.eigenLijnen = true},
                      {.klok = klok, .toeval = toeval, .landen = &landen});
    platform::DrawList lijst;
    over8Uur(qPrintable(ruweWaarde(soort)), [&](double tijd) {
        wereld.scene()->advance(tijd);
        platform::extract(*wereld.scene(), kMaat.width() / kMaat.height(), lijst);
        return snapshot.picture(lijst, kMaat, kSchaal, {.samples = 4});
    });
}

void slijtageVanDeRegen() {
    platform::ManualClock klok;
    platform::RandomSource toeval(1);
    const MatrixRegen regen({.maat = kMaat, .schaal = kSchaal}, klok, toeval);
    const double begin = klok.now();
    over8Uur("regen", [&](double tijd) {
        klok.advance(begin + tijd - klok.now());
        return drawCpu(listOf(*regen.laag(), kRaster, klok.now()), kRaster);
    });
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication toepassing(argc, argv);
    tabelVanDeMaat();
    const auto snapshot = platform::SceneSnapshot::create();
    if (!snapshot) {
        std::fputs("no OpenGL\n", stderr);
        return 1;
    }
    std::printf("%-24s %8s %8s\n", "eight hours of", "mean", "greatest");
    for (const DrieSoort soort : brixtel::alleSoorten)
        slijtageVan(soort, *snapshot);
    slijtageVanDeRegen();
    return 0;
}
