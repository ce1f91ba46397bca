// SPDX-License-Identifier: MIT
// The worlds' cost on the main thread: a frame of a sixtieth of a second, ticks
// and births included, and the building of a world.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <cstdio>

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

std::vector<brixtel::Lijn> vierentwintig() {
    std::vector<brixtel::Lijn> lijnen;
    double lengte = -30.0;
    for (const char* code :
         {"US", "DE", "IE", "JP", "BR", "SE", "FR", "GB", "ES", "IT", "BE", "CH",
          "AT", "PL", "CZ", "DK", "NO", "FI", "PT", "GR", "ZA", "CA", "EG", "TR"})
        lijnen.push_back({{code, 60.0 - lengte, lengte += 3.0}, {"Proef"}, 1});
    return lijnen;
}

// A frame of the globe that places 24 labels.
void beeldMetLijnen(benchmark::State& state) {
    Opstelling opstelling;
    const auto wereld = opstelling.maak(DrieSoort::bol);
    wereld->zetLijnen(vierentwintig());
    const auto view = wereld->maakView({0, 0, 1920, 1080});
    platform::SceneFrame frame;
    for (auto _ : state) {
        opstelling.klok.leap(1.0 / 60.0);
        view->fill(frame, {});
    }
    if (frame.list.instances.size() < 72) state.SkipWithError("no lines to be seen");
}
BENCHMARK(beeldMetLijnen)->Unit(benchmark::kMicrosecond);

// Changes every number, and so every label.
void zetLijnen(benchmark::State& state) {
    Opstelling opstelling;
    const auto wereld = opstelling.maak(DrieSoort::bol);
    std::vector<brixtel::Lijn> lijnen = vierentwintig();
    for (auto _ : state) {
        for (brixtel::Lijn& lijn : lijnen)
            ++lijn.aantal;
        wereld->zetLijnen(lijnen);
    }
    if (wereld->lijnenNode()->children().size() != 4 * lijnen.size())
        state.SkipWithError("not 24 lines");
}
BENCHMARK(zetLijnen)->Unit(benchmark::kMillisecond);

// The first globe of the process, including the reading of map and table.
void eersteBol() {
    platform::SystemClock klok;
    platform::RandomSource toeval{1};
    const double begin = klok.now();
    const DrieWereld wereld(DrieSoort::bol, {.eigenLijnen = true},
                            {.klok = klok, .toeval = toeval});
    std::printf("eerste bol, kaart en tabel erbij: %.1f ms\n", 1000.0 * (klok.now() - begin));
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    eersteBol();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
