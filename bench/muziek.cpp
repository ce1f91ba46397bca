// SPDX-License-Identifier: MIT
// The cost of listening to music: the analysis of one second of sound.
#include <benchmark/benchmark.h>

#include "hosts/bureau/muziek/SlagZoeker.h"
#include "tests/support/KlikSpoor.h"

namespace {

void niets(benchmark::State& state) {
    for (auto _ : state)
        benchmark::ClobberMemory();
}
BENCHMARK(niets);

// The argument is the number of samples per second.
void seconde(benchmark::State& state) {
    const auto tempo = static_cast<double>(state.range(0));
    const steun::KlikSpoor spoor{.seconden = 1, .tempo = tempo};
    auto monsters = spoor.maak();
    steun::voegRozeRuis(monsters, 0.05, 1);
    brixtel::SlagZoeker zoeker(tempo);
    for (auto _ : state)
        zoeker.voeg(monsters);
    if (zoeker.aantal() == 0) state.SkipWithError("no beats");
    state.counters["deel_van_een_kern"] =
        benchmark::Counter(static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(seconde)->Arg(44'100)->Arg(48'000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
