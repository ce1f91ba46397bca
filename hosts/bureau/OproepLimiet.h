// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <vector>

namespace brixtel {

// Limits how often each caller may call: eight times at once, and then four times a second,
// which no hand reaches. Has no clock, and remembers the last 32 callers only. One thread
// at a time.
class OproepLimiet {
  public:
    static constexpr double kInEens = 8.0;
    static constexpr double kPerSeconde = 4.0;
    static constexpr std::size_t kBellers = 32;

    // Whether this caller may make a call of cost `prijs` at time `nu`, in seconds of any
    // steady clock.
    [[nodiscard]] bool mag(const QString& beller, double nu, double prijs = 1.0);

  private:
    struct Tegoed {
        QString beller;
        double rest;
        double sinds;
    };
    std::vector<Tegoed> bellers_;  // the least recent caller first
};

}  // namespace brixtel
