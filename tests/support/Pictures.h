// SPDX-License-Identifier: MIT
// Pictures, and their comparison.
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QPoint>
#include <string>

#include "platform/time/RandomSource.h"

namespace platform::test {

// The difference between two pictures of one size, over all four components of
// their premultiplied pixels, in 255ths.
struct PictureDifference {
    int largest = 0;
    double mean = 0.0;
    QPoint where;  // the place of the largest difference
};

[[nodiscard]] PictureDifference difference(const QImage& a, const QImage& b);

struct PictureLimits {
    int largest = 0;
    double mean = 0.0;
};

// Whether both pictures have one size and differ within the limits. On failure,
// writes both and their difference (tenfold) as `NAME-*.png` into the build
// folder's `pictures`.
[[nodiscard]] testing::AssertionResult agree(const QImage& actual, const QImage& expected,
                                             const std::string& name, PictureLimits limits);

// A picture of noise, premultiplied and opaque.
[[nodiscard]] QImage noise(QSize size, RandomSource& random);

}  // namespace platform::test
