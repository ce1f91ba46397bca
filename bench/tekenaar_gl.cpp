// SPDX-License-Identifier: MIT
// The cost of a full screen of falling digits with OpenGL, off screen. "Draw"
// is the drawing thread's time for handing over a frame. "Frame" ends when the
// picture is complete; on software OpenGL this includes the processor's work.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/render/gl/GlCalls.h"
#include "platform/render/gl/OffscreenPicture.h"
#include "tests/support/FallingColumns.h"

namespace {

using namespace platform;

constexpr double kClock = 1000.0;
constexpr Rgba kBlack{0.0F, 0.0F, 0.0F, 1.0F};

struct Scene {
    Scene(int width, int height, double scale)
        : grid{.scale = scale, .size = {width, height}},
          columns({.size = QSizeF(grid.size) / scale, .scale = scale}) {
        columns.fill(kClock);
        advance();
        if (offscreen) (void)offscreen->draw(list, grid, kBlack);
    }
    void advance() {
        time += 1.0 / 60.0;
        columns.show(time, list);
    }
    void draw() { offscreen->drawer().draw(list, grid, kBlack); }

    PixelGrid grid;
    std::unique_ptr<OffscreenPicture> offscreen = OffscreenPicture::create();
    FallingColumns columns;
    DisplayList list;
    double time = kClock;
};

void finish(benchmark::State& state, Scene& scene) {
    state.SetLabel(scene.offscreen->rendererName());
    state.counters["calls"] = scene.offscreen->drawer().drawCalls();
    // The result proves that something was drawn.
    const QImage picture = scene.offscreen->draw(scene.list, scene.grid, kBlack);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qGreen(picture.pixel(x, y)) > 128) return;
        }
    }
    state.SkipWithError("the picture is empty");
}

void draw(benchmark::State& state) {
    Scene scene(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                static_cast<double>(state.range(2)));
    if (!scene.offscreen) return state.SkipWithError("no OpenGL 3.3");
    for (auto _ : state) {
        state.PauseTiming();
        scene.advance();
        glFinish();
        state.ResumeTiming();
        scene.draw();
    }
    finish(state, scene);
}

void frame(benchmark::State& state) {
    Scene scene(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                static_cast<double>(state.range(2)));
    if (!scene.offscreen) return state.SkipWithError("no OpenGL 3.3");
    for (auto _ : state) {
        scene.advance();
        scene.draw();
        glFinish();
    }
    finish(state, scene);
}

BENCHMARK(draw)
    ->Name("Draw")
    ->Args({1920, 1080, 1})
    ->Args({5120, 2880, 2})
    ->Iterations(60)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(frame)
    ->Name("Frame")
    ->Args({1920, 1080, 1})
    ->Args({5120, 2880, 2})
    ->Iterations(30)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
