// SPDX-License-Identifier: MIT
#include "platform/window/wayland/DamageBoxes.h"

#include <array>
#include <cstdint>
#include <limits>

namespace platform::wayland {

namespace {

// Many rectangles are first gathered in this many cells each way: joining pairs
// of hundreds would cost more than the boxes save.
constexpr int kCells = 4;
constexpr std::size_t kFew = std::size_t{kCells} * kCells;

std::int64_t area(const QRect& rect) {
    return std::int64_t{rect.width()} * rect.height();
}

void gather(std::span<const QRect> rects, std::vector<QRect>& boxes) {
    QRect all;
    for (const QRect& rect : rects)
        all |= rect;
    std::array<QRect, kFew> cells;
    for (const QRect& rect : rects) {
        if (rect.isEmpty()) continue;
        const auto cell = [](int at, int from, int length) {
            return static_cast<std::size_t>(std::int64_t{at - from} * kCells / length);
        };
        const std::size_t column = cell(rect.center().x(), all.left(), all.width());
        const std::size_t row = cell(rect.center().y(), all.top(), all.height());
        cells[row * kCells + column] |= rect;
    }
    for (const QRect& cell : cells)
        if (!cell.isEmpty()) boxes.push_back(cell);
}

// The area that joining two boxes adds.
std::int64_t waste(const QRect& a, const QRect& b) {
    return area(a | b) - area(a) - area(b);
}

struct Pair {
    std::size_t first = 0, second = 0;
    std::int64_t waste = std::numeric_limits<std::int64_t>::max();
};

Pair bestPair(const std::vector<QRect>& boxes) {
    Pair best;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        for (std::size_t j = i + 1; j < boxes.size(); ++j)
            if (const std::int64_t cost = waste(boxes[i], boxes[j]); cost < best.waste)
                best = {i, j, cost};
    return best;
}

}  // namespace

void joinDamage(std::span<const QRect> rects, std::vector<QRect>& boxes) {
    boxes.clear();
    std::int64_t sum = 0;
    for (const QRect& rect : rects)
        sum += rect.isEmpty() ? 0 : area(rect);
    if (rects.size() > kFew) {
        gather(rects, boxes);
    } else {
        for (const QRect& rect : rects)
            if (!rect.isEmpty()) boxes.push_back(rect);
    }
    std::int64_t total = 0;
    for (const QRect& box : boxes)
        total += area(box);
    const double limit = kWorthJoining * static_cast<double>(sum);
    while (boxes.size() > 1) {
        const Pair pair = bestPair(boxes);
        const bool worth = static_cast<double>(total + pair.waste) < limit;
        if (boxes.size() <= kMostBoxes && !worth) break;
        total += pair.waste;
        boxes[pair.first] |= boxes[pair.second];
        boxes.erase(boxes.begin() + static_cast<std::ptrdiff_t>(pair.second));
    }
}

}  // namespace platform::wayland
