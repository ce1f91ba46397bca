// SPDX-License-Identifier: MIT
// How a scene's bright light is spread; private to platform/render.
#pragma once

#include <QSize>
#include <array>
#include <glm/vec2.hpp>

namespace platform {

// The blur happens on a smaller image: bright light is averaged over squares of
// `factor` pixels a side, halved `halvings` times more, blurred there along each
// direction and stretched again. Averaging and stretching blur too, and the
// blur's own width leaves room for that, so that light is spread over the same
// standard deviation whatever the sizes.
struct BloomPlan {
    static constexpr int kMaxTaps = 16;

    int factor = 1;
    int halvings = 0;
    QSize size;          // of the smallest image
    double sigma = 0.0;  // of its blur, in its pixels
    // The blur's weights: of the middle, and of what is 1 … radius pixels away.
    int radius = 0;
    std::array<float, 2 * kMaxTaps + 1> weight{1.0F};
    // The same in steps that weigh two pixels each: pixels away, weight.
    int taps = 0;
    std::array<glm::vec2, kMaxTaps> tap{};

    // How many pixels of the scene one of the smallest image is across.
    [[nodiscard]] int reduction() const { return factor << halvings; }
    // The size after so many halvings.
    [[nodiscard]] static QSize reduced(QSize size, int by);
};

struct BloomRequest {
    QSize size;          // of the scene's image
    double sigma = 1.0;  // in its pixels
    bool fine = true;    // on a larger image, stretched by cubic splines
    // On as small an image as goes, of at least two and at most sixteen pixels
    // each, stretched by cubic splines; `fine` makes no difference.
    bool spline = false;
};
[[nodiscard]] BloomPlan planBloom(const BloomRequest& request);

}  // namespace platform
