// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>
#include <QProxyStyle>

namespace brixtel {

// The look of the sheet's controls, the same on every desktop: round marks in the tint of
// their button, a rounded button, and a thin ring around the control with the keyboard.
// Colours come from the palette.
class InstellingenStijl final : public QProxyStyle {
  public:
    // The process-wide style object, made at first use, after the QApplication.
    static QStyle* gedeeld();

    // The role of a radio button's palette that holds the colour of its mark.
    static constexpr QPalette::ColorRole kTint = QPalette::Text;

    void drawPrimitive(PrimitiveElement deel, const QStyleOption* hoe, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement deel, const QStyleOption* hoe, QPainter* painter,
                     const QWidget* widget) const override;
    int pixelMetric(PixelMetric maat, const QStyleOption* hoe,
                    const QWidget* widget) const override;

  private:
    InstellingenStijl();
};

}  // namespace brixtel
