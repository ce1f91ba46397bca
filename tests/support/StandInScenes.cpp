// SPDX-License-Identifier: MIT
#include "tests/support/StandInScenes.h"

#include <QPainter>
#include <QRadialGradient>
#include <array>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/gtc/matrix_transform.hpp>

namespace platform::test {

namespace {

const QColor kGreen = QColor::fromRgbF(0.0F, 1.0F, 0.255F);
const QColor kMiddle = QColor::fromRgbF(0.0F, 0.72F, 0.17F);
const QColor kDark = QColor::fromRgbF(0.0F, 0.34F, 0.09F);
const QColor kDigit = QColor::fromRgbF(0.03F, 0.78F, 0.11F);
const QColor kBright = QColor::fromRgbF(0.42F, 1.0F, 0.42F);

QColor faded(QColor colour, double alpha) {
    colour.setAlphaF(static_cast<float>(alpha));
    return colour;
}

// Rows of five cells, the top row first.
constexpr std::array<const char*, 7> kZero{"01110", "10001", "10011", "10101",
                                           "11001", "10001", "01110"};
constexpr std::array<const char*, 7> kOne{"00100", "01100", "00100", "00100",
                                          "00100", "00100", "01110"};

void drawDigit(QPainter& painter, bool one, QPointF topLeft, double block, double gap,
               const QColor& colour) {
    for (int row = 0; row < 7; ++row)
        for (int column = 0; column < 5; ++column) {
            if ((one ? kOne : kZero)[static_cast<std::size_t>(row)][column] != '1') continue;
            const QPointF at = topLeft + (block + gap) * QPointF(column, row);
            painter.fillRect(QRectF(at, QSizeF(block, block)), colour);
        }
}

MaterialPtr glow(Contents contents, bool additive = true) {
    auto material = std::make_shared<Material>(std::move(contents));
    material->setLightingModel(LightingModel::Constant);
    material->setDoubleSided(true);
    if (additive) {
        material->setBlendMode(BlendMode::Additive);
        material->setWritesDepth(false);
    }
    return material;
}

GeometryPtr digitPlane(bool one, const QColor& colour, double height) {
    return makePlane({.width = height * 29.0 / 39.0, .height = height},
                     glow(digitPicture(one, colour)));
}

NodePtr nodeOf(GeometryPtr geometry, const glm::dvec3& position = glm::dvec3(0.0)) {
    auto node = std::make_shared<Node>(std::move(geometry));
    node->setPosition(position);
    return node;
}

struct View {
    glm::dvec3 position;
    double fieldOfView;
    double bloom;
    Fog fog{};
};

std::unique_ptr<Scene> makeScene(const View& view) {
    auto scene = std::make_unique<Scene>();
    scene->setBackground(Qt::black);
    scene->setFog(view.fog);
    auto node = std::make_shared<Node>();
    node->setCamera(Camera{.fieldOfView = view.fieldOfView,
                           .zNear = 0.05,
                           .zFar = 100.0,
                           .hdr = true,
                           .bloomIntensity = view.bloom,
                           .bloomThreshold = 0.35,
                           .bloomBlurRadius = 14.0,
                           .exposureAdaptation = false});
    node->setPosition(view.position);
    scene->root().addChild(node);
    return scene;
}

GeometryPtr frameLines(float c) {
    std::vector<glm::vec3> ends;
    const auto corner = [c](int i) {
        return glm::vec3((i & 1) != 0 ? c : -c, (i & 2) != 0 ? c : -c, (i & 4) != 0 ? c : -c);
    };
    for (int a = 0; a < 8; ++a)
        for (const int bit : {1, 2, 4})
            if ((a & bit) == 0) {
                ends.push_back(corner(a));
                ends.push_back(corner(a | bit));
            }
    return makeLines(std::move(ends), glow(kMiddle));
}

QImage wallPicture(RandomSource& random) {
    QImage image(512, 512, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    for (int column = 0; column < 16; ++column) {
        const double brightness = random.between(0.25, 1.0);
        for (int row = 0; row < 14; ++row) {
            const bool bright = random.unit() < 0.06;
            const QColor colour =
                bright ? kBright : faded(kDigit, brightness * random.between(0.3, 1.0));
            const QPointF at(32 * column + 6.5, 512 - 36.57 * row - 4 - 27);
            drawDigit(painter, random.coin(), at, 3, 1, colour);
        }
    }
    return image;
}

QImage gridTile() {
    QImage image(64, 64, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(0, 62.5, 64, 1.5), faded(kDark, 0.7));
    painter.fillRect(QRectF(0, 0, 1.5, 64), faded(kDark, 0.7));
    return image;
}

void addBlockFloor(Scene& scene) {
    Floor floor{.reflectivity = 0.22, .falloffEnd = 4.0, .material = glow(gridTile(), false)};
    floor.material->setWrapS(WrapMode::Repeat);
    floor.material->setWrapT(WrapMode::Repeat);
    floor.material->setContentsTransform(glm::scale(glm::dmat4(1.0), glm::dvec3(60.0, 60.0, 1.0)));
    auto node = nodeOf({}, {0.0, -1.2, 0.0});
    node->setFloor(floor);
    scene.root().addChild(node);
    auto lamp = nodeOf({}, {2.0, 6.0, 10.0});
    lamp->setLight(Light{.intensity = 900.0});
    scene.root().addChild(lamp);
    auto ambient = nodeOf({});
    ambient->setLight(
        Light{.type = LightType::Ambient, .colour = QColor::fromRgbF(0.0F, 0.25F, 0.08F)});
    scene.root().addChild(ambient);
}

NodePtr makeWord(RandomSource& random) {
    auto material = std::make_shared<Material>(kGreen);
    material->setEmission(faded(kDigit, 0.55));
    const GeometryPtr block =
        makeBox({.width = 1.0, .height = 1.0, .length = 1.4, .chamferRadius = 0.06}, material);
    Node word;
    for (int letter = 0; letter < 7; ++letter)
        for (int column = 0; column < 5; ++column)
            for (int row = 0; row < 7; ++row) {
                const bool lit = column == 0 || row == 0 || row == 6 || random.unit() < 0.3;
                if (!lit) continue;
                word.addChild(
                    nodeOf(block, {1.15 * (6 * letter + column - 20.5), 1.15 * (3 - row), 0.0}));
            }
    return word.flattenedClone();
}

glm::vec3 onSphere(double latitude, double longitude, double radius) {
    const double b = radians(latitude);
    const double l = radians(longitude);
    return radius * glm::dvec3(std::cos(b) * std::sin(l), std::sin(b), std::cos(b) * std::cos(l));
}

void addClouds(Node& globe) {
    std::vector<glm::vec3> land, sea;
    constexpr int kPoints = 26'000;
    for (int k = 0; k < kPoints; ++k) {
        const double b = std::asin(1.0 - 2.0 * (k + 0.5) / kPoints) * 180.0 / kPi;
        const double l = std::fmod(k * 2.399963229728653, 2.0 * kPi) * 180.0 / kPi;
        const bool isLand = std::sin(radians(3 * l)) * std::cos(radians(2 * b)) > 0.3;
        if (isLand)
            land.push_back(onSphere(b, l, 1.0));
        else if (k % 5 == 0)
            sea.push_back(onSphere(b, l, 1.0));
    }
    globe.addChild(nodeOf(makePoints(land, 3.0, glow(kGreen, false))));
    globe.addChild(nodeOf(makePoints(sea, 1.5, glow(faded(kDark, 0.8), false))));
    std::vector<glm::vec3> grid;
    for (int latitude = -60; latitude <= 60; latitude += 30)
        for (int l = -180; l < 180; l += 6) {
            grid.push_back(onSphere(latitude, l, 1.001));
            grid.push_back(onSphere(latitude, l + 6, 1.001));
        }
    globe.addChild(nodeOf(makeLines(grid, glow(faded(kDark, 0.55)))));
}

void addArc(Node& globe, int i, const GeometryPtr& dot, const GeometryPtr& light) {
    const glm::vec3 from = onSphere(52, 5, 1.0);
    const glm::vec3 to = onSphere(-50 + 97 * i % 110, 143 * i % 360 - 180, 1.0);
    std::vector<glm::vec3> ends;
    std::vector<glm::dvec3> path;
    for (int step = 0; step <= 40; ++step) {
        const float t = static_cast<float>(step) / 40.0F;
        const glm::vec3 at = glm::normalize(glm::mix(from, to, t) + glm::vec3(0.001F)) *
                             (1.005F + 0.2F * std::sin(t * static_cast<float>(kPi)));
        path.emplace_back(at);
        ends.push_back(at);
        if (step > 0 && step < 40) ends.push_back(at);
    }
    globe.addChild(nodeOf(makeLines(ends, glow(faded(kGreen, 0.45 + 0.02 * i)))));
    globe.addChild(nodeOf(dot, to * 1.01F));
    auto traveller = nodeOf(light, from);
    traveller->addAnimation({.values = path,
                             .duration = 1.2 + 0.25 * (i % 5),
                             .repeatCount = kForever,
                             .timeOffset = 0.37 * i},
                            "reis");
    globe.addChild(traveller);
}

QImage haloPicture() {
    QImage image(256, 256, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    QRadialGradient gradient(128, 128, 128);
    gradient.setColorAt(0.6, faded(kGreen, 0.0));
    gradient.setColorAt(0.655, faded(kGreen, 0.07));
    gradient.setColorAt(0.8, faded(kGreen, 0.0));
    QPainter(&image).fillRect(image.rect(), gradient);
    return image;
}

}  // namespace

QImage digitPicture(bool one, const QColor& colour) {
    QImage image(56, 76, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(2.0, 2.0);
    drawDigit(painter, one, {2, 2}, 4, 1, colour);
    return image;
}

std::unique_ptr<Scene> makeDigitCube(std::uint64_t seed) {
    RandomSource random(seed);
    auto scene = makeScene({{0, 0, 6}, 40, 1.4, {.start = 4.6, .end = 8.2, .colour = Qt::black}});
    auto cube = nodeOf({});
    const std::array<GeometryPtr, 4> shapes{
        digitPlane(false, faded(kDigit, 0.55), 0.17), digitPlane(true, faded(kDigit, 0.55), 0.17),
        digitPlane(false, kBright, 0.17), digitPlane(true, kBright, 0.17)};
    for (int x = 0; x < 7; ++x)
        for (int y = 0; y < 7; ++y)
            for (int z = 0; z < 7; ++z) {
                const std::size_t which = (random.coin() ? 1U : 0U) + (y == 3 ? 2U : 0U);
                auto node = nodeOf(shapes[which], 0.42 * glm::dvec3(x - 3.0, y - 3.0, z - 3.0));
                node->setBillboard(true);
                cube->addChild(node);
            }
    cube->addChild(nodeOf(frameLines(1.47F)));
    cube->setEulerAngles({0.45, 0.65, 0.1});
    cube->runAction(Action::repeatForever(Action::rotate(2.0 * kPi, {0.4, 1.0, 0.2}, 24.0)));
    scene->root().addChild(cube);
    return scene;
}

std::unique_ptr<Scene> makeTunnel(std::uint64_t seed, bool opaque) {
    RandomSource random(seed);
    auto scene = makeScene({{0, 0, 0}, 70, 1.2, {.start = 3.0, .end = 34.0, .colour = Qt::black}});
    const QImage picture = wallPicture(random);
    const MaterialPtr wall =
        glow(opaque ? picture.convertToFormat(QImage::Format_RGB32) : picture, false);
    wall->setWrapS(WrapMode::Repeat);
    wall->setWrapT(WrapMode::Repeat);
    auto tube = nodeOf(
        makeTube({.innerRadius = 1.6, .outerRadius = 1.65, .height = 80, .radialSegments = 64},
                 wall),
        {0, 0, -38});
    tube->setEulerAngles({0.5 * kPi, 0, 0});
    tube->runAction(Action::repeatForever(Action::rotateBy({0, 2.0 * kPi, 0}, 40.0)));
    tube->runAction(Action::custom(1e6, [wall](Node&, double t) {
        const glm::dmat4 scale = glm::scale(glm::dmat4(1.0), glm::dvec3(6.0, 14.0, 1.0));
        wall->setContentsTransform(scale *
                                   glm::translate(glm::dmat4(1.0), glm::dvec3(0, -0.55 * t, 0)));
    }));
    scene->root().addChild(tube);
    auto emitter = nodeOf({}, {0, 0, -30});
    emitter->setParticles(
        std::make_shared<ParticleSystem>(ParticleSettings{.image = digitPicture(true, kGreen),
                                                          .birthRate = 90,
                                                          .lifeSpan = 4,
                                                          .velocity = 9,
                                                          .velocityVariation = 3,
                                                          .emittingDirection = {0, 0, 1},
                                                          .emitterSize = {2.6, 2.6},
                                                          .size = 0.06,
                                                          .sizeVariation = 0.03,
                                                          .colour = kGreen,
                                                          .colourVariation = {0, 0, 0.3, 0},
                                                          .blendMode = BlendMode::Additive},
                                         random));
    scene->root().addChild(emitter);
    return scene;
}

std::unique_ptr<Scene> makeBlocks(std::uint64_t seed) {
    RandomSource random(seed);
    auto scene =
        makeScene({{0, 2.2, 15}, 42, 0.9, {.start = 12.0, .end = 40.0, .colour = Qt::black}});
    scene->root().children().front()->lookAt({0, 0, 0});
    addBlockFloor(*scene);
    const NodePtr word = makeWord(random);
    word->setScale(glm::dvec3(0.25));
    word->setPosition({0, 0.5, 0});
    word->runAction(Action::repeatForever(
        Action::sequence({Action::rotateTo({0, 0.55, 0}, 4), Action::rotateTo({0, -0.55, 0}, 4)})
            .timed(TimingFunction::easeInEaseOut())));
    word->runAction(Action::repeatForever(
        Action::sequence({Action::moveBy({0, 0.25, 0}, 2), Action::moveBy({0, -0.25, 0}, 2)})
            .timed(TimingFunction::easeInEaseOut())));
    scene->root().addChild(word);
    auto ring = nodeOf({}, {0, 0.5, 0});
    const std::array<GeometryPtr, 2> shapes{digitPlane(false, faded(kDigit, 0.55), 0.42),
                                            digitPlane(true, faded(kDigit, 0.55), 0.42)};
    for (int i = 0; i < 48; ++i) {
        const double a = 2.0 * kPi * i / 48;
        auto node = nodeOf(shapes[random.coin() ? 1 : 0],
                           {7.2 * std::cos(a), 0.3 * std::sin(3 * a), 7.2 * std::sin(a)});
        node->setBillboard(true);
        ring->addChild(node);
    }
    ring->runAction(Action::repeatForever(Action::rotateBy({0, 2.0 * kPi, 0}, 18.0)));
    scene->root().addChild(ring);
    return scene;
}

std::unique_ptr<Scene> makeGlobe(std::uint64_t) {
    auto scene = makeScene({{0, 0.35, 3.3}, 38, 1.4});
    scene->root().children().front()->lookAt({0, 0, 0});
    auto globe = nodeOf({});
    addClouds(*globe);
    globe->addChild(
        nodeOf(makeSphere({.radius = 0.985}, glow(QColor::fromRgbF(0.0F, 0.03F, 0.01F), false))));
    auto marker = nodeOf(makeTorus({.ringRadius = 0.05, .pipeRadius = 0.004}, glow(kBright)),
                         onSphere(52, 5, 1.01));
    globe->addChild(marker);
    globe->addChild(
        nodeOf(makeSphere({.radius = 0.022}, glow(kBright, false)), onSphere(52, 5, 1.01)));
    const GeometryPtr dot = makeSphere({.radius = 0.016}, glow(kBright, false));
    const GeometryPtr light = makeSphere({.radius = 0.011}, glow(QColor(Qt::white), false));
    for (int i = 0; i < 24; ++i)
        addArc(*globe, i, dot, light);
    globe->setEulerAngles({radians(0.55 * 52), -radians(5), 0});
    globe->runAction(Action::repeatForever(Action::rotateBy({0, 2.0 * kPi, 0}, 60.0)));
    scene->root().addChild(globe);
    auto halo = nodeOf(makePlane({.width = 3.1, .height = 3.1}, glow(haloPicture())));
    halo->setBillboard(true);
    halo->setRenderingOrder(-1);
    scene->root().addChild(halo);
    return scene;
}

std::unique_ptr<Scene> makeStandIn(const QString& name, std::uint64_t seed) {
    if (name == QLatin1String("cube")) return makeDigitCube(seed);
    if (name == QLatin1String("tunnel")) return makeTunnel(seed);
    if (name == QLatin1String("wall")) return makeTunnel(seed, true);
    if (name == QLatin1String("blocks")) return makeBlocks(seed);
    if (name == QLatin1String("globe")) return makeGlobe(seed);
    return nullptr;
}

}  // namespace platform::test
