// SPDX-License-Identifier: MIT
#include "tests/support/ReferenceDrawer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

using namespace platform;

namespace {

struct Colour {
    double r = 0.0, g = 0.0, b = 0.0, a = 0.0;
};

Colour operator*(const Colour& c, double k) {
    return {c.r * k, c.g * k, c.b * k, c.a * k};
}
Colour operator+(const Colour& a, const Colour& b) {
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.a + b.a};
}
Colour from(const Rgba& c) {
    return {c.r, c.g, c.b, c.a};
}
Colour over(const Colour& above, const Colour& below) {
    return above + below * (1.0 - above.a);
}

double edge(double pixels) {
    return std::floor(pixels + 0.5);
}

// A rectangle's snapped edges in pixels, y up from the picture's bottom.
struct Snapped {
    double left, right, low, high;

    Snapped(const QRectF& points, double scale)
        : left(edge(points.left() * scale)),
          right(edge(points.right() * scale)),
          low(edge(points.top() * scale)),
          high(edge(points.bottom() * scale)) {}

    [[nodiscard]] bool contains(double x, double y) const {
        return x >= left && x < right && y >= low && y < high;
    }
};

Colour texel(const QImage& image, int x, int y) {
    const auto* const row =
        reinterpret_cast<const QRgb*>(image.constScanLine(std::clamp(y, 0, image.height() - 1)));
    const QRgb pixel = row[std::clamp(x, 0, image.width() - 1)];
    return Colour{static_cast<double>(qRed(pixel)), static_cast<double>(qGreen(pixel)),
                  static_cast<double>(qBlue(pixel)), static_cast<double>(qAlpha(pixel))} *
           (1.0 / 255.0);
}

class Reference {
  public:
    Reference(DisplayList list, const PixelGrid& grid) : list_(std::move(list)), grid_(grid) {
        for (auto* items : {&list_.items, &list_.pieces}) {
            for (DisplayItem& item : *items) {
                if (item.kind == DisplayItem::Kind::Image)
                    item.image = item.image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
            }
        }
    }

    // The colour at a pixel's centre: x in pixels from the left, y in pixels from the bottom.
    [[nodiscard]] Colour at(double x, double y, const Rgba& background) const {
        Colour result = from(background);
        for (const DisplayItem& item : list_.items)
            result = over(colour(item, x, y) * (item.opacity * mask(item.mask, x, y)), result);
        return result;
    }

  private:
    [[nodiscard]] double mask(std::int32_t index, double x, double y) const {
        if (index < 0) return 1.0;
        const DisplayMask& mask = list_.masks[static_cast<std::size_t>(index)];
        double alpha = 0.0;
        for (std::uint32_t i = 0; i < mask.pieceCount; ++i) {
            const DisplayItem& piece = list_.pieces[mask.firstPiece + i];
            const double own = colour(piece, x, y).a * piece.opacity;
            alpha = alpha + own - alpha * own;
        }
        return alpha * this->mask(mask.outer, x, y);
    }

    [[nodiscard]] Colour colour(const DisplayItem& item, double x, double y) const {
        const Snapped rect(item.rect, grid_.scale);
        if (!rect.contains(x, y) || !Snapped(item.clip, grid_.scale).contains(x, y)) return {};
        switch (item.kind) {
            case DisplayItem::Kind::Colour:
                return from(item.colour);
            case DisplayItem::Kind::Gradient:
                return gradient(item, x, y);
            case DisplayItem::Kind::Image:
                return image(item, rect, x, y);
        }
        return {};
    }

    [[nodiscard]] Colour gradient(const DisplayItem& item, double x, double y) const {
        const QPointF unit((x / grid_.scale - item.rect.left()) / item.rect.width(),
                           (y / grid_.scale - item.rect.top()) / item.rect.height());
        const QPointF axis = item.end - item.start;
        const double length2 = QPointF::dotProduct(axis, axis);
        const double t =
            length2 == 0.0 ? -1e9 : QPointF::dotProduct(unit - item.start, axis) / length2;
        const auto* const stops = &list_.stops[item.firstStop];
        if (t <= stops[0].location) return from(stops[0].colour);
        for (std::uint32_t i = 1; i < item.stopCount; ++i) {
            const double low = stops[i - 1].location, high = stops[i].location;
            if (t > high) continue;
            const double share = (t - low) / (high - low);
            return from(stops[i - 1].colour) * (1.0 - share) + from(stops[i].colour) * share;
        }
        return from(stops[item.stopCount - 1].colour);
    }

    [[nodiscard]] Colour image(const DisplayItem& item, const Snapped& rect, double x,
                               double y) const {
        const QImage& picture = item.image;
        const double width = picture.width(), height = picture.height();
        if (std::abs(item.rect.width() * grid_.scale - width) < 1.0 &&
            std::abs(item.rect.height() * grid_.scale - height) < 1.0) {
            const double column = std::floor(x - rect.left);
            const double row = height - 1.0 - std::floor(y - rect.low);
            if (column >= width || row < 0.0) return {};
            return texel(picture, static_cast<int>(column), static_cast<int>(row));
        }
        const double u = (x - rect.left) / (rect.right - rect.left) * width - 0.5;
        const double v = (rect.high - y) / (rect.high - rect.low) * height - 0.5;
        const double column = std::floor(u), row = std::floor(v);
        const auto mixed = [&](double of) {
            const int i = static_cast<int>(column), j = static_cast<int>(of);
            return texel(picture, i, j) * (column + 1.0 - u) +
                   texel(picture, i + 1, j) * (u - column);
        };
        return mixed(row) * (row + 1.0 - v) + mixed(row + 1.0) * (v - row);
    }

    DisplayList list_;
    PixelGrid grid_;
};

}  // namespace

QImage drawReference(const DisplayList& list, const PixelGrid& grid, const Rgba& background) {
    const Reference reference(list, grid);
    QImage result(grid.size, QImage::Format_ARGB32_Premultiplied);
    const auto byte = [](double c) { return static_cast<int>(std::lround(c * 255.0)); };
    for (int y = 0; y < result.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const Colour c = reference.at(x + 0.5, grid.size.height() - y - 0.5, background);
            row[x] = qRgba(byte(c.r), byte(c.g), byte(c.b), byte(c.a));
        }
    }
    return result;
}

int largestDifference(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 255;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* const left = a.constScanLine(y);
        const uchar* const right = b.constScanLine(y);
        for (int i = 0; i < 4 * a.width(); ++i)
            largest = std::max(largest, std::abs(left[i] - right[i]));
    }
    return largest;
}
