// SPDX-License-Identifier: MIT
// Draws frames of a world with the processor, so that callgrind counts what a steady frame
// costs: `beeldkosten SCENE`. Prints what the count depends on besides the source; without a
// scene it does that alone.
#include <hwy/targets.h>
#include <QGuiApplication>
#include <QImage>
#include <cstdio>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "tests/worlds/BolLijst.h"
#include "worlds/DrieWereld.h"

using brixtel::DrieSoort;
using brixtel::DrieWereld;

namespace {

constexpr int kBefore = 4;  // frames that fill caches
constexpr int kFrames = 4;

// The same vectors wherever the program runs.
#if HWY_ARCH_X86
constexpr std::int64_t kTarget = HWY_SSE4;
#else
constexpr std::int64_t kTarget = HWY_NEON;
#endif

struct Stage {
    DrieWereld world;
    platform::CpuSceneDrawer drawer{platform::CpuSceneDrawer::Options{.threads = 1}};
    QImage picture{480, 270, QImage::Format_RGB32};
    platform::DrawList list;

    void draw(int first, int count) {
        const platform::PixelBuffer buffer{reinterpret_cast<std::uint32_t*>(picture.bits()),
                                           static_cast<int>(picture.bytesPerLine() / 4),
                                           picture.size()};
        for (int i = first; i < first + count; ++i) {
            world.scene()->advance(6.0 + i / 60.0);
            platform::extract(*world.scene(), 1.0 * picture.width() / picture.height(), list);
            drawer.draw(list, buffer, {.isKept = i > 0});
        }
    }
};

}  // namespace

// callgrind counts within this function alone, which it knows by this name.
extern "C" [[gnu::noinline]] void drawSteadyFrames(void* stage) {
    static_cast<Stage*>(stage)->draw(kBefore, kFrames);
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    hwy::SetSupportedTargetsForTest(kTarget);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
#ifdef NDEBUG
    constexpr const char* kBuild = "release";
#else
    constexpr const char* kBuild = "debug";
#endif
    std::printf("%s-%s-gcc%d-%s\n", hwy::TargetName(kTarget), kBuild, __GNUC__, qVersion());
    if (argc < 2) return 0;
    const auto kind = brixtel::soortUitRuw(QString::fromLocal8Bit(argv[1]));
    if (!kind) return 2;
    platform::ManualClock clock;
    platform::RandomSource random{1};
    brixtel::LandenTabel countries{"/nergens/landen.bin"};
    Stage stage{.world = DrieWereld(*kind, {.eigenLijnen = true},
                                    {.klok = clock, .toeval = random, .landen = &countries})};
    if (*kind == DrieSoort::bol) stage.world.zetLijnen(steun::lijnen(24));
    stage.draw(0, kBefore);
    drawSteadyFrames(&stage);
    return 0;
}
