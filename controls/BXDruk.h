// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickItem>

namespace brixtel {

// The base of all buttons of the kit: an item to press with the pointer
// (anywhere on the item), with space or Return while it has the keyboard, or
// through assistive technology. Draws nothing.
class BXDruk : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool zweef READ zweef NOTIFY zweefGewijzigd)
    Q_PROPERTY(bool toonFocus READ toonFocus NOTIFY toonFocusGewijzigd)

  public:
    explicit BXDruk(QQuickItem* ouder = nullptr);

    // Whether the pointer is over the item.
    [[nodiscard]] bool zweef() const { return zweef_; }

    // Whether the item has the keyboard and got it through the keyboard; a
    // press with the pointer takes the keyboard too, but shows no mark.
    [[nodiscard]] bool toonFocus() const { return toonFocus_; }

    // Acts like a press.
    Q_INVOKABLE void druk();

  Q_SIGNALS:
    void zweefGewijzigd();
    void toonFocusGewijzigd();
    void gedrukt();

  protected:
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void itemChange(ItemChange wat, const ItemChangeData& gegevens) override;

  private:
    void zetZweef(bool zweef);
    void zetToonFocus(bool toon);

    bool zweef_ = false;
    bool toonFocus_ = false;
    bool toondeFocus_ = false;  // at the moment its window lost the focus
};

}  // namespace brixtel
