// SPDX-License-Identifier: MIT
// A scene's frame on the main thread: its cost. A frame is one sixtieth of a
// second; about every fifth frame has a tick.
#include <benchmark/benchmark.h>

#include "platform/scene/DrawList.h"
#include "tests/support/DigitCube.h"

namespace {

using platform::DrawList;

// The floor: only the loop and the clock's arithmetic.
void nothing(benchmark::State& state) {
    double time = 0.0;
    for (auto _ : state)
        benchmark::DoNotOptimize(time += 1.0 / 60.0);
}

void advanceDigits(benchmark::State& state) {
    DigitCube cube(1);
    double time = 0.0;
    for (auto _ : state)
        cube.scene.advance(time += 1.0 / 60.0);
    if (cube.ticks < static_cast<int>(time / 0.08) - 1) state.SkipWithError("ticks were missed");
}

void advanceAndExtractDigits(benchmark::State& state) {
    DigitCube cube(1);
    DrawList list;
    double time = 0.0;
    for (auto _ : state) {
        cube.scene.advance(time += 1.0 / 60.0);
        platform::extract(cube.scene, 1.6, list);
        benchmark::DoNotOptimize(list.instances.data());
    }
    if (list.instances.size() != 343 || list.batches.size() != 4)
        state.SkipWithError("digits are missing");
}

// One covering object among the digits makes the list sort everything by depth.
void advanceAndExtractSortedDigits(benchmark::State& state) {
    DigitCube cube(1);
    cube.scene.root().addChild(std::make_shared<platform::Node>(
        platform::makePlane({}, std::make_shared<platform::Material>(QColor(0, 255, 0, 128)))));
    DrawList list;
    double time = 0.0;
    for (auto _ : state) {
        cube.scene.advance(time += 1.0 / 60.0);
        platform::extract(cube.scene, 1.6, list);
        benchmark::DoNotOptimize(list.instances.data());
    }
    if (list.instances.size() != 344) state.SkipWithError("digits are missing");
}

void yearInOneStep(benchmark::State& state) {
    for (auto _ : state) {
        DigitCube cube(1);
        cube.scene.advance(365.25 * 86'400.0);
        benchmark::DoNotOptimize(cube.ticks);
    }
}

BENCHMARK(nothing);
BENCHMARK(advanceDigits);
BENCHMARK(advanceAndExtractDigits)->Unit(benchmark::kMicrosecond);
BENCHMARK(advanceAndExtractSortedDigits)->Unit(benchmark::kMicrosecond);
BENCHMARK(yearInOneStep)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
