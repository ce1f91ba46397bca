// SPDX-License-Identifier: MIT
// A floor that stays as it is costs the processor nothing where nothing else is, and little
// elsewhere.
#include <gtest/gtest.h>

#include <QRect>
#include <algorithm>
#include <array>
#include <glm/gtc/matrix_transform.hpp>
#include <span>
#include <vector>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {

namespace {

constexpr QSize kSize(640, 400);

using Pixels = std::vector<std::uint32_t>;

PixelBuffer bufferOf(Pixels& pixels) {
    return {pixels.data(), kSize.width(), kSize};
}

Pixels noPixels() {
    return Pixels(
        static_cast<std::size_t>(kSize.width()) * static_cast<std::size_t>(kSize.height()), 0);
}

// The blocks and the digits over their floor.
DrawList blocksAt(double time) {
    const auto scene = makeStandIn(QStringLiteral("blocks"), 1);
    scene->advance(time);
    DrawList list;
    extract(*scene, 1.0 * kSize.width() / kSize.height(), list);
    return list;
}

DrawList floorAlone() {
    DrawList list = blocksAt(0.0);
    list.batches.clear();
    return list;
}

Pixels newlyDrawn(const DrawList& list, double resolution) {
    Pixels pixels = noPixels();
    CpuSceneDrawer().draw(list, bufferOf(pixels), {.resolution = resolution});
    return pixels;
}

// The number of pixels that differ outside the rectangles.
int missed(const Pixels& before, const Pixels& after, std::span<const QRect> rects) {
    int count = 0;
    for (int y = 0; y < kSize.height(); ++y)
        for (int x = 0; x < kSize.width(); ++x) {
            const auto at = static_cast<std::size_t>(y * kSize.width() + x);
            const bool told = std::any_of(rects.begin(), rects.end(),
                                          [=](const QRect& rect) { return rect.contains(x, y); });
            if (before[at] != after[at] && !told) ++count;
        }
    return count;
}

}  // namespace

TEST(CpuFloor, AStillFloorCostsNothing) {
    const DrawList list = floorAlone();
    Pixels pixels = noPixels();
    CpuSceneDrawer drawer;
    drawer.draw(list, bufferOf(pixels), {});
    EXPECT_GT(drawer.counts().encoded, 20);
    const auto damage = drawer.draw(list, bufferOf(pixels), {.isKept = true});
    EXPECT_TRUE(damage.empty());
    EXPECT_EQ(drawer.counts().drawn, 0);
    EXPECT_EQ(drawer.counts().encoded, 0);
    EXPECT_EQ(drawer.counts().blackened, 0);
}

TEST(CpuFloor, OnlyTilesThatShowMoreThanTheFloorAreDrawn) {
    Pixels pixels = noPixels();
    CpuSceneDrawer drawer;
    drawer.draw(blocksAt(2.0), bufferOf(pixels), {});
    const CpuSceneDrawer::Counts first = drawer.counts();
    const auto damage = drawer.draw(blocksAt(2.1), bufferOf(pixels), {.isKept = true});
    const CpuSceneDrawer::Counts& next = drawer.counts();
    EXPECT_LT(next.drawn, first.drawn * 9 / 10);
    EXPECT_LT(next.encoded, first.encoded * 9 / 10);
    int told = 0;
    for (const QRect& rect : damage)
        told += rect.width() * rect.height();
    EXPECT_LE(told, (next.encoded + next.blackened) * 64 * 32);
}

// Whatever changes from draw to draw, in whichever memory, the picture is what a new drawer
// makes, and the damage tells every change.
TEST(CpuFloor, ChangesAroundAFloorLeaveWhatANewDrawerMakes) {
    enum Change { kNone, kTime, kCamera, kBackground, kThreshold, kNoBloom, kNoFloor, kCoarse };
    std::array<Pixels, 2> memories{noPixels(), noPixels()};
    std::array<bool, 2> isKept{};
    CpuSceneDrawer drawer;
    Pixels shown = noPixels();
    double time = 2.0;
    int step = 0;
    for (const Change change :
         {kNone,    kTime,       kTime,       kTime, kCamera,    kCamera,    kNone,      kTime,
          kTime,    kBackground, kBackground, kTime, kThreshold, kThreshold, kThreshold, kTime,
          kNoBloom, kTime,       kNoFloor,    kTime, kTime,      kCoarse,    kCoarse,    kCoarse,
          kCoarse,  kCoarse,     kTime,       kTime, kNone,      kCamera,    kTime,      kTime}) {
        if (change == kTime || change == kCoarse) time += 0.7;
        DrawList list = blocksAt(time);
        if (change == kCamera)
            list.camera.view = glm::translate(list.camera.view, {0.3F, 0.0F, 0.1F});
        if (change == kBackground) list.background = {0.0F, 0.02F, 0.01F, 1.0F};
        if (change == kThreshold) list.camera.bloomThreshold = 0.01F;
        if (change == kNoBloom) list.camera.bloomIntensity = 0.0F;
        if (change == kNoFloor) list.floor.reset();
        const double resolution = change == kCoarse ? 0.5 : 1.0;
        const auto turn = static_cast<std::size_t>(step++ % 2);
        const auto damage = drawer.draw(list, bufferOf(memories[turn]),
                                        {.resolution = resolution, .isKept = isKept[turn]});
        isKept[turn] = true;
        const Pixels wanted = newlyDrawn(list, resolution);
        ASSERT_TRUE(memories[turn] == wanted) << "step " << step;
        EXPECT_EQ(missed(shown, wanted, damage), 0) << "step " << step;
        shown = wanted;
    }
}

}  // namespace platform::test
