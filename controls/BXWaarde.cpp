// SPDX-License-Identifier: MIT
#include "controls/BXWaarde.h"

#include <QAccessibleObject>
#include <QQuickItem>
#include <QQuickWindow>

namespace brixtel {

namespace {

class Toegang : public QAccessibleObject,
                public QAccessibleValueInterface,
                public QAccessibleActionInterface {
  public:
    Toegang(QQuickItem* item, BXWaarde& waarde) : QAccessibleObject(item), waarde_(waarde) {}

    QAccessible::Role role() const override { return waarde_.waardeRol(); }
    QAccessible::State state() const override;
    QRect rect() const override;
    QWindow* window() const override { return item()->window(); }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    // The accessibility bus of Qt 6.4 passes a value as a number alone, so the text is the
    // description too.
    QString text(QAccessible::Text welke) const override {
        if (welke == QAccessible::Name) return waarde_.waardeNaam();
        const bool getal = welke == QAccessible::Value || welke == QAccessible::Description;
        return getal ? waarde_.waardeTekst() : QString();
    }
    void* interface_cast(QAccessible::InterfaceType welke) override {
        if (welke == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        if (welke == QAccessible::ActionInterface && waarde_.isVerstelbaar())
            return static_cast<QAccessibleActionInterface*>(this);
        return nullptr;
    }

    QVariant currentValue() const override { return waarde_.waardeGetallen().nu; }
    QVariant minimumValue() const override { return waarde_.waardeGetallen().onder; }
    QVariant maximumValue() const override { return waarde_.waardeGetallen().boven; }
    QVariant minimumStepSize() const override { return waarde_.waardeGetallen().stap; }
    void setCurrentValue(const QVariant& nieuw) override { waarde_.kiesWaarde(nieuw.toDouble()); }

    QStringList actionNames() const override {
        return {increaseAction(), decreaseAction(), setFocusAction()};
    }
    void doAction(const QString& actie) override {
        if (actie == setFocusAction()) return item()->forceActiveFocus();
        if (actie == increaseAction() || actie == decreaseAction())
            waarde_.stapWaarde(actie == increaseAction());
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    [[nodiscard]] QQuickItem* item() const { return static_cast<QQuickItem*>(object()); }

    BXWaarde& waarde_;
};

QAccessible::State Toegang::state() const {
    QAccessible::State staat;
    const QQuickWindow* const venster = item()->window();
    const QRect plaats = rect();
    staat.invisible = !venster || !venster->isVisible() || !item()->isVisible() ||
                      qFuzzyIsNull(item()->opacity()) || plaats.isEmpty();
    staat.offscreen = venster && !venster->geometry().intersects(plaats);
    staat.focusable = item()->activeFocusOnTab();
    staat.focused = item()->hasActiveFocus();
    staat.disabled = !item()->isEnabled();
    staat.readOnly = !waarde_.isVerstelbaar();
    return staat;
}

QRect Toegang::rect() const {
    const QQuickWindow* const venster = item()->window();
    if (!venster) return {};
    const QRectF daar = item()->mapRectToScene({0.0, 0.0, item()->width(), item()->height()});
    return {venster->mapToGlobal(daar.topLeft().toPoint()), daar.size().toSize()};
}

// Items that assistive technology is not told of have no interface.
QAccessibleInterface* Toegang::parent() const {
    for (QQuickItem* boven = item()->parentItem(); boven; boven = boven->parentItem())
        if (auto* const ouder = QAccessible::queryAccessibleInterface(boven)) return ouder;
    return item()->window() ? QAccessible::queryAccessibleInterface(item()->window()) : nullptr;
}

QAccessibleInterface* maak(const QString&, QObject* ding) {
    auto* const item = qobject_cast<QQuickItem*>(ding);
    auto* const waarde = dynamic_cast<BXWaarde*>(ding);
    return item && waarde ? new Toegang(item, *waarde) : nullptr;
}

}  // namespace

void BXWaarde::meldWaarden() {
    static const bool gemeld = [] {
        QAccessible::installFactory(maak);
        return true;
    }();
    (void)gemeld;
}

}  // namespace brixtel
