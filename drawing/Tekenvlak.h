// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
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
    // A rectangle of pixels with a share of coverage for each.
    struct Dekking {
        QRect gebied;
        std::vector<float> waarden;
    };
    void bepaalDekking(std::span<const QRectF> vakken, const QRect& gebied);
    void vervaag(double sigma);
    void kleurIn(const QColor& kleur, QPoint verschuiving);

    QImage& beeld_;
    QRgb* pixels_;
    QPainter painter_;
    QColor vulkleur_ = Qt::black;
    Schaduw schaduw_;
    Dekking dekking_;
    std::vector<float> scherp_;  // the coverage while its shadow is blurred
    std::vector<float> hulp_;
    std::vector<float> kern_;
};

}  // namespace brixtel
