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

inline std::size_t druppels(const MatrixRegen::Kolom& kolom) {
    return kolom.staart->mask()->sublayers().size();
}

}  // namespace brixtel
