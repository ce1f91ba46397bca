// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickPaintedItem>
#include <QRect>

#include "platform/window/PicturePlace.h"

namespace brixtel {

// The part of the panel's scene that shows the running picture. The picture stands above the
// item that it is made in, and takes no input. Owned by its maker, who drops it before that
// item. Main thread, but for the painting.
class VoorbeeldVlak : public QQuickPaintedItem {
    Q_OBJECT

  public:
    explicit VoorbeeldVlak(QQuickItem& in);

    // Stands there in the item, in points from the upper left corner.
    void zetPlek(const QRect& plek);
    // The place that a window of the saver draws into.
    [[nodiscard]] platform::PicturePlace& plek() { return plek_; }

    void paint(QPainter* painter) override;

  protected:
    void itemChange(ItemChange wat, const ItemChangeData& waarde) override;

  private:
    void meet();
    void volg(QQuickWindow* venster);

    platform::PicturePlace plek_;
    QMetaObject::Connection getoond_, scherm_;
};

}  // namespace brixtel
