// SPDX-License-Identifier: MIT
// A scene whose frames must be cheap: 343 turning billboards of four shared
// geometries, twelve of which change every 0.08 s.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "platform/scene/Scene.h"
#include "platform/time/RandomSource.h"

struct DigitCube {
    explicit DigitCube(std::uint64_t seed);

    platform::RandomSource random;
    platform::Scene scene;
    platform::NodePtr cube = std::make_shared<platform::Node>();
    std::array<platform::GeometryPtr, 4> shapes;
    std::vector<platform::NodePtr> digits;
    int ticks = 0;

  private:
    void makeShapes();
    void makeDigits();
    void tick();
};

inline DigitCube::DigitCube(std::uint64_t seed) : random(seed) {
    auto camera = std::make_shared<platform::Node>();
    camera->setPosition({0.0, 0.0, 6.0});
    camera->setCamera(platform::Camera{.fieldOfView = 40.0, .hdr = true, .bloomIntensity = 1.4});
    scene.root().addChild(camera);
    scene.root().addChild(cube);
    cube->setEulerAngles({0.45, 0.65, 0.1});
    makeShapes();
    makeDigits();
    using platform::Action;
    cube->runAction(
        Action::repeatForever(Action::rotate(2.0 * platform::kPi, {0.4, 1.0, 0.2}, 24.0)));
    cube->runAction(Action::repeatForever(
        Action::sequence({Action::wait(0.08), Action::run([this](platform::Node&) { tick(); })})));
}

inline void DigitCube::makeShapes() {
    for (platform::GeometryPtr& shape : shapes) {
        auto material = std::make_shared<platform::Material>(QColor(Qt::green));
        material->setLightingModel(platform::LightingModel::Constant);
        material->setBlendMode(platform::BlendMode::Additive);
        material->setWritesDepth(false);
        shape = platform::makePlane({.width = 0.13, .height = 0.17}, material);
    }
}

inline void DigitCube::makeDigits() {
    for (int i = 0; i < 343; ++i) {
        auto digit = std::make_shared<platform::Node>(shapes.at(random.below(4)));
        digit->setPosition({0.42 * (i / 49 - 3), 0.42 * (i / 7 % 7 - 3), 0.42 * (i % 7 - 3)});
        digit->setBillboard(true);
        cube->addChild(digit);
        digits.push_back(digit);
    }
}

inline void DigitCube::tick() {
    ++ticks;
    for (int i = 0; i < 12; ++i)
        digits[random.below(343)]->setGeometry(shapes.at(random.below(4)));
}
