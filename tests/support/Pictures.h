// SPDX-License-Identifier: MIT
// Pictures, and comparing them with one another.
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QPoint>
#include <string>

#include "platform/time/RandomSource.h"

namespace platform::test {

// How far two pictures of one size lie apart, over all four components of their
// premultiplied pixels, in 255ths.
struct PictureDifference {
    int largest = 0;
    double mean = 0.0;
    QPoint where;  // of the largest
};

[[nodiscard]] PictureDifference difference(const QImage& a, const QImage& b);

struct PictureLimits {
    int largest = 0;
    double mean = 0.0;
};

// Whether both pictures have one size and differ by no more than that. If not,
// both and what lies between them (tenfold) are left as `NAME-*.png` in the
// build folder's `pictures`.
[[nodiscard]] testing::AssertionResult agree(const QImage& actual, const QImage& expected,
                                             const std::string& name, PictureLimits limits);

// A picture of noise, premultiplied and opaque.
[[nodiscard]] QImage noise(QSize size, RandomSource& random);

}  // namespace platform::test
