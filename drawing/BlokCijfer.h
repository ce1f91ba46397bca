// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "drawing/Tekenvlak.h"

namespace brixtel {

// One glyph of the dot-matrix font: seven rows, the top row first. The low five
// bits of a row are its columns, bit 4 the leftmost. A set bit is a block.
using Glief = std::array<std::uint8_t, 7>;

// The side of a block and the gap between two, in points or any unit of the
// caller's.
struct BlokMaat {
    double blok = 1.0;
    double spleet = 0.0;
};

// The place and size of a glyph's blocks.
struct BlokPlaats {
    QPointF bij;  // the lower-left corner with `omhoog`, else the upper-left
    double blok = 1.0;
    double spleet = 0.0;
    bool omhoog = true;  // y points up: the top row gets the largest y
};

// The digits 0 and 1 as grids of square blocks, and the conversion of any glyph
// to rectangles. Pure arithmetic on constants; any thread.
class BlokCijfer final {
  public:
    BlokCijfer() = delete;

    static constexpr int kolommen = 5;
    static constexpr int rijen = 7;
    static constexpr Glief nul{0b01110, 0b10001, 0b10011, 0b10101, 0b11001, 0b10001, 0b01110};
    static constexpr Glief een{0b00100, 0b01100, 0b10100, 0b00100, 0b00100, 0b00100, 0b11111};

    // The size of one glyph.
    static QSizeF maat(BlokMaat maat);

    // The blocks of a pattern with any number of rows, row by row from the top,
    // left to right.
    static std::vector<QRectF> vakken(std::span<const std::uint8_t> patroon,
                                      const BlokPlaats& plaats);
    // The same for the one (true) or the zero.
    static std::vector<QRectF> vakken(bool cijfer, const BlokPlaats& plaats);

    struct TekenOpties {
        QPointF linksonder;
        double blok = 1.0;
        double spleet = 0.0;
        QColor kleur;
    };
    // Paints the one (true) or the zero in one fill, and leaves the fill colour set.
    static void teken(bool cijfer, const TekenOpties& opties, Tekenvlak& in);
};

}  // namespace brixtel
