// SPDX-License-Identifier: MIT
#pragma once

namespace brixtel {

// A slider's arithmetic, apart from any window. Swaps bounds in the wrong
// order; a bound that is not finite gives the empty range 0...0. NaN counts as
// the lower bound.
class SchuifRekenen final {
  public:
    struct Opties {
        double onder = 0.0, boven = 1.0;
        double stap = 0.0;
    };
    explicit SchuifRekenen(const Opties& opties);

    [[nodiscard]] double onder() const { return onder_; }
    [[nodiscard]] double boven() const { return boven_; }

    // `stap` if above 0, else one hundredth of the range; 0 only for an empty
    // range.
    [[nodiscard]] double stap() const { return stap_; }

    // The nearest value in the range.
    [[nodiscard]] double binnen(double waarde) const;

    // The value's position in the range, 0...1; 0 in an empty range.
    [[nodiscard]] double fractie(double waarde) const;

    // The value at a share of the range; the share is clamped to 0...1.
    [[nodiscard]] double opFractie(double fractie) const;

    // Moves by `stappen` steps, snaps to a multiple of the step, and then
    // clamps to the range.
    [[nodiscard]] double verzet(double waarde, int stappen) const;

    // One action of assistive technology: five steps.
    [[nodiscard]] double verhoogd(double waarde) const { return verzet(waarde, 5); }
    [[nodiscard]] double verlaagd(double waarde) const { return verzet(waarde, -5); }

    // The number of bars on a track of `breedte` points, and the number of lit bars.
    [[nodiscard]] static int balken(double breedte);
    [[nodiscard]] int gevuld(double waarde, int balken) const;

    // Bar i stands at kBalkAfstand * i and is kBalkBreedte wide, in points.
    static constexpr double kBalkAfstand = 4.0;
    static constexpr double kBalkBreedte = 3.0;

  private:
    double onder_, boven_, stap_;
};

}  // namespace brixtel
