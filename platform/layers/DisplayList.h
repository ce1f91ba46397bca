// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRectF>
#include <cstdint>
#include <limits>
#include <vector>

#include "platform/layers/Layer.h"
#include "platform/layers/Rgba.h"

namespace platform {

// One thing to draw: a rectangle filled with a colour, a picture or a gradient.
struct DisplayItem {
    enum class Kind : std::uint8_t { Colour, Image, Gradient };

    Kind kind = Kind::Colour;
    // The number of the layer and of its part; rises along the list. Two lists of the same
    // structure give the same part the same number.
    std::uint32_t order = 0;
    QRectF rect;  // the item's place: points of the window, y up
    QRectF clip;  // nothing shows outside it
    float opacity = 1.0F;
    std::int32_t mask = -1;                      // index into `masks`; -1 for none
    Rgba colour;                                 // Colour only
    QImage image;                                // Image only: premultiplied, stretched to `rect`
    std::uint32_t firstStop = 0, stopCount = 0;  // Gradient only: into `stops`
    QPointF start, end;  // the gradient's axis, in the unit square of `rect`
};

// The combined alpha of some pieces, by which items are multiplied; zero where
// no piece lies. Masks nest: the outer mask multiplies too.
struct DisplayMask {
    std::int32_t outer = -1;                       // index into `masks`; -1 for none
    std::uint32_t firstPiece = 0, pieceCount = 0;  // into `pieces`
};

// The look of a layer tree at one moment: flat, in drawing order. A value that
// any thread may read. Pictures are shared, not copied. DisplayListBuilder
// fills a list; refilling reuses its memory.
struct DisplayList {
    std::vector<DisplayItem> items;
    std::vector<DisplayMask> masks;
    std::vector<DisplayItem> pieces;  // of the masks; only alpha counts
    std::vector<GradientLayer::Stop> stops;

    // The media clock's time of the next change of look; infinity if none is
    // planned.
    double nextChange = std::numeric_limits<double>::infinity();

    // The number of the layer trees' structure; `order` compares only between
    // lists with the same number.
    std::uint64_t structure = 0;

    void clear() {
        items.clear();
        masks.clear();
        pieces.clear();
        stops.clear();
        nextChange = std::numeric_limits<double>::infinity();
        structure = 0;
    }
};

}  // namespace platform
