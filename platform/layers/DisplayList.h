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
    // Which layer's, and which of its parts; rises along the list. Two lists of
    // the same structure have the same order for the same thing.
    std::uint32_t order = 0;
    QRectF rect;  // where it lies: points of the window, y up
    QRectF clip;  // nothing outside it shows
    float opacity = 1.0F;
    std::int32_t mask = -1;                      // index into `masks`; -1 for none
    Rgba colour;                                 // Colour only
    QImage image;                                // Image only: premultiplied, stretched to `rect`
    std::uint32_t firstStop = 0, stopCount = 0;  // Gradient only: into `stops`
    QPointF start, end;                          // its axis, in the unit square of `rect`
};

// The alpha of some pieces, one over the other, by which items are multiplied;
// where no piece lies nothing shows. Masks nest: the outer one multiplies too.
struct DisplayMask {
    std::int32_t outer = -1;                       // index into `masks`; -1 for none
    std::uint32_t firstPiece = 0, pieceCount = 0;  // into `pieces`
};

// What a tree of layers looks like at one moment, flat, in drawing order: plain
// values that a drawer on any thread may read. Pictures are shared, not copied.
// Filled by DisplayListBuilder; refilling it reuses its memory.
struct DisplayList {
    std::vector<DisplayItem> items;
    std::vector<DisplayMask> masks;
    std::vector<DisplayItem> pieces;  // of the masks; only their alpha counts
    std::vector<GradientLayer::Stop> stops;

    // The media clock's time from which it looks different; infinity if it
    // never will by itself.
    double nextChange = std::numeric_limits<double>::infinity();

    // Tells which layers it was made of; `order` compares only between lists
    // with the same number.
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
