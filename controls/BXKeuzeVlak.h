// SPDX-License-Identifier: MIT
#pragma once

#include "controls/BXTekening.h"

namespace brixtel {

// The background of a segmented choice: an outline rounded by half its
// height, and inside it the chosen part, from `van` to `tot` (points from the
// left).
class BXKeuzeVlak : public BXTekening {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double van READ van WRITE zetVan NOTIFY vanChanged)
    Q_PROPERTY(double tot READ tot WRITE zetTot NOTIFY totChanged)

  public:
    using BXTekening::BXTekening;

    [[nodiscard]] double van() const { return van_; }
    void zetVan(double van);

    [[nodiscard]] double tot() const { return tot_; }
    void zetTot(double tot);

  Q_SIGNALS:
    void vanChanged();
    void totChanged();

  protected:
    void teken(QPainter& painter, QSize maat, double schaal) const override;

  private:
    double van_ = 0.0;
    double tot_ = 0.0;
};

}  // namespace brixtel
