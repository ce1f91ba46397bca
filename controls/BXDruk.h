// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickItem>

namespace brixtel {

// What all buttons of the kit are: something to press, with the pointer (anywhere
// on it), with space or Return while it has the keyboard, or through assistive
// technology. Draws nothing.
class BXDruk : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool zweef READ zweef NOTIFY zweefGewijzigd)
    Q_PROPERTY(bool toonFocus READ toonFocus NOTIFY toonFocusGewijzigd)

  public:
    explicit BXDruk(QQuickItem* ouder = nullptr);

    // Whether the pointer is over it.
    [[nodiscard]] bool zweef() const { return zweef_; }

    // Whether it has the keyboard and got it by way of the keyboard; a press with
    // the pointer takes the keyboard too, but needs no mark.
    [[nodiscard]] bool toonFocus() const { return toonFocus_; }

    // As if it had been pressed.
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
    bool toondeFocus_ = false;  // when its window was left
};

}  // namespace brixtel
