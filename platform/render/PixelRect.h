// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <algorithm>

namespace platform {

// Whole pixels from x0 and y0 up to, but excluding, x1 and y1. Unlike QRect, safe
// to compare and intersect when empty. A value: any thread, like any other value.
struct PixelRect {
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;

    static PixelRect from(const QRect& rect) {
        return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
    }

    [[nodiscard]] bool isEmpty() const { return x0 >= x1 || y0 >= y1; }
    [[nodiscard]] int width() const { return x1 - x0; }
    [[nodiscard]] int height() const { return y1 - y0; }

    // Whether every pixel of the other one, which is not empty, lies inside.
    [[nodiscard]] bool contains(const PixelRect& other) const {
        return x0 <= other.x0 && y0 <= other.y0 && x1 >= other.x1 && y1 >= other.y1;
    }

    [[nodiscard]] PixelRect operator&(const PixelRect& other) const {
        return {std::max(x0, other.x0), std::max(y0, other.y0), std::min(x1, other.x1),
                std::min(y1, other.y1)};
    }

    // The smallest rectangle that holds both.
    [[nodiscard]] PixelRect operator|(const PixelRect& other) const {
        if (isEmpty()) return other;
        if (other.isEmpty()) return *this;
        return {std::min(x0, other.x0), std::min(y0, other.y0), std::max(x1, other.x1),
                std::max(y1, other.y1)};
    }
};

}  // namespace platform
