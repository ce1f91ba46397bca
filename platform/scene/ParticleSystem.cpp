// SPDX-License-Identifier: MIT
#include "platform/scene/ParticleSystem.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/scene/Shading.h"
#include "platform/scene/Transform.h"
#include "platform/time/RandomSource.h"
#include "platform/time/Require.h"

namespace platform {

namespace {

enum Purpose : std::uint64_t {
    kOriginX,
    kOriginY,
    kSpeed,
    kSize,
    kHue,
    kSaturation,
    kBrightness,
    kAlpha,
    kSpread,
    kRound,
    kPurposes,
};

// The finaliser of SplitMix64 (G. Steele et al., "Fast splittable pseudorandom
// number generators", 2014): every bit of the result depends on every bit of x.
std::uint64_t scramble(std::uint64_t x) {
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBU;
    return x ^ (x >> 31);
}

GeometryPtr squareOf(const ParticleSettings& settings) {
    auto material = std::make_shared<Material>();
    if (!settings.image.isNull()) material->setDiffuse(settings.image);
    material->setLightingModel(LightingModel::Constant);
    material->setBlendMode(settings.blendMode);
    material->setWritesDepth(false);
    material->setDoubleSided(true);
    return makePlane({}, std::move(material));
}

std::size_t mostAtOnce(const ParticleSettings& settings) {
    const double most = std::ceil(settings.birthRate * settings.lifeSpan);
    return static_cast<std::size_t>(std::max(most, 0.0)) + 1;
}

}  // namespace

ParticleSystem::ParticleSystem(ParticleSettings settings, RandomSource& random)
    : settings_(std::move(settings)),
      seed_(random.bits()),
      geometry_(squareOf(settings_)),
      ring_(mostAtOnce(settings_)) {}

double ParticleSystem::lot(std::uint64_t index, std::uint64_t purpose) const {
    const std::uint64_t step = (index * kPurposes + purpose + 1) * 0x9E3779B97F4A7C15U;
    return static_cast<double>(scramble(seed_ + step) >> 11) * 0x1p-53 - 0.5;
}

glm::vec4 ParticleSystem::drawColour(std::uint64_t index) const {
    const glm::dvec4& variation = settings_.colourVariation;
    const QColor hsv = settings_.colour.toHsv();
    const double hue = std::max(hsv.hsvHueF(), 0.0F) + variation.x * lot(index, kHue);
    const auto within = [](double x) { return static_cast<float>(std::clamp(x, 0.0, 1.0)); };
    return glm::vec4(linearColour(
        QColor::fromHsvF(within(hue - std::floor(hue)),
                         within(hsv.hsvSaturationF() + variation.y * lot(index, kSaturation)),
                         within(hsv.valueF() + variation.z * lot(index, kBrightness)),
                         within(hsv.alphaF() + variation.w * lot(index, kAlpha)))));
}

glm::dvec3 ParticleSystem::drawDirection(std::uint64_t index) const {
    if (settings_.spreadingAngle <= 0.0) return settings_.emittingDirection;
    // Directions spread evenly over the cap of a sphere.
    const double cap = 1.0 - std::cos(radians(settings_.spreadingAngle));
    const double cosine = 1.0 - cap * (lot(index, kSpread) + 0.5);
    const double sine = std::sqrt(std::max(1.0 - cosine * cosine, 0.0));
    const double round = 2.0 * kPi * lot(index, kRound);
    return facing(settings_.emittingDirection, {0.0, 1.0, 0.0}) *
           glm::dvec3(sine * std::cos(round), sine * std::sin(round), -cosine);
}

void ParticleSystem::begin(double time) {
    if (began_ < 0.0) began_ = time;
}

double ParticleSystem::nextBirth() const {
    if (settings_.birthRate <= 0.0 || began_ < 0.0) return std::numeric_limits<double>::infinity();
    return began_ + (static_cast<double>(born_) + 1.0) / settings_.birthRate;
}

void ParticleSystem::skip(double time) {
    const double dead = std::floor((time - settings_.lifeSpan - began_) * settings_.birthRate);
    if (dead > static_cast<double>(born_)) born_ = static_cast<std::uint64_t>(dead);
}

void ParticleSystem::giveBirth(const glm::dmat4& emitter) {
    const double time = nextBirth();
    removeDead(time);
    require(count_ < ring_.size());
    const std::uint64_t index = born_++;
    const glm::dvec2 at(settings_.emitterSize.x * lot(index, kOriginX),
                        settings_.emitterSize.y * lot(index, kOriginY));
    const glm::dvec3 direction = glm::dmat3(emitter) * drawDirection(index);
    const double length = glm::length(direction);
    const double speed = settings_.velocity + settings_.velocityVariation * lot(index, kSpeed);
    Particle& particle = ring_[(first_ + count_++) % ring_.size()];
    particle.born = time;
    particle.origin = glm::dvec3(emitter * glm::dvec4(at, 0.0, 1.0));
    particle.velocity = length > 0.0 ? direction * (speed / length) : glm::dvec3(0.0);
    particle.size =
        static_cast<float>(settings_.size + settings_.sizeVariation * lot(index, kSize));
    particle.colour = drawColour(index);
}

void ParticleSystem::removeDead(double time) {
    while (count_ > 0 && time - ring_[first_].born >= settings_.lifeSpan) {
        first_ = (first_ + 1) % ring_.size();
        --count_;
    }
}

}  // namespace platform
