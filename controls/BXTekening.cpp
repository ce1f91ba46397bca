// SPDX-License-Identifier: MIT
#include "controls/BXTekening.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <algorithm>
#include <cmath>

namespace brixtel {

namespace {

// The rounding error of places and scales, with room to spare.
constexpr double kSpeling = 1e-3;

int eerste(double rand) {
    return static_cast<int>(std::ceil(rand - 0.5 - kSpeling));
}
int laatste(double rand) {
    return static_cast<int>(std::floor(rand + 0.5 + kSpeling));
}

}  // namespace

BXTekening::BXTekening(QQuickItem* ouder) : QQuickItem(ouder) {
    setFlag(ItemHasContents);
}

int BXTekening::lijnDikte(double schaal) {
    return std::max(1, static_cast<int>(std::floor(schaal + kSpeling)));
}

QRect BXTekening::raster(const QRectF& punten, double schaal) {
    if (!(punten.width() > 0.0) || !(punten.height() > 0.0)) return {};
    const int links = eerste(punten.left() * schaal), boven = eerste(punten.top() * schaal);
    const int rechts = laatste(punten.right() * schaal), onder = laatste(punten.bottom() * schaal);
    return {links, boven, std::max(1, rechts - links), std::max(1, onder - boven)};
}

QRect BXTekening::pixels(QPointF plaats, double schaal) const {
    return raster({plaats, size()}, schaal);
}

QImage BXTekening::beeld(QPointF plaats, double schaal) const {
    const QSize maat = pixels(plaats, schaal).size();
    if (maat.isEmpty()) return {};
    QImage beeld(maat, QImage::Format_ARGB32_Premultiplied);
    beeld.fill(Qt::transparent);
    QPainter painter(&beeld);
    teken(painter, maat, schaal);
    return beeld;
}

BXTekening::Ligging BXTekening::ligging() const {
    const double schaal = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    const QPointF plaats = mapToScene({});
    const QRect doel = pixels(plaats, schaal);
    return {QRectF(QPointF(doel.topLeft()) / schaal - plaats, QSizeF(doel.size()) / schaal),
            doel.size(), schaal};
}

QSGNode* BXTekening::updatePaintNode(QSGNode* oud, UpdatePaintNodeData*) {
    const Ligging nu = ligging();
    auto* node = static_cast<QSGImageNode*>(oud);
    const bool opnieuw = verouderd_ || nu.maat != getoond_.maat || nu.schaal != getoond_.schaal;
    getoond_ = nu;
    verouderd_ = false;
    if (nu.maat.isEmpty()) {
        delete node;
        return nullptr;
    }
    if (opnieuw || !node) {
        delete node;
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Nearest);
        node->setTexture(window()->createTextureFromImage(beeld(mapToScene({}), nu.schaal),
                                                          QQuickWindow::TextureHasAlphaChannel));
    }
    node->setRect(nu.rechthoek);
    return node;
}

void BXTekening::verouder() {
    verouderd_ = true;
    update();
}

void BXTekening::geometryChange(const QRectF& nieuw, const QRectF& oud) {
    QQuickItem::geometryChange(nieuw, oud);
    update();
}

void BXTekening::itemChange(ItemChange wat, const ItemChangeData& gegevens) {
    QQuickItem::itemChange(wat, gegevens);
    if (wat == ItemDevicePixelRatioHasChanged) update();
    if (wat != ItemSceneChange) return;
    disconnect(kijkt_);
    if (!gegevens.window) return;
    // Qt reports no move of an item's ancestor, but every move causes a frame.
    kijkt_ = connect(gegevens.window, &QQuickWindow::afterAnimating, this,
                     &BXTekening::kijkOfVerschoven);
}

void BXTekening::kijkOfVerschoven() {
    if (!(ligging() == getoond_)) update();
}

}  // namespace brixtel
