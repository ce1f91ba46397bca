// SPDX-License-Identifier: MIT
#include "hosts/bureau/paneel/VoorbeeldVlak.h"

#include <QPainter>
#include <QQuickWindow>

#include "platform/window/ScreenSpace.h"

namespace brixtel {

VoorbeeldVlak::VoorbeeldVlak(QQuickItem& in) : QQuickPaintedItem(&in) {
    setOpaquePainting(true);
    plek_.onPicture([this] { update(); });
    volg(window());
}

void VoorbeeldVlak::zetPlek(const QRect& plek) {
    setPosition(plek.topLeft());
    setSize(plek.size());
    meet();
}

void VoorbeeldVlak::paint(QPainter* painter) {
    plek_.read([&](const QImage& beeld) {
        if (beeld.isNull())
            painter->fillRect(boundingRect(), Qt::black);
        else
            painter->drawImage(boundingRect(), beeld);
    });
}

void VoorbeeldVlak::itemChange(ItemChange wat, const ItemChangeData& waarde) {
    if (wat == ItemSceneChange) volg(waarde.window);
    if (wat == ItemDevicePixelRatioHasChanged) meet();
    QQuickPaintedItem::itemChange(wat, waarde);
}

void VoorbeeldVlak::volg(QQuickWindow* venster) {
    disconnect(getoond_);
    disconnect(scherm_);
    if (!venster) return;
    getoond_ = connect(venster, &QQuickWindow::frameSwapped, this, [this] { plek_.wasShown(); });
    scherm_ = connect(venster, &QWindow::screenChanged, this, [this] { meet(); });
}

void VoorbeeldVlak::meet() {
    const QQuickWindow* const venster = window();
    if (!venster) return;
    const QScreen* const scherm = venster->screen();
    plek_.setMeasures(
        {.size = size(),
         .scale = venster->effectiveDevicePixelRatio(),
         .screen = scherm ? std::optional(platform::screenFrom(*scherm)) : std::nullopt});
}

}  // namespace brixtel
