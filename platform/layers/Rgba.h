// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace platform {

// A colour for drawing: gamma-encoded sRGB components in [0, 1], multiplied by
// alpha. A value: any thread, like any other value.
struct Rgba {
    float r = 0.0F, g = 0.0F, b = 0.0F, a = 0.0F;

    static Rgba from(const QColor& colour) {
        const float alpha = colour.alphaF();
        return {colour.redF() * alpha, colour.greenF() * alpha, colour.blueF() * alpha, alpha};
    }

    friend bool operator==(const Rgba&, const Rgba&) = default;
};

}  // namespace platform
