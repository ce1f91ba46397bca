// SPDX-License-Identifier: MIT
#include "controls/BXDruk.h"

namespace brixtel {

namespace {

// A switch to another window and back keeps the focus unchanged.
bool isVensterwissel(const QFocusEvent& event) {
    return event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
}

}  // namespace

BXDruk::BXDruk(QQuickItem* ouder) : QQuickItem(ouder) {
    setAcceptHoverEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setActiveFocusOnTab(true);
}

void BXDruk::druk() {
    if (isEnabled()) Q_EMIT gedrukt();
}

void BXDruk::zetZweef(bool zweef) {
    if (zweef_ == zweef) return;
    zweef_ = zweef;
    Q_EMIT zweefGewijzigd();
}

void BXDruk::zetToonFocus(bool toon) {
    if (toonFocus_ == toon) return;
    toonFocus_ = toon;
    Q_EMIT toonFocusGewijzigd();
}

void BXDruk::hoverEnterEvent(QHoverEvent*) {
    zetZweef(true);
}

void BXDruk::hoverLeaveEvent(QHoverEvent*) {
    zetZweef(false);
}

void BXDruk::mousePressEvent(QMouseEvent* event) {
    forceActiveFocus(Qt::MouseFocusReason);
    event->accept();
}

void BXDruk::mouseReleaseEvent(QMouseEvent* event) {
    if (contains(event->position())) druk();
}

void BXDruk::keyPressEvent(QKeyEvent* event) {
    const bool toets = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                       event->key() == Qt::Key_Enter;
    if (!toets || (event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        event->ignore();
        return;
    }
    // A key held down presses only once.
    if (!event->isAutoRepeat()) druk();
}

void BXDruk::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    zetToonFocus(isVensterwissel(*event) ? toondeFocus_ : event->reason() != Qt::MouseFocusReason);
}

void BXDruk::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    toondeFocus_ = isVensterwissel(*event) && toonFocus_;
    zetToonFocus(false);
}

void BXDruk::itemChange(ItemChange wat, const ItemChangeData& gegevens) {
    QQuickItem::itemChange(wat, gegevens);
    // Qt sends no leave event to an item that is hidden or disabled under the pointer.
    const bool weg = wat == ItemVisibleHasChanged || wat == ItemEnabledHasChanged;
    if (weg && !gegevens.boolValue) zetZweef(false);
}

}  // namespace brixtel
