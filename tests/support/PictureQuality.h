// SPDX-License-Identifier: MIT
// The quality of a picture, against a picture drawn with more care.
#pragma once

#include <QImage>

namespace platform::test {

// Every square of `times` pixels a side as one, averaged in linear light.
[[nodiscard]] QImage averagedDown(const QImage& large, int times);

// The peak signal-to-noise ratio of red, green and blue in decibels; of equal
// pictures, 99. Pictures of unlike sizes are as unlike as can be: 0.
[[nodiscard]] double psnr(const QImage& a, const QImage& b);

}  // namespace platform::test
