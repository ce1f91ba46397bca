// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <functional>
#include <optional>

#include "drawing/Tekenvlak.h"
#include "platform/time/RandomSource.h"

namespace brixtel {

// The shared look of every scene: the green-on-black palette, one monospaced
// font, and tools to paint text and glyphs into pictures off screen. Stateless;
// colours are made on first use, safely on any thread. Fonts and text need a
// QGuiApplication.
class Thema final {
  public:
    Thema() = delete;

    // sRGB, alpha 1.
    static const QColor& groen();   // bright phosphor green
    static const QColor& middel();  // medium green: secondary text
    static const QColor& donker();  // dark green: dim elements
    static const QColor& wit();     // greenish white: titles of choices
    static const QColor& zwart();   // near-black with a green tint
    static const QColor& oranje();
    static const QColor& cijfer();     // ordinary digits
    static const QColor& cijferFel();  // the leading or highlighted digit

    struct FontOpties {
        bool vet = false;
    };
    // The desktop's monospaced font, `maat` points high, rounded to whole
    // points, bold or regular.
    static QFont font(double maat, FontOpties opties);
    static QFont font(double maat) { return font(maat, {}); }

    struct BeeldOpties {
        double schaal = 1.0;  // pixels per point
        std::function<void(Tekenvlak&)> teken;
    };
    // Makes a clear sRGB picture of `maat` points, lets `teken` draw on it at
    // once, and returns it, premultiplied, each side rounded up to whole
    // pixels. Gives nothing when a side is below one pixel or memory runs out.
    // A size that is no number of pixels stops the process.
    static std::optional<QImage> beeld(QSizeF maat, const BeeldOpties& opties);

    struct BreedteOpties {
        QFont font;
    };
    // The advance width of the text in one line, trailing spaces included.
    static double breedte(const QString& tekst, const BreedteOpties& opties);

    struct TekstOpties {
        QFont font;
        QColor kleur;
        QPointF op;           // start of the baseline, or its middle
        bool midden = false;  // centred on `op`
    };
    // Draws one line of text.
    static void tekst(const QString& tekst, const TekstOpties& opties, Tekenvlak& in);

    // `aantal` fair "0"s and "1"s; a negative number stops the process.
    static QString bits(int aantal, platform::RandomSource& toeval);
};

}  // namespace brixtel
