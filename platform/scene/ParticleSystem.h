// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include <QColor>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec4.hpp>

#include "platform/scene/Geometry.h"
#include "platform/scene/Material.h"

namespace platform {

class RandomSource;

// A variation of v spreads the value evenly over value ± v / 2.
struct ParticleSettings {
    QImage image{};          // without one, a particle is a plain square
    double birthRate = 1.0;  // per second
    double lifeSpan = 1.0;   // seconds
    double velocity = 0.0;   // units a second
    double velocityVariation = 0.0;
    glm::dvec3 emittingDirection{0.0, 1.0, 0.0};  // in the node's space
    double spreadingAngle = 0.0;                  // degrees either side of the direction
    glm::dvec2 emitterSize{0.0};                  // births spread over this plane, in the node's xy
    double size = 1.0;                            // the square's side, in units
    double sizeVariation = 0.0;
    QColor colour = Qt::white;        // multiplies the image
    glm::dvec4 colourVariation{0.0};  // hue, saturation, brightness, alpha; parts of 1
    BlendMode blendMode = BlendMode::Alpha;
    // The distance to the camera, in units, below which a particle fades; at a quarter of it
    // the particle is gone. Without fading, a last frame would be filled. 0: no fading.
    double nearFade = 0.0;
};

// Squares parallel to the screen that fly through the world from a node, and do
// not follow the node after birth. Particle i is born (i + 1) / birthRate
// seconds after the system began, where the node stands at that time. Its
// random values depend on the seed and i alone: frames do not affect the
// particles. One node at a time owns a system; main thread.
class ParticleSystem {
  public:
    // Draws a seed from the source and does not keep the source.
    ParticleSystem(ParticleSettings settings, RandomSource& random);

    [[nodiscard]] const ParticleSettings& settings() const { return settings_; }

    struct Particle {
        double born = 0.0;         // scene time
        glm::dvec3 origin{0.0};    // world
        glm::dvec3 velocity{0.0};  // world, units a second
        float size = 0.0F;
        glm::vec4 colour{1.0F};  // linear light, alpha not multiplied in

        [[nodiscard]] glm::dvec3 position(double time) const {
            return origin + velocity * (time - born);
        }
    };

    // The number of living particles, and particle i of them, eldest first.
    [[nodiscard]] std::size_t count() const { return count_; }
    [[nodiscard]] const Particle& particle(std::size_t index) const {
        return ring_[(first_ + index) % ring_.size()];
    }

    // A unit square in the particles' material.
    [[nodiscard]] const GeometryPtr& geometry() const { return geometry_; }

    // The following are for the scene. begin() starts the system; later calls do nothing.
    void begin(double time);
    // Leaves out the births of particles that are dead before `time`.
    void skip(double time);
    [[nodiscard]] double nextBirth() const;
    void giveBirth(const glm::dmat4& emitter);
    void removeDead(double time);

  private:
    [[nodiscard]] glm::vec4 drawColour(std::uint64_t index) const;
    [[nodiscard]] glm::dvec3 drawDirection(std::uint64_t index) const;
    // Uniform in [−0.5, 0.5).
    [[nodiscard]] double lot(std::uint64_t index, std::uint64_t purpose) const;

    ParticleSettings settings_;
    std::uint64_t seed_;
    GeometryPtr geometry_;
    std::vector<Particle> ring_;  // as large as can live at once
    std::size_t first_ = 0;
    std::size_t count_ = 0;
    double began_ = -1.0;  // scene time; negative before the beginning
    std::uint64_t born_ = 0;
};

}  // namespace platform
