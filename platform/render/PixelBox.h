// SPDX-License-Identifier: MIT
// Rectangles of whole pixels as OpenGL counts them; private to platform/render.
#pragma once

#include <QRectF>
#include <algorithm>
#include <vector>

#include "platform/layers/PixelGrid.h"

namespace platform {

// From the lower left, y up; `right` and `high` are the first beyond.
struct PixelBox {
    int left = 0, low = 0, right = 0, high = 0;

    // The same edges as PixelGrid::snap; what lies absurdly far outside stops short.
    static PixelBox snapped(const QRectF& points, double scale) {
        const auto edge = [scale](double at) {
            constexpr double kFar = 1 << 24;
            return PixelGrid::edge(std::clamp(at * scale, -kFar, kFar));
        };
        return {edge(points.left()), edge(points.top()), edge(points.right()),
                edge(points.bottom())};
    }

    [[nodiscard]] bool isEmpty() const { return left >= right || low >= high; }
    [[nodiscard]] int width() const { return right - left; }
    [[nodiscard]] int height() const { return high - low; }

    friend PixelBox operator&(const PixelBox& a, const PixelBox& b) {
        return {std::max(a.left, b.left), std::max(a.low, b.low), std::min(a.right, b.right),
                std::min(a.high, b.high)};
    }
    // The least box around both; an empty one counts for nothing.
    friend PixelBox operator|(const PixelBox& a, const PixelBox& b) {
        if (a.isEmpty()) return b;
        if (b.isEmpty()) return a;
        return {std::min(a.left, b.left), std::min(a.low, b.low), std::max(a.right, b.right),
                std::max(a.high, b.high)};
    }
};

// Adds to `boxes`, which do not overlap, what of `box` none of those from index
// `from` on covers yet, so that they still do not overlap.
inline void addUncovered(std::vector<PixelBox>& boxes, std::size_t from, const PixelBox& box) {
    if (box.isEmpty()) return;
    for (std::size_t i = from; i < boxes.size(); ++i) {
        const PixelBox common = boxes[i] & box;
        if (common.isEmpty()) continue;
        addUncovered(boxes, i + 1, {box.left, common.high, box.right, box.high});
        addUncovered(boxes, i + 1, {box.left, box.low, box.right, common.low});
        addUncovered(boxes, i + 1, {box.left, common.low, common.left, common.high});
        addUncovered(boxes, i + 1, {common.right, common.low, box.right, common.high});
        return;
    }
    boxes.push_back(box);
}

}  // namespace platform
