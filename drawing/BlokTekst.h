// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QString>
#include <vector>

#include "drawing/BlokCijfer.h"

namespace brixtel {

// The block font of 42 characters (A to Z, 0 to 9, the space and ! ? . - +) and
// the layout of a line in it. A character is a grapheme: a letter with its
// accents is one.
class BlokTekst final {
  public:
    BlokTekst() = delete;

    // Whether exactly this character has a glyph. Does not convert case, unlike
    // `vakken`: a caller that filters must upper-case first.
    static bool kent(QStringView karakter);

    // The width of a line: one block and two gaps stand between two glyphs.
    static double breedte(const QString& tekst, BlokMaat maat);

    // The blocks of the upper-cased text, glyph after glyph. A character
    // without a glyph leaves its cell empty.
    static std::vector<QRectF> vakken(const QString& tekst, const BlokPlaats& plaats);
};

}  // namespace brixtel
