// SPDX-License-Identifier: MIT
// Draws frames of a world or of the rain with the processor, so that callgrind counts what a
// steady frame costs: `beeldkosten SCENE`. Prints what the count depends on besides the source;
// without a scene it does that alone.
#include <hwy/targets.h>
#include <QGuiApplication>
#include <QImage>
#include <cstdio>

#include "platform/layers/Damage.h"
#include "platform/layers/DisplayListBuilder.h"
#include "platform/render/cpu/CpuDrawer.h"
#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "rain/MatrixRegen.h"
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

constexpr QSize kSize(480, 270);

platform::PixelBuffer bufferOf(QImage& picture) {
    return {reinterpret_cast<std::uint32_t*>(picture.bits()),
            static_cast<int>(picture.bytesPerLine() / 4), picture.size()};
}

struct Stage {
    virtual ~Stage() = default;
    virtual void draw(int first, int count) = 0;
};

struct WorldStage final : Stage {
    explicit WorldStage(DrieSoort kind)
        : world(kind, {.eigenLijnen = true},
                {.klok = clock, .toeval = random, .landen = &countries}) {}

    platform::ManualClock clock;
    platform::RandomSource random{1};
    brixtel::LandenTabel countries{"/nergens/landen.bin"};
    DrieWereld world;
    platform::CpuSceneDrawer drawer{platform::CpuSceneDrawer::Options{.threads = 1}};
    QImage picture{kSize, QImage::Format_RGB32};
    platform::DrawList list;

    void draw(int first, int count) override {
        const platform::PixelBuffer buffer = bufferOf(picture);
        for (int i = first; i < first + count; ++i) {
            world.scene()->advance(6.0 + i / 60.0);
            platform::extract(*world.scene(), 1.0 * picture.width() / picture.height(), list);
            drawer.draw(list, buffer, {.isKept = i > 0});
        }
    }
};

// Two pictures in turn, as a window has them on a compositor: each is painted where it missed
// the other's frame too.
struct RainStage final : Stage {
    platform::ManualClock clock;
    platform::RandomSource random{1};
    brixtel::MatrixRegen rain{{.maat = QSizeF(kSize)}, clock, random};
    platform::Layer ground;
    platform::CpuDrawer drawer;
    QImage pictures[2] = {QImage(kSize, QImage::Format_RGB32), QImage(kSize, QImage::Format_RGB32)};
    platform::DisplayList lists[2];
    std::vector<QRect> damage{QRect(QPoint(), kSize)}, rects;

    RainStage() {
        ground.setFrame({QPointF(), QSizeF(kSize)});
        ground.setBackgroundColor(Qt::black);
        ground.addSublayer(rain.laag());
    }

    void draw(int first, int count) override {
        const platform::PixelGrid grid{.scale = 1.0, .size = kSize};
        for (int i = first; i < first + count; ++i) {
            clock.advance(1.0 / 60.0);
            platform::DisplayList& list = lists[i % 2];
            platform::DisplayListBuilder(list, clock.now())
                .add(ground, {}, {QPointF(), QSizeF(kSize)});
            rects = damage;
            findDamage(lists[(i + 1) % 2], list, grid, damage);
            rects.insert(rects.end(), damage.begin(), damage.end());
            drawer.draw(list, grid, rects, platform::Rgba{0.0F, 0.0F, 0.0F, 1.0F},
                        bufferOf(pictures[i % 2]));
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
    const QString scene = QString::fromLocal8Bit(argv[1]);
    if (scene == u"regen") {
        RainStage stage;
        stage.draw(0, kBefore);
        drawSteadyFrames(static_cast<Stage*>(&stage));
        return 0;
    }
    const auto kind = brixtel::soortUitRuw(scene);
    if (!kind) return 2;
    WorldStage stage(*kind);
    if (*kind == DrieSoort::bol) stage.world.zetLijnen(steun::lijnen(24));
    stage.draw(0, kBefore);
    drawSteadyFrames(static_cast<Stage*>(&stage));
    return 0;
}
