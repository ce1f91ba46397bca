// SPDX-License-Identifier: MIT
// The time to build the rain, which the main thread does before showing it.
#include <benchmark/benchmark.h>

#include <QGuiApplication>

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

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
