// SPDX-License-Identifier: MIT
#include "BrixtelSaver/InstellingenStijl.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QStyleFactory>
#include <QStyleOption>

namespace brixtel {

namespace {

constexpr int kMerk = 14;  // the ring of a mark, across
constexpr int kStipRand = 4;
constexpr int kAfstand = 8;  // from the mark to its text
constexpr double kHoek = 6.0;

QRectF opHalven(const QRect& vlak) {
    return QRectF(vlak).adjusted(0.5, 0.5, -0.5, -0.5);
}

void tekenMerk(const QStyleOption& hoe, QPainter& painter) {
    const bool aan = hoe.state.testFlag(QStyle::State_On);
    const bool actief = hoe.state & (QStyle::State_MouseOver | QStyle::State_HasFocus);
    const QColor tint = hoe.palette.color(InstellingenStijl::kTint);
    const QColor ring = aan ? tint : hoe.palette.color(QPalette::Mid);
    QColor onder = tint;
    onder.setAlphaF(hoe.state.testFlag(QStyle::State_Sunken) ? 0.3F : actief ? 0.14F : 0.0F);
    painter.setPen(QPen(ring, 1.0));
    painter.setBrush(onder);
    painter.drawEllipse(opHalven(hoe.rect));
    if (!aan) return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    painter.drawEllipse(QRectF(hoe.rect).adjusted(kStipRand, kStipRand, -kStipRand, -kStipRand));
}

void tekenKnop(const QStyleOptionButton& hoe, QPainter& painter) {
    QColor onder = hoe.palette.color(QPalette::Highlight);
    onder.setAlphaF(hoe.state.testFlag(QStyle::State_Sunken)      ? 0.4F
                    : hoe.state.testFlag(QStyle::State_MouseOver) ? 0.26F
                                                                  : 0.16F);
    painter.setPen(QPen(hoe.palette.color(QPalette::Highlight), 1.0));
    painter.setBrush(onder);
    painter.drawRoundedRect(opHalven(hoe.rect), kHoek, kHoek);
    if (!hoe.state.testFlag(QStyle::State_HasFocus)) return;
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(opHalven(hoe.rect).adjusted(3.0, 3.0, -3.0, -3.0), kHoek - 3.0,
                            kHoek - 3.0);
}

void tekenFocus(const QStyleOption& hoe, QPainter& painter) {
    painter.setPen(QPen(hoe.palette.color(QPalette::Highlight), 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(opHalven(hoe.rect), 3.0, 3.0);
}

}  // namespace

InstellingenStijl::InstellingenStijl()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {
    setParent(QApplication::instance());
}

QStyle* InstellingenStijl::gedeeld() {
    static const QPointer<QStyle> stijl = new InstellingenStijl;
    return stijl;
}

void InstellingenStijl::drawPrimitive(PrimitiveElement deel, const QStyleOption* hoe,
                                      QPainter* painter, const QWidget* widget) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (deel == PE_IndicatorRadioButton)
        tekenMerk(*hoe, *painter);
    else if (deel == PE_FrameFocusRect)
        tekenFocus(*hoe, *painter);
    else
        QProxyStyle::drawPrimitive(deel, hoe, painter, widget);
    painter->restore();
}

void InstellingenStijl::drawControl(ControlElement deel, const QStyleOption* hoe, QPainter* painter,
                                    const QWidget* widget) const {
    const auto* const knop = qstyleoption_cast<const QStyleOptionButton*>(hoe);
    if (deel != CE_PushButtonBevel || !knop)
        return QProxyStyle::drawControl(deel, hoe, painter, widget);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    tekenKnop(*knop, *painter);
    painter->restore();
}

int InstellingenStijl::pixelMetric(PixelMetric maat, const QStyleOption* hoe,
                                   const QWidget* widget) const {
    switch (maat) {
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return kMerk;
        case PM_RadioButtonLabelSpacing:
            return kAfstand;
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
            return 0;
        default:
            return QProxyStyle::pixelMetric(maat, hoe, widget);
    }
}

}  // namespace brixtel
