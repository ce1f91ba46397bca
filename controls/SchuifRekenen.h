// SPDX-License-Identifier: MIT
#pragma once

namespace brixtel {

// What a slider computes, apart from any window. A range whose bounds are the
// wrong way round is turned round; one with a bound that is no finite number is
// the empty range 0...0. A value that is no number counts as the lower bound.
class SchuifRekenen final {
  public:
    struct Opties {
        double onder = 0.0, boven = 1.0;
        double stap = 0.0;
    };
    explicit SchuifRekenen(const Opties& opties);

    [[nodiscard]] double onder() const { return onder_; }
    [[nodiscard]] double boven() const { return boven_; }

    // `stap` where that is above 0, else one hundredth of the range: 0 only where
    // the range is empty.
    [[nodiscard]] double stap() const { return stap_; }

    // The nearest value in the range.
    [[nodiscard]] double binnen(double waarde) const;

    // Where the value lies in the range, 0...1; 0 in an empty one.
    [[nodiscard]] double fractie(double waarde) const;

    // The value at that part of the range, which is clamped to 0...1.
    [[nodiscard]] double opFractie(double fractie) const;

    // So many steps on, snapped to a multiple of the step and then clamped to the
    // range.
    [[nodiscard]] double verzet(double waarde, int stappen) const;

    // What assistive technology does in one go: five steps.
    [[nodiscard]] double verhoogd(double waarde) const { return verzet(waarde, 5); }
    [[nodiscard]] double verlaagd(double waarde) const { return verzet(waarde, -5); }

    // The number of bars on a track of so many points, and how many of them are lit.
    [[nodiscard]] static int balken(double breedte);
    [[nodiscard]] int gevuld(double waarde, int balken) const;

    // Bar i stands at kBalkAfstand * i and is kBalkBreedte wide, in points.
    static constexpr double kBalkAfstand = 4.0;
    static constexpr double kBalkBreedte = 3.0;

  private:
    double onder_, boven_, stap_;
};

}  // namespace brixtel
