// SPDX-License-Identifier: MIT
#include "platform/window/wayland/ShmSurface.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::wayland {

namespace {

constexpr double kFull = 256.0;

// A premultiplied pixel at a share of its opacity, in 256ths.
std::uint32_t faded(std::uint32_t pixel, std::uint32_t share) {
    const std::uint32_t redBlue = ((pixel & 0x00ff00ffU) * share >> 8U) & 0x00ff00ffU;
    const std::uint32_t alphaGreen = ((pixel >> 8U) & 0x00ff00ffU) * share & 0xff00ff00U;
    return redBlue | alphaGreen;
}

// Fades the whole picture. A fading picture is painted anew as a whole, since overlapping
// rectangles would fade twice.
void fade(const PixelBuffer& picture, double opacity) {
    const auto share =
        static_cast<std::uint32_t>(std::lround(std::clamp(opacity, 0.0, 1.0) * kFull));
    const std::size_t count =
        static_cast<std::size_t>(picture.stride) * static_cast<std::size_t>(picture.size.height());
    for (std::uint32_t& pixel : std::span(picture.pixels, count))
        pixel = faded(pixel, share);
}

}  // namespace

ShmSurface::ShmSurface(std::shared_ptr<BufferRing> ring) : ring_(std::move(ring)) {}

Surface::Result ShmSurface::draw(const Frame& frame, std::span<const QRect> damage) {
    return show(frame, damage, false);
}

Surface::Result ShmSurface::repair(const Frame& frame, std::span<const QRect> lost) {
    return show(frame, lost, true);
}

Surface::Result ShmSurface::show(const Frame& frame, std::span<const QRect> damage, bool isLost) {
    const QSize size = frame.grid.size;
    const QRect whole(QPoint(0, 0), size);
    const bool fades = frame.opacity < 1.0;
    if (fades) damage = {&whole, 1};
    Buffer* const buffer = ring_->begin(size, damage, rects_);
    if (!buffer) {
        ring_->miss(damage);
        return Result::Drawn;
    }
    if (fades) rects_.assign(1, whole);
    const PixelBuffer picture{.pixels = buffer->pixels(), .stride = size.width(), .size = size};
    painter_.paint(frame, rects_, picture);
    if (fades) {
        fade(picture, frame.opacity);
        painter_.forget();
    }
    // A scene tells which part of its place has changed.
    if (!fades && !isLost) damage = painter_.changed(damage);
    ring_->finish(*buffer, damage, !fades && frame.background.a >= 1.0F);
    return Result::Drawn;
}

}  // namespace platform::wayland
