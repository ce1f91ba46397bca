// SPDX-License-Identifier: MIT
#pragma once

#include "controls/BXBalken.h"
#include "controls/BXWaarde.h"

namespace brixtel {

// A row of bars that shows a number between 0 and 1, or a lamp of bars that is on or off.
// Assistive technology reads its name and text; a change is not announced, as it may come
// many times a second. Main thread.
class BXMeter : public BXBalken, public BXWaarde {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString naam MEMBER naam_ NOTIFY naamChanged)
    Q_PROPERTY(QString tekst MEMBER tekst_ NOTIFY tekstChanged)
    Q_PROPERTY(bool lamp MEMBER lamp_ NOTIFY lampChanged)
    Q_PROPERTY(double waarde READ waarde WRITE zetWaarde NOTIFY waardeChanged)

  public:
    explicit BXMeter(QQuickItem* ouder = nullptr);

    [[nodiscard]] double waarde() const { return waarde_; }
    void zetWaarde(double waarde);

    [[nodiscard]] QAccessible::Role waardeRol() const override {
        return lamp_ ? QAccessible::Graphic : QAccessible::ProgressBar;
    }
    [[nodiscard]] QString waardeNaam() const override { return naam_; }
    [[nodiscard]] QString waardeTekst() const override { return tekst_; }
    [[nodiscard]] Getallen waardeGetallen() const override {
        return {.nu = waarde_, .onder = 0.0, .boven = 1.0, .stap = 0.0};
    }

  Q_SIGNALS:
    void naamChanged();
    void tekstChanged();
    void lampChanged();
    void waardeChanged();

  private:
    void vul();

    QString naam_, tekst_;
    bool lamp_ = false;
    double waarde_ = 0.0;
};

}  // namespace brixtel
