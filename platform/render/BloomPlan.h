// SPDX-License-Identifier: MIT
// The plan of a scene's bloom; private to platform/render.
#pragma once

#include <QSize>
#include <array>
#include <glm/vec2.hpp>

namespace platform {

// The blur works on a smaller image: bright light is averaged over squares of
// `factor` pixels a side, halved `halvings` more times, blurred along each
// direction, and stretched again. Averaging and stretching blur too; the blur's
// own width is reduced accordingly, so the total standard deviation is the same
// at every size.
struct BloomPlan {
    static constexpr int kMaxTaps = 16;

    int factor = 1;
    int halvings = 0;
    QSize size;          // of the smallest image
    double sigma = 0.0;  // of the blur, in pixels of the smallest image
    // The blur's weights: at the middle, and 1 … radius pixels away.
    int radius = 0;
    std::array<float, 2 * kMaxTaps + 1> weight{1.0F};
    // The same weights in taps that each weigh two pixels: pixels away, weight.
    int taps = 0;
    std::array<glm::vec2, kMaxTaps> tap{};

    // The side, in pixels of the scene, of one pixel of the smallest image.
    [[nodiscard]] int reduction() const { return factor << halvings; }
    // The size after `by` halvings.
    [[nodiscard]] static QSize reduced(QSize size, int by);
};

struct BloomRequest {
    QSize size;          // of the scene's image
    double sigma = 1.0;  // in pixels of the scene's image
    bool fine = true;    // true: on a larger image, stretched by cubic splines
    // true: on the smallest image that suffices, with pixels of two to sixteen scene pixels a
    // side, stretched by cubic splines; `fine` then makes no difference.
    bool spline = false;
};
[[nodiscard]] BloomPlan planBloom(const BloomRequest& request);

}  // namespace platform
