// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QString>

namespace brixtel {

// An item that assistive technology reads as a number with a text, and may move. Qt's own
// interface of an item gives no value its text, and a meter no value at all. Each is a
// QQuickItem that calls `meldWaarden` once, and its QML gives it a role, so that Qt counts
// it in. Main thread.
class BXWaarde {
  public:
    [[nodiscard]] virtual QAccessible::Role waardeRol() const = 0;
    [[nodiscard]] virtual QString waardeNaam() const = 0;
    [[nodiscard]] virtual QString waardeTekst() const = 0;

    struct Getallen {
        double nu, onder, boven, stap;
    };
    [[nodiscard]] virtual Getallen waardeGetallen() const = 0;

    // For an item that is only read these do nothing.
    [[nodiscard]] virtual bool isVerstelbaar() const { return false; }
    virtual void kiesWaarde(double) {}
    virtual void stapWaarde(bool /*hoger*/) {}

    // Makes assistive technology find such items as described here.
    static void meldWaarden();

  protected:
    ~BXWaarde() = default;
};

}  // namespace brixtel
