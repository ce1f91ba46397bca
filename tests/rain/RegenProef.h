// SPDX-License-Identifier: MIT
// A rain with a clock and a random source of the test's own.
#pragma once

#include <memory>
#include <vector>

#include "platform/layers/DisplayListBuilder.h"
#include "rain/MatrixRegen.h"

namespace brixtel {

struct RegenProef {
    platform::ManualClock klok{500.0};
    platform::RandomSource toeval{42};

    std::unique_ptr<MatrixRegen> maak(MatrixRegenOpties opties) {
        return std::make_unique<MatrixRegen>(opties, klok, toeval);
    }
    platform::DisplayList lijst(const MatrixRegen& regen) {
        platform::DisplayList lijst;
        platform::DisplayListBuilder bouw(lijst, klok.now());
        bouw.add(*regen.laag(), {0, 0}, regen.laag()->frame());
        return lijst;
    }
};

// All that a rain's lots have decided of its drops, in order: how long each trail
// is, how long it falls, from when, and from where. The scale of its strips is in it too.
inline std::vector<double> lotVan(const MatrixRegen& regen) {
    std::vector<double> lot;
    for (const MatrixRegen::Kolom& kolom : regen.kolommen()) {
        lot.insert(lot.end(), {kolom.staart->frame().left(), kolom.staart->contentsScale()});
        for (const auto& stuk : kolom.staart->mask()->sublayers()) {
            const auto& timing = stuk->animation("val")->data().timing;
            lot.insert(lot.end(), {stuk->bounds().height(), timing.duration, timing.time.beginTime,
                                   timing.time.timeOffset});
        }
    }
    return lot;
}

// The random choices of a rain with these options that begins now.
inline std::vector<double> lotVan(const MatrixRegenOpties& opties, platform::MediaClock& klok,
                                  platform::RandomSource toeval) {
    return lotVan(MatrixRegen(opties, klok, toeval));
}

inline std::size_t druppels(const MatrixRegen::Kolom& kolom) {
    return kolom.staart->mask()->sublayers().size();
}

}  // namespace brixtel
