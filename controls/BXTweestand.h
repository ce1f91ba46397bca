// SPDX-License-Identifier: MIT
#pragma once

#include "controls/BXDruk.h"

namespace brixtel {

// A toggle without a look: a press flips it. Flipping keeps the binding of
// `aan`, so `aan: iets.aan` with `onAanChanged: iets.aan = aan` keeps the two
// equal for good.
class BXTweestand : public BXDruk {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool aan READ aan WRITE zetAan NOTIFY aanChanged)
    Q_PROPERTY(QString label READ label WRITE zetLabel NOTIFY labelChanged)

  public:
    explicit BXTweestand(QQuickItem* ouder = nullptr);

    [[nodiscard]] bool aan() const { return aan_; }
    void zetAan(bool aan);

    // The name of the switched thing, also for assistive technology.
    [[nodiscard]] const QString& label() const { return label_; }
    void zetLabel(const QString& label);

  Q_SIGNALS:
    void aanChanged();
    void labelChanged();
    // The user flipped the toggle.
    void gewisseld(bool aan);

  private:
    void wissel();

    bool aan_ = false;
    QString label_;
};

}  // namespace brixtel
