// SPDX-License-Identifier: MIT
#include "platform/render/cpu/CpuPaint.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// The position of `along` between two stops, in [0, 1]; where the stops
// coincide, the second begins just above.
float progress(float along, float from, float to) {
    const float steepness = to > from ? 1.0F / (to - from) : 1e30F;
    return std::clamp((along - from) * steepness, 0.0F, 1.0F);
}

Rgba unpack(std::uint32_t pixel) {
    constexpr float kUnit = 1.0F / 255.0F;
    const auto part = [pixel](int shift) {
        return static_cast<float>((pixel >> shift) & 0xFF) * kUnit;
    };
    return {part(16), part(8), part(0), part(24)};
}

Rgba mix(const Rgba& a, const Rgba& b, float share) {
    return {a.r + (b.r - a.r) * share, a.g + (b.g - a.g) * share, a.b + (b.b - a.b) * share,
            a.a + (b.a - a.a) * share};
}

// The two of `size` source pixels around a target pixel's centre, and the share
// of the second.
struct Tap {
    int first, second;
    float share;
};

Tap tap(int pixel, int targetSize, int size) {
    const double place = (pixel + 0.5) * size / targetSize - 0.5;
    const double whole = std::floor(place);
    const int first = static_cast<int>(whole);
    return {std::clamp(first, 0, size - 1), std::clamp(first + 1, 0, size - 1),
            static_cast<float>(place - whole)};
}

}  // namespace

CpuPaint::CpuPaint(const DisplayItem& item, std::span<const GradientLayer::Stop> stops,
                   const PixelGrid& grid, const QImage* image)
    : kind_(Kind::Colour),
      opacity_(item.opacity),
      colour_(item.colour),
      rect_(PixelRect::from(grid.snap(item.rect))),
      shown_(rect_ & PixelRect::from(grid.snap(item.clip))),
      stops_(stops) {
    if (item.kind == DisplayItem::Kind::Gradient) placeGradient(item, grid);
    if (item.kind == DisplayItem::Kind::Image) placeImage(item, grid, *image);
}

void CpuPaint::placeGradient(const DisplayItem& item, const PixelGrid& grid) {
    if (stops_.empty()) return;
    const QPointF axis = item.end - item.start;
    const double length2 = QPointF::dotProduct(axis, axis);
    colour_ = stops_.front().colour;
    if (length2 == 0.0 || item.rect.isEmpty()) return;
    const double perX = axis.x() / (length2 * item.rect.width());
    const double perY = axis.y() / (length2 * item.rect.height());
    along0_ = (grid.x(0) - item.rect.left()) * perX + (grid.y(0) - item.rect.top()) * perY -
              QPointF::dotProduct(item.start, axis) / length2;
    alongX_ = perX / grid.scale;
    alongY_ = -perY / grid.scale;
    kind_ = axis.x() == 0.0 ? Kind::RowGradient : Kind::Gradient;
}

void CpuPaint::placeImage(const DisplayItem& item, const PixelGrid& grid, const QImage& image) {
    if (image.isNull()) {
        shown_ = {};
        return;
    }
    bits_ = reinterpret_cast<const std::uint32_t*>(image.constBits());
    stride_ = image.bytesPerLine() / 4;
    imageWidth_ = image.width();
    imageHeight_ = image.height();
    const bool fits = std::abs(item.rect.width() * grid.scale - imageWidth_) < 1.0 &&
                      std::abs(item.rect.height() * grid.scale - imageHeight_) < 1.0;
    kind_ = fits ? Kind::Pixels : Kind::Stretched;
    if (!fits) return;
    rect_.y0 = rect_.y1 - imageHeight_;
    rect_.x1 = rect_.x0 + imageWidth_;
    shown_ = shown_ & rect_;
}

float CpuPaint::along(int x, int y) const {
    return static_cast<float>(along0_ + alongX_ * x + alongY_ * y);
}

Rgba CpuPaint::colourAt(float along) const {
    Rgba colour = stops_.front().colour;
    for (std::size_t i = 1; i < stops_.size(); ++i)
        colour = mix(colour, stops_[i].colour,
                     progress(along, stops_[i - 1].location, stops_[i].location));
    return colour;
}

Rgba CpuPaint::rowColour(int y) const {
    return kind_ == Kind::Colour ? colour_ : colourAt(along(0, y));
}

void CpuPaint::rowAlphas(int y, int count, float* alphas) const {
    if (kind_ == Kind::Colour) {
        std::fill_n(alphas, count, colour_.a * opacity_);
        return;
    }
    // The sum of each pair of stops' contribution, pair by pair: the rows of
    // one pair make a loop without branches.
    std::fill_n(alphas, count, stops_.front().colour.a * opacity_);
    for (std::size_t i = 1; i < stops_.size(); ++i) {
        const float from = stops_[i - 1].location;
        const float to = stops_[i].location;
        const float rise = (stops_[i].colour.a - stops_[i - 1].colour.a) * opacity_;
        const float steepness = to > from ? 1.0F / (to - from) : 1e30F;
        for (int row = 0; row < count; ++row) {
            const float share = (along(0, y + row) - from) * steepness;
            alphas[row] += rise * std::min(std::max(share, 0.0F), 1.0F);
        }
    }
}

const std::uint32_t* CpuPaint::pixels(int x, int y) const {
    return bits_ + stride_ * (y - rect_.y0) + (x - rect_.x0);
}

void CpuPaint::row(int x, int y, int count, Rgba* colours) const {
    switch (kind_) {
        case Kind::Colour:
        case Kind::RowGradient:
            std::fill_n(colours, count, rowColour(y));
            return;
        case Kind::Gradient:
            for (int i = 0; i < count; ++i)
                colours[i] = colourAt(along(x + i, y));
            return;
        case Kind::Pixels:
            std::transform(pixels(x, y), pixels(x, y) + count, colours, unpack);
            return;
        case Kind::Stretched:
            stretchedRow(x, y, count, colours);
            return;
    }
}

void CpuPaint::stretchedRow(int x, int y, int count, Rgba* colours) const {
    const Tap down = tap(y - rect_.y0, rect_.height(), imageHeight_);
    const std::uint32_t* const upper = bits_ + stride_ * down.first;
    const std::uint32_t* const lower = bits_ + stride_ * down.second;
    for (int i = 0; i < count; ++i) {
        const Tap across = tap(x + i - rect_.x0, rect_.width(), imageWidth_);
        const auto between = [&across](const std::uint32_t* row) {
            return mix(unpack(row[across.first]), unpack(row[across.second]), across.share);
        };
        colours[i] = mix(between(upper), between(lower), down.share);
    }
}

}  // namespace platform
