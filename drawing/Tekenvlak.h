// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <memory>
#include <span>
#include <vector>

namespace brixtel {

// Where a picture is drawn: points, origin at the lower left, y up. Adds to
// QPainter what it lacks: a shadow, and blocks whose edges are exact shares of a
// pixel, so that neighbouring blocks show no seam. Not for other threads than
// the one that made it.
class Tekenvlak {
  public:
    // Draws on `beeld` (Format_ARGB32_Premultiplied), which must outlive it and
    // must not be shared meanwhile.
    Tekenvlak(QImage& beeld, double schaal);
    Tekenvlak(const Tekenvlak&) = delete;
    Tekenvlak& operator=(const Tekenvlak&) = delete;
    ~Tekenvlak();

    struct Schaduw {
        QPointF verschuiving;  // pixels, y up
        double vervaging = 0;  // pixels: twice the Gaussian's standard deviation
        QColor kleur;          // an invalid or clear colour casts none
    };
    // From now on every fill lies on a shadow of its own.
    void zetSchaduw(const Schaduw& schaduw);

    void zetVulkleur(const QColor& kleur) { vulkleur_ = kleur; }

    // Fills all rectangles in one go, where they overlap too.
    void vul(std::span<const QRectF> vakken);

    // For everything else; it casts no shadow. Its transform counts for `vul`
    // as well, as far as it moves and scales.
    QPainter& painter() { return painter_; }

  private:
    // What was filled: the share of each pixel that it covers in a rectangle, and
    // the same blurred where it casts a shadow.
    struct Vorm {
        std::vector<QRectF> vakken;  // pixels, from the rectangle's corner
        QSize maat;
        std::vector<float> scherp;
        std::vector<float> vaag;
        // What it made of clear pixels, in which colour; empty until it fell on some.
        std::vector<QRgb> afdruk;
        QColor kleur;
    };
    Vorm& vormVan(QSize maat, bool schaduw);
    void bepaalDekking(Vorm& vorm) const;
    void vervaag(Vorm& vorm);
    void kleurIn(const std::vector<float>& dekking, const QRect& gebied, const QColor& kleur);
    // On clear pixels alone: repeats what the shape made of such, in this colour;
    // false if that is not known.
    bool drukAf(const Vorm& vorm, const QRect& gebied);
    void onthoud(Vorm& vorm, const QRect& gebied);
    [[nodiscard]] bool isLeeg(const QRect& gebied) const;
    [[nodiscard]] QRgb* rij(int y) const;

    QImage& beeld_;
    QRgb* pixels_;
    QPainter painter_;
    QColor vulkleur_ = Qt::black;
    Schaduw schaduw_;
    std::vector<QRectF> vakken_;  // being filled, as a shape has them
    // The last shapes: text repeats a few glyphs, and to work one out takes many
    // times as long as to copy it.
    std::vector<Vorm> vormen_;
    std::size_t oudste_ = 0;
    std::vector<float> hulp_;
    std::vector<float> kern_;
};

}  // namespace brixtel
