// SPDX-License-Identifier: MIT
// What the worlds cost the main thread: a frame of a sixtieth of a second, ticks
// and births included, and the making of one.
#include <benchmark/benchmark.h>

#include <QGuiApplication>

#include "worlds/DrieWereld.h"

namespace {

using brixtel::DrieSoort;
using brixtel::DrieWereld;

struct Opstelling {
    platform::ManualClock klok;
    platform::RandomSource toeval{1};
    brixtel::LandenTabel landen{"/nergens/landen.bin"};

    [[nodiscard]] std::unique_ptr<DrieWereld> maak(DrieSoort soort) {
        return std::make_unique<DrieWereld>(
            soort, brixtel::DrieWereldOpties{.eigenLijnen = true},
            brixtel::DrieWereldBronnen{.klok = klok, .toeval = toeval, .landen = &landen});
    }
};

void beeld(benchmark::State& state) {
    Opstelling opstelling;
    const auto wereld = opstelling.maak(static_cast<DrieSoort>(state.range(0)));
    const auto view = wereld->maakView({0, 0, 1920, 1080});
    platform::SceneFrame frame;
    for (auto _ : state) {
        opstelling.klok.leap(1.0 / 60.0);
        view->fill(frame, {});
    }
    if (frame.list.instances.empty()) state.SkipWithError("nothing to be seen");
    state.SetLabel(ruweWaarde(wereld->soort()).toStdString());
}
BENCHMARK(beeld)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

void bouw(benchmark::State& state) {
    Opstelling opstelling;
    const auto soort = static_cast<DrieSoort>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(opstelling.maak(soort));
    state.SetLabel(ruweWaarde(soort).toStdString());
}
BENCHMARK(bouw)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
