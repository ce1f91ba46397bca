// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

// The harm that is done to the messages of a bus, as shares of these.
struct BusHarm {
    double drops = 0.0;      // never come
    double truncates = 0.0;  // lose bytes at their end, so that the next one is read as their rest
    double stretches = 0.0;  // say that they are longer than they are, or than any may be
    double strangers = 0.0;  // come from another sender, instead of the right one or before it
};

// Changes the messages that a bus sends to one client: those of the D-Bus protocol in the
// byte order of x86 and arm64. A message passes when all of it has come.
class BusTamper {
  public:
    BusTamper(const BusHarm& harm, std::uint32_t seed) : harm_(harm), chance_(seed) {}

    // The bytes that pass for these, which follow the earlier ones.
    [[nodiscard]] std::vector<std::uint8_t> pass(std::span<const std::uint8_t> bytes);

  private:
    using Message = std::vector<std::uint8_t>;

    void change(Message message, std::vector<std::uint8_t>& out);
    [[nodiscard]] bool happens(double share) { return std::bernoulli_distribution(share)(chance_); }
    [[nodiscard]] std::size_t below(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(chance_);
    }

    const BusHarm harm_;
    std::mt19937 chance_;
    std::vector<std::uint8_t> waiting_;  // no whole message yet
};
