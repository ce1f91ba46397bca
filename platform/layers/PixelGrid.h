// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QRectF>
#include <QSize>
#include <cmath>

namespace platform {

// Maps points (y up) to a picture's pixels (y down, row 0 at the top). Each edge
// goes to the nearest whole pixel by itself: rectangles that touch in points touch
// in pixels, and no edge is blurred. A value: any thread, like any other value.
struct PixelGrid {
    double scale = 1.0;  // pixels per point
    QSize size;          // of the picture, in pixels

    [[nodiscard]] static int edge(double pixels) {
        return static_cast<int>(std::floor(pixels + 0.5));
    }

    [[nodiscard]] QRect snap(const QRectF& points) const {
        const int left = edge(points.left() * scale);
        const int right = edge(points.right() * scale);
        const int low = edge(points.top() * scale);
        const int high = edge(points.bottom() * scale);
        return {left, size.height() - high, right - left, high - low};
    }

    // The centre of a pixel, in points.
    [[nodiscard]] double x(int column) const { return (column + 0.5) / scale; }
    [[nodiscard]] double y(int row) const { return (size.height() - row - 0.5) / scale; }

    friend bool operator==(const PixelGrid&, const PixelGrid&) = default;
};

}  // namespace platform
