// SPDX-License-Identifier: MIT
// The cost of a frame of falling columns without OpenGL: building the list,
// finding the differences, and drawing them.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "platform/layers/Damage.h"
#include "platform/render/cpu/CpuDrawer.h"
#include "tests/support/FallingColumns.h"

using namespace platform;

namespace {

constexpr Rgba kBlack{0.0F, 0.0F, 0.0F, 1.0F};
constexpr double kStart = 1000.0;

// A screen of falling columns; argument 0 is the width and 1 the height in
// pixels, 2 the pixels per point.
struct Screen {
    explicit Screen(const benchmark::State& state)
        : size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))),
          grid{.scale = static_cast<double>(state.range(2)), .size = size},
          columns({.size = QSizeF(size) / grid.scale, .scale = grid.scale}),
          pixels(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height())) {
        columns.fill(kStart);
        columns.show(kStart, lists[0]);
    }

    // Advances one frame, 60 per second; every fifth frame changes a pair of strips.
    const DisplayList& next() {
        ++frame;
        if (frame % 5 == 0) columns.swapContents(frame % columns.columnCount());
        DisplayList& now = lists[frame % 2];
        columns.show(kStart + frame / 60.0, now);
        findDamage(lists[(frame + 1) % 2], now, grid, damage);
        return now;
    }

    [[nodiscard]] PixelBuffer target() { return {pixels.data(), size.width(), size}; }

    QSize size;
    PixelGrid grid;
    FallingColumns columns;
    std::vector<std::uint32_t> pixels;
    DisplayList lists[2];
    std::vector<QRect> damage;
    CpuDrawer drawer;
    int frame = 0;
};

void screens(benchmark::internal::Benchmark* bench) {
    bench->Args({1920, 1080, 1})->Args({5120, 2880, 2})->Unit(benchmark::kMicrosecond);
}

void LijstEnSchade(benchmark::State& state) {
    Screen screen(state);
    double rects = 0.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(screen.next());
        rects += static_cast<double>(screen.damage.size());
    }
    state.counters["rects"] = rects / static_cast<double>(state.iterations());
}
BENCHMARK(LijstEnSchade)->Apply(screens);

void HeelBeeld(benchmark::State& state) {
    Screen screen(state);
    const std::vector<QRect> all{QRect(QPoint(), screen.size)};
    for (auto _ : state)
        screen.drawer.draw(screen.lists[0], screen.grid, all, kBlack, screen.target());
    benchmark::DoNotOptimize(screen.pixels.data());
}
BENCHMARK(HeelBeeld)->Apply(screens);

// The cost of the falling itself, without list and damage.
void Beeldstap(benchmark::State& state) {
    Screen screen(state);
    double painted = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        const DisplayList& list = screen.next();
        for (const QRect& rect : screen.damage)
            painted += static_cast<double>(rect.width()) * rect.height();
        state.ResumeTiming();
        screen.drawer.draw(list, screen.grid, screen.damage, kBlack, screen.target());
    }
    state.counters["pixels"] = painted / static_cast<double>(state.iterations());
}
BENCHMARK(Beeldstap)->Apply(screens);

}  // namespace

BENCHMARK_MAIN();
