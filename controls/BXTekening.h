// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QQuickItem>
#include <QRectF>
#include <QSize>

class QPainter;

namespace brixtel {

// An item that lies on whole device pixels wherever it stands in its window and
// whatever the window's scale, so that no straight edge is ever blurred. What it
// shows is painted once into a picture of those pixels and painted again only
// when it changes; being moved is no change. Items under a transformation other
// than a shift are not kept sharp.
class BXTekening : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    explicit BXTekening(QQuickItem* ouder = nullptr);

    // How many device pixels a line of one point is thick: whole, and at least one.
    [[nodiscard]] static int lijnDikte(double schaal);

    // The device pixels nearest to a rectangle of points; halves count as part of
    // it on either side, so that what was centred stays centred. Empty stays empty.
    [[nodiscard]] static QRect raster(const QRectF& punten, double schaal);

    // The picture as it would be drawn at this place and scale.
    [[nodiscard]] QImage beeld(QPointF plaats, double schaal) const;

  protected:
    // Paints the whole picture, of `maat` device pixels, `schaal` to the point. In
    // the render thread, while the main thread waits.
    virtual void teken(QPainter& painter, QSize maat, double schaal) const = 0;

    // The item's pixels in the window; those of its bounds unless said otherwise.
    [[nodiscard]] virtual QRect pixels(QPointF plaats, double schaal) const;

    // To be called by setters: the picture is no longer right.
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
