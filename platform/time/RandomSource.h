// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <random>

namespace platform {

// The one source of randomness, handed to everything that draws lots. The same
// seed gives the same numbers on every machine, and so the same picture.
class RandomSource {
  public:
    explicit RandomSource(std::uint64_t seed) : engine_(seed) {}

    // Seeded by the system; for programs.
    [[nodiscard]] static RandomSource fromSystem();

    // Uniform in [0, 1), 53 bits.
    double unit();

    // Uniform in [low, high).
    double between(double low, double high) { return low + (high - low) * unit(); }

    // Uniform in 0 ..< count; count > 0.
    std::uint32_t below(std::uint32_t count);

    bool coin() { return (engine_() >> 63) != 0; }

    // 64 uniform bits; also the seed for a source that something else keeps.
    std::uint64_t bits() { return engine_(); }

  private:
    std::mt19937_64 engine_;
};

}  // namespace platform
