// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickView>
#include <memory>

#include "hosts/bureau/PaneelModule.h"
#include "hosts/bureau/paneel/PaneelStaat.h"
#include "hosts/bureau/paneel/Voorbeeld.h"

namespace brixtel {

// The panel's window. The window and its parts exist while the panel is open. Closing the
// panel leaves the owner running. Drawn without a GPU: a still part costs nothing, and the
// moving parts are small. Main thread.
class PaneelVenster : public QObject, public BureauPaneel {
    Q_OBJECT

  public:
    explicit PaneelVenster(const PaneelBronnen& bronnen);
    ~PaneelVenster() override;

    bool toon() override;
    [[nodiscard]] bool isOpen() const override { return view_ != nullptr; }

    // The panel's window and state; null while the panel is closed.
    [[nodiscard]] QQuickView* view() const { return view_.get(); }
    [[nodiscard]] PaneelStaat* staat() const { return staat_.get(); }
    [[nodiscard]] const Voorbeeld& voorbeeld() const { return voorbeeld_; }

  protected:
    bool eventFilter(QObject* wat, QEvent* event) override;

  private:
    void maak();
    void laatLezen();
    void ruimOp();
    Q_SLOT void werkVoorbeeldBij();

    const PaneelBronnen bronnen_;
    Voorbeeld voorbeeld_;
    std::unique_ptr<PaneelStaat> staat_;
    std::unique_ptr<QQuickView> view_;
};

}  // namespace brixtel
