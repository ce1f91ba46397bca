// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/layers/Rgba.h"
#include "platform/render/PixelRect.h"

namespace platform {

// One display item laid on a picture's pixels: tells the colour of each pixel,
// before opacity and mask. A value made for one drawing, on any thread; points
// into the display list, which must outlive it.
class CpuPaint {
  public:
    // `image` is the item's picture as premultiplied ARGB, null for other kinds.
    CpuPaint(const DisplayItem& item, std::span<const GradientLayer::Stop> stops,
             const PixelGrid& grid, const QImage* image);

    // The visible area: the snapped rectangle within the clip.
    [[nodiscard]] const PixelRect& shown() const { return shown_; }
    [[nodiscard]] float opacity() const { return opacity_; }

    // Whether each row has one colour.
    [[nodiscard]] bool isEvenAlongRows() const {
        return kind_ == Kind::Colour || kind_ == Kind::RowGradient;
    }
    // Whether one opaque colour hides everything below shown().
    [[nodiscard]] bool isOpaqueColour() const {
        return kind_ == Kind::Colour && colour_.a >= 1.0F && opacity_ >= 1.0F;
    }
    // Whether a picture's pixels lie on those of the target one to one.
    [[nodiscard]] bool isPixels() const { return kind_ == Kind::Pixels; }

    // The colour of an even row.
    [[nodiscard]] Rgba rowColour(int y) const;

    // Writes the alpha of `count` even rows from `y` on, times the opacity.
    void rowAlphas(int y, int count, float* alphas) const;

    // The picture's pixels from (x, y) rightward; x and y lie in shown().
    [[nodiscard]] const std::uint32_t* pixels(int x, int y) const;

    // Writes `count` pixels from (x, y) rightward; all lie in shown().
    void row(int x, int y, int count, Rgba* colours) const;

  private:
    enum class Kind : std::uint8_t { Colour, RowGradient, Gradient, Pixels, Stretched };

    void placeGradient(const DisplayItem& item, const PixelGrid& grid);
    void placeImage(const DisplayItem& item, const PixelGrid& grid, const QImage& image);
    [[nodiscard]] Rgba colourAt(float along) const;
    [[nodiscard]] float along(int x, int y) const;
    void stretchedRow(int x, int y, int count, Rgba* colours) const;

    Kind kind_;
    float opacity_;
    Rgba colour_;
    PixelRect rect_;
    PixelRect shown_;

    // Gradients: the position along the axis is affine in the pixel's position.
    std::span<const GradientLayer::Stop> stops_;
    double along0_ = 0.0, alongX_ = 0.0, alongY_ = 0.0;

    // Pictures.
    const std::uint32_t* bits_ = nullptr;
    std::ptrdiff_t stride_ = 0;  // in pixels
    int imageWidth_ = 0, imageHeight_ = 0;
};

}  // namespace platform
