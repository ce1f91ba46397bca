// SPDX-License-Identifier: MIT
// Layer trees to draw in tests and benchmarks.
#pragma once

#include <QSizeF>
#include <memory>

#include "platform/layers/Layer.h"
#include "platform/time/RandomSource.h"

namespace platform::test {

// Columns of falling trails: in each, two strips of pictures one over the other,
// the lower under one to three gradients that step down row by row, the upper
// under a white square for each. As many things as a full screen of rain has.
[[nodiscard]] std::shared_ptr<Layer> rainTree(QSizeF size, double scale, double clockTime,
                                              RandomSource& random);

// Layers of every kind, nested, at any place, cut off, masked and see-through.
[[nodiscard]] std::shared_ptr<Layer> randomTree(QSizeF size, double scale, RandomSource& random);

// A picture of noise, premultiplied; `opaque` or of every alpha.
[[nodiscard]] QImage noise(QSize size, bool opaque, RandomSource& random);

}  // namespace platform::test
