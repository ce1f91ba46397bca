// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QRectF>
#include <QSize>
#include <cmath>

namespace platform {

// From points (y up) to the pixels of a picture (y down, row 0 at the top).
// Edges go to the nearest whole pixel, each by itself, so that rectangles that
// touch in points touch in pixels and nothing is blurred for lying in between.
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
