// SPDX-License-Identifier: MIT
// Whole pictures of small scenes: shapes and where they are.
#include <cmath>
#include <glm/gtc/matrix_transform.hpp>

#include "platform/render/QualityLadder.h"
#include "platform/scene/Shading.h"
#include "tests/platform/render/gl/ScenePictures.h"
#include "tests/support/Pictures.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {
namespace {

using SceneShapesTest = ScenePictures;

// --- lines ---

TEST_F(SceneShapesTest, LinesAreOnePointWideAtEveryDensity) {
    Stage stage;
    stage.add(makeLines({{-2, 0.013F, -1}, {2, 0.013F, -1}}, constant(QColor(0, 188, 0))), {});
    for (const double scale : {1.0, 2.0, 3.0}) {
        const QImage image = snapshot_->picture(stage.list(), QSizeF(64, 64), scale);
        const double columns = 64.0 * scale;
        EXPECT_NEAR(lightOf(image) / srgbDecode(188 / 255.0) / columns, scale, 0.05 * scale);
    }
}

TEST_F(SceneShapesTest, ALineKeepsItsWidthWhateverItsSlope) {
    // A slope of 1 is left out: there pixels stand in step with the line.
    for (const float slope : {0.0F, 0.3F, 0.87F}) {
        Stage stage;
        stage.add(makeLines({{-0.5F, -0.5F * slope, -1}, {0.5F, 0.5F * slope, -1}},
                            constant(QColor(0, 188, 0))),
                  {});
        const double length = 64.0 * std::hypot(1.0, slope);
        const double light = lightOf(picture(stage, {128, 128})) / srgbDecode(188 / 255.0);
        EXPECT_NEAR(light / length, 1.0, 0.06) << slope;
    }
}

TEST_F(SceneShapesTest, ALineFromBehindTheCameraIsCutOffBeforeIt) {
    Stage stage;
    stage.add(makeLines({{0.3F, -0.5F, 5}, {0.3F, -0.5F, -10}}, constant(QColor(Qt::green))), {});
    const QImage image = picture(stage, {64, 64});
    // Seen from (0, 0, 0) it runs from the lower right edge to near the middle,
    // and nowhere else.
    EXPECT_GT(lightOf(image), 10.0);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 64; ++x)
            EXPECT_EQ(green(image, x, y), 0);
}

// --- depth ---

TEST_F(SceneShapesTest, WhatReadsNoDepthIsSeenThroughWhatIsNearer) {
    for (const bool reads : {true, false}) {
        Stage stage;
        stage.add(square(2.0, constant(QColor(Qt::blue))), {0, 0, -1});
        const auto behind = constant(QColor(Qt::green), BlendMode::Additive);
        behind->setReadsDepth(reads);
        stage.add(square(2.0, behind), {0, 0, -2});
        // The last square asks the depth again.
        const auto last = constant(QColor(Qt::red), BlendMode::Additive);
        stage.add(square(2.0, last), {0, 0, -3})->setRenderingOrder(1);
        const QImage image = picture(stage, {32, 32});
        EXPECT_EQ(image.pixel(16, 16), reads ? qRgb(0, 0, 255) : qRgb(0, 255, 255));
    }
}

// --- the same at every density ---

// Half as large, averaged in linear light.
QImage halved(const QImage& image) {
    QImage result(image.size() / 2, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < result.height(); ++y)
        for (int x = 0; x < result.width(); ++x) {
            double sum = 0.0;
            for (const int i : {0, 1, 2, 3})
                sum += 0.25 * srgbDecode(green(image, 2 * x + i % 2, 2 * y + i / 2) / 255.0);
            const int value = static_cast<int>(std::lround(255.0 * srgbEncode(sum)));
            result.setPixel(x, y, qRgb(value, value, value));
        }
    return result;
}

TEST_F(SceneShapesTest, BloomLooksTheSameAtOneAndTwoPixelsAPoint) {
    Stage stage;
    Camera lens = Stage::lens();
    lens.hdr = true;
    lens.bloomIntensity = 1.4;
    lens.bloomThreshold = 0.35;
    lens.bloomBlurRadius = 14.0;
    stage.camera->setCamera(lens);
    stage.add(square(0.2, constant(QColor(Qt::white))), {0, 0, -1});
    for (const bool fine : {true, false}) {
        const SceneQuality quality{.fineBloom = fine};
        const QImage once = snapshot_->picture(stage.list(), QSizeF(96, 96), 1.0, quality);
        const QImage twice = snapshot_->picture(stage.list(), QSizeF(96, 96), 2.0, quality);
        // The square's own edge has but four samples a pixel.
        EXPECT_TRUE(agree(once, halved(twice), "density", {.largest = 16, .mean = 0.3}));
    }
}

// The light of each cell of a grid of 12 by 8 over the picture.
std::vector<double> lightOfCells(const QImage& image) {
    constexpr int kColumns = 12, kRows = 8;
    const int width = image.width() / kColumns, height = image.height() / kRows;
    std::vector<double> cells;
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column)
            cells.push_back(lightOf(image.copy(column * width, row * height, width, height)));
    return cells;
}

// The light that moved between cells, as a share of the best picture's.
double movedLight(const std::vector<double>& from, const std::vector<double>& to, double whole) {
    double moved = 0.0;
    for (std::size_t i = 0; i < from.size(); ++i)
        moved += std::abs(from[i] - to[i]);
    return moved / whole;
}

TEST_F(SceneShapesTest, AllRungsShowTheSamePicture) {
    for (const char* name : {"cube", "tunnel", "blocks"}) {
        const auto scene = makeStandIn(QString::fromLatin1(name), 3);
        scene->advance(5.0);
        DrawList list;
        extract(*scene, 1.5, list);
        const QSizeF size(360, 240);
        const QImage best = snapshot_->picture(list, size, 1.0, kQualityRungs[0]);
        const auto cells = lightOfCells(best);
        for (const SceneQuality& rung : kQualityRungs) {
            const QImage lower = snapshot_->picture(list, size, 1.0, rung);
            EXPECT_NEAR(lightOf(lower) / lightOf(best), 1.0, 0.1) << name << rung.resolution;
            // The light is where it was. A tenth of the light may differ as such, and half the
            // pixels a side move some of it to the next cell.
            EXPECT_LT(movedLight(cells, lightOfCells(lower), lightOf(best)), 0.15)
                << name << rung.resolution;
            // The same picture mirrored is another one to this measure.
            EXPECT_GT(movedLight(cells, lightOfCells(lower.mirrored(true, false)), lightOf(best)),
                      0.2)
                << name << rung.resolution;
        }
    }
}

// --- the tube and the floor ---

TEST_F(SceneShapesTest, ATubesPictureReadsLeftToRightFromInside) {
    // A green stripe of a fifth of the round with red to its left and blue to its
    // right; above them all white.
    QImage paper(80, 64, QImage::Format_RGBA8888);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 80; ++x)
            paper.setPixelColor(x, y,
                                y < 8    ? QColor(Qt::white)
                                : x < 32 ? QColor(Qt::red)
                                : x < 48 ? QColor(Qt::green)
                                         : QColor(Qt::blue));
    Stage stage;
    Camera wide = Stage::lens();
    wide.fieldOfView = 90.0;
    stage.camera->setCamera(wide);
    const NodePtr tube = stage.add(
        makeTube({.innerRadius = 1.0, .outerRadius = 1.1, .height = 2.2}, constant(paper)), {});
    // Upright round the camera, turned until the stripe is ahead.
    QImage image;
    for (int turn = 0; turn < 36; ++turn) {
        tube->setEulerAngles({0, turn * kPi / 18.0, 0});
        image = picture(stage, {180, 100}, {.samples = 1});
        if (green(image, 70, 50) > 200 && green(image, 110, 50) > 200) break;
    }
    EXPECT_EQ(image.pixel(20, 50), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(90, 50), qRgb(0, 255, 0));
    EXPECT_EQ(image.pixel(160, 50), qRgb(0, 0, 255));
    // v = 0, the picture's top, is up.
    EXPECT_EQ(image.pixel(90, 1), qRgb(255, 255, 255));
    EXPECT_EQ(image.pixel(90, 98), qRgb(0, 255, 0));
}

TEST_F(SceneShapesTest, ATubeHasNoSeam) {
    QImage paper(64, 64, QImage::Format_RGBA8888);
    paper.fill(QColor(0, 150, 0));
    const MaterialPtr material = constant(paper);
    material->setWrapS(WrapMode::Repeat);
    material->setWrapT(WrapMode::Repeat);
    Stage stage;
    const NodePtr tube =
        stage.add(makeTube({.innerRadius = 1.0, .outerRadius = 1.1, .height = 60}, material), {});
    tube->setEulerAngles({0.5 * kPi, 0, 0.4});
    const QImage image = picture(stage, {200, 200});
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x) {
            if (std::hypot(x - 99.5, y - 99.5) < 12.0) continue;  // where the tube ends
            ASSERT_NEAR(green(image, x, y), 150, 1) << x << ' ' << y;
        }
}

TEST_F(SceneShapesTest, TheMirrorImageIsTrue) {
    Stage stage;
    stage.camera->setPosition({0, 0.0001, 4});
    auto floor = stage.add({}, {0, 0, 0});
    floor->setFloor(Floor{.reflectivity = 1.0, .material = constant(QColor(Qt::black))});
    // Skew, so that neither a turn nor a shift would do.
    stage.add(makeGeometry({.positions = {{-1.5F, 0.2F, 0}, {1.0F, 0.5F, 0}, {0.4F, 2.2F, -1}},
                            .indices = {0, 1, 2}},
                           constant(QColor(0, 200, 60))),
              {});
    const QImage image = picture(stage, {120, 120}, {.samples = 1});
    int lit = 0;
    for (int y = 0; y < 58; ++y)
        for (int x = 0; x < 120; ++x) {
            EXPECT_NEAR(green(image, x, y), green(image, x, 119 - y), 1) << x << ' ' << y;
            if (green(image, x, y) > 100) ++lit;
        }
    EXPECT_GT(lit, 300);
}

TEST_F(SceneShapesTest, TheMirrorAddsToTheFloorsColourAndShowsNothingBelowIt) {
    Stage stage;
    stage.scene.setBackground(QColor(90, 0, 0));
    stage.camera->setPosition({0, 2, 4});
    auto floor = stage.add({}, {0, 0, 0});
    floor->setFloor(Floor{.reflectivity = 0.5, .material = constant(QColor(0, 0, 100))});
    stage.add(square(40, constant(QColor(0, 255, 0))), {0, 0, -5});  // half of it below
    const QImage image = picture(stage, {64, 64});
    const QRgb mirrored = image.pixel(32, 50);
    EXPECT_NEAR(qGreen(mirrored), 255.0 * srgbEncode(0.5), 1.0);
    EXPECT_NEAR(qBlue(mirrored), 100, 1);
    EXPECT_EQ(qRed(mirrored), 0) << "the background shines through the floor";
}

// Stripes along the direction in which their picture is pressed together look as if it were
// not, whichever way that lies in the picture and on the screen.
TEST_F(SceneShapesTest, APicturePressedTogetherIsSharpAcrossAndKeepsItsLight) {
    const auto drawn = [&](glm::ivec2 across, double pressed, double roll, int anisotropy) {
        QImage paper(128, 128, QImage::Format_RGBA8888);
        for (int y = 0; y < 128; ++y)
            for (int x = 0; x < 128; ++x)
                paper.setPixelColor(x, y,
                                    (128 + across.x * x + across.y * y) / 16 % 2 == 0
                                        ? QColor(0, 200, 0)
                                        : QColor(Qt::black));
        const double turn = std::atan2(across.y, across.x);
        const glm::dvec3 axis(0.0, 0.0, 1.0);
        glm::dmat4 transform = glm::rotate(glm::dmat4(1.0), turn, axis);
        transform = glm::scale(transform, {1.0, pressed, 1.0});
        const MaterialPtr material = constant(paper);
        material->setWrapS(WrapMode::Repeat);
        material->setWrapT(WrapMode::Repeat);
        material->setContentsTransform(glm::rotate(transform, -turn, axis));
        Stage stage;
        stage.add(square(2.0, material), {0, 0, -1})->setEulerAngles({0, 0, roll});
        return picture(stage, {128, 128}, {.anisotropy = anisotropy}).copy(32, 32, 64, 64);
    };
    for (const glm::ivec2 across : {glm::ivec2(1, 0), {0, 1}, {1, 1}, {1, -1}})
        for (const double roll : {0.0, 0.3, 2.0}) {
            SCOPED_TRACE(testing::Message() << across.x << ' ' << across.y << ' ' << roll);
            const QImage plain = drawn(across, 1.0, roll, 16);
            const QImage pressed = drawn(across, 12.0, roll, 16);
            // Unpressed, the edge of a slanting stripe has the texels' steps.
            EXPECT_TRUE(agree(pressed, plain, "pressed", {.largest = 110, .mean = 2.0}));
            EXPECT_NEAR(lightOf(pressed) / lightOf(plain), 1.0, 0.02);
            // A single sample has to be as wide as it is long.
            const QImage single = drawn(across, 12.0, roll, 1);
            EXPECT_FALSE(agree(single, plain, "single", {.largest = 255, .mean = 12.0}));
            EXPECT_NEAR(lightOf(single) / lightOf(plain), 1.0, 0.05);
        }
}

TEST_F(SceneShapesTest, AFarGridIsEvenWithoutMoire) {
    const auto scene = makeBlocks(1);
    DrawList list;
    extract(*scene, 16.0 / 9.0, list);
    list.batches.clear();
    list.fog.active = false;
    const QImage image = snapshot_->picture(list, QSizeF(480, 270));
    int horizon = 0;
    while (horizon < 269 && green(image, 240, horizon) == 0)
        ++horizon;
    // Under the horizon lines stand closer than pixels; beats between the two
    // would show as patches of light and dark.
    for (int y = horizon + 1; y < horizon + 12; ++y) {
        double least = 255.0;
        double most = 0.0;
        for (int patch = 0; patch < 480; patch += 16) {
            double sum = 0.0;
            for (int x = patch; x < patch + 16; ++x)
                sum += green(image, x, y) / 16.0;
            least = std::min(least, sum);
            most = std::max(most, sum);
        }
        EXPECT_GT(least, 0.0);
        EXPECT_LE(most - least, 0.15 * most) << y;
    }
}

}  // namespace
}  // namespace platform::test
