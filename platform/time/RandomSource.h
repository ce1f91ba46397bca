// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <random>

namespace platform {

// The program's only source of randomness, handed to its users by its owner. The same seed
// gives the same numbers, and so the same picture, on every machine. One thread at a time.
class RandomSource {
  public:
    explicit RandomSource(std::uint64_t seed) : engine_(seed) {}

    // Takes its seed from the system; for programs.
    [[nodiscard]] static RandomSource fromSystem();

    // Uniform in [0, 1), 53 bits.
    double unit();

    // Uniform in [low, high).
    double between(double low, double high) { return low + (high - low) * unit(); }

    // Uniform in 0 ..< count; count > 0.
    std::uint32_t below(std::uint32_t count);

    bool coin() { return (engine_() >> 63) != 0; }

    // Gives 64 uniform bits; also a seed for another source.
    std::uint64_t bits() { return engine_(); }

  private:
    std::mt19937_64 engine_;
};

}  // namespace platform
