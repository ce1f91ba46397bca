// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSizeF>
#include <memory>
#include <vector>

#include "platform/layers/Layer.h"
#include "platform/time/MediaClock.h"
#include "platform/time/RandomSource.h"
#include "platform/time/Timer.h"

namespace brixtel {

struct MatrixRegenOpties {
    QSizeF maat;               // the area to fill, in points
    double schaal = 1.0;       // pixels per point of the digits' pictures
    double dichtheid = 0.7;    // 0...1: how many drops a column gets
    double snelheid = 1.0;     // divides the time of a fall; below 0.2 counts as 0.2
    bool doorzichtig = false;  // the variant over the live desktop
    bool stil = false;         // a frozen picture: no animation, no timer
};

// The digital rain: a tree of layers in which columns of block digits fall. All
// digits are drawn once, into at most ten strips in two colours. Masks uncover the
// digits, and fall by discrete key frames. After construction, only the flicker
// timer changes the tree: it swaps the digits of one column at a time. Main thread
// only. Owns its layers; the clock and the random source must outlive it.
//
// A size that is no number of rows or columns stops the process; a still
// picture of fewer than seven rows does too.
class MatrixRegen {
  public:
    MatrixRegen(const MatrixRegenOpties& opties, platform::MediaClock& klok,
                platform::RandomSource& toeval);
    MatrixRegen(const MatrixRegen&) = delete;
    MatrixRegen& operator=(const MatrixRegen&) = delete;

    // The root of the tree: frame (0, 0, width, height), clipped to it. The
    // owner of the rain adds it to a tree of its own and removes it again.
    [[nodiscard]] const std::shared_ptr<platform::Layer>& laag() const { return laag_; }

    // Ends the flicker; drops fall on.
    void stop();

    // Changes the speed of the fall without a jump; 0 freezes it. The flicker
    // keeps its own pace.
    void zetTempo(float tempo);

    struct Kolom {
        std::shared_ptr<platform::Layer> staart;  // a strip, masked by trails
        std::shared_ptr<platform::Layer> kop;     // the same strip, bright, one cell a drop
    };
    [[nodiscard]] const std::vector<Kolom>& kolommen() const { return kolommen_; }

    // The strips in the normal and the bright colour; one index means the same
    // digits.
    [[nodiscard]] const std::vector<QImage>& stroken() const { return stroken_; }
    [[nodiscard]] const std::vector<QImage>& kopStroken() const { return kopStroken_; }

    [[nodiscard]] const platform::Timer& flikker() const { return flikker_; }

  private:
    struct Bouw;
    void bouwStroken(const Bouw& bouw);
    void bouwKolommen(const Bouw& bouw);
    Kolom bouwKolom(const Bouw& bouw, double x);
    void voegDruppel(const Bouw& bouw, const Kolom& kolom);
    void knipper();

    platform::MediaClock& klok_;
    platform::RandomSource& toeval_;
    std::shared_ptr<platform::Layer> laag_;
    std::vector<Kolom> kolommen_;
    std::vector<QImage> stroken_;
    std::vector<QImage> kopStroken_;
    platform::Timer flikker_;
};

}  // namespace brixtel
