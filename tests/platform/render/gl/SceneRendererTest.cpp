// SPDX-License-Identifier: MIT
// Whole pictures of small scenes: colours, order, batches, drivers.
#include <cmath>
#include <utility>

#include "platform/render/cpu/CpuDrawer.h"
#include "platform/render/gl/GlCalls.h"
#include "platform/scene/Shading.h"
#include "platform/time/RandomSource.h"
#include "tests/platform/render/gl/ScenePictures.h"
#include "tests/support/Pictures.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {
namespace {

using SceneRendererTest = ScenePictures;

// --- colours ---

TEST_F(SceneRendererTest, ColoursComeOutAsTheyWentIn) {
    for (const QColor& colour :
         {QColor(0, 0, 0), QColor(1, 2, 3), QColor(120, 200, 17), QColor(255, 255, 255)}) {
        Stage stage;
        stage.scene.setBackground(colour);
        const QImage image = picture(stage, {16, 16});
        for (int i = 0; i < 16; ++i) {
            EXPECT_NEAR(qRed(image.pixel(i, i)), colour.red(), 1);
            EXPECT_NEAR(qGreen(image.pixel(i, i)), colour.green(), 1);
            EXPECT_NEAR(qBlue(image.pixel(i, i)), colour.blue(), 1);
        }
    }
}

TEST_F(SceneRendererTest, BlackIsBlackWithoutNoise) {
    Stage stage;
    EXPECT_EQ(lightOf(picture(stage, {64, 64})), 0.0);
}

TEST_F(SceneRendererTest, TooMuchLightIsWhiteAndBloomIsAddedBefore) {
    Stage stage;
    Camera lens = Stage::lens();
    lens.hdr = true;
    lens.bloomIntensity = 1.4;
    lens.bloomThreshold = 0.35;
    lens.bloomBlurRadius = 8.0;
    stage.camera->setCamera(lens);
    const QColor colour(150, 190, 100);
    stage.add(square(40, constant(colour)), {0, 0, -1});
    const QImage image = picture(stage, {64, 64});
    // All is even, so that the blur leaves it.
    const glm::dvec3 light(linearColour(colour));
    const glm::dvec3 expected = 255.0 * composite(light, brightPass(light, 0.35), 1.4);
    EXPECT_NEAR(qRed(image.pixel(32, 32)), expected.r, 1.0);
    EXPECT_NEAR(qGreen(image.pixel(32, 32)), expected.g, 1.0);
    EXPECT_NEAR(qBlue(image.pixel(32, 32)), expected.b, 1.0);
}

TEST_F(SceneRendererTest, AFadeIntoBlackHasNoBands) {
    Stage stage;
    stage.scene.setFog({.start = 1.0, .end = 1.3, .colour = Qt::black});
    stage.add(square(40, constant(QColor(30, 30, 30))), {0, 0, -1});
    const QImage image = picture(stage, {256, 256});
    // Within a step of one 255th both neighbours are mixed: along a ring of one
    // distance, values differ.
    int mixed = 0;
    for (int x = 140; x < 230; ++x)
        for (int y = 126; y < 129; ++y)
            if (green(image, x, y) != green(image, x + 1, y)) ++mixed;
    EXPECT_GT(mixed, 40);
}

// --- order ---

TEST_F(SceneRendererTest, NearerHidesFartherInAnyOrder) {
    for (const bool nearFirst : {true, false}) {
        Stage stage;
        const auto near = [&] { stage.add(square(1, constant(QColor(Qt::red))), {0, 0, -2}); };
        const auto far = [&] { stage.add(square(9, constant(QColor(Qt::green))), {0, 0, -3}); };
        if (nearFirst) near();
        far();
        if (!nearFirst) near();
        const QImage image = picture(stage, {32, 32});
        EXPECT_EQ(image.pixel(16, 16), qRgb(255, 0, 0));
        EXPECT_EQ(image.pixel(2, 2), qRgb(0, 255, 0));
    }
}

TEST_F(SceneRendererTest, BlendedSurfacesLieOverWhatIsBehindThem) {
    Stage stage;
    stage.add(square(9, constant(QColor(255, 0, 0, 128))), {0, 0, -2});
    stage.add(square(9, constant(QColor(0, 255, 0, 128))), {0, 0, -3});
    stage.add(square(9, constant(QColor(0, 0, 255))), {0, 0, -4});
    const double a = 128.0 / 255.0;
    const QRgb pixel = picture(stage, {16, 16}).pixel(8, 8);
    EXPECT_NEAR(qRed(pixel), 255.0 * srgbEncode(a), 1.0);
    EXPECT_NEAR(qGreen(pixel), 255.0 * srgbEncode(a * (1 - a)), 1.0);
    EXPECT_NEAR(qBlue(pixel), 255.0 * srgbEncode((1 - a) * (1 - a)), 1.0);
}

TEST_F(SceneRendererTest, AdditiveSurfacesAddUpDimmedByTheirAlphaAndHideNothing) {
    Stage stage;
    stage.add(square(9, constant(QColor(0, 255, 0, 51), BlendMode::Additive)), {0, 0, -1});
    stage.add(square(9, constant(QColor(0, 255, 0, 102), BlendMode::Additive)), {0, 0, -3});
    stage.add(square(9, constant(QColor(0, 0, 255))), {0, 0, -4});
    const QRgb pixel = picture(stage, {16, 16}).pixel(8, 8);
    EXPECT_NEAR(qGreen(pixel), 255.0 * srgbEncode(0.6), 1.0);
    EXPECT_EQ(qBlue(pixel), 255);
}

TEST_F(SceneRendererTest, WhatIsSingleSidedIsNotSeenFromBehind) {
    Stage stage;
    const MaterialPtr material = constant(QColor(Qt::green));
    material->setDoubleSided(false);
    const NodePtr node = stage.add(square(9, material), {0, 0, -2});
    EXPECT_EQ(green(picture(stage, {8, 8}), 4, 4), 255);
    node->setEulerAngles({0, kPi, 0});
    EXPECT_EQ(green(picture(stage, {8, 8}), 4, 4), 0);
}

// --- drawing together ---

TEST_F(SceneRendererTest, InstancesAreDrawnAsIfEachByItself) {
    RandomSource random(5);
    const MaterialPtr shared =
        constant(digitPicture(true, QColor(0, 200, 60)), BlendMode::Additive);
    const GeometryPtr together = square(0.4, shared);
    Stage many, single;
    for (int i = 0; i < 40; ++i) {
        const glm::dvec3 at{random.between(-1, 1), random.between(-1, 1), random.between(-3, -1)};
        many.add(together, at);
        single.add(square(0.4, shared), at);
    }
    const QImage expected = picture(single, {96, 96});
    EXPECT_EQ(snapshot_->renderer().drawCalls(), 41);
    const QImage actual = picture(many, {96, 96});
    EXPECT_EQ(snapshot_->renderer().drawCalls(), 2);
    EXPECT_TRUE(agree(actual, expected, "instances", {.largest = 1, .mean = 0.01}));
}

TEST_F(SceneRendererTest, PlainSurfacesOfSeveralMeshesAreDrawnAtOnce) {
    Stage stage;
    for (int i = 0; i < 12; ++i)
        stage.add(makeLines({{-1, 0.1F * static_cast<float>(i) - 0.6F + 1.0F / 120.0F, -1},
                             {1, 0.1F * static_cast<float>(i) - 0.6F + 1.0F / 120.0F, -1}},
                            constant(QColor(0, 20 * i, 0), BlendMode::Additive)),
                  {});
    const QImage image = picture(stage, {120, 120});
    EXPECT_EQ(snapshot_->renderer().drawCalls(), 2);
    // Each in its own colour: the rows of the lines, from the bottom.
    for (int i = 1; i < 12; ++i) {
        int most = 0;
        const int row = 119 - static_cast<int>(std::lround((0.1 * i + 0.4) * 60));
        for (int y = row - 2; y <= row + 2; ++y)
            most = std::max(most, green(image, 60, y));
        EXPECT_LE(most, 20 * i + 1);
        EXPECT_GE(most, 20 * i * 0.7);
    }
}

struct Budget {
    const char* name;
    int calls;
};

TEST_F(SceneRendererTest, DrawCallsStayWithinTheirBudgets) {
    for (const Budget& budget :
         {Budget{"cube", 16}, Budget{"tunnel", 14}, Budget{"blocks", 18}, Budget{"globe", 12}}) {
        const auto scene = makeStandIn(QString::fromLatin1(budget.name), 1);
        scene->advance(5.0);
        DrawList list;
        extract(*scene, 1.6, list);
        for (const double scale : {1.0, 2.0}) {
            EXPECT_FALSE(snapshot_->picture(list, QSizeF(160, 100), scale).isNull());
            EXPECT_LE(snapshot_->renderer().drawCalls(), budget.calls) << budget.name;
        }
    }
}

TEST_F(SceneRendererTest, WhatIsNoLongerShownIsDropped) {
    restart({.keepDraws = 3});
    Stage full;
    full.add(square(1, constant(digitPicture(false, Qt::white), BlendMode::Additive)), {0, 0, -1});
    Stage empty;
    EXPECT_FALSE(picture(full, {16, 16}).isNull());
    EXPECT_EQ(snapshot_->renderer().meshCount(), 1);
    EXPECT_EQ(snapshot_->renderer().pictureCount(), 1);
    for (int i = 0; i < 4; ++i)
        EXPECT_FALSE(picture(empty, {16, 16}).isNull());
    EXPECT_EQ(snapshot_->renderer().meshCount(), 0);
    EXPECT_EQ(snapshot_->renderer().pictureCount(), 0);
}

TEST_F(SceneRendererTest, TheSameListGivesTheSamePicture) {
    const auto scene = makeTunnel(2);
    scene->advance(3.0);
    DrawList list;
    extract(*scene, 1.6, list);
    const QImage first = snapshot_->picture(list, QSizeF(160, 100));
    EXPECT_EQ(snapshot_->picture(list, QSizeF(160, 100)), first);
}

// --- samples ---

TEST_F(SceneRendererTest, OnlyOutlinesAskForSamples) {
    const auto samplesOf = [&](const QString& name) {
        const auto scene = makeStandIn(name, 1);
        DrawList list;
        extract(*scene, 1.6, list);
        EXPECT_FALSE(snapshot_->picture(list, QSizeF(64, 40)).isNull());
        return snapshot_->renderer().quality().samples;
    };
    EXPECT_EQ(samplesOf(QStringLiteral("cube")), 1);
    EXPECT_EQ(samplesOf(QStringLiteral("tunnel")), 1);
    EXPECT_EQ(samplesOf(QStringLiteral("blocks")), 4);
}

TEST_F(SceneRendererTest, OutlinesAreSmooth) {
    Stage stage;
    const NodePtr node = stage.add(square(1, constant(QColor(Qt::white))), {0, 0, -1});
    node->setEulerAngles({0, 0, 0.3});
    const QImage image = picture(stage, {64, 64});
    int between = 0;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            if (green(image, x, y) > 20 && green(image, x, y) < 240) ++between;
    EXPECT_GT(between, 40);
}

// --- lesser drivers, and asking too much ---

TEST_F(SceneRendererTest, ADriverWithoutSamplesDrawsWithout) {
    restart({.maxSamples = 1});
    Stage stage;
    stage.add(square(1, constant(QColor(Qt::white))), {0, 0, -1});
    EXPECT_EQ(green(picture(stage, {16, 16}), 8, 8), 255);
    EXPECT_EQ(snapshot_->renderer().quality().samples, 1);
}

// A driver that has no image of several samples, told only when one is asked for.
class Refusal {
  public:
    Refusal() {
        status_ = std::exchange(glCheckFramebufferStatus, refuse);
        make_ = std::exchange(glGenRenderbuffers, countMade);
        asked = made = 0;
    }
    ~Refusal() {
        glCheckFramebufferStatus = status_;
        glGenRenderbuffers = make_;
    }
    Refusal(const Refusal&) = delete;
    Refusal& operator=(const Refusal&) = delete;

    static inline int asked = 0;
    static inline int made = 0;

  private:
    static GLenum APIENTRY refuse(GLenum target) {
        ++asked;
        GLint samples = 0;
        glGetIntegerv(GL_SAMPLES, &samples);
        return samples > 1 ? GL_FRAMEBUFFER_UNSUPPORTED : status_(target);
    }
    static void APIENTRY countMade(GLsizei count, GLuint* names) {
        made += count;
        make_(count, names);
    }
    static inline PFNGLCHECKFRAMEBUFFERSTATUSPROC status_ = nullptr;
    static inline PFNGLGENRENDERBUFFERSPROC make_ = nullptr;
};

TEST_F(SceneRendererTest, ADriverThatRefusesSamplesIsAskedOnceForEachSize) {
    const auto scene = makeBlocks(1);
    DrawList list;
    extract(*scene, 1.6, list);
    ASSERT_FALSE(snapshot_->picture(list, QSizeF(64, 40)).isNull());
    const Refusal refusal;
    for (const QSizeF size : {QSizeF(80, 50), QSizeF(96, 60)}) {
        Refusal::made = 0;
        ASSERT_FALSE(snapshot_->picture(list, size).isNull());
        EXPECT_EQ(snapshot_->renderer().quality().samples, 1);
        EXPECT_GT(Refusal::made, 0);
        Refusal::made = Refusal::asked = 0;
        for (int i = 0; i < 3; ++i) {
            ASSERT_FALSE(snapshot_->picture(list, size).isNull());
            EXPECT_EQ(snapshot_->renderer().quality().samples, 1);
        }
        EXPECT_EQ(Refusal::made, 0);
        EXPECT_EQ(Refusal::asked, 0);
    }
}

TEST_F(SceneRendererTest, ADriverWithoutFloatTargetsShowsTheSameBelowWhite) {
    const auto scene = makeBlocks(1);
    scene->advance(2.0);
    DrawList list;
    extract(*scene, 1.6, list);
    list.camera.bloomIntensity = 0.0F;
    // With several samples a pixel, edges of what is brighter than white differ.
    const SceneQuality plain{.samples = 1};
    const QImage expected = snapshot_->picture(list, QSizeF(160, 100), 1.0, plain);
    restart({.floatTargets = false});
    const QImage actual = snapshot_->picture(list, QSizeF(160, 100), 1.0, plain);
    // Every surface is rounded before the next one is added to it.
    EXPECT_TRUE(agree(actual, expected, "no-floats", {.largest = 6, .mean = 0.3}));
}

TEST_F(SceneRendererTest, ASizeThatNoDriverHasGivesNoPicture) {
    Stage stage;
    EXPECT_TRUE(picture(stage, {70'000, 2}).isNull());
    EXPECT_TRUE(picture(stage, {0, 10}).isNull());
    EXPECT_FALSE(picture(stage, {8, 8}).isNull());
}

}  // namespace
}  // namespace platform::test
