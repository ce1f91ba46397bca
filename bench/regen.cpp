// SPDX-License-Identifier: MIT
// The time to build the rain, which the main thread does before showing it, and the time of a
// frame of it on the processor.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <vector>

#include "platform/layers/Damage.h"
#include "platform/layers/DisplayListBuilder.h"
#include "platform/render/cpu/CpuDrawer.h"
#include "rain/MatrixRegen.h"

namespace {

void bouwRegen(benchmark::State& state) {
    platform::ManualClock klok;
    platform::RandomSource toeval(1);
    const QSizeF maat(static_cast<double>(state.range(0)), static_cast<double>(state.range(1)));
    for (auto _ : state) {
        brixtel::MatrixRegen regen({.maat = maat, .schaal = static_cast<double>(state.range(2))},
                                   klok, toeval);
        benchmark::DoNotOptimize(regen.laag().get());
    }
}
BENCHMARK(bouwRegen)
    ->Args({1920, 1080, 1})
    ->Args({1920, 1080, 2})
    ->Args({2560, 1440, 2})
    ->Unit(benchmark::kMillisecond);

// Sixty frames a second, painted into two pictures in turn: each paints what it missed too, as
// where a compositor reads one picture while the program paints the other.
void beeldRegen(benchmark::State& state) {
    platform::ManualClock klok;
    platform::RandomSource toeval(1);
    const QSize maat(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const platform::PixelGrid raster{.scale = 1.0, .size = maat};
    platform::Layer grond;
    grond.setFrame({QPointF(), QSizeF(maat)});
    grond.setBackgroundColor(Qt::black);
    brixtel::MatrixRegen regen({.maat = QSizeF(maat)}, klok, toeval);
    grond.addSublayer(regen.laag());
    std::vector<std::uint32_t> beelden[2];
    for (auto& beeld : beelden)
        beeld.resize(static_cast<std::size_t>(maat.width()) *
                     static_cast<std::size_t>(maat.height()));
    platform::DisplayList lijsten[2];
    platform::CpuDrawer tekenaar;
    std::vector<QRect> nu(1, QRect(QPoint(), maat)), gemist, alles;
    std::size_t welke = 0;
    for (auto _ : state) {
        klok.advance(1.0 / 60.0);
        platform::DisplayListBuilder(lijsten[welke], klok.now())
            .add(grond, {}, {QPointF(), QSizeF(maat)});
        gemist = nu;
        findDamage(lijsten[1 - welke], lijsten[welke], raster, nu);
        alles = gemist;
        alles.insert(alles.end(), nu.begin(), nu.end());
        tekenaar.draw(lijsten[welke], raster, alles, platform::Rgba{0.0F, 0.0F, 0.0F, 1.0F},
                      {beelden[welke].data(), maat.width(), maat});
        welke = 1 - welke;
    }
    benchmark::DoNotOptimize(beelden[0].data());
}
BENCHMARK(beeldRegen)->Args({1920, 1080})->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
