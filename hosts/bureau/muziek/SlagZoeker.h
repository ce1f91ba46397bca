// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace brixtel {

// A beat: the onset of a sound.
struct Slag {
    std::int64_t plaats = 0;  // in samples since the start
    double sterkte = 0;       // 0...1, relative to the strongest of the last seconds
};

// Finds the beats and the loudness of incoming sound. Sound is cut into frames that overlap
// by half. A frame's flux is the sum over its bands of the rise, on a logarithmic scale,
// above the earlier frames that share no samples with it. A peak of the flux well above its
// recent mean is a beat, known one frame later, some 25 ms.
//
// Sound that already plays at the start is no beat. Has no clock, and allocates nothing
// once made. One thread at a time.
class SlagZoeker {
  public:
    // Samples a second, 8,000...192,000.
    explicit SlagZoeker(double monstersPerSeconde);
    ~SlagZoeker();
    SlagZoeker(const SlagZoeker&) = delete;
    SlagZoeker& operator=(const SlagZoeker&) = delete;

    // Takes the next samples, −1...1, one channel. A NaN counts as silence.
    void voeg(std::span<const float> monsters);

    [[nodiscard]] int aantal() const { return aantal_; }
    [[nodiscard]] const Slag& laatste() const { return laatste_; }

    // Loudness, 0...1: 1 is a full-scale sine. Rises at once and falls within half a
    // second.
    [[nodiscard]] double level() const;

    // The number of samples taken so far.
    [[nodiscard]] std::int64_t monsters() const { return monsters_; }

  private:
    struct Spectrum;
    void beeld();
    [[nodiscard]] double flux();
    void oordeel();

    static constexpr std::size_t kTerugblik = 128;  // frames, some 1.5 seconds

    const double monstersPerSeconde_;
    std::unique_ptr<Spectrum> spectrum_;
    std::vector<float> venster_;
    std::size_t gevuld_ = 0;
    std::int64_t monsters_ = 0;

    std::array<double, kTerugblik> fluxen_{};  // a ring
    std::int64_t beelden_ = 0;
    std::int64_t wacht_ = 0;  // no beat before this frame
    double piek_ = 0;         // the recent maximum of the flux
    double vermogen_ = 0;     // mean square
    int aantal_ = 0;
    Slag laatste_;
};

}  // namespace brixtel
