// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QQuickItem>
#include <QRectF>
#include <QSize>

class QPainter;

namespace brixtel {

// An item that lies on whole device pixels, wherever it stands in its window
// and at any scale of the window: no straight edge is blurred. The picture of
// those pixels is painted once, and again only after a change; a move is no
// change. An item under a transformation other than a translation is not kept
// sharp.
class BXTekening : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    explicit BXTekening(QQuickItem* ouder = nullptr);

    // The thickness of a one-point line in device pixels: whole, at least one.
    [[nodiscard]] static int lijnDikte(double schaal);

    // The device pixels nearest to a rectangle of points. Halves round outward
    // on both sides, so a centred rectangle stays centred. Empty stays empty.
    [[nodiscard]] static QRect raster(const QRectF& punten, double schaal);

    // The picture for the given place and scale.
    [[nodiscard]] QImage beeld(QPointF plaats, double schaal) const;

  protected:
    // Paints the whole picture, of `maat` device pixels, `schaal` per point.
    // Runs in the render thread, while the main thread waits.
    virtual void teken(QPainter& painter, QSize maat, double schaal) const = 0;

    // The item's pixels in the window; by default those of its bounds.
    [[nodiscard]] virtual QRect pixels(QPointF plaats, double schaal) const;

    // Marks the picture as outdated; setters call this.
    void verouder();

    QSGNode* updatePaintNode(QSGNode* oud, UpdatePaintNodeData*) override;
    void geometryChange(const QRectF& nieuw, const QRectF& oud) override;
    void itemChange(ItemChange wat, const ItemChangeData& gegevens) override;

  private:
    struct Ligging {
        QRectF rechthoek;  // in the item's own coordinates
        QSize maat;        // in device pixels
        double schaal = 0.0;
        bool operator==(const Ligging&) const = default;
    };
    [[nodiscard]] Ligging ligging() const;
    void kijkOfVerschoven();

    Ligging getoond_;
    bool verouderd_ = true;
    QMetaObject::Connection kijkt_;
};

}  // namespace brixtel
