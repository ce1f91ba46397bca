// SPDX-License-Identifier: MIT
#include "platform/layers/Damage.h"

#include <algorithm>

namespace platform {

namespace {

// Collects rectangles and joins those that would repaint the same pixels.
class Collector {
  public:
    Collector(const PixelGrid& grid, std::vector<QRect>& rects)
        : grid_(grid), picture_(QPoint(0, 0), grid.size), rects_(rects) {
        rects_.clear();
    }

    // Cuts in pixels, as drawing does. Cutting in points could round an edge to
    // the next pixel.
    [[nodiscard]] QRect shown(const DisplayItem& item) const {
        return grid_.snap(item.rect) & grid_.snap(item.clip) & picture_;
    }

    void add(const QRect& rect) {
        if (rect.isEmpty()) return;
        // Neighbours in the list are neighbours on screen, so a short look back
        // finds nearly all overlaps.
        const std::size_t from = rects_.size() > kLookBack ? rects_.size() - kLookBack : 0;
        for (std::size_t i = from; i < rects_.size(); ++i) {
            if (!joins(rects_[i], rect)) continue;
            rects_[i] |= rect;
            return;
        }
        rects_.push_back(rect);
    }

  private:
    static constexpr std::size_t kLookBack = 8;

    static bool joins(const QRect& a, const QRect& b) {
        if (a.contains(b) || b.contains(a)) return true;
        const bool sameColumn = a.left() == b.left() && a.right() == b.right();
        return sameColumn && a.top() <= b.bottom() + 1 && b.top() <= a.bottom() + 1;
    }

    const PixelGrid& grid_;
    const QRect picture_;
    std::vector<QRect>& rects_;
};

bool sameStops(const DisplayList& before, const DisplayItem& a, const DisplayList& after,
               const DisplayItem& b) {
    return std::equal(
        before.stops.begin() + a.firstStop, before.stops.begin() + a.firstStop + a.stopCount,
        after.stops.begin() + b.firstStop, after.stops.begin() + b.firstStop + b.stopCount);
}

// Whether two items look the same, masks aside.
bool same(const DisplayList& before, const DisplayItem& a, const DisplayList& after,
          const DisplayItem& b) {
    return a.kind == b.kind && a.rect == b.rect && a.clip == b.clip && a.opacity == b.opacity &&
           a.colour == b.colour && a.image.cacheKey() == b.image.cacheKey() && a.start == b.start &&
           a.end == b.end && sameStops(before, a, after, b);
}

// Walks two rising runs side by side and calls `pair` for an entry in both,
// `gone` for one in `a` only, `come` for one in `b` only.
template <typename Run, typename Pair, typename Gone, typename Come>
void merge(const Run& a, const Run& b, Pair pair, Gone gone, Come come) {
    auto left = a.begin();
    auto right = b.begin();
    while (left != a.end() || right != b.end()) {
        if (right == b.end() || (left != a.end() && left->order < right->order)) {
            gone(*left++);
        } else if (left == a.end() || right->order < left->order) {
            come(*right++);
        } else {
            pair(*left++, *right++);
        }
    }
}

struct Span {
    const DisplayItem* first;
    const DisplayItem* last;
    [[nodiscard]] const DisplayItem* begin() const { return first; }
    [[nodiscard]] const DisplayItem* end() const { return last; }
};

Span piecesOf(const DisplayList& list, std::int32_t mask) {
    const DisplayMask& m = list.masks[static_cast<std::size_t>(mask)];
    const DisplayItem* const first = list.pieces.data() + m.firstPiece;
    return {first, first + m.pieceCount};
}

// Damages what an item shows: the part that its mask uncovers.
void addShown(const DisplayList& list, const DisplayItem& item, Collector& out) {
    if (item.mask < 0) {
        out.add(out.shown(item));
        return;
    }
    for (const DisplayItem& piece : piecesOf(list, item.mask))
        out.add(out.shown(piece) & out.shown(item));
}

// Damages the pixels where an unchanged item's masks have changed.
void compareMasks(const DisplayList& before, std::int32_t a, const DisplayList& after,
                  std::int32_t b, const QRect& within, Collector& out) {
    const auto either = [&](const DisplayItem& piece) { out.add(out.shown(piece) & within); };
    while (a >= 0 && b >= 0) {
        merge(
            piecesOf(before, a), piecesOf(after, b),
            [&](const DisplayItem& p, const DisplayItem& q) {
                if (same(before, p, after, q)) return;
                out.add(out.shown(p) & within);
                out.add(out.shown(q) & within);
            },
            either, either);
        a = before.masks[static_cast<std::size_t>(a)].outer;
        b = after.masks[static_cast<std::size_t>(b)].outer;
    }
    if (a >= 0 || b >= 0) out.add(within);
}

}  // namespace

void findDamage(const DisplayList& before, const DisplayList& after, const PixelGrid& grid,
                std::vector<QRect>& rects) {
    rects.reserve(after.items.capacity());
    Collector out(grid, rects);
    if (before.structure != after.structure) {
        rects.emplace_back(QPoint(0, 0), grid.size);
        return;
    }
    merge(
        before.items, after.items,
        [&](const DisplayItem& a, const DisplayItem& b) {
            if (same(before, a, after, b)) {
                compareMasks(before, a.mask, after, b.mask, out.shown(a), out);
            } else {
                addShown(before, a, out);
                addShown(after, b, out);
            }
        },
        [&](const DisplayItem& item) { addShown(before, item, out); },
        [&](const DisplayItem& item) { addShown(after, item, out); });
}

}  // namespace platform
