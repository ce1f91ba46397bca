// SPDX-License-Identifier: MIT
#include "platform/render/cpu/CpuSceneDrawer.h"

#include <gtest/gtest.h>
#include <hwy/highway.h>

#include <QImage>
#include <QRegion>
#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "platform/scene/DrawList.h"
#include "platform/scene/Shading.h"
#include "tests/support/DotList.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {

namespace {

constexpr std::uint32_t kGuard = 0x12345678U;
constexpr std::uint32_t kBlack = 0xFF000000U;

// A picture within a larger piece of memory, which nobody may write.
class GuardedPicture {
  public:
    explicit GuardedPicture(QSize size)
        : size_(size),
          stride_(size.width() + 7),
          pixels_(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(size.height() + 2),
                  kGuard) {}

    [[nodiscard]] PixelBuffer buffer() { return {pixels_.data() + stride_, stride_, size_}; }
    [[nodiscard]] bool isGuarded() const {
        for (std::size_t i = 0; i < pixels_.size(); ++i) {
            const int x = static_cast<int>(i) % stride_;
            const int y = static_cast<int>(i) / stride_ - 1;
            const bool inside = x < size_.width() && y >= 0 && y < size_.height();
            if (!inside && pixels_[i] != kGuard) return false;
        }
        return true;
    }
    [[nodiscard]] std::uint32_t at(int x, int y) const {
        return pixels_[static_cast<std::size_t>((y + 1) * stride_ + x)];
    }
    [[nodiscard]] std::vector<std::uint32_t> all() const {
        std::vector<std::uint32_t> result;
        for (int y = 0; y < size_.height(); ++y)
            for (int x = 0; x < size_.width(); ++x)
                result.push_back(at(x, y));
        return result;
    }

  private:
    QSize size_;
    int stride_;
    std::vector<std::uint32_t> pixels_;
};

DrawList listOf(const QString& name, double time, double aspect) {
    const auto scene = makeStandIn(name, 1);
    scene->advance(time);
    DrawList list;
    extract(*scene, aspect, list);
    return list;
}

// One vector target's pictures of a frame and of the next frame.
std::vector<std::uint32_t> drawnBy(std::int64_t target, const QString& name, QSize size,
                                   double scale) {
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    GuardedPicture picture(size);
    CpuSceneDrawer drawer;
    std::vector<std::uint32_t> result;
    for (const double time : {3.0, 3.1}) {
        drawer.draw(listOf(name, time, 1.0 * size.width() / size.height()), picture.buffer(),
                    {.scale = scale, .isKept = time > 3.0});
        const auto pixels = picture.all();
        result.insert(result.end(), pixels.begin(), pixels.end());
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    return result;
}

std::vector<std::int64_t> targets() {
    std::vector<std::int64_t> result;
    std::int64_t rest = hwy::SupportedTargets() | HWY_SCALAR;
    while (rest != 0) {
        const std::int64_t lowest = rest & -rest;
        result.push_back(lowest);
        rest &= ~lowest;
    }
    return result;
}

const char* const kScenes[] = {"cube", "tunnel", "wall", "blocks", "globe"};

}  // namespace

TEST(CpuSceneDrawer, EveryVectorTargetMakesTheSameBits) {
    ASSERT_GE(targets().size(), 2U) << "nothing to compare";
    for (const char* const name : kScenes) {
        const auto first = drawnBy(targets().front(), QLatin1String(name), {333, 190}, 1.3);
        EXPECT_TRUE(std::any_of(first.begin(), first.end(),
                                [](std::uint32_t pixel) { return pixel != kBlack; }));
        for (const std::int64_t target : targets())
            EXPECT_TRUE(drawnBy(target, QLatin1String(name), {333, 190}, 1.3) == first)
                << name << " with " << hwy::TargetName(target);
    }
}

TEST(CpuSceneDrawer, EveryNumberOfThreadsMakesTheSameBits) {
    const QSize size(700, 500);
    for (const char* const name : kScenes) {
        const DrawList lists[2] = {listOf(QLatin1String(name), 3.0, 1.4),
                                   listOf(QLatin1String(name), 3.1, 1.4)};
        CpuSceneDrawer alone(CpuSceneDrawer::Options{.threads = 1});
        GuardedPicture wanted(size);
        for (const int threads : {2, 4}) {
            CpuSceneDrawer drawer(CpuSceneDrawer::Options{.threads = threads});
            GuardedPicture picture(size);
            for (int i = 0; i < 8; ++i) {
                const double resolution = i < 5 ? 1.0 : 0.8;
                const CpuSceneDrawer::Frame frame{.resolution = resolution, .isKept = i > 0};
                const auto damage = alone.draw(lists[i % 2], wanted.buffer(), frame);
                const auto same = drawer.draw(lists[i % 2], picture.buffer(), frame);
                ASSERT_EQ(picture.all(), wanted.all()) << name << " " << threads << " " << i;
                EXPECT_TRUE(std::equal(damage.begin(), damage.end(), same.begin(), same.end()));
                EXPECT_EQ(drawer.counts().drawn, alone.counts().drawn);
                EXPECT_EQ(drawer.counts().glowing, alone.counts().glowing);
                EXPECT_EQ(drawer.counts().encoded, alone.counts().encoded);
            }
            EXPECT_TRUE(picture.isGuarded());
        }
        // Small enough, and the threads would not be asked.
        EXPECT_GT(alone.counts().tiles, 48) << name;
    }
}

// Every change of resolution and of the picture's size on the way to a frame
// leaves what a new drawer makes of it.
TEST(CpuSceneDrawer, AStretchedPictureIsWhatANewDrawerMakes) {
    CpuSceneDrawer drawer;
    for (const QSize size : {QSize(333, 201), QSize(334, 201)}) {
        GuardedPicture picture(size);
        int step = 0;
        for (const double resolution : {0.5, 0.5, 0.65, 0.65, 1.0, 0.65, 0.65, 0.5, 1.0}) {
            const DrawList list = listOf(QStringLiteral("cube"), 2.0 + 0.3 * step, 1.6);
            const CpuSceneDrawer::Frame frame{.resolution = resolution, .isKept = step++ > 0};
            const auto damage = drawer.draw(list, picture.buffer(), frame);
            GuardedPicture wanted(size);
            CpuSceneDrawer fresh;
            fresh.draw(list, wanted.buffer(), {.resolution = resolution});
            ASSERT_EQ(picture.all(), wanted.all()) << size.width() << " step " << step;
            EXPECT_TRUE(picture.isGuarded());
            for (const QRect& rect : damage)
                EXPECT_TRUE(QRect(QPoint(0, 0), size).contains(rect));
        }
    }
}

TEST(CpuSceneDrawer, OddSizesAreDrawnWithinTheirMemory) {
    for (const char* const name : kScenes) {
        for (const QSize size : {QSize(1, 1), QSize(3, 2), QSize(64, 32), QSize(65, 33),
                                 QSize(1, 400), QSize(500, 1), QSize(127, 95)}) {
            GuardedPicture picture(size);
            CpuSceneDrawer drawer;
            drawer.draw(listOf(QLatin1String(name), 2.0, 1.0 * size.width() / size.height()),
                        picture.buffer(), {});
            EXPECT_TRUE(picture.isGuarded()) << name << ' ' << size.width() << 'x' << size.height();
            for (const std::uint32_t pixel : picture.all())
                ASSERT_EQ(pixel >> 24U, 0xFFU);
        }
    }
}

TEST(CpuSceneDrawer, AVeryWidePictureIsDrawn) {
    GuardedPicture picture({16384, 40});
    CpuSceneDrawer drawer;
    drawer.draw(listOf(QStringLiteral("tunnel"), 2.0, 16384.0 / 40.0), picture.buffer(), {});
    EXPECT_TRUE(picture.isGuarded());
}

TEST(CpuSceneDrawer, ASceneWithoutLightIsBlackAndCostsNothing) {
    const Scene scene;
    DrawList list;
    extract(scene, 1.6, list);
    list.background = {0.0F, 0.0F, 0.0F, 1.0F};
    GuardedPicture picture({320, 200});
    CpuSceneDrawer drawer;
    drawer.draw(list, picture.buffer(), {});
    for (const std::uint32_t pixel : picture.all())
        ASSERT_EQ(pixel, kBlack);
    const auto damage = drawer.draw(list, picture.buffer(), {.isKept = true});
    EXPECT_TRUE(damage.empty());
    EXPECT_EQ(drawer.counts().drawn, 0);
    EXPECT_EQ(drawer.counts().encoded, 0);
    EXPECT_EQ(drawer.counts().glowing, 0);
}

TEST(CpuSceneDrawer, EvenLightGlowsEvenlyToThePicturesEdges) {
    const Scene scene;
    DrawList list;
    extract(scene, 1.6, list);
    list.background = {0.02F, 0.5F, 0.1F, 1.0F};
    list.camera.bloomIntensity = 0.6F;
    list.camera.bloomThreshold = 0.2F;
    for (const float radius : {3.0F, 8.0F, 30.0F})
        for (const QSize size : {QSize(128, 64), QSize(333, 190), QSize(70, 33), QSize(5, 3)}) {
            list.camera.bloomBlurRadius = radius;
            CpuSceneDrawer drawer;
            const QImage image = drawer.picture(list, size);
            const double light = composite(glm::dvec3(0.5), glm::dvec3(0.3), 0.6).g;
            for (int y = 0; y < size.height(); ++y)
                for (int x = 0; x < size.width(); ++x)
                    ASSERT_NEAR(qGreen(image.pixel(x, y)), 255.0 * light, 1.0)
                        << x << ' ' << y << ' ' << size.width() << ' ' << radius;
        }
}

TEST(CpuSceneDrawer, AnotherSizeWithoutGlowInBetweenLeavesTheGlow) {
    const Scene scene;
    DrawList dark;
    extract(scene, 1.6, dark);
    dark.camera.bloomIntensity = 0.6F;
    dark.camera.bloomThreshold = 0.2F;
    DrawList bright = dark;
    bright.background = {0.02F, 0.5F, 0.1F, 1.0F};
    DrawList glowless = bright;
    glowless.camera.bloomIntensity = 0.0F;
    constexpr QSize kSmall(60, 30), kLarge(300, 200);
    CpuSceneDrawer used;
    static_cast<void>(used.picture(dark, kLarge));
    static_cast<void>(used.picture(glowless, kSmall));
    EXPECT_EQ(used.picture(bright, kLarge), CpuSceneDrawer().picture(bright, kLarge));
}

// Shapes with places that are no number, or too large, are left out; the rest is drawn.
TEST(CpuSceneDrawer, SenselessTransformsAreLeftOut) {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinite = std::numeric_limits<float>::infinity();
    for (const char* const name : kScenes) {
        for (const float value : {kNan, kInfinite, -kInfinite, 1e38F, 1e-38F, 1e20F}) {
            DrawList list = listOf(QLatin1String(name), 2.0, 1.6);
            for (std::size_t i = 0; i < list.instances.size(); i += 3)
                list.instances[i].world[static_cast<int>(i % 4)][static_cast<int>(i % 3)] = value;
            GuardedPicture picture({160, 100});
            CpuSceneDrawer drawer;
            drawer.draw(list, picture.buffer(), {});
            EXPECT_TRUE(picture.isGuarded());
            list = listOf(QLatin1String(name), 2.0, 1.6);
            list.camera.view[1][2] = value;
            drawer.draw(list, picture.buffer(), {});
            list = listOf(QLatin1String(name), 2.0, 1.6);
            list.camera.projection[0][0] = value;
            drawer.draw(list, picture.buffer(), {.scale = value});
            EXPECT_TRUE(picture.isGuarded());
        }
    }
}

TEST(CpuSceneDrawer, ACameraWithoutSenseLeavesBlack) {
    DrawList list = listOf(QStringLiteral("cube"), 2.0, 1.6);
    list.camera.projection[0][0] = std::numeric_limits<float>::quiet_NaN();
    GuardedPicture picture({160, 100});
    CpuSceneDrawer drawer;
    drawer.draw(list, picture.buffer(), {});
    for (const std::uint32_t pixel : picture.all())
        ASSERT_EQ(pixel, kBlack);
}

TEST(CpuSceneDrawer, AnotherSizeInMidRunIsAsIfItWereTheFirst) {
    for (const char* const name : kScenes) {
        CpuSceneDrawer used;
        for (const QSize size : {QSize(200, 120), QSize(90, 250), QSize(200, 121)}) {
            const DrawList list =
                listOf(QLatin1String(name), 2.0, 1.0 * size.width() / size.height());
            GuardedPicture picture(size);
            GuardedPicture fresh(size);
            // A caller may say that the picture is kept: a picture of another size is not.
            used.draw(list, picture.buffer(), {.isKept = true});
            CpuSceneDrawer().draw(list, fresh.buffer(), {});
            EXPECT_TRUE(picture.all() == fresh.all()) << name;
        }
    }
}

// Pixels outside the rectangles stay the same, frame after frame.
TEST(CpuSceneDrawer, DamageHoldsEverythingThatChanges) {
    for (const char* const name : kScenes) {
        const QSize size(300, 190);
        const auto scene = makeStandIn(QLatin1String(name), 1);
        GuardedPicture kept(size);
        CpuSceneDrawer drawer;
        std::vector<std::uint32_t> before;
        for (int i = 0; i < 8; ++i) {
            scene->advance(1.0 + 0.4 * i);
            DrawList list;
            extract(*scene, 300.0 / 190.0, list);
            const auto damage = drawer.draw(list, kept.buffer(), {.isKept = i > 0});
            GuardedPicture fresh(size);
            CpuSceneDrawer().draw(list, fresh.buffer(), {});
            const auto shown = kept.all();
            ASSERT_TRUE(shown == fresh.all()) << name << ' ' << i;
            for (std::size_t at = 0; at < before.size(); ++at) {
                if (before[at] == shown[at]) continue;
                const QPoint place(static_cast<int>(at) % size.width(),
                                   static_cast<int>(at) / size.width());
                ASSERT_TRUE(std::any_of(damage.begin(), damage.end(), [&](const QRect& rect) {
                    return rect.contains(place);
                })) << name;
            }
            before = shown;
        }
    }
}

// A window's buffers are drawn into in turn, in no fixed order. Each is whole, and the damage
// tells the difference from the frame before, which another buffer holds.
TEST(CpuSceneDrawer, PicturesInTurnAreWholeAndTheDamageIsFromFrameToFrame) {
    const QSize size(640, 400);
    for (const double resolution : {1.0, 0.6}) {
        GuardedPicture pictures[3] = {GuardedPicture(size), GuardedPicture(size),
                                      GuardedPicture(size)};
        bool holds[3] = {};
        CpuSceneDrawer drawer;
        std::vector<std::uint32_t> before;
        float x = -0.6F;
        for (const int turn : {0, 1, 0, 1, 2, 1, 0, 2, 0, 1, 1, 2}) {
            const DrawList list = dotList(x += 0.1F, 1.6);
            const bool isKept = std::exchange(holds[turn], true);
            const auto damage = drawer.draw(list, pictures[turn].buffer(),
                                            {.resolution = resolution, .isKept = isKept});
            GuardedPicture fresh(size);
            CpuSceneDrawer().draw(list, fresh.buffer(), {.resolution = resolution});
            const auto shown = pictures[turn].all();
            ASSERT_TRUE(shown == fresh.all()) << resolution;
            EXPECT_NE(std::count(shown.begin(), shown.end(), kBlack), std::ssize(shown));
            QRegion told;
            std::int64_t area = 0;
            for (const QRect& rect : damage) {
                told += rect;
                area += std::int64_t{rect.width()} * rect.height();
            }
            // The tiles of the dot as it is and as it was, of more than a hundred.
            EXPECT_EQ(area < size.width() * size.height() / 5, isKept) << area;
            for (std::size_t at = 0; at < before.size(); ++at) {
                if (before[at] == shown[at]) continue;
                ASSERT_TRUE(told.contains(QPoint(static_cast<int>(at) % size.width(),
                                                 static_cast<int>(at) / size.width())));
            }
            before = shown;
        }
    }
}

// A tube around the camera has no edges to smooth, and its picture is read in whole rows; beside
// another tube it is drawn by samples. Edges between its flat sides are all that may differ.
TEST(CpuSceneDrawer, APictureIsTheSameWithAndWithoutSamples) {
    const QSize size(500, 300);
    DrawList list = listOf(QStringLiteral("wall"), 2.0, 5.0 / 3.0);
    CpuSceneDrawer drawer;
    const QImage whole = drawer.picture(list, size);
    const auto isTube = [](const DrawBatch& batch) { return batch.material.opaque; };
    DrawBatch& tube = *std::find_if(list.batches.begin(), list.batches.end(), isTube);
    ASSERT_EQ(tube.count, 1U);
    DrawInstance behind = list.instances[tube.first];
    tube.first = static_cast<std::uint32_t>(list.instances.size());
    tube.count = 2;
    list.instances.push_back(behind);
    behind.world[3].z += 5000.0F;
    list.instances.push_back(behind);
    const QImage sampled = drawer.picture(list, size);
    int lit = 0;
    int other = 0;
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            const QRgb a = whole.pixel(x, y);
            const QRgb b = sampled.pixel(x, y);
            if (qGreen(a) > 8) ++lit;
            const auto differs = [](int one, int two) { return std::abs(one - two) > 2; };
            if (differs(qRed(a), qRed(b)) || differs(qGreen(a), qGreen(b))) ++other;
        }
    EXPECT_GT(lit, size.width() * size.height() / 20);
    EXPECT_LT(other, lit / 50);
}

TEST(CpuSceneDrawer, TilesWithoutLightAreLeftAlone) {
    DrawList list = dotList(0.0F, 1.6);
    GuardedPicture picture({640, 400});
    CpuSceneDrawer drawer;
    drawer.draw(list, picture.buffer(), {});
    drawer.draw(list, picture.buffer(), {.isKept = true});
    EXPECT_EQ(drawer.counts().tiles, 130);
    EXPECT_GE(drawer.counts().drawn, 1);
    EXPECT_LE(drawer.counts().drawn, 4);
    EXPECT_LE(drawer.counts().encoded, 4);
    EXPECT_EQ(drawer.counts().blackened, 0);
    // The object goes, and its tiles are made black once.
    list.batches.clear();
    const auto damage = drawer.draw(list, picture.buffer(), {.isKept = true});
    EXPECT_EQ(drawer.counts().drawn, 0);
    EXPECT_GE(drawer.counts().blackened, 1);
    EXPECT_FALSE(damage.empty());
    EXPECT_TRUE(drawer.draw(list, picture.buffer(), {.isKept = true}).empty());
    for (const std::uint32_t pixel : picture.all())
        ASSERT_EQ(pixel, kBlack);
}

}  // namespace platform::test
