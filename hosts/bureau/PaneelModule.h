// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtPlugin>
#include <memory>

#include "hosts/bureau/Bureau.h"

namespace brixtel {

// The objects that the panel uses; all must outlive it.
struct PaneelBronnen {
    Bureau& bureau;
    platform::WindowServer& server;
    platform::RandomSource& toeval;
};

// The settings window. Main thread.
class BureauPaneel {
  public:
    virtual ~BureauPaneel() = default;

    // Opens the panel, or brings it to the front. The user closes it. False where Qt has no
    // modules to show it with; there is no window then.
    virtual bool toon() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;
};

// The panel as a plugin of its own, with Qt Quick. An owner without a panel never loads Qt
// Quick. Main thread.
class PaneelModule {
  public:
    virtual ~PaneelModule() = default;
    [[nodiscard]] virtual std::unique_ptr<BureauPaneel> maak(const PaneelBronnen& bronnen) = 0;

    // Loads the plugin at the first call, from beside the program's own libraries; the
    // plugin stays loaded. None where the file is absent.
    static PaneelModule* laad();

    // Shows the panel, and makes it first where there is none. Returns the error as text
    // for the user; empty on success.
    static QString toon(std::unique_ptr<BureauPaneel>& paneel, const PaneelBronnen& bronnen);
};

}  // namespace brixtel

#define BrixtelPaneelModule_iid "brixtel.PaneelModule/1"
Q_DECLARE_INTERFACE(brixtel::PaneelModule, BrixtelPaneelModule_iid)
