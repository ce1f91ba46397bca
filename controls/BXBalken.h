// SPDX-License-Identifier: MIT
#pragma once

#include "controls/BXTekening.h"

namespace brixtel {

// The row of bars of a slider: the first `gevuld` of the `aantal` bars are lit.
// Also serves as a meter.
class BXBalken : public BXTekening {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int aantal READ aantal WRITE zetAantal NOTIFY aantalChanged)
    Q_PROPERTY(int gevuld READ gevuld WRITE zetGevuld NOTIFY gevuldChanged)

  public:
    explicit BXBalken(QQuickItem* ouder = nullptr);

    [[nodiscard]] int aantal() const { return aantal_; }
    void zetAantal(int aantal);  // below 0 counts as 0

    [[nodiscard]] int gevuld() const { return gevuld_; }
    void zetGevuld(int gevuld);

  Q_SIGNALS:
    void aantalChanged();
    void gevuldChanged();

  protected:
    void teken(QPainter& painter, QSize maat, double schaal) const override;

  private:
    int aantal_ = 0;
    int gevuld_ = 0;
};

}  // namespace brixtel
