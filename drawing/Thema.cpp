// SPDX-License-Identifier: MIT
#include "drawing/Thema.h"

#include <QColorSpace>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

#include "platform/time/Require.h"

namespace brixtel {

using platform::require;

namespace {

QColor srgb(float rood, float groen, float blauw) {
    return QColor::fromRgbF(rood, groen, blauw);
}

// The number of whole pixels along a side.
qint64 pixels(double punten, double schaal) {
    const double aantal = std::ceil(punten * schaal);
    require(std::isfinite(aantal) && std::abs(aantal) < 0x1p63);
    return static_cast<qint64>(aantal);
}

}  // namespace

const QColor& Thema::groen() {
    static const QColor kleur = srgb(0.0F, 1.0F, 0.255F);
    return kleur;
}

const QColor& Thema::middel() {
    static const QColor kleur = srgb(0.0F, 0.72F, 0.17F);
    return kleur;
}

const QColor& Thema::donker() {
    static const QColor kleur = srgb(0.0F, 0.34F, 0.09F);
    return kleur;
}

const QColor& Thema::wit() {
    static const QColor kleur = srgb(0.82F, 1.0F, 0.86F);
    return kleur;
}

const QColor& Thema::zwart() {
    static const QColor kleur = srgb(0.012F, 0.028F, 0.018F);
    return kleur;
}

const QColor& Thema::oranje() {
    static const QColor kleur = srgb(1.0F, 0.72F, 0.1F);
    return kleur;
}

const QColor& Thema::cijfer() {
    static const QColor kleur = srgb(0.03F, 0.78F, 0.11F);
    return kleur;
}

const QColor& Thema::cijferFel() {
    static const QColor kleur = srgb(0.42F, 1.0F, 0.42F);
    return kleur;
}

QFont Thema::font(double maat, FontOpties opties) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    font.setWeight(opties.vet ? QFont::Bold : QFont::Normal);
    // Hinted advances would make a line's width depend on the scale. A point
    // here is a unit of layout, called a pixel by QFont.
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(maat))));
    return font;
}

std::optional<QImage> Thema::beeld(QSizeF maat, const BeeldOpties& opties) {
    const qint64 breed = pixels(maat.width(), opties.schaal);
    const qint64 hoog = pixels(maat.height(), opties.schaal);
    if (breed < 1 || hoog < 1 || breed > INT_MAX || hoog > INT_MAX) return std::nullopt;
    QImage beeld(static_cast<int>(breed), static_cast<int>(hoog),
                 QImage::Format_ARGB32_Premultiplied);
    if (beeld.isNull()) return std::nullopt;
    beeld.setColorSpace(QColorSpace::SRgb);
    beeld.fill(Qt::transparent);
    Tekenvlak vlak(beeld, opties.schaal);
    opties.teken(vlak);
    return beeld;
}

double Thema::breedte(const QString& tekst, const BreedteOpties& opties) {
    return QFontMetricsF(opties.font).horizontalAdvance(tekst);
}

void Thema::tekst(const QString& tekst, const TekstOpties& opties, Tekenvlak& in) {
    const double terug = opties.midden ? breedte(tekst, {.font = opties.font}) / 2.0 : 0.0;
    QPainter& painter = in.painter();
    painter.save();
    painter.setFont(opties.font);
    painter.setPen(opties.kleur);
    painter.translate(opties.op.x() - terug, opties.op.y());
    painter.scale(1.0, -1.0);  // keeps letters upright where y points up
    painter.drawText(QPointF(0.0, 0.0), tekst);
    painter.restore();
}

QString Thema::bits(int aantal, platform::RandomSource& toeval) {
    require(aantal >= 0);
    QString bits(aantal, u'0');
    for (QChar& bit : bits)
        if (toeval.coin()) bit = u'1';
    return bits;
}

}  // namespace brixtel
