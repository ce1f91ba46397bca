// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <memory>

#include "BrixtelSaver/SaverKeuze.h"
#include "platform/view/Sheet.h"

class QAbstractButton;
class QPushButton;
class QRadioButton;

namespace brixtel {

// The configuration sheet: a dark panel of 380 by 286 points with the six modes, the stored
// one marked. "Klaar", or Return, hands the marked mode over and closes the sheet; there is
// no other way to close it. The sheet itself stores nothing. Needs a QApplication. Main
// thread.
class InstellingenVenster final : public QDialog, public platform::Sheet {
  public:
    using Klaar = std::function<void(SaverKeuze)>;

    // Calls `klaar` once, with the marked mode, as the sheet closes.
    explicit InstellingenVenster(Klaar klaar);
    explicit InstellingenVenster(QWidget* parent, Qt::WindowFlags flags = {}) = delete;
    ~InstellingenVenster() override;

    // The buttons, in the order of `alleKeuzes`.
    [[nodiscard]] const std::array<QRadioButton*, alleKeuzes.size()>& knoppen() const {
        return knoppen_;
    }

    // Marks the clicked button alone, and unmarks the others.
    void gekozenKnop(const QAbstractButton* knop);
    // Reports the marked mode, if one is marked, and closes.
    void sluit();

    void showAbove(const platform::WindowRef& above) override;
    void dismiss() override;
    [[nodiscard]] bool isShown() const override { return isVisible(); }
    [[nodiscard]] QImage picture() override;

    // Escape and the window manager's close request do not close the sheet.
    void reject() override {}

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void maakOpschrift(const QString& tekst, const QFont& font, const QColor& kleur, QRect vak);
    void maakKnop(std::size_t plaats, SaverKeuze bewaard);
    QPushButton* maakKlaarKnop();
    // Converts the panel's y-up points to Qt's.
    [[nodiscard]] static QRect omgekeerd(QRect vak);

    std::array<QRadioButton*, alleKeuzes.size()> knoppen_{};
    const Klaar klaar_;
    QWidget* inhoud_ = nullptr;
    std::shared_ptr<void> onder_;  // its hold on the window below it
};

}  // namespace brixtel
