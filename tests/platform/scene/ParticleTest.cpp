// SPDX-License-Identifier: MIT
#include "platform/scene/ParticleSystem.h"

#include <algorithm>
#include <cmath>

#include "platform/scene/Scene.h"
#include "platform/scene/Shading.h"
#include "platform/time/RandomSource.h"
#include "tests/platform/scene/Near.h"

using namespace platform;

namespace {

ParticleSettings stream() {
    return {.birthRate = 90.0,
            .lifeSpan = 4.0,
            .velocity = 9.0,
            .velocityVariation = 3.0,
            .emittingDirection = {0, 0, 1},
            .emitterSize = {2.6, 2.6},
            .size = 0.06,
            .sizeVariation = 0.03,
            .colour = QColor(0, 200, 80),
            .colourVariation = {0, 0, 0.3, 0},
            .blendMode = BlendMode::Additive};
}

struct Emitter {
    explicit Emitter(std::uint64_t seed, const ParticleSettings& settings = stream()) {
        RandomSource random(seed);
        system = std::make_shared<ParticleSystem>(settings, random);
        node->setPosition({0, 0, -30});
        node->setParticles(system);
        scene.root().addChild(node);
    }

    Scene scene;
    NodePtr node = std::make_shared<Node>();
    std::shared_ptr<ParticleSystem> system;
};

void expectSameParticles(const Emitter& a, const Emitter& b) {
    ASSERT_EQ(a.system->count(), b.system->count());
    for (std::size_t i = 0; i < a.system->count(); ++i) {
        const auto &p = a.system->particle(i), &q = b.system->particle(i);
        EXPECT_EQ(p.position(a.scene.time()), q.position(b.scene.time()));
        EXPECT_EQ(p.size, q.size);
        EXPECT_EQ(p.colour, q.colour);
    }
}

TEST(Particles, AreBornAtTheirRateAndDieAtTheirAge) {
    Emitter emitter(1);
    emitter.scene.advance(0.001);
    EXPECT_EQ(emitter.system->count(), 0U);
    emitter.scene.advance(1.001);
    EXPECT_EQ(emitter.system->count(), 90U);
    emitter.scene.advance(20.001);
    EXPECT_EQ(emitter.system->count(), 360U);
}

TEST(Particles, SpreadOverTheirVariationsAndNoFurther) {
    Emitter emitter(2);
    emitter.scene.advance(30.0);
    double speeds = 0.0, sizes = 0.0, across = 0.0, aslant = 0.0;
    for (std::size_t i = 0; i < emitter.system->count(); ++i) {
        const auto& p = emitter.system->particle(i);
        EXPECT_EQ(glm::dvec2(p.velocity), glm::dvec2(0.0));
        EXPECT_GE(p.velocity.z, 7.5);
        EXPECT_LE(p.velocity.z, 10.5);
        EXPECT_GE(p.size, 0.045F);
        EXPECT_LE(p.size, 0.075F);
        EXPECT_LE(std::abs(p.origin.x), 1.3);
        EXPECT_LE(std::abs(p.origin.y), 1.3);
        EXPECT_EQ(p.origin.z, -30.0);
        speeds += p.velocity.z;
        sizes += p.size;
        across += p.origin.x * p.origin.x;
        aslant += p.origin.x * p.origin.y;
    }
    const auto n = static_cast<double>(emitter.system->count());
    EXPECT_NEAR(speeds / n, 9.0, 0.2);
    EXPECT_NEAR(sizes / n, 0.06, 0.002);
    EXPECT_NEAR(across / n, 2.6 * 2.6 / 12.0, 0.1);
    // The two sides are drawn independently: in a square, not along its diagonal.
    EXPECT_NEAR(aslant / n, 0.0, 0.1);
}

TEST(Particles, VaryInBrightnessAlone) {
    Emitter emitter(3);
    emitter.scene.advance(10.0);
    const QColor middle = stream().colour;
    float dimmest = 1.0F, brightest = 0.0F;
    for (std::size_t i = 0; i < emitter.system->count(); ++i) {
        const glm::vec4 c = emitter.system->particle(i).colour;
        const QColor shown = QColor::fromRgbF(static_cast<float>(srgbEncode(c.r)),
                                              static_cast<float>(srgbEncode(c.g)),
                                              static_cast<float>(srgbEncode(c.b)));
        EXPECT_NEAR(shown.hsvHueF(), middle.hsvHueF(), 0.002);
        EXPECT_NEAR(shown.hsvSaturationF(), middle.hsvSaturationF(), 0.002);
        EXPECT_EQ(c.a, 1.0F);
        dimmest = std::min(dimmest, shown.valueF());
        brightest = std::max(brightest, shown.valueF());
    }
    EXPECT_NEAR(dimmest, middle.valueF() - 0.15F, 0.01);
    EXPECT_NEAR(brightest, middle.valueF() + 0.15F, 0.01);
}

TEST(Particles, BrightnessStaysWithinItsRange) {
    ParticleSettings settings = stream();
    settings.colour = QColor(0, 255, 0);
    Emitter emitter(3, settings);
    emitter.scene.advance(10.0);
    for (std::size_t i = 0; i < emitter.system->count(); ++i)
        EXPECT_LE(emitter.system->particle(i).colour.g, 1.0F);
}

TEST(Particles, MoveSteadilyOnceBorn) {
    Emitter emitter(4);
    emitter.scene.advance(2.0);
    const auto particle = emitter.system->particle(0);
    EXPECT_NEAR(particle.born, 1.0 / 90.0, 1e-12);
    EXPECT_VEC_NEAR(particle.position(particle.born + 2.0),
                    particle.origin + 2.0 * particle.velocity, 1e-12);
}

TEST(Particles, TheSameSeedGivesTheSameParticlesWhateverTheFrames) {
    Emitter running(5), still(5), slow(5);
    for (int frame = 0; frame <= 600; ++frame)
        running.scene.advance(frame / 60.0);
    for (int frame = 0; frame <= 70; ++frame)
        slow.scene.advance(std::min(frame / 6.9, 10.0));
    still.scene.advance(10.0);
    expectSameParticles(running, still);
    expectSameParticles(running, slow);
}

TEST(Particles, OtherSeedsGiveOtherParticles) {
    Emitter a(5), b(6);
    a.scene.advance(1.0);
    b.scene.advance(1.0);
    EXPECT_NE(a.system->particle(0).origin, b.system->particle(0).origin);
}

TEST(Particles, AreBornWhereAMovingEmitterThenStands) {
    Emitter running(7), still(7);
    for (Emitter* emitter : {&running, &still})
        emitter->node->runAction(Action::repeatForever(Action::moveBy({1, 0, 0}, 1.0)));
    for (int frame = 0; frame <= 180; ++frame)
        running.scene.advance(frame / 60.0);
    still.scene.advance(3.0);
    expectSameParticles(running, still);
    const auto& last = still.system->particle(still.system->count() - 1);
    EXPECT_NEAR(last.origin.x, last.born, 1.3);
}

TEST(Particles, StayInTheWorldWhenTheNodeMovesOn) {
    Emitter emitter(8);
    emitter.scene.advance(1.0);
    const glm::dvec3 before = emitter.system->particle(0).position(1.0);
    emitter.node->setPosition({100, 0, 0});
    EXPECT_EQ(emitter.system->particle(0).position(1.0), before);
}

TEST(Particles, FlyInTheNodesSpace) {
    Emitter emitter(9);
    emitter.node->setEulerAngles({0, kPi / 2, 0});
    emitter.node->setScale({3, 3, 3});
    emitter.scene.advance(1.0);
    const auto& particle = emitter.system->particle(0);
    EXPECT_NEAR(glm::normalize(particle.velocity).x, 1.0, 1e-12);
    EXPECT_NEAR(glm::length(particle.velocity), 9.0, 1.5);  // units of the world
}

TEST(Particles, SpreadWithinTheirAngle) {
    ParticleSettings settings = stream();
    settings.spreadingAngle = 20.0;
    Emitter emitter(10, settings);
    emitter.scene.advance(10.0);
    double widest = 0.0;
    for (std::size_t i = 0; i < emitter.system->count(); ++i) {
        const glm::dvec3 direction = glm::normalize(emitter.system->particle(i).velocity);
        widest = std::max(widest, std::acos(std::min(direction.z, 1.0)));
    }
    EXPECT_LE(widest, radians(20.0) + 1e-9);
    EXPECT_GT(widest, radians(18.0));
}

TEST(Particles, BeginWithTheirNodeInTheScene) {
    Emitter emitter(11);
    emitter.node->setParticles({});
    emitter.scene.advance(100.0);
    RandomSource random(1);
    const auto system = std::make_shared<ParticleSystem>(stream(), random);
    emitter.node->setParticles(system);
    emitter.scene.advance(100.501);
    EXPECT_EQ(system->count(), 45U);
}

TEST(Particles, AYearInOneStepLeavesThoseThatStillLive) {
    Emitter emitter(12);
    constexpr double kYear = 365.25 * 86'400.0;
    emitter.scene.advance(kYear);
    EXPECT_NEAR(static_cast<double>(emitter.system->count()), 360.0, 1.0);
    for (std::size_t i = 0; i < emitter.system->count(); ++i) {
        const auto& p = emitter.system->particle(i);
        EXPECT_LE(kYear - p.born, 4.0);
        EXPECT_LE(p.position(kYear).z, -30.0 + 4.0 * 10.5);
    }
    emitter.scene.advance(kYear + 60.0);
    EXPECT_NEAR(static_cast<double>(emitter.system->count()), 360.0, 1.0);
}

TEST(Particles, OfNoRateAreNeverBorn) {
    ParticleSettings settings = stream();
    settings.birthRate = 0.0;
    Emitter emitter(13, settings);
    emitter.scene.advance(10.0);
    EXPECT_EQ(emitter.system->count(), 0U);
}

}  // namespace
