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

// A surface to draw a picture on: points, origin at the lower left, y up.
// Adds to QPainter a shadow, and blocks whose edges are exact shares of a
// pixel, so that neighbouring blocks show no seam. Only for the thread that
// made it.
class Tekenvlak {
  public:
    // Draws on `beeld` (Format_ARGB32_Premultiplied), which must outlive the
    // surface and must not be shared meanwhile.
    Tekenvlak(QImage& beeld, double schaal);
    Tekenvlak(const Tekenvlak&) = delete;
    Tekenvlak& operator=(const Tekenvlak&) = delete;
    ~Tekenvlak();

    struct Schaduw {
        QPointF verschuiving;  // pixels, y up
        double vervaging = 0;  // pixels: twice the Gaussian's standard deviation
        QColor kleur;          // an invalid or clear colour casts no shadow
    };
    // Gives every later fill a shadow of its own.
    void zetSchaduw(const Schaduw& schaduw);

    void zetVulkleur(const QColor& kleur) { vulkleur_ = kleur; }

    // Fills all rectangles as one shape, even where they overlap.
    void vul(std::span<const QRectF> vakken);

    // Paints anything else, without a shadow. The painter's translation and
    // scale apply to `vul` as well.
    QPainter& painter() { return painter_; }

  private:
    // A filled shape: the share of each pixel that it covers within a
    // rectangle, and the blurred shares if it casts a shadow.
    struct Vorm {
        std::vector<QRectF> vakken;  // pixels, from the rectangle's corner
        QSize maat;
        std::vector<float> scherp;
        std::vector<float> vaag;
        // The result on clear pixels and its colour; empty until drawn on clear pixels.
        std::vector<QRgb> afdruk;
        QColor kleur;
    };
    Vorm& vormVan(QSize maat, bool schaduw);
    void bepaalDekking(Vorm& vorm) const;
    void vervaag(Vorm& vorm);
    void kleurIn(const std::vector<float>& dekking, const QRect& gebied, const QColor& kleur);
    // Repeats the shape's stored result for this colour; only for clear pixels.
    // False if no result is stored.
    bool drukAf(const Vorm& vorm, const QRect& gebied);
    void onthoud(Vorm& vorm, const QRect& gebied);
    [[nodiscard]] bool isLeeg(const QRect& gebied) const;
    [[nodiscard]] QRgb* rij(int y) const;

    QImage& beeld_;
    QRgb* pixels_;
    QPainter painter_;
    QColor vulkleur_ = Qt::black;
    Schaduw schaduw_;
    std::vector<QRectF> vakken_;  // the present fill, in a shape's own form
    // The last shapes. Text repeats a few glyphs, and computing a shape takes
    // many times as long as copying one.
    std::vector<Vorm> vormen_;
    std::size_t oudste_ = 0;
    std::vector<float> hulp_;
    std::vector<float> kern_;
};

}  // namespace brixtel
