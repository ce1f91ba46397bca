// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace brixtel {

// A beat: where something sets in.
struct Slag {
    std::int64_t plaats = 0;  // in samples since the start
    double sterkte = 0;       // 0...1, against the strongest of the last seconds
};

// Finds the beats in sound as it comes, and how loud it is. Sound is cut into
// frames that overlap by half; what every band of a frame's spectrum has more
// than in the frames that ended before it, on a logarithmic scale, is its flux,
// and a peak of the flux well above what is usual of late is a beat. It is known
// one frame after it sounded, some 25 ms.
//
// What already sounds at the start is no beat. Knows no clock, and allocates
// nothing once made. One thread at a time.
class SlagZoeker {
  public:
    // Samples a second, 8,000...192,000.
    explicit SlagZoeker(double monstersPerSeconde);
    ~SlagZoeker();
    SlagZoeker(const SlagZoeker&) = delete;
    SlagZoeker& operator=(const SlagZoeker&) = delete;

    // The next samples, −1...1, one channel. What is no number counts as silence.
    void voeg(std::span<const float> monsters);

    [[nodiscard]] int aantal() const { return aantal_; }
    [[nodiscard]] const Slag& laatste() const { return laatste_; }

    // Loudness, 0...1: 1 is a sine of full scale. Follows a rise at once and falls
    // off within half a second.
    [[nodiscard]] double level() const;

    // How many samples have come.
    [[nodiscard]] std::int64_t monsters() const { return monsters_; }

  private:
    struct Spectrum;
    void beeld();
    [[nodiscard]] double flux();
    void oordeel();

    static constexpr std::size_t kTerugblik = 128;  // frames: some one and a half seconds

    const double monstersPerSeconde_;
    std::unique_ptr<Spectrum> spectrum_;
    std::vector<float> venster_;
    std::size_t gevuld_ = 0;
    std::int64_t monsters_ = 0;

    std::array<double, kTerugblik> fluxen_{};  // a ring
    std::int64_t beelden_ = 0;
    std::int64_t wacht_ = 0;  // no beat before this frame
    double piek_ = 0;         // of the flux, of late
    double vermogen_ = 0;     // mean square
    int aantal_ = 0;
    Slag laatste_;
};

}  // namespace brixtel
